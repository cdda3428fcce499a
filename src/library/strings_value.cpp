// __Val: text to number, with the rightmost ',' or '.' as the decimal separator.
//
// The first space ends the text (so a leading space gives 0). Scanning from the end, the
// first byte that is neither a digit nor ',' nor '.' cuts the text there: only what lies
// before it counts, read as a whole number from its leading digits, so a sign in front
// gives 0 and no result is negative. Without such a byte, the rightmost separator is the
// decimal one and every other separator is dropped: 1.234,56 and 1,234.56 are both 1234.56.
#include "library/arguments.h"
#include "library/text_value.h"
#include "zelqa/strings.h"
#include "zelqa/values.h"

#include <algorithm>
#include <cmath>

using namespace zq::library;

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSeparator(char c) { return c == ',' || c == '.'; }

// The digits of a text, separators skipped, as a whole number; stops at any other byte.
double digitsValue(std::string_view s) {
    double value = 0;
    for (char c : s) {
        if (isDigit(c))
            value = value * 10 + (c - '0');
        else if (!isSeparator(c))
            break;
    }
    return value;
}

// The fraction of a run of digits: their value over ten to the power of their count.
// Digits past the seventeenth cannot change a double.
double fractionValue(std::string_view digits) {
    digits = digits.substr(0, std::min<size_t>(digits.size(), 17));
    return digitsValue(digits) / std::pow(10.0, static_cast<double>(std::max<size_t>(digits.size(), 1)));
}

} // namespace

double zq::library::valueOfText(std::string_view s) {
    s = s.substr(0, std::min(s.find(' '), s.find('\0')));
    auto invalid = std::find_if(s.rbegin(), s.rend(), [](char c) { return !isDigit(c) && !isSeparator(c); });
    if (invalid != s.rend()) {
        std::string_view kept = s.substr(0, static_cast<size_t>(s.rend() - invalid) - 1);
        auto digits = std::find_if_not(kept.begin(), kept.end(), isDigit);
        return digitsValue(kept.substr(0, static_cast<size_t>(digits - kept.begin())));
    }
    size_t separator = s.find_last_of(",.");
    if (separator == std::string_view::npos)
        return digitsValue(s);
    return digitsValue(s.substr(0, separator)) + fractionValue(s.substr(separator + 1));
}

pObj __Val(pObj text) noexcept {
    if (!text)
        return nullptr;
    if (text->type != TYPE_CHAR)
        return text; // not a text: handed back as it is
    return __INIT_DOUBLE(valueOfText(bufferOf(text)));
}
