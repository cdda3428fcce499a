// Rounding: __Round with its threshold just under a half, and NOROUND, which cuts the
// decimals off through text and so makes every negative number 0.
#include "library/arguments.h"
#include "library/decimal_character.h"
#include "library/number_text.h"
#include "library/text_value.h"
#include "runtime/context.h"
#include "zelqa/numbers.h"
#include "zelqa/values.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace zq::library;

double zq::library::roundTo(double x, int32_t decimals) {
    double p = std::pow(10.0, static_cast<double>(decimals));
    double whole = 0;
    double fraction = std::modf(std::fabs(x) * p, &whole);
    if (fraction >= 0.49999999999999)
        whole += 1;
    double result = whole / p;
    return x < 0 ? -result : result;
}

pObj __Round(pObj number, pObj decimals) noexcept {
    double x = requireNumber(number);
    return __INIT_DOUBLE(roundTo(x, truncated(requireNumber(decimals))));
}

pObj NOROUND(pObj number, pObj decimals) noexcept {
    double x = requireNumber(number);
    int32_t d = truncated(requireNumber(decimals));
    std::string text = formatDecimal(x, std::min(d, kMaxDecimals), false, localeDecimalCharacter());
    // The text goes through the context's scratch buffer, cut to what it holds: decimals
    // past that could not change the value read back.
    char *scratch = zq::runtime::context().scratch;
    size_t n = std::min(text.size(), sizeof zq::runtime::RuntimeContext::scratch - 1);
    std::memcpy(scratch, text.data(), n);
    scratch[n] = '\0';
    return __INIT_DOUBLE(valueOfText({scratch, n}));
}
