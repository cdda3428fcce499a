// Registration numbers: __ValidCPF (11 digits) and __ValidCGC (14 digits), checked by
// their two check digits. Only the length is tested before the sums: each byte counts as
// its value minus '0', digit or not, and numbers of one repeated digit are not refused.
#include "library/arguments.h"
#include "zelqa/math.h"
#include "zelqa/values.h"

#include <array>

using namespace zq::library;

namespace {

int32_t valueAt(std::string_view s, size_t i) { return static_cast<unsigned char>(s[i]) - '0'; }

// 0 when the remainder (of signed division) by 11 is 0 or 1, else 11 minus it.
int32_t checkDigit(int32_t sum) {
    int32_t r = sum % 11;
    return r == 0 || r == 1 ? 0 : 11 - r;
}

// The first check digit weighs the leading N - 2 values; the second weighs them and the
// first check digit.
template <size_t N>
bool checkDigitsFit(pObj text, const std::array<int32_t, N - 2> &first, const std::array<int32_t, N - 1> &second) {
    std::string_view s = textOf(requireText(text));
    if (s.size() != N)
        return false;
    int32_t sum1 = 0, sum2 = 0;
    for (size_t i = 0; i < N - 2; ++i) {
        sum1 += first[i] * valueAt(s, i);
        sum2 += second[i] * valueAt(s, i);
    }
    int32_t c1 = checkDigit(sum1);
    int32_t c2 = checkDigit(sum2 + second[N - 2] * c1);
    return c1 == valueAt(s, N - 2) && c2 == valueAt(s, N - 1);
}

} // namespace

pObj __ValidCPF(pObj text) noexcept {
    return __INIT_BOOL(checkDigitsFit<11>(text, {10, 9, 8, 7, 6, 5, 4, 3, 2}, {11, 10, 9, 8, 7, 6, 5, 4, 3, 2}));
}

pObj __ValidCGC(pObj text) noexcept {
    return __INIT_BOOL(checkDigitsFit<14>(text, {5, 4, 3, 2, 9, 8, 7, 6, 5, 4, 3, 2},
                                          {6, 5, 4, 3, 2, 9, 8, 7, 6, 5, 4, 3, 2}));
}
