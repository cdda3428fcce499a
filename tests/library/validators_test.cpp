// CPF and CNPJ numbers: thousands of numbers whose check digits this test works out by the
// published rule, each written out whole and with every single digit changed.
#include "library/library_support.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace zq::library_test;

namespace {

class Validators : public zq::test::FreshRuntime {};

// The published check digit over digits with weights counting down to 2 from the right
// end, restarting at 9 after 2 when `wrap` is set (CNPJ): (10 x sum mod 11) mod 10.
int publishedCheckDigit(const std::string &digits, bool wrap) {
    int sum = 0, weight = 2;
    for (size_t i = digits.size(); i-- > 0;) {
        sum += (digits[i] - '0') * weight;
        weight = wrap && weight == 9 ? 2 : weight + 1;
    }
    return sum * 10 % 11 % 10;
}

std::string withCheckDigits(std::string base, bool wrap) {
    base += static_cast<char>('0' + publishedCheckDigit(base, wrap));
    base += static_cast<char>('0' + publishedCheckDigit(base, wrap));
    return base;
}

bool published(const std::string &number, bool wrap) {
    return withCheckDigits(number.substr(0, number.size() - 2), wrap) == number;
}

// Every digit string of the kind, then each of its single-digit changes.
void checkKind(pObj (*validator)(pObj), size_t baseLength, bool wrap) {
    std::mt19937 rng(static_cast<unsigned>(baseLength));
    int changedAndStillValid = 0;
    for (int n = 0; n < 2000; ++n) {
        std::string base(baseLength, '0');
        for (char &c : base)
            c = static_cast<char>('0' + rng() % 10);
        std::string number = withCheckDigits(base, wrap);
        ASSERT_EQ(validator(text(number)), __INIT_BOOL(1)) << number;
        for (size_t i = 0; i < number.size(); ++i) {
            for (char d = '0'; d <= '9'; ++d) {
                if (d == number[i])
                    continue;
                std::string changed = number;
                changed[i] = d;
                bool expected = published(changed, wrap);
                changedAndStillValid += expected;
                ASSERT_EQ(validator(text(changed)), __INIT_BOOL(expected)) << changed;
            }
        }
    }
    EXPECT_LT(changedAndStillValid, 2000 * 10); // almost every change is caught
}

TEST_F(Validators, CpfNumbersAndEverySingleDigitChange) { checkKind(__ValidCPF, 9, false); }

TEST_F(Validators, CnpjNumbersAndEverySingleDigitChange) { checkKind(__ValidCGC, 12, true); }

TEST_F(Validators, OnlyTheExactLengthIsAccepted) {
    EXPECT_EQ(__ValidCPF(text("11144477735")), __INIT_BOOL(1));
    EXPECT_EQ(__ValidCPF(text("111.444.777-35")), __INIT_BOOL(0));
    EXPECT_EQ(__ValidCPF(text("11111111111")), __INIT_BOOL(1)); // one repeated digit passes
    EXPECT_EQ(__ValidCPF(text("")), __INIT_BOOL(0));
    EXPECT_EQ(__ValidCGC(text("11222333000181")), __INIT_BOOL(1));
    EXPECT_EQ(__ValidCGC(text("11.222.333/0001-81")), __INIT_BOOL(0));
    EXPECT_EQ(__ValidCGC(text("1122233300018")), __INIT_BOOL(0));
    // Bytes are not tested for being digits: 11 spaces weigh as negative values.
    EXPECT_EQ(__ValidCPF(text("           ")), __INIT_BOOL(0));
}

} // namespace
