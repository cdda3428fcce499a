// Operators: ordering, equality, logic and arithmetic over every type pair, and the
// combinations each operator refuses with "ARGUMENT ERROR!".
#include "support/fresh_runtime.h"
#include "support/refused_call.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

// Every test runs inside a started runtime; the test entry answers boxes unattended.
class Operators : public zq::test::FreshRuntime {};

pObj text(const char *s) { return __INIT_CHARPTR(s); }
pObj num(double d) { return __INIT_DOUBLE(d); }
pObj date(uint32_t y, uint32_t m, uint32_t d) { return __INIT_DATE(__EncodeDate(y, m, d)); }
pObj boolean(int payload) { // a logical whose payload is exactly `payload`
    pObj t = __INIT_LONG(payload);
    t->type = TYPE_LOGICAL;
    return t;
}

// The answer of a comparison: 1 or 0 for the shared true and false, -1 for anything else.
int truth(pObj result) {
    if (result == __INIT_BOOL(1))
        return 1;
    if (result == __INIT_BOOL(0))
        return 0;
    return -1;
}

std::string textOf(pObj value) { return value && value->payload.c ? value->payload.c : "<none>"; }

TEST_F(Operators, OrderingComparesTextsByUnsignedBytesAndNumbersByValue) {
    struct Case {
        const char *what;
        pObj a, b;
        int ls, gt, gte, lse;
    };
    // The values are made afresh for each row, well inside the ring of temporaries.
    std::vector<Case> cases = {
        {"'a' ? 'b'", text("a"), text("b"), 1, 0, 0, 1},
        {"'ab' ? 'abc'", text("ab"), text("abc"), 1, 0, 0, 1},
        {"'abc' ? 'ab'", text("abc"), text("ab"), 0, 1, 1, 0},
        {"'\\xE9' ? 'z'", text("\xE9"), text("z"), 0, 1, 1, 0},
        {"'' ? ''", text(""), text(""), 0, 0, 1, 1},
        {"'B' ? 'a'", text("B"), text("a"), 1, 0, 0, 1},
        {"2 ? 10", num(2), num(10), 1, 0, 0, 1},
        {"date ? next day", date(2006, 11, 23), date(2006, 11, 24), 1, 0, 0, 1},
        {"null ? 2 (null is 1)", nullptr, num(2), 1, 0, 0, 1},
        {"0.5 ? null", num(0.5), nullptr, 1, 0, 0, 1},
        {"null ? 1", nullptr, num(1), 0, 0, 1, 1},
        {"NaN ? 1", num(std::nan("")), num(1), 0, 0, 0, 0},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(truth(__LS(c.a, c.b)), c.ls) << c.what;
        EXPECT_EQ(truth(__GT(c.a, c.b)), c.gt) << c.what;
        EXPECT_EQ(truth(__GTE(c.a, c.b)), c.gte) << c.what;
        EXPECT_EQ(truth(__LSE(c.a, c.b)), c.lse) << c.what;
    }
    // Only the bytes up to the NUL count, whatever objLength says.
    pObj padded = __ALLOC_CHARPTR(5);
    padded->payload.c[0] = 'a';
    EXPECT_EQ(truth(__LS(padded, text("ab"))), 1);
    EXPECT_EQ(truth(__GTE(padded, text("a"))), 1);
}

