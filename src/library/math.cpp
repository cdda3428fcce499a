// The numeric built-ins: absolute value, roots, powers and logarithms, __Int with its
// rounding to one decimal first, __FMOD, and the binary conversions, which are the identity.
#include "library/arguments.h"
#include "library/number_text.h"
#include "zelqa/math.h"
#include "zelqa/values.h"

#include <cmath>
#include <cstring>

using namespace zq::library;

pObj __Abs(pObj x) noexcept { return __INIT_DOUBLE(std::fabs(requireNumber(x))); }

pObj __Sqrt(pObj x) noexcept { return __INIT_DOUBLE(std::sqrt(requireNumber(x))); } // NaN below 0

pObj __Exp(pObj x) noexcept { return __INIT_DOUBLE(std::exp(requireNumber(x))); }

pObj __Log(pObj x) noexcept { return __INIT_DOUBLE(std::log(requireNumber(x))); }

pObj __Log_10(pObj x) noexcept { return __INIT_DOUBLE(std::log10(requireNumber(x))); }

pObj __POW(pObj x, pObj y) noexcept {
    double base = requireNumber(x);
    return __INIT_DOUBLE(std::pow(base, requireNumber(y)));
}

pObj __Int(pObj x) noexcept {
    // Rounded to one decimal first, so 2.96 is 3 while 2.94 is 2.
    double r = roundTo(requireNumber(x), 1);
    return __INIT_DOUBLE(r <= 0 ? std::ceil(r) : std::floor(r));
}

pObj __FMOD(pObj a, pObj b) noexcept {
    double x = requireNumber(a);
    double y = requireNumber(b);
    zq::runtime::requireArgument(y != 0); // a zero divisor is an argument error
    return __INIT_DOUBLE(std::fmod(x, y));
}

namespace {

// The argument's 8-byte payload read as a double, whatever its type.
pObj payloadAsNumber(pObj x) {
    zq::runtime::requireArgument(x != nullptr);
    double d = 0;
    std::memcpy(&d, &x->payload, sizeof d);
    return __INIT_DOUBLE(d);
}

} // namespace

pObj __Bin2I(pObj x) noexcept { return payloadAsNumber(x); }
pObj __Bin2L(pObj x) noexcept { return payloadAsNumber(x); }
pObj __Bin2W(pObj x) noexcept { return payloadAsNumber(x); }
pObj __I2Bin(pObj x) noexcept { return payloadAsNumber(x); }
pObj __L2Bin(pObj x) noexcept { return payloadAsNumber(x); }
pObj __W2Bin(pObj x) noexcept { return payloadAsNumber(x); }
