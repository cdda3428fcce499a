// Strings: each built-in over a table of texts, Latin-1 bytes above 127 among them; the
// values handed back as themselves; and the length fields the results carry.
#include "library/library_support.h"

#include <gtest/gtest.h>

#include <vector>

using namespace zq::library_test;

namespace {

class Strings : public zq::test::FreshRuntime {};

// A text case: a call on fresh arguments and the text it must give.
struct TextCase {
    const char *what;
    pObj result;
    std::string expected;
};

void expectTexts(const std::vector<TextCase> &cases) {
    for (const TextCase &c : cases) {
        EXPECT_EQ(str(c.result), c.expected) << c.what;
        if (c.result && c.result->type == TYPE_CHAR && c.expected != "<null>") {
            EXPECT_EQ(c.result->objLength, static_cast<int>(c.expected.size()) + 1) << c.what;
        }
    }
}

// A text whose buffer holds exactly these bytes.
pObj bytes(const std::string &s) {
    pObj t = __ALLOC_CHARPTR(static_cast<int32_t>(s.size()));
    std::copy(s.begin(), s.end(), t->payload.c);
    return t;
}

TEST_F(Strings, TrimsRemoveSpacesOnly) {
    expectTexts({
        {"alltrim", __AllTrim(text("  a b  ")), "a b"},
        {"alltrim tabs stay", __AllTrim(text("\t a \t")), "\t a \t"},
        {"alltrim spaces", __AllTrim(text("    ")), ""},
        {"alltrim latin-1", __AllTrim(text(" \xA0\xE9 ")), "\xA0\xE9"},
        {"ltrim", __LTrim(text("  a  ")), "a  "},
        {"ltrim spaces", __LTrim(text("   ")), ""},
        {"ltrim empty", __LTrim(text("")), ""},
        {"rtrim", __RTrim(text("  a  ")), "  a"},
        {"rtrim latin-1", __RTrim(text("\xFF  ")), "\xFF"},
        {"rtrim nothing", __RTrim(text("ab")), "ab"},
    });
    pObj s = text("ab ");
    EXPECT_EQ(__LTrim(s), s); // no leading space: the value itself
    EXPECT_NE(__LTrim(text("")), nullptr);
}

TEST_F(Strings, CaseChangesAsciiLettersOnly) {
    expectTexts({
        {"upper", __Upper(text("abc XYZ 09\xE9\xC9\xFF")), "ABC XYZ 09\xE9\xC9\xFF"},
        {"lower", __Lower(text("ABC xyz 09\xE9\xC9\xDF")), "abc xyz 09\xE9\xC9\xDF"},
        {"upper brackets", __Upper(text("`{@[")), "`{@["},
        {"upper empty", __Upper(text("")), ""},
    });
    EXPECT_EQ(__Upper(nullptr), nullptr);
    EXPECT_EQ(__Lower(nullptr), nullptr);
}

TEST_F(Strings, CodesOfBytes) {
    EXPECT_EQ(number(__Asc(text("A"))), 65);
    EXPECT_EQ(number(__Asc(text("\xE9x"))), 0xE9); // unsigned
    EXPECT_EQ(number(__Asc(text(""))), 0);
    expectTexts({
        {"chr 65", __Chr(num(65)), "A"},
        {"chr 233", __Chr(num(233.9)), "\xE9"},
        {"chr 321", __Chr(num(321)), "A"},
        {"chr -1", __Chr(num(-1)), "\xFF"},
    });
    pObj zero = __Chr(num(0));
    EXPECT_EQ(str(zero), "");
    EXPECT_EQ(zero->objLength, 2);
}

TEST_F(Strings, SearchFindsFirstAndLastOccurrences) {
    struct Case {
        const char *needle, *haystack;
        double at, rat;
    };
    std::vector<Case> cases = {
        {"a", "aaa", 1, 3},     {"aa", "aaaa", 1, 3}, // overlapping hits count
        {"b", "abcabc", 2, 5},  {"x", "abc", 0, 0},
        {"", "abc", 1, 0},      {"abcd", "abc", 0, 0},
        {"\xE9", "a\xE9" "b\xE9", 2, 4},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(number(__At(text(c.needle), text(c.haystack))), c.at) << c.needle << " in " << c.haystack;
        EXPECT_EQ(number(__Rat(text(c.needle), text(c.haystack))), c.rat) << c.needle << " in " << c.haystack;
    }
}

TEST_F(Strings, ValueReadsTheRightmostSeparatorAsDecimalAndStopsAtOtherBytes) {
    struct Case {
        const char *input;
        double expected;
    };
    std::vector<Case> cases = {
        {"1.234,56", 1234.56}, {"1,234.56", 1234.56}, {"12", 12},   {" 12", 0},
        {"12 34", 12},         {"12a34", 12},         {"-5", 0},    {"+5", 0},
        {"0.5", 0.5},          {",5", 0.5},           {"5.", 5},    {"", 0},
        {"1.2.3", 12.3},       {"12.5x", 12},         {"\xE9" "12", 0},
        {"3.14159265358979323846264", 3.141592653589793},
    };
    for (const Case &c : cases)
        EXPECT_DOUBLE_EQ(number(__Val(text(c.input))), c.expected) << c.input;
    EXPECT_EQ(__Val(nullptr), nullptr);
    pObj n = num(7);
    EXPECT_EQ(__Val(n), n); // not a text: handed back
}

TEST_F(Strings, LeftRightAndSubstrings) {
    pObj abc = text("abc");
    EXPECT_EQ(__Left(abc, num(0)), abc);
    EXPECT_EQ(__Left(abc, num(-2)), abc);
    EXPECT_EQ(__Right(abc, num(0)), abc);
    expectTexts({
        {"left 2", __Left(text("a\xE9" "c"), num(2)), "a\xE9"},
        {"left 9", __Left(text("abc"), num(9)), "abc"},
        {"left 0.5", __Left(text("abc"), num(0.5)), ""},
        {"left of empty", __Left(text(""), num(3)), ""},
        {"right 2", __Right(text("ab\xE9"), num(2)), "b\xE9"},
        {"right 9", __Right(text("abc"), num(9)), "abc"},
        {"right 1.5", __Right(text("abc"), num(1.5)), "c"},
        {"substr 5", __SubStr(text("abc"), num(5), nullptr), "abc"},
        {"substr 2 count 0", __SubStr(text("abc"), num(2), num(0)), "abc"},
        {"substr 2 count 1", __SubStr(text("a\xE9" "c"), num(2), num(1)), "\xE9"},
        {"substr start 0", __SubStr(text("abc"), num(0), num(2)), "ab"},
        {"substr start -3", __SubStr(text("abc"), num(-3), num(1)), "a"},
    });
    // A stretch reaching the end copies the NUL: the length field is one past the text.
    struct Case {
        double start, count; // count < 0: absent
        const char *expected;
        int objLength;
    };
    EXPECT_EQ(str(__SubStr(text("abc"), num(2), text("x"))), "bc"); // a count that is no number is absent
    std::vector<Case> ends = {
        {2, -1, "bc", 4}, {1, 3, "abc", 4}, {3, 9, "c", 3}, {4, 1, "", 2}, {1, 4, "abc", 5},
    };
    for (const Case &c : ends) {
        pObj r = __SubStr(text("abc"), num(c.start), c.count < 0 ? nullptr : num(c.count));
        EXPECT_EQ(str(r), c.expected) << c.start << "," << c.count;
        EXPECT_EQ(r->objLength, c.objLength) << c.start << "," << c.count;
    }
}

TEST_F(Strings, PaddingNeverTruncates) {
    pObj six = text("abcdef");
    EXPECT_EQ(__PadR(six, num(3), nullptr), six);
    EXPECT_EQ(__PadR(six, num(6), nullptr), six);
    EXPECT_EQ(__Pad(six, num(6), text("*")), six);
    EXPECT_EQ(__PadL(six, num(6), text("*")), six);
    EXPECT_EQ(__PadC(six, num(2), text("*")), six);
    expectTexts({
        {"padr", __PadR(text("ab"), num(5), nullptr), "ab   "},
        {"padr fill", __PadR(text("\xE9"), num(4.9), text("\xFF")), "\xE9\xFF\xFF\xFF"},
        {"padr long fill is cut", __PadR(text("ab"), num(5), text("xy")), "abxyx"},
        {"padr empty fill", __PadR(text("ab"), num(5), text("")), "ab"},
        {"pad", __Pad(text("a"), num(3), text("-")), "a--"},
        {"padl", __PadL(text("ab"), num(5), text("0")), "000ab"},
        {"padl whole fills", __PadL(text("ab"), num(4), text("xy")), "xyxyab"},
        {"padl latin-1", __PadL(text("\xE9"), num(2), text("\xA0")), "\xA0\xE9"},
        {"padc", __PadC(text("abcdefgh"), num(10), text(" ")), "abcd efgh"},
        {"padc short", __PadC(text("ab"), num(10), text("*")), "ab*"},
        {"padc latin-1", __PadC(text("\xE9\xE9\xE9"), num(6), text("\xFF\xFF")), "\xE9\xE9\xFF\xFF\xE9"},
        {"padc empty", __PadC(text(""), num(4), text("*")), "*"},
    });
}

TEST_F(Strings, RepetitionRoundsAFractionalCountUp) {
    expectTexts({
        {"replicate", __Replicate(text("ab"), num(3)), "ababab"},
        {"replicate 2.5", __Replicate(text("\xE9-"), num(2.5)), "\xE9-\xE9-\xE9-"},
        {"replicate 0.1", __Replicate(text("x"), num(0.1)), "x"},
        {"replicate 0", __Replicate(text("ab"), num(0)), ""},
        {"replicate -2", __Replicate(text("ab"), num(-2)), ""},
        {"replicate empty", __Replicate(text(""), num(5)), ""},
        {"space", __Space(num(3.7)), "   "},
        {"space 0", __Space(num(0)), ""},
        {"space -0.5", __Space(num(-0.5)), ""},
    });
    EXPECT_EQ(str(__Replicate(text("abc"), num(10000))).size(), 30000u);
}

TEST_F(Strings, ReplacementFromAStartPlaceAndCount) {
    expectTexts({
        {"all", __StrTran(text("a-b-c"), text("-"), text("+"), nullptr, nullptr), "a+b+c"},
        {"longer", __StrTran(text("a-b"), text("-"), text("<=>"), nullptr, nullptr), "a<=>b"},
        {"remove", __StrTran(text("a--b--"), text("--"), text(""), nullptr, nullptr), "ab"},
        {"none", __StrTran(text("abc"), text("x"), text("y"), nullptr, nullptr), "abc"},
        {"from 3", __StrTran(text("a-b-c"), text("-"), text("+"), num(3), nullptr), "a-b+c"},
        {"start 0", __StrTran(text("a-b"), text("-"), text("+"), num(0), nullptr), "a+b"},
        {"negative count: one", __StrTran(text("a-b-c"), text("-"), text("+"), nullptr, num(-1)), "a+b-c"},
        {"count 1 is no limit", __StrTran(text("a-b-c"), text("-"), text("+"), nullptr, num(1)), "a+b+c"},
        {"holding the search", __StrTran(text("aa"), text("a"), text("aa"), nullptr, nullptr), "aaaa"},
        {"empty search", __StrTran(text("abc"), text(""), text("x"), nullptr, nullptr), "abc"},
        {"latin-1", __StrTran(text("\xE9t\xE9"), text("\xE9"), text("\xC9\xC9"), nullptr, nullptr), "\xC9\xC9t\xC9\xC9"},
        {"start past the text", __StrTran(text("abc"), text("a"), text("b"), num(5), nullptr), "<null>"},
        {"start at the NUL", __StrTran(text("abc"), text("a"), text("b"), num(4), nullptr), "abc"},
    });
}

TEST_F(Strings, StuffKeepsStartBytesThenInsertsThenTheTail) {
    expectTexts({
        {"replace", __Stuff(text("abcdef"), num(2), num(1), text("X")), "abXdef"},
        {"insert", __Stuff(text("abcdef"), num(2), num(0), text("XY")), "abXYcdef"},
        {"delete", __Stuff(text("abcdef"), num(0), num(3), text("")), "def"},
        {"to the end", __Stuff(text("abcdef"), num(4), num(5), text("\xE9")), "abcd\xE9"},
        {"latin-1", __Stuff(text("\xE9\xE9\xE9"), num(1), num(1), text("\xFF")), "\xE9\xFF\xE9"},
        {"start past", __Stuff(text("abc"), num(4), num(0), text("x")), "<null>"},
        {"delete past", __Stuff(text("abc"), num(0), num(4), text("x")), "<null>"},
        {"at the end", __Stuff(text("abc"), num(3), num(0), text("x")), "abcx"},
        {"negative", __Stuff(text("abc"), num(-2), num(-1), text("x")), "xabc"},
    });
}

TEST_F(Strings, BuffersWithBytesPastTheNulKeepTheirLength) {
    // Case conversion and padding work on the whole buffer (objLength - 1 bytes).
    pObj padded = bytes(std::string("ab\0cd", 5));
    pObj upper = __Upper(padded);
    EXPECT_EQ(upper->objLength, 6);
    EXPECT_EQ(std::string(upper->payload.c, 5), std::string("AB\0CD", 5));
    EXPECT_EQ(__PadR(padded, num(5), nullptr), padded);
    // Searching and trimming go by the NUL.
    EXPECT_EQ(number(__At(text("c"), padded)), 0);
    EXPECT_EQ(str(__AllTrim(padded)), "ab");
}

} // namespace
