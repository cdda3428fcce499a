// Numbers as text and rounding, under both decimal characters: printDouble, __Str,
// __StrZero, __Round, NOROUND and __GetMaskType.
#include "library/library_support.h"
#include "platform/process.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace zq::library_test;

namespace {

// A fresh runtime with the decimal character chosen by the test.
class Numbers : public zq::test::FreshRuntime {
protected:
    void TearDown() override {
        zq::platform::setEnvironment("ZELQA_DECIMAL_CHAR", nullptr);
        FreshRuntime::TearDown();
    }
    static void useDecimal(char dc) {
        char text[2] = {dc, '\0'};
        zq::platform::setEnvironment("ZELQA_DECIMAL_CHAR", text);
    }
};

// The text with '.' standing for the decimal character dc.
std::string withDecimal(std::string text, char dc) {
    for (char &c : text)
        if (c == '.')
            c = dc;
    return text;
}

TEST_F(Numbers, PrintDoubleGivesTheShortestFixedText) {
    struct Case {
        double x;
        char dc;
        const char *expected;
    };
    std::vector<Case> cases = {
        {2.5, ',', "2,5"},   {3.0, ',', "3"},       {100, '.', "100"},   {-0.125, '.', "-0.125"},
        {0, ',', "0"},       {1e-7, '.', "0"},      {1234567.25, ',', "1234567,25"},
        {INFINITY, ',', "inf"},
    };
    for (const Case &c : cases) {
        char buf[320];
        printDouble(c.x, buf, c.dc);
        EXPECT_STREQ(buf, c.expected) << c.x;
    }
}

TEST_F(Numbers, StrPadsOnTheLeftAndNeverCuts) {
    for (char dc : {',', '.'}) {
        useDecimal(dc);
        struct Case {
            pObj n, len, dec;
            const char *expected; // '.' stands for the decimal character
        };
        std::vector<Case> cases = {
            {num(12.345), num(8), num(2), "   12.35"},
            {num(12.345), num(2), num(2), "12.35"},           // wider than the length: whole
            {num(3), nullptr, nullptr, "         3"},          // length 10
            {num(3), num(-4), __INIT_NIL(), "         3"},
            {num(1.5), nullptr, num(-1), "1.5000000000"},      // negative decimals: ten
            {num(-2.5), num(4), num(0), "  -3"},               // halves away from zero
            {num(2.5), num(0), num(0), "3"},
            {num(-0.3), num(3), nullptr, " -0"},               // the sign of the rounded value
            {num(0), num(4), num(1), " 0.0"},
            {num(1e15), num(1), num(2), "1000000000000000.00"},
            {num(0.125), num(6), num(2), "  0.13"},
        };
        for (const Case &c : cases)
            EXPECT_EQ(str(__Str(c.n, c.len, c.dec)), withDecimal(c.expected, dc)) << dc << " " << c.expected;
    }
}

TEST_F(Numbers, StrZeroPadsWithZerosAndCutsAZeroThirdDecimal) {
    for (char dc : {',', '.'}) {
        useDecimal(dc);
        struct Case {
            double n;
            pObj len, dec;
            const char *expected;
        };
        std::vector<Case> cases = {
            {1.5, num(8), num(4), "00001.50"},
            {1.234, num(8), num(3), "0001.234"},
            {-5, num(4), nullptr, "00-5"},
            {7, nullptr, nullptr, "0000000007"},
            {2.26, num(3), num(1), "2.3"},
            {1.2, num(6), num(2), "001.20"},
        };
        for (const Case &c : cases)
            EXPECT_EQ(str(__StrZero(num(c.n), c.len, c.dec)), withDecimal(c.expected, dc)) << dc << " " << c.expected;
    }
}

TEST_F(Numbers, RoundUsesAThresholdJustUnderAHalf) {
    struct Case {
        double x, d, expected;
    };
    std::vector<Case> cases = {
        {2.5, 0, 3},   {-2.5, 0, -3}, {0.45, 1, 0.5}, {1.499999999999995, 0, 2},
        {1.4, 0, 1},   {0, 2, 0},     {1234.5678, -2, 1200}, {-0.004, 2, 0},
    };
    for (const Case &c : cases)
        EXPECT_DOUBLE_EQ(number(__Round(num(c.x), num(c.d))), c.expected) << c.x << " " << c.d;
}

TEST_F(Numbers, NoRoundCutsThroughTextAndMakesNegativesZero) {
    for (char dc : {',', '.'}) {
        useDecimal(dc);
        struct Case {
            double x, d, expected;
        };
        std::vector<Case> cases = {
            {1.239, 2, 1.23}, {-1.239, 2, 0}, {1.999, 0, 1}, {12.5, 3, 12.5}, {7, -1, 7},
        };
        for (const Case &c : cases)
            EXPECT_DOUBLE_EQ(number(NOROUND(num(c.x), num(c.d))), c.expected) << dc << " " << c.x;
    }
    // Decimals past the scratch buffer are cut, not written beyond it (so many decimals
    // scale past the largest double, and all of them read 0).
    EXPECT_DOUBLE_EQ(number(NOROUND(num(7.5), num(5000))), 7);
}

TEST_F(Numbers, MaskTypesComeFromTheFirstTwoBytes) {
    struct Case {
        const char *picture;
        int type;
    };
    std::vector<Case> cases = {
        {"@!", 1}, {"@R 999", 2}, {"@E 9.99", 3}, {"@D", 4}, {"@r", 0}, {"@", 0}, {"", 0}, {"999", 0}, {"R@", 0},
    };
    for (const Case &c : cases)
        EXPECT_EQ(__GetMaskType(c.picture), c.type) << c.picture;
    EXPECT_EQ(__GetMaskType(nullptr), 0);
}

} // namespace
