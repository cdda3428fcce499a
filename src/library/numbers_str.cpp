// __Str and __StrZero: a number as text of a width, padded on the left and never cut.
#include "library/arguments.h"
#include "library/decimal_character.h"
#include "library/number_text.h"
#include "zelqa/numbers.h"

#include <algorithm>
#include <cstring>
#include <string>

using namespace zq::library;

namespace {

// The width: 10 when absent, NIL or negative.
int32_t widthArgument(pObj len) {
    if (!len || len->type == TYPE_NIL)
        return 10;
    double n = requireNumber(len);
    return n < 0 ? 10 : truncated(n);
}

// The decimals: 0 when absent or NIL; a negative count means ten decimals.
int32_t decimalsArgument(pObj dec) {
    if (!dec || dec->type == TYPE_NIL)
        return 0;
    double n = requireNumber(dec);
    return n < 0 ? 10 : truncated(n);
}

// The text behind copies of fill up to the width; a wider text is kept whole.
pObj padLeft(const std::string &text, int32_t width, char fill) {
    size_t total = std::max(static_cast<size_t>(std::max(width, 0)), text.size());
    pObj result = newText(static_cast<int64_t>(total)); // "LOW MEMORY!" past what a text holds
    std::memset(result->payload.c, fill, total - text.size());
    std::memcpy(result->payload.c + total - text.size(), text.data(), text.size());
    return result;
}

} // namespace

pObj __Str(pObj number, pObj len, pObj dec) noexcept {
    double x = requireNumber(number);
    int32_t width = widthArgument(len);
    std::string text = formatDecimal(x, decimalsArgument(dec), true, localeDecimalCharacter());
    return padLeft(text, width, ' ');
}

pObj __StrZero(pObj number, pObj len, pObj dec) noexcept {
    double x = requireNumber(number);
    int32_t width = widthArgument(len);
    int32_t decimals = decimalsArgument(dec);
    char dc = localeDecimalCharacter();
    std::string text = formatDecimal(x, decimals, true, dc);
    // A zero third decimal cuts the text after the second: 1.5 with four decimals is 1.50.
    size_t point = text.find(dc);
    if (decimals > 0 && point != std::string::npos && point + 3 < text.size() && text[point + 3] == '0')
        text.resize(point + 3);
    return padLeft(text, width, '0'); // a negative number gets its zeros before the sign
}