TEST_F(Operators, EqualityUsesThePrefixRuleAndExactEqualityTheWholeText) {
    struct Case {
        const char *what;
        pObj a, b;
        int eq, eeq;
    };
    std::vector<Case> cases = {
        {"'ABC' ? 'AB'", text("ABC"), text("AB"), 1, 0},
        {"'AB' ? 'ABC'", text("AB"), text("ABC"), 1, 0},
        {"'AB' ? 'AB'", text("AB"), text("AB"), 1, 1},
        {"'AB' ? 'AX'", text("AB"), text("AX"), 0, 0},
        {"'' ? ''", text(""), text(""), 0, 1},
        {"'' ? 'A'", text(""), text("A"), 0, 0},
        {"1 ? 1", num(1), num(1), 1, 1},
        {"1 ? 1.0001", num(1), num(1.0001), 0, 0},
        {"same dates", date(2006, 1, 2), date(2006, 1, 2), 1, 1},
        {"different dates", date(2006, 1, 2), date(2006, 1, 3), 0, 0},
        {"true ? false", boolean(1), boolean(0), 0, 0},
        {"trues with payloads 1 and 2", boolean(1), boolean(2), 0, 0},
        {"1 ? NIL", num(1), __INIT_NIL(), 0, 0},
        {"array ? NIL", __fcpObj_CT(0), __INIT_NIL(), 0, 0},
        {"NIL ? NIL", __INIT_NIL(), __INIT_NIL(), 1, 1},
        {"1 ? null (null is NIL)", num(1), nullptr, 0, 0},
        {"null ? null", nullptr, nullptr, 1, 1},
        {"NIL ? null", __INIT_NIL(), nullptr, 1, 1},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(truth(__EQ(c.a, c.b)), c.eq) << c.what;
        EXPECT_EQ(truth(__EEQ(c.a, c.b)), c.eeq) << c.what;
    }
    // The prefix length comes from objLength: a padded text matches by its first byte.
    pObj padded = __ALLOC_CHARPTR(3);
    padded->payload.c[0] = 'x';
    padded->objLength = 2;
    EXPECT_EQ(truth(__EQ(padded, text("xyz"))), 1);
    EXPECT_EQ(truth(__EEQ(padded, text("xyz"))), 0);
}

TEST_F(Operators, LogicalOperatorsTestPayloadsAndTakeTrueForAMissingOperand) {
    pObj t = boolean(7), f = boolean(0);
    EXPECT_EQ(truth(__AND(t, t)), 1);
    EXPECT_EQ(truth(__AND(t, f)), 0);
    EXPECT_EQ(truth(__AND(f, t)), 0);
    EXPECT_EQ(truth(__OR(f, t)), 1);
    EXPECT_EQ(truth(__OR(t, f)), 1);
    EXPECT_EQ(truth(__OR(f, f)), 0);
    EXPECT_EQ(truth(__AND(nullptr, t)), 1);
    EXPECT_EQ(truth(__AND(f, nullptr)), 0);
    EXPECT_EQ(truth(__OR(f, nullptr)), 1);

    EXPECT_EQ(truth(__INV(t)), 0);
    EXPECT_EQ(truth(__INV(f)), 1);
    EXPECT_EQ(truth(__INV(__INIT_NIL())), 1);
    pObj n = num(2.5);
    pObj negated = __INV(n);
    EXPECT_NE(negated, n);
    EXPECT_EQ(negated->type, static_cast<uint32_t>(TYPE_NUMERIC));
    EXPECT_EQ(negated->payload.d, -2.5);
    EXPECT_EQ(n->payload.d, 2.5);
}

// An arithmetic result: its type, a temporary, and its value.
struct Arithmetic {
    const char *what;
    pObj result;
    uint32_t type;
    double expected;
};

void expectResults(const std::vector<Arithmetic> &cases) {
    for (const Arithmetic &c : cases) {
        ASSERT_NE(c.result, nullptr) << c.what;
        EXPECT_EQ(c.result->type, c.type) << c.what;
        EXPECT_EQ(c.result->storageClass, static_cast<uint32_t>(CLASS_TEMP)) << c.what;
        EXPECT_EQ(c.result->payload.d, c.expected) << c.what;
    }
}

constexpr uint32_t kNumber = TYPE_NUMERIC, kDate = TYPE_DATE;

TEST_F(Operators, ArithmeticOnNumbersWithDefaultsAndTheZeroDivisor) {
    expectResults({
        {"2 + 3", __SUM(num(2), num(3)), kNumber, 5},
        {"null + 3", __SUM(nullptr, num(3)), kNumber, 4},
        {"2 - 3", __SUB(num(2), num(3)), kNumber, -1},
        {"5 - null", __SUB(num(5), nullptr), kNumber, 4},
        {"2.5 * 4", __MUL(num(2.5), num(4)), kNumber, 10},
        {"null * 4", __MUL(nullptr, num(4)), kNumber, 4},
        {"7 / 2", __DIV(num(7), num(2)), kNumber, 3.5},
        {"null / 4", __DIV(nullptr, num(4)), kNumber, 0.25},
        {"10 / 0", __DIV(num(10), num(0)), kNumber, 0},
        {"-5 / 0", __DIV(num(-5), num(0)), kNumber, 0},
    });
    // The zero divisor is handed back as it is, sign included.
    EXPECT_TRUE(std::signbit(__DIV(num(3), num(-0.0))->payload.d));

    // A left operand that is not a text, date or number gives no result and no error.
    EXPECT_EQ(__SUM(boolean(1), num(1)), nullptr);
    EXPECT_EQ(__SUM(__INIT_NIL(), num(1)), nullptr);
    EXPECT_EQ(__SUM(__INIT_LONG(1), num(1)), nullptr);
    EXPECT_EQ(__SUM(__fcpObj_CT(0), num(1)), nullptr);
}

