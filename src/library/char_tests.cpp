// Character-class tests of a text's first byte. Digits count as alphabetic.
#include "library/arguments.h"
#include "library/char_classes.h"
#include "zelqa/math.h"
#include "zelqa/values.h"

using namespace zq::library;

namespace {

// The first byte's classes against a mask; an empty text tests its NUL, which has none.
pObj firstByteIs(pObj text, uint8_t mask) {
    std::string_view s = textOf(requireText(text));
    unsigned char first = s.empty() ? 0 : static_cast<unsigned char>(s[0]);
    return __INIT_BOOL((charClass(first) & mask) != 0);
}

} // namespace

pObj __IsAlpha(pObj text) noexcept { return firstByteIs(text, kUpper | kLower | kDigit); }

pObj __IsDigit(pObj text) noexcept { return firstByteIs(text, kDigit); }

pObj __IsUpper(pObj text) noexcept { return firstByteIs(text, kUpper); }

pObj __IsLower(pObj text) noexcept { return firstByteIs(text, kLower); }

pObj __IsPrint(pObj text) noexcept { return firstByteIs(text, kUpper | kLower | kDigit | kPunct | kBlank); }
