// Arrays: __Comp, __AScan and __ASORT with their offsets, columns and payload exchange.
#include "support/fresh_runtime.h"
#include "runtime/arrays_support.h"
#include "runtime/context.h"

#include <cstdlib>

namespace {

using namespace zq::test;

class ArraySort : public zq::test::FreshRuntime {
protected:
    static pObj row(double key, const char *text) {
        return __CreateArray(__INIT_DOUBLE(key), __INIT_CHARPTR(text), __INIT_NUL());
    }
    static double scan(pObj a, pObj x, pObj start = nullptr, pObj count = nullptr, pObj column = nullptr) {
        return __AScan(a, x, start, count, column)->payload.d;
    }
};

TEST_F(ArraySort, CompOrdersTextsDatesAndNumbers) {
    EXPECT_EQ(__Comp(__INIT_CHARPTR("ab"), __INIT_CHARPTR("abc")), -1);
    EXPECT_EQ(__Comp(__INIT_CHARPTR("\xE9"), __INIT_CHARPTR("z")), 1) << "bytes compare unsigned";
    EXPECT_EQ(__Comp(__INIT_CHARPTR("abc"), __INIT_CHARPTR("abc")), 0);
    EXPECT_EQ(__Comp(__INIT_DATE(3), __INIT_DATE(2)), 1);
    EXPECT_EQ(__Comp(__INIT_DOUBLE(-1), __INIT_DOUBLE(2)), -1);
    EXPECT_EQ(__Comp(__INIT_BOOL(1), __INIT_BOOL(0)), 1);
    EXPECT_EQ(__Comp(__INIT_BOOL(0), __INIT_BOOL(1)), 1) << "logicals are only equal or different";
    EXPECT_EQ(__Comp(nullptr, __INIT_DOUBLE(1)), -1);
}

TEST_F(ArraySort, ScanUsesLastPositionAndSecondColumn) {
    pObj a = numbers({4, 5, 6, 5, 7});
    EXPECT_EQ(scan(a, __INIT_DOUBLE(5)), 2);
    EXPECT_EQ(scan(a, __INIT_DOUBLE(5), __INIT_DOUBLE(3)), 4);
    EXPECT_EQ(scan(a, __INIT_DOUBLE(7), __INIT_DOUBLE(2), __INIT_DOUBLE(4)), 0) << "nCount is the last position";
    EXPECT_EQ(scan(a, __INIT_DOUBLE(7), __INIT_DOUBLE(2), __INIT_DOUBLE(0)), 5) << "below 1 means all";
    EXPECT_EQ(scan(a, __INIT_DOUBLE(7), nullptr, __INIT_DOUBLE(99)), 5);
    pObj miss = __AScan(a, __INIT_LONG(5), nullptr, nullptr, nullptr);
    EXPECT_EQ(miss, &zq::runtime::context().constants[zq::runtime::kScanNotFound]);
    EXPECT_EQ(__AScan(a, nullptr, nullptr, nullptr, nullptr)->payload.d, 0);

    pObj rows = __CreateArray(row(1, "x"), row(2, "y"), __INIT_NUL());
    EXPECT_EQ(scan(rows, __INIT_CHARPTR("y")), 2) << "rows compare their second element";
    EXPECT_EQ(scan(rows, __INIT_DOUBLE(1), nullptr, nullptr, __INIT_DOUBLE(1)), 1);

    pObj flags = __CreateArray(__INIT_BOOL(0), __INIT_BOOL(1), __INIT_NUL());
    EXPECT_EQ(scan(flags, __INIT_BOOL(1)), 2);
}

TEST_F(ArraySort, SortsTheRangeFromStartToLastPosition) {
    pObj a = numbers({9, 8, 7, 6, 5, 4});
    __ASORT(a, __INIT_DOUBLE(3), __INIT_DOUBLE(5), nullptr, nullptr);
    EXPECT_EQ(numbersOf(a), (std::vector<double>{9, 8, 5, 6, 7, 4}));
    __ASORT(a, nullptr, nullptr, __INIT_BOOL(0), nullptr);
    EXPECT_EQ(numbersOf(a), (std::vector<double>{9, 8, 7, 6, 5, 4}));
    __ASORT(a, nullptr, __INIT_DOUBLE(1), nullptr, nullptr); // one position: nothing to do
    __ASORT(a, nullptr, __INIT_DOUBLE(0), nullptr, nullptr); // out of range: the whole array
    EXPECT_EQ(numbersOf(a), (std::vector<double>{4, 5, 6, 7, 8, 9}));
}

TEST_F(ArraySort, ExchangesPayloadsWithTheirLengthsAndKeepsTheExchangeOrderForEqualKeys) {
    pObj words = texts({"pear", "fig", "banana"});
    __ASORT(words, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(textsOf(words), (std::vector<std::string>{"banana", "fig", "pear"}));
    EXPECT_EQ(at(words, 1)->objLength, 7) << "a text's length goes with its buffer";
    EXPECT_EQ(at(words, 3)->objLength, 5);
    EXPECT_STREQ(__SET_OBJECT(nullptr, at(words, 1))->payload.c, "banana") << "a copy reads the whole text";
    EXPECT_STREQ(__Upper(at(words, 3))->payload.c, "PEAR");

    // Rows by their second column; two equal keys. The first pass exchanges position 1
    // with position 3, the last of the run below "b", so the rows 2 and 0 trade places.
    pObj r1 = row(1, "b"), r0 = row(0, "a"), r2 = row(2, "a");
    pObj rows = __CreateArray(r1, r0, r2, __INIT_NUL());
    __ASORT(rows, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(at(rows, 1), r2);
    EXPECT_EQ(at(rows, 2), r0);
    EXPECT_EQ(at(rows, 3), r1);

    // A logical column is not ordered: nothing moves.
    pObj flags = __CreateArray(__INIT_BOOL(1), __INIT_BOOL(0), __INIT_NUL());
    __ASORT(flags, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(at(flags, 1)->payload.l, 1);
}

TEST_F(ArraySort, ManyKeysWithAndWithoutRepeatsEndInOrder) {
    std::srand(7);
    for (int repeats : {0, 1}) {
        pObj a = numbers({});
        for (int i = 0; i < 400; ++i)
            __AAdd(a, __INIT_DOUBLE(repeats ? std::rand() % 20 : std::rand() * 1000.0 + i));
        __ASORT(a, nullptr, nullptr, __INIT_BOOL(repeats != 0), nullptr);
        std::vector<double> got = numbersOf(a);
        for (size_t i = 1; i < got.size(); ++i) {
            if (repeats)
                ASSERT_LE(got[i - 1], got[i]) << i;
            else
                ASSERT_GT(got[i - 1], got[i]) << i;
        }
    }
}

class ArraySortDeathTest : public ::testing::TestWithParam<RefusedCall> {};

TEST_P(ArraySortDeathTest, EndsTheRun) { expectRuntimeError(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Refused, ArraySortDeathTest, ::testing::Values(
    RefusedCall{"ValuesOfTwoTypes", [] { __ASORT(__CreateArray(__INIT_CHARPTR("z"), __INIT_DOUBLE(1), __INIT_NUL()), nullptr, nullptr, nullptr, nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"RowAndValue", [] { __ASORT(__CreateArray(__INIT_CHARPTR("z"), __CreateArray(__INIT_LONG(0), __INIT_CHARPTR("a"), __INIT_NUL()), __INIT_NUL()), nullptr, nullptr, nullptr, nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"ColumnBeyondRow", [] { __AScan(__CreateArray(numbers({1, 2}), __INIT_NUL()), __INIT_DOUBLE(1), nullptr, nullptr, __INIT_DOUBLE(3)); }, "BOUND ERROR!"}
), refusedCallName);

} // namespace