TEST_F(Operators, TextsJoinIntoATemporarySizedByBothLengths) {
    pObj joined = __SUM(text("abc"), text("de"));
    EXPECT_EQ(textOf(joined), "abcde");
    EXPECT_EQ(joined->objLength, 6);
    EXPECT_EQ(textOf(__SUM(text(""), text(""))), "");
    EXPECT_EQ(__SUM(text(""), text(""))->objLength, 1);
    EXPECT_EQ(textOf(__SUM(__INIT_CHARCONST("x"), text("yz"))), "xyz");

    // A text padded with NULs keeps its length, and the right text follows its bytes.
    pObj padded = __ALLOC_CHARPTR(3);
    padded->payload.c[0] = 'p';
    pObj withPadding = __SUM(padded, text("q"));
    EXPECT_EQ(withPadding->objLength, 5);
    EXPECT_EQ(textOf(withPadding), "pq");
}

TEST_F(Operators, IncrementsChangeTheOperandInPlace) {
    pObj x = __SET_OBJECT(nullptr, num(5));
    EXPECT_EQ(__PREINCREMENT(x), x);
    EXPECT_EQ(x->payload.d, 6);
    EXPECT_EQ(__PREDECREMENT(x), x);
    EXPECT_EQ(__PREDECREMENT(x), x);
    EXPECT_EQ(x->payload.d, 4);

    pObj old = __POSTINCREMENT(x);
    EXPECT_NE(old, x);
    EXPECT_EQ(old->payload.d, 4);
    EXPECT_EQ(x->payload.d, 5);
    old = __POSTDECREMENT(x);
    EXPECT_EQ(old->payload.d, 5);
    EXPECT_EQ(x->payload.d, 4);
    __fcObj_DT(x);
}

TEST_F(Operators, DateArithmeticCountsWholeDaysAcrossMonthsAndYears) {
    expectResults({
        {"31 Jan + 1", __SUM(date(2006, 1, 31), num(1)), kDate, __EncodeDate(2006, 2, 1)},
        {"28 Feb 2004 + 1", __SUM(date(2004, 2, 28), num(1)), kDate, __EncodeDate(2004, 2, 29)},
        {"31 Dec + 1", __SUM(date(2006, 12, 31), num(1)), kDate, __EncodeDate(2007, 1, 1)},
        {"1 Mar 2006 - 1", __SUB(date(2006, 3, 1), num(1)), kDate, __EncodeDate(2006, 2, 28)},
        {"+ 1.9 is + 1", __AddTod(date(2006, 5, 10), num(1.9)), kDate, __EncodeDate(2006, 5, 11)},
        {"+ -1.9 is - 1", __AddTod(date(2006, 5, 10), num(-1.9)), kDate, __EncodeDate(2006, 5, 9)},
        {"+ 365", __AddTod(date(2006, 5, 10), num(365)), kDate, __EncodeDate(2007, 5, 10)},
        {"- 1.5 is - 1", __SubTod(date(2006, 5, 10), num(1.5)), kDate, __EncodeDate(2006, 5, 9)},
        {"date + null", __SUM(date(2006, 5, 10), nullptr), kDate, __EncodeDate(2006, 5, 11)},
        {"date - date", __SUB(date(2007, 3, 1), date(2006, 3, 1)), kNumber, 365},
        {"earlier date - later date", __SubTod(date(2006, 3, 1), date(2006, 3, 8)), kNumber, -7},
        // Before 30 December 1899 the day number wraps to a large one, still above 0.
        {"day 1 - 2", __SUB(__INIT_DATE(1), num(2)), kDate, 4294967295.0},
    });
}

