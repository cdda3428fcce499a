// Arrays: what __Array, __ASize, __AIns, __ADel and __DelEl leave where. That chains,
// counts, lock counts and allocations stay in step is the random run's to check.
#include "support/fresh_runtime.h"
#include "runtime/arrays_support.h"
#include "runtime/context.h"

namespace {

using namespace zq::test;

class ArrayResize : public zq::test::FreshRuntime {};

TEST_F(ArrayResize, ArrayBuildsEveryDimensionWithNilInside) {
    pObj a = __Array(__INIT_DOUBLE(2), __INIT_LONG(3), __INIT_NUL());
    ASSERT_EQ(__Array_Get_Amnt_Itens(a), 2);
    for (int row = 1; row <= 2; ++row) {
        pObj r = at(a, row);
        ASSERT_EQ(r->storageClass, CLASS_ARRAY);
        EXPECT_EQ(r->lockCount, 1);
        EXPECT_EQ(__Array_Get_Amnt_Itens(r), 3);
        EXPECT_EQ(at(r, 3)->type, TYPE_NIL);
    }
    EXPECT_NE(at(a, 1), at(a, 2));
}

TEST_F(ArrayResize, SizeGrowsWithNilAndShrinksFromTheEnd) {
    pObj a = texts({"a", "b", "c"});
    __ASize(a, __INIT_DOUBLE(5.9));
    ASSERT_EQ(__Array_Get_Amnt_Itens(a), 5);
    EXPECT_EQ(at(a, 5)->type, TYPE_NIL);
    __ASize(a, __INIT_DOUBLE(1));
    EXPECT_EQ(textsOf(a), (std::vector<std::string>{"a"}));
    __ASize(a, __INIT_DOUBLE(0));
    EXPECT_EQ(a->payload.a->first, nullptr);
}

TEST_F(ArrayResize, InsertKeepsTheCountAndDropsTheLast) {
    pObj nested = numbers({1});
    pObj a = __CreateArray(__INIT_DOUBLE(1), __INIT_DOUBLE(2), nested, __INIT_NUL());
    __AIns(a, __INIT_DOUBLE(2));
    ASSERT_EQ(__Array_Get_Amnt_Itens(a), 3);
    EXPECT_EQ(at(a, 1)->payload.d, 1);
    EXPECT_EQ(at(a, 2)->type, TYPE_NIL);
    EXPECT_EQ(at(a, 3)->payload.d, 2);
    EXPECT_EQ(nested->lockCount, 0) << "the dropped element no longer refers to it";
    // Positions outside 1..count change nothing.
    __AIns(a, __INIT_DOUBLE(0));
    __AIns(a, __INIT_DOUBLE(4));
    EXPECT_EQ(at(a, 1)->payload.d, 1);
    __AIns(a, __INIT_DOUBLE(3));
    EXPECT_EQ(at(a, 3)->type, TYPE_NIL);
}

TEST_F(ArrayResize, DeleteFillsTheEndByWhatWasRemoved) {
    pObj nested = numbers({1, 2});
    pObj a = __CreateArray(__INIT_DOUBLE(1), nested, __INIT_DOUBLE(3), __INIT_NUL());
    __ADel(a, __INIT_DOUBLE(1));
    EXPECT_EQ(at(a, 1), nested);
    EXPECT_EQ(at(a, 3)->type, TYPE_NIL);
    __ADel(a, __INIT_DOUBLE(1));
    EXPECT_EQ(nested->lockCount, 0);
    ASSERT_EQ(__Array_Get_Amnt_Itens(a), 3);
    EXPECT_EQ(at(a, 1)->payload.d, 3);
    pObj filler = at(a, 3);
    ASSERT_EQ(filler->storageClass, CLASS_ARRAY);
    EXPECT_EQ(__Array_Get_Amnt_Itens(filler), 0);
    EXPECT_EQ(filler->lockCount, 1);
    // Without the filler the count drops; outside the positions nothing changes.
    __DelEl(a, __INIT_DOUBLE(3), __INIT_BOOL(0));
    __DelEl(a, __INIT_DOUBLE(7), __INIT_BOOL(0));
    EXPECT_EQ(__Array_Get_Amnt_Itens(a), 2);
    EXPECT_EQ(a->payload.a->last, a->payload.a->first->next); // the last element taken away
    EXPECT_EQ(filler->lockCount, 0);
}

} // namespace
