// Arrays: __Array, __ASize, __AIns, __ADel and __DelEl keep counts, chains and references.
#include "support/fresh_runtime.h"
#include "runtime/arrays_support.h"
#include "runtime/context.h"
#include "runtime/memory.h"

namespace {

using namespace zq::test;

class ArrayResize : public zq::test::FreshRuntime {
protected:
    // The chain agrees with the header: count, first and last.
    static void expectConsistent(pObj a) {
        ArrayHeader *h = a->payload.a;
        int32_t n = 0;
        pObj last = nullptr;
        for (pObj el = h->first; el; el = el->next, ++n)
            last = el;
        EXPECT_EQ(n, h->count);
        EXPECT_EQ(last, h->last);
    }
};

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
    expectConsistent(a);
    int32_t before = zq::runtime::allocationBalance();
    __ASize(a, __INIT_DOUBLE(1));
    EXPECT_EQ(textsOf(a), (std::vector<std::string>{"a"}));
    expectConsistent(a);
    // Two texts (record and buffer each) and two NIL records released.
    EXPECT_EQ(zq::runtime::allocationBalance(), before - 6);
    __ASize(a, __INIT_DOUBLE(0));
    EXPECT_EQ(a->payload.a->first, nullptr);
    expectConsistent(a);
}

TEST_F(ArrayResize, InsertKeepsTheCountAndDropsTheLast) {
    pObj nested = numbers({1});
    pObj a = __CreateArray(__INIT_DOUBLE(1), __INIT_DOUBLE(2), nested, __INIT_NUL());
    __AIns(a, __INIT_DOUBLE(2));
    ASSERT_EQ(__Array_Get_Amnt_Itens(a), 3);
    EXPECT_EQ(at(a, 1)->payload.d, 1);
    EXPECT_EQ(at(a, 2)->type, TYPE_NIL);
    EXPECT_EQ(at(a, 3)->payload.d, 2);
    expectConsistent(a);
    EXPECT_EQ(nested->lockCount, 0) << "the dropped element no longer refers to it";
    // Positions outside 1..count change nothing.
    __AIns(a, __INIT_DOUBLE(0));
    __AIns(a, __INIT_DOUBLE(4));
    EXPECT_EQ(at(a, 1)->payload.d, 1);
    __AIns(a, __INIT_DOUBLE(3));
    EXPECT_EQ(at(a, 3)->type, TYPE_NIL);
    expectConsistent(a);
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
    expectConsistent(a);
    // Without the filler the count drops; outside the positions nothing changes.
    __DelEl(a, __INIT_DOUBLE(3), __INIT_BOOL(0));
    __DelEl(a, __INIT_DOUBLE(7), __INIT_BOOL(0));
    EXPECT_EQ(__Array_Get_Amnt_Itens(a), 2);
    EXPECT_EQ(filler->lockCount, 0);
    expectConsistent(a);
}

} // namespace