TEST_F(Operators, OperandsThatAreTemporariesSurviveTheRingComingRound) {
    __SetMaxStackElements(3);
    __RetGlob(1);
    pObj left = text("ab"), right = text("cd");
    text("filler"); // the next slot to be taken is now left's
    EXPECT_EQ(textOf(__SUM(left, right)), "abcd");
    EXPECT_EQ(textOf(left), "ab");

    pObj x = num(8);
    num(0);
    num(0); // the ring comes round to x next
    pObj old = __POSTINCREMENT(x);
    EXPECT_NE(old, x);
    EXPECT_EQ(old->payload.d, 8);
    EXPECT_EQ(x->payload.d, 9);
    __SetMaxStackElements(150);
    __RetGlob(1);
}

// ---- refused combinations ------------------------------------------------------------

using zq::test::RefusedCall;

class OperatorsDeathTest : public ::testing::TestWithParam<RefusedCall> {};

TEST_P(OperatorsDeathTest, RaisesArgumentError) { zq::test::expectRuntimeError(GetParam()); }

pObj date1() { return __INIT_DATE(__EncodeDate(2006, 1, 1)); }

INSTANTIATE_TEST_SUITE_P(
    Operators, OperatorsDeathTest,
    ::testing::Values(
        RefusedCall{"LessTextNumber", [] { __LS(text("a"), num(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"GreaterDateNumber", [] { __GT(date1(), num(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"GreaterNullText", [] { __GT(nullptr, text("a")); }, "ARGUMENT ERROR!"},
        RefusedCall{"LessEqualLogicals", [] { __LSE(boolean(1), boolean(0)); }, "ARGUMENT ERROR!"},
        RefusedCall{"EqualNilNumber", [] { __EQ(__INIT_NIL(), num(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"EqualNullText", [] { __EQ(nullptr, text("a")); }, "ARGUMENT ERROR!"},
        RefusedCall{"EqualTextNumber", [] { __EQ(text("1"), num(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"EqualLongs", [] { __EQ(__INIT_LONG(1), __INIT_LONG(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"ExactEqualArrays", [] {
                        pObj a = __fcpObj_CT(0);
                        __EEQ(a, a);
                    }, "ARGUMENT ERROR!"},
        RefusedCall{"AndNumber", [] { __AND(__INIT_BOOL(1), num(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"OrNil", [] { __OR(__INIT_NIL(), __INIT_BOOL(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"InvNull", [] { __INV(nullptr); }, "ARGUMENT ERROR!"},
        RefusedCall{"InvText", [] { __INV(text("a")); }, "ARGUMENT ERROR!"},
        RefusedCall{"SumTextNumber", [] { __SUM(text("a"), num(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"SumTextNull", [] { __SUM(text("a"), nullptr); }, "ARGUMENT ERROR!"},
        RefusedCall{"SumNumberText", [] { __SUM(num(1), text("a")); }, "ARGUMENT ERROR!"},
        RefusedCall{"SumDateDate", [] { __SUM(date1(), date1()); }, "ARGUMENT ERROR!"},
        RefusedCall{"SumEmptyDate", [] { __SUM(__INIT_DATE(0), num(1)); }, "ARGUMENT ERROR!"},
        RefusedCall{"SumDateToZero", [] { __SUM(__INIT_DATE(3), num(-3)); }, "ARGUMENT ERROR!"},
        RefusedCall{"SumDateHugeCount", [] { __SUM(date1(), num(1e12)); }, "ARGUMENT ERROR!"},
        RefusedCall{"SubNumberDate", [] { __SUB(num(1), date1()); }, "ARGUMENT ERROR!"},
        RefusedCall{"SubDateNil", [] { __SUB(date1(), __INIT_NIL()); }, "ARGUMENT ERROR!"},
        RefusedCall{"MulNumberText", [] { __MUL(num(2), text("2")); }, "ARGUMENT ERROR!"},
        RefusedCall{"DivDateNumber", [] { __DIV(date1(), num(2)); }, "ARGUMENT ERROR!"},
        RefusedCall{"PreIncrementNull", [] { __PREINCREMENT(nullptr); }, "ARGUMENT ERROR!"},
        RefusedCall{"PostDecrementDate", [] { __POSTDECREMENT(date1()); }, "ARGUMENT ERROR!"}),
    zq::test::refusedCallName);

} // namespace
