// Arrays: __CopyArray, __ACopy with its offsets, and __AClone sharing the first nested array.
// The lock counts copies and clones leave are the random run's to check.
#include "support/fresh_runtime.h"
#include "runtime/arrays_support.h"
#include "runtime/context.h"

namespace {

using namespace zq::test;

class ArrayCopy : public zq::test::FreshRuntime {};

TEST_F(ArrayCopy, CopyArrayCopiesValuesAndSharesNestedArrays) {
    pObj nested = numbers({1});
    pObj a = __CreateArray(__INIT_CHARPTR("t"), nested, __INIT_NUL());
    pObj copy = __CopyArray(a);
    EXPECT_NE(copy, a);
    EXPECT_NE(at(copy, 1), at(a, 1));
    EXPECT_NE(at(copy, 1)->payload.c, at(a, 1)->payload.c);
    EXPECT_STREQ(at(copy, 1)->payload.c, "t");
    EXPECT_EQ(at(copy, 2), nested);
}

TEST_F(ArrayCopy, ACopyOffsetsAreKeptAsTheyAre) {
    pObj source = numbers({1, 2, 3, 4});
    pObj target = numbers({0, 0, 0, 0, 0});
    // No further arguments: the first source element into the second target position.
    __ACopy(source, target, nullptr, nullptr, nullptr);
    EXPECT_EQ(numbersOf(target), (std::vector<double>{0, 1, 0, 0, 0}));
    // NIL nCount is the whole source; the target's last position is never written.
    __ACopy(source, target, __INIT_NIL(), __INIT_NIL(), __INIT_NIL());
    EXPECT_EQ(numbersOf(target), (std::vector<double>{0, 1, 2, 3, 0}));
    // nCount is the last source position; nTargetPos is a 0-based index.
    target = numbers({0, 0, 0, 0, 0, 0});
    __ACopy(source, target, __INIT_DOUBLE(2), __INIT_DOUBLE(3), __INIT_DOUBLE(0));
    EXPECT_EQ(numbersOf(target), (std::vector<double>{2, 3, 0, 0, 0, 0}));
    // A two-element target has no position that may be written.
    pObj pair = numbers({0, 0});
    EXPECT_EQ(__ACopy(source, pair, nullptr, __INIT_NIL(), nullptr), pair);
    EXPECT_EQ(numbersOf(pair), (std::vector<double>{0, 0}));
}

TEST_F(ArrayCopy, CloneSharesOnlyTheFirstNestedArray) {
    pObj first = numbers({1});
    pObj deeper = numbers({5});
    pObj second = __CreateArray(deeper, __INIT_DOUBLE(2), deeper, __INIT_NUL());
    pObj a = __CreateArray(first, second, __INIT_CHARPTR("s"), __INIT_NUL());
    pObj clone = __AClone(a);
    EXPECT_EQ(at(clone, 1), first);
    pObj secondClone = at(clone, 2);
    EXPECT_NE(secondClone, second);
    // Inside the cloned array the same rule holds: its first nested array is shared,
    // later ones are cloned.
    EXPECT_EQ(at(secondClone, 1), deeper);
    EXPECT_NE(at(secondClone, 3), deeper);
    EXPECT_EQ(numbersOf(at(secondClone, 3)), (std::vector<double>{5}));
    EXPECT_STREQ(at(clone, 3)->payload.c, "s");
    EXPECT_EQ(__Array_Get_Amnt_Itens(__AClone(numbers({}))), 0);
}

TEST_F(ArrayCopy, CloneOfAnArrayHoldingItselfEnds) {
    pObj a = numbers({1});
    __AAdd(a, a);
    pObj clone = __AClone(a);
    EXPECT_NE(clone, a);
    EXPECT_EQ(at(clone, 2), a) << "the array being cloned stays shared where it refers to itself";
    EXPECT_EQ(a->lockCount, 2);
}

} // namespace
