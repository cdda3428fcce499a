// printDouble and the decimal formatter.
#include "library/number_text.h"

#include "runtime/raise.h"
#include "zelqa/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

void printDouble(double x, char *buf, char dc) noexcept {
    std::snprintf(buf, zq::library::kPrintDoubleSize, "%f", x);
    char *point = std::strchr(buf, dc);
    if (!point)
        point = std::strchr(buf, '.');
    if (!point)
        return; // "inf" and "nan" stay as they are
    *point = dc;
    size_t n = std::strlen(buf);
    while (n > 1 && buf[n - 1] == '0')
        buf[--n] = '\0';
    if (buf[n - 1] == dc)
        buf[n - 1] = '\0';
}

namespace zq::library {

std::string formatDecimal(double x, int32_t decimals, bool round, char dc) {
    if (decimals > kMaxDecimals)
        runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    double scale = 1.0;
    for (int32_t i = 0; i < decimals; ++i)
        scale *= 10.0;
    if (x < 0)
        scale = -scale;
    if (round && x != 0)
        x += 0.5 / scale; // halves move away from zero
    char printed[kPrintDoubleSize];
    printDouble(x, printed, dc);
    std::string text(printed, std::strcspn(printed, ",."));
    if (decimals == 0)
        return text;
    text += dc;
    size_t first = text.size();
    text.append(static_cast<size_t>(std::max(decimals, 0)), '0');
    double y = scale * x;
    for (size_t i = text.size(); i > first; --i) {
        double digit = std::trunc(std::fmod(y, 10.0));
        text[i - 1] = static_cast<char>('0' + (std::isfinite(digit) ? static_cast<int>(digit) : 0));
        y *= 0.1;
    }
    return text;
}

} // namespace zq::library
