// __Transform: every function of a picture over every type of value, under both decimal
// characters, and the finishing step.
#include "library/library_support.h"
#include "library/picture.h"
#include "platform/process.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace zq::library_test;

namespace {

class Transform : public zq::test::FreshRuntime {
protected:
    void TearDown() override {
        zq::platform::setEnvironment("ZELQA_DECIMAL_CHAR", nullptr);
        FreshRuntime::TearDown();
    }
    static void useDecimal(const char *dc) { zq::platform::setEnvironment("ZELQA_DECIMAL_CHAR", dc); }
};

std::string through(pObj v, const char *picture) { return str(__Transform(v, text(picture))); }

TEST_F(Transform, EuropeanNumbersSwapTheSeparatorsByTheDecimalCharacter) {
    struct Case {
        double v;
        const char *picture, *comma, *point; // under ',' and under '.'
    };
    std::vector<Case> cases = {
        {1234.5, "@E 999,999.99", "1.234,50", "1,234.50"},
        {-1234.5, "@E 999,999.99", "-1.234,50", "-1,234.50"},
        {-123456.78, "@E 999,999.99", "-123.456,78", "-123,456.78"}, // no blank left: one more byte
        {1234567.891, "@E 999,999.99", "234.567,89", "234,567.89"},   // places run out
        {0.5, "@E 9.99", "0,50", "0.50"},
        {1234.56, "@E 9999", "1235", "1235"},                          // no decimals: rounded
        {12.5, "@E 999.99 XX", "12,50", "12.50"},                      // a blank behind '.' ends it
        {7, "@E 99-99", "7", "7"},                                     // other bytes leave blanks
    };
    for (const Case &c : cases) {
        useDecimal(",");
        EXPECT_EQ(through(num(c.v), c.picture), c.comma) << c.v << " " << c.picture;
        useDecimal(".");
        EXPECT_EQ(through(num(c.v), c.picture), c.point) << c.v << " " << c.picture;
    }
}

TEST_F(Transform, EuropeanTextsTakeTheirDigitsAndDecimalCharacter) {
    struct Case {
        const char *dc, *v, *picture, *expected;
    };
    std::vector<Case> cases = {
        {",", "1234,5", "@E 999,999.99", "1.234,50"},
        {",", "R$ -1234,5", "@E 999,999.99", "-1.234,50"},
        {",", "1234", "@E 999,999.99", "1.234,00"},    // no decimal character: a whole number
        {",", "12,", "@E 99.99", "12,00"},
        {",", "1,23456", "@E 9.99", "1,23"},           // extra decimals are cut
        {",", "1234,56", "@E 9999", "1234"},           // no decimals in the picture
        {".", "1234.5", "@E 999,999.99", "1,234.50"},
        {".", "1.234,5", "@E 999,999.99", "1.23"},     // under '.' the ',' is dropped: 1.2345
    };
    for (const Case &c : cases) {
        useDecimal(c.dc);
        EXPECT_EQ(through(text(c.v), c.picture), c.expected) << c.v << " " << c.picture;
    }
}

TEST_F(Transform, TemplatesPlaceTheValueAndStopAtTheFirstMisfit) {
    struct Case {
        const char *v, *picture, *expected;
    };
    std::vector<Case> cases = {
        {"123", "@R 999-999", "123"},            // literals behind the value are not written
        {"123456", "@R 999-999", "123-456"},
        {"123-456", "@R 999-999", "123-456"},     // a literal in the value is consumed
        {"ab cd1", "@R !!!!!-9", "AB CD-1"},
        {"abc1", "@R !!-9", "AB-"},               // '9' meets a letter: the result ends
        {"1a", "@R !9", ""},                      // '!' meets a digit
        {"\xE9z", "@R XA", "\xE9z"},
        {"\xE9z", "@R !!", ""},                   // bytes above 127 are no letters
        {"12", "@R 9,,9", "12"},                  // ",," pairs are removed
        {"12", "@R ,99", "12"},                   // and a leading ','
        {"12", "@R .99", "0.12"},                 // a leading '.' gets a 0
        {"123", "@R", ""},                        // an empty template takes nothing
    };
    for (const Case &c : cases)
        EXPECT_EQ(through(text(c.v), c.picture), c.expected) << c.v << " " << c.picture;
}

TEST_F(Transform, OtherFunctionsAndTypes) {
    EXPECT_EQ(through(text("abc\xE9"), "@!"), "ABC\xE9");
    EXPECT_EQ(through(text("11/23/06"), "@D"), "11/23/06");
    EXPECT_EQ(through(text("02/30/06"), "@D"), "  /  /  "); // an impossible date prints blank
    EXPECT_EQ(through(date(2006, 11, 23), "@D"), "11/23/06");
    EXPECT_EQ(through(date(2006, 11, 23), "@E 99"), "");
    EXPECT_EQ(through(__INIT_BOOL(1), "@R 9"), "");
    EXPECT_EQ(through(num(1234.5), "@R 999"), std::string(9, ' ')); // a number under another mask
    EXPECT_EQ(through(num(5), "@! 9"), "   ");
    // No value gives NIL; an empty value an empty text; a picture without a function the value itself.
    EXPECT_EQ(__Transform(nullptr, text("@!")), __INIT_NIL());
    for (pObj empty : {num(0), text("   "), __INIT_BOOL(0), __INIT_NIL(), emptyDate()})
        EXPECT_EQ(through(empty, "@E 999"), "");
    for (const char *picture : {"999", "", "@X", "@r 99"}) {
        pObj v = num(12);
        EXPECT_EQ(__Transform(v, text(picture)), v) << picture;
    }
}

// A stand-in for the user-interface objects; object 3 has no picture.
const char *pictureOf(int32_t number) {
    switch (number) {
    case 1: return "@R 99-AX!";
    case 2: return "@! xx";
    case 4: return "@E 9 999.99";
    default: return nullptr;
    }
}

TEST_F(Transform, PictureSizeCountsTheInputPlacesOfAnObjectsPicture) {
    EXPECT_EQ(__PictureSize(num(1)), __INIT_NIL()); // no user-interface objects yet
    zq::library::setPictureLookup(pictureOf);
    EXPECT_EQ(number(__PictureSize(num(1))), 5);
    EXPECT_EQ(number(__PictureSize(num(2))), 0);
    EXPECT_EQ(number(__PictureSize(num(4.7))), 5); // counted back to the last blank
    EXPECT_EQ(__PictureSize(num(3)), __INIT_NIL());
    zq::library::setPictureLookup(nullptr);
}

} // namespace
