// Trimming: __AllTrim, __LTrim and __RTrim remove spaces (byte 32) only; tabs stay.
#include "library/arguments.h"
#include "zelqa/strings.h"

using namespace zq::library;
using zq::runtime::TemporaryShield;

namespace {

std::string_view dropLeadingSpaces(std::string_view s) {
    size_t first = s.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : s.substr(first);
}

std::string_view dropTrailingSpaces(std::string_view s) {
    size_t last = s.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string_view() : s.substr(0, last + 1);
}

pObj copyOf(pObj text, std::string_view part) {
    TemporaryShield keep(text);
    return freshText(part);
}

} // namespace

pObj __AllTrim(pObj text) noexcept {
    return copyOf(text, dropTrailingSpaces(dropLeadingSpaces(textOf(requireText(text)))));
}

pObj __LTrim(pObj text) noexcept {
    std::string_view s = textOf(requireText(text));
    std::string_view rest = dropLeadingSpaces(s);
    if (!rest.empty() && rest.size() == s.size())
        return text; // nothing to trim: the value itself, not a copy
    return copyOf(text, rest);
}

pObj __RTrim(pObj text) noexcept {
    return copyOf(text, dropTrailingSpaces(textOf(requireText(text))));
}
