// Replacement: __StrTran replaces occurrences of a search text, from a start position.
//
// The search goes on behind each replacement, so a replacement that holds the search text
// is not found again, and the work is linear: one pass counts the result's length, a
// second writes it.
#include "library/arguments.h"
#include "zelqa/strings.h"

#include <cstring>

using namespace zq::library;
using zq::runtime::TemporaryShield;

namespace {

struct Replacement {
    std::string_view text, search, with;
    size_t from;   // where the search starts
    bool onlyOne;  // a negative count: one replacement
};

// Writes the result at out when out is not null; returns its length either way.
size_t replaceAll(const Replacement &r, char *out) {
    size_t length = 0, copied = 0;
    auto emit = [&](std::string_view part) {
        if (out)
            std::memcpy(out + length, part.data(), part.size());
        length += part.size();
    };
    for (size_t at = r.text.find(r.search, r.from); at != std::string_view::npos;
         at = r.text.find(r.search, copied)) {
        emit(r.text.substr(copied, at - copied));
        emit(r.with);
        copied = at + r.search.size();
        if (r.onlyOne)
            break;
    }
    emit(r.text.substr(copied));
    return length;
}

} // namespace

pObj __StrTran(pObj text, pObj search, pObj with, pObj start, pObj count) noexcept {
    requireText(text);
    Replacement r{textOf(text), textOf(requireText(search)), textOf(requireText(with)), 0, false};
    double first = start ? requireNumber(start) : 0;
    double limit = count ? requireNumber(count) : 0;
    int32_t p = first != 0 ? truncated(first) - 1 : 0;
    if (p >= text->objLength)
        return nullptr; // a start beyond the text gives no value
    r.from = static_cast<size_t>(p < 0 ? 0 : p);
    r.onlyOne = limit < 0; // a count of 0 or more is no limit
    TemporaryShield keepText(text), keepSearch(search), keepWith(with);
    if (r.search.empty() || r.from > r.text.size())
        return freshText(r.text); // an empty search text is never found
    pObj result = newText(static_cast<int64_t>(replaceAll(r, nullptr)));
    replaceAll(r, result->payload.c);
    return result;
}
