// Math, type tests and choices: the numeric built-ins, __Len, __Type, __Empty, __If,
// __Max, __Min and the character classes.
#include "library/library_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace zq::library_test;

namespace {

class MathAndTypes : public zq::test::FreshRuntime {};

TEST_F(MathAndTypes, NumericBuiltIns) {
    EXPECT_EQ(number(__Abs(num(-2.5))), 2.5);
    EXPECT_EQ(number(__Sqrt(num(2.25))), 1.5);
    EXPECT_TRUE(std::isnan(number(__Sqrt(num(-1)))));
    EXPECT_DOUBLE_EQ(number(__Exp(num(1))), std::exp(1.0));
    EXPECT_DOUBLE_EQ(number(__Log(num(std::exp(2.0)))), 2.0);
    EXPECT_DOUBLE_EQ(number(__Log_10(num(1000))), 3.0);
    EXPECT_EQ(number(__POW(num(2), num(10))), 1024);
    EXPECT_EQ(number(__FMOD(num(-7), num(3))), -1);
    EXPECT_EQ(number(__FMOD(num(7.5), num(2))), 1.5);
    struct Case {
        double x, expected;
    };
    // One decimal first, then toward zero.
    for (Case c : std::vector<Case>{{2.96, 3}, {-2.96, -3}, {2.94, 2}, {-0.04, 0}, {-2.5, -2}, {7, 7}})
        EXPECT_EQ(number(__Int(num(c.x))), c.expected) << c.x;
    // The binary conversions hand the payload back as a number.
    for (pObj (*f)(pObj) : {__Bin2I, __Bin2L, __Bin2W, __I2Bin, __L2Bin, __W2Bin})
        EXPECT_EQ(number(f(num(-12.75))), -12.75);
    pObj day = date(2006, 11, 23);
    EXPECT_EQ(number(__Bin2I(day)), 39044);
}

TEST_F(MathAndTypes, LengthsTypesAndEmptiness) {
    pObj array = __CreateArray(num(1), num(2), text("x"), __INIT_NUL());
    EXPECT_EQ(number(__Len(text("ab\xE9"))), 3);
    EXPECT_EQ(number(__Len(array)), 3);
    EXPECT_EQ(number(__Len(__CreateArray(__INIT_NUL()))), 0);
    struct Case {
        pObj v;
        const char *type;
        bool empty;
    };
    std::vector<Case> cases = {
        {text("a"), "C", false},       {text("   "), "C", true},     {text(""), "C", true},
        {text("\t"), "C", false},      {num(0), "N", true},         {num(std::nan("")), "N", false},
        {num(-1), "N", false},         {emptyDate(), "D", true},     {date(2006, 1, 1), "D", false},
        {__INIT_BOOL(1), "L", false},  {__INIT_BOOL(0), "L", true},  {__INIT_NIL(), "U", true},
        {array, "A", false},           {__CreateArray(__INIT_NUL()), "A", true},
        {__INIT_LONG(5), "U", true},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(str(__Type(c.v)), c.type) << c.type;
        EXPECT_EQ(__Empty(c.v), __INIT_BOOL(c.empty)) << c.type << " " << str(c.v);
    }
    // A logical whose payload is neither 0 nor 1 is empty.
    pObj odd = __INIT_LONG(2);
    odd->type = TYPE_LOGICAL;
    EXPECT_EQ(__Empty(odd), __INIT_BOOL(1));
}

TEST_F(MathAndTypes, ChoicesReturnTheRecordsThemselves) {
    pObj a = num(1), b = num(2), c = num(2);
    EXPECT_EQ(__If(1, a, b), a);
    EXPECT_EQ(__If(0, a, b), b);
    EXPECT_EQ(__Max(a, b), b);
    EXPECT_EQ(__Max(b, a), b);
    EXPECT_EQ(__Max(b, c), c); // a tie gives the second
    EXPECT_EQ(__Min(a, b), a);
    EXPECT_EQ(__Min(b, c), c);
    pObj d1 = date(2006, 1, 1), d2 = date(2006, 1, 1);
    EXPECT_EQ(__Max(d1, d2), d2);
    EXPECT_EQ(__Min(d1, d2), d2);
}

TEST_F(MathAndTypes, CharacterClassesOfTheFirstByte) {
    struct Case {
        const char *s;
        bool alpha, digit, upper, lower, print;
    };
    std::vector<Case> cases = {
        {"A1", true, false, true, false, true},  {"z", true, false, false, true, true},
        {"5x", true, true, false, false, true},  {" a", false, false, false, false, true},
        {"!", false, false, false, false, true}, {"~", false, false, false, false, true},
        {"\t", false, false, false, false, false}, {"", false, false, false, false, false},
        {"\xE9", false, false, false, false, false},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(__IsAlpha(text(c.s)), __INIT_BOOL(c.alpha)) << c.s;
        EXPECT_EQ(__IsDigit(text(c.s)), __INIT_BOOL(c.digit)) << c.s;
        EXPECT_EQ(__IsUpper(text(c.s)), __INIT_BOOL(c.upper)) << c.s;
        EXPECT_EQ(__IsLower(text(c.s)), __INIT_BOOL(c.lower)) << c.s;
        EXPECT_EQ(__IsPrint(text(c.s)), __INIT_BOOL(c.print)) << c.s;
    }
}

} // namespace
