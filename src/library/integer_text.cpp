// The decimal text-to-integer conversion, bounded by the view it is given.
#include "library/integer_text.h"

namespace zq::library {

namespace {
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
} // namespace

int32_t integerOfText(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && isBlank(text[i]))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        negative = text[i++] == '-';
    int64_t value = 0;
    for (; i < text.size() && isDigit(text[i]); ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > int64_t{INT32_MAX} + 1)
            value = int64_t{INT32_MAX} + 1; // held: further digits cannot bring it back
    }
    if (negative)
        return static_cast<int32_t>(-value);
    return value > INT32_MAX ? INT32_MAX : static_cast<int32_t>(value);
}

} // namespace zq::library
