// Arrays: making them, reaching elements, nested arrays by reference, depth and errors.
#include "support/fresh_runtime.h"
#include "runtime/arrays_support.h"
#include "runtime/context.h"

namespace {

using namespace zq::test;

class ArrayElements : public zq::test::FreshRuntime {};

TEST_F(ArrayElements, CreateArrayCopiesScalarsAndSharesArrays) {
    pObj inner = numbers({7, 8});
    pObj text = __INIT_CHARPTR("abc");
    pObj a = __CreateArray(__INIT_LONG(5), text, inner, __INIT_NIL(), __INIT_NUL());
    ASSERT_EQ(__Array_Get_Amnt_Itens(a), 4);
    EXPECT_EQ(at(a, 1)->payload.l, 5);
    EXPECT_STREQ(at(a, 2)->payload.c, "abc");
    EXPECT_EQ(at(a, 2)->storageClass, CLASS_ELEMENT);
    EXPECT_EQ(text->objLength, 0) << "the temporary's text moved into the element";
    EXPECT_EQ(at(a, 3), inner) << "a nested element reads as the array itself";
    EXPECT_EQ(inner->lockCount, 1);
    EXPECT_EQ(at(a, 4)->type, TYPE_NIL);
    EXPECT_EQ(a->payload.a->last, a->payload.a->first->next->next->next);

    // Storing the same nested array twice counts two references; replacing one drops one.
    __SET_ARRAY_EL(a, inner, 0);
    EXPECT_EQ(inner->lockCount, 2);
    __SET_ARRAY_EL(a, __INIT_CHARPTR("x"), 2);
    EXPECT_EQ(inner->lockCount, 1);
    EXPECT_STREQ(at(a, 3)->payload.c, "x");
    // An element holding a nested array, passed as a value, stores that array.
    __NewArrayElement(a, a->payload.a->first);
    EXPECT_EQ(at(a, 5), inner);
    EXPECT_EQ(inner->lockCount, 2);
}

TEST_F(ArrayElements, LanguagePositionsAndPathsAreOneBased) {
    pObj row = numbers({1, 2, 3});
    pObj table = __CreateArray(row, __INIT_DOUBLE(9), __INIT_NUL());
    EXPECT_EQ(__Array_Get_Item(table, __INIT_DOUBLE(1)), row);
    EXPECT_EQ(__ARRAY_EL(table, __INIT_DOUBLE(1), __INIT_DOUBLE(3), __INIT_NUL())->payload.d, 3);
    EXPECT_EQ(__ARRAY_EL(table, __INIT_NUL()), table);
    // A scalar ends the walk: further indexes are not applied.
    pObj nine = __ARRAY_EL(table, __INIT_DOUBLE(2), __INIT_DOUBLE(5), __INIT_NUL());
    EXPECT_EQ(nine->payload.d, 9);
    EXPECT_EQ(__ATail(table)->payload.d, 9);
    EXPECT_EQ(__ATail(numbers({})), nullptr);
}

TEST_F(ArrayElements, StoringAnArrayLowersItsDepthThroughNestedArrays) {
    pObj outer = numbers({});
    __begin_context();
    pObj middle = numbers({1});
    pObj inner = numbers({2});
    __AAdd(middle, inner);
    ASSERT_EQ(inner->depth, 2);
    __AAdd(outer, middle);
    EXPECT_EQ(middle->depth, 1);
    EXPECT_EQ(inner->depth, 1);
    EXPECT_EQ(middle->payload.a->first->depth, 1);
    pObj local = numbers({3});
    __end_context(nullptr);
    // The stored arrays belong to the outer context now; the unstored one is gone.
    EXPECT_EQ(__Array_Get_Amnt_Itens(at(outer, 1)), 2);
    EXPECT_EQ(__ARRAY_EL(outer, __INIT_DOUBLE(1), __INIT_DOUBLE(2), __INIT_DOUBLE(1), __INIT_NUL())->payload.d, 2);
    EXPECT_EQ(zq::runtime::context().lists[zq::runtime::kArrayList].count, 3);
    (void)local;
}

TEST_F(ArrayElements, ArrayAssignedToArrayMovesTheElements) {
    pObj a = numbers({1, 2});
    pObj b = numbers({5, 6, 7});
    EXPECT_EQ(__SET_OBJECT(a, b), a); // what is released the random run accounts for
    EXPECT_EQ(numbersOf(a), (std::vector<double>{5, 6, 7}));
}

class ArrayDeathTest : public ::testing::TestWithParam<RefusedCall> {};

TEST_P(ArrayDeathTest, EndsTheRun) { expectRuntimeError(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Refused, ArrayDeathTest, ::testing::Values(
    RefusedCall{"GetAtCount", [] { __GET_ARRAY_EL(numbers({1, 2}), 2); }, "BOUND ERROR!"},
    RefusedCall{"GetBelowZero", [] { __GET_ARRAY_EL(numbers({1, 2}), -1); }, "BOUND ERROR!"},
    RefusedCall{"SetInEmpty", [] { __SET_ARRAY_EL(numbers({}), __INIT_LONG(1), 0); }, "BOUND ERROR!"},
    RefusedCall{"ItemZero", [] { __Array_Get_Item(numbers({1}), __INIT_DOUBLE(0)); }, "BOUND ERROR!"},
    RefusedCall{"GetFromNull", [] { __GET_ARRAY_EL(nullptr, 0); }, "ARGUMENT ERROR!"},
    RefusedCall{"GetFromNumber", [] { __GET_ARRAY_EL(__INIT_DOUBLE(1), 0); }, "ARGUMENT ERROR!"},
    RefusedCall{"CreateWithNull", [] { __CreateArray(__INIT_LONG(1), nullptr, __INIT_NUL()); }, "ARGUMENT ERROR!"},
    RefusedCall{"AddNull", [] { __AAdd(numbers({}), nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"AddToText", [] { __AAdd(__INIT_CHARPTR("a"), __INIT_LONG(1)); }, "ARGUMENT ERROR!"},
    RefusedCall{"SetNull", [] { __SET_ARRAY_EL(numbers({1}), nullptr, 0); }, "ARGUMENT ERROR!"},
    RefusedCall{"ArrayWithoutDimension", [] { __Array(__INIT_NUL()); }, "ARGUMENT ERROR!"},
    RefusedCall{"ArrayNullDimension", [] { __Array(nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"CloneNull", [] { __AClone(nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"CopyIntoNil", [] { __ACopy(numbers({1}), __INIT_NIL(), nullptr, nullptr, nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"CompNumberWithText", [] { __Comp(__INIT_DOUBLE(1), __INIT_CHARPTR("1")); }, "ARGUMENT ERROR!"},
    RefusedCall{"CompNils", [] { __Comp(__INIT_NIL(), __INIT_NIL()); }, "ARGUMENT ERROR!"},
    RefusedCall{"SortNull", [] { __ASORT(nullptr, nullptr, nullptr, nullptr, nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"SwapTextWithNumber", [] { __SwapElements(__INIT_CHARPTR("a"), __INIT_DOUBLE(1)); }, "ARGUMENT ERROR!"},
    RefusedCall{"SwapIntoSharedConstant", [] { __SwapElements(__INIT_BOOL(1), __INIT_BOOL(0)); }, "ARGUMENT ERROR!"},
    RefusedCall{"ScalarIntoArrayObject", [] { __SET_OBJECT(numbers({1}), __INIT_DOUBLE(2)); }, "ARGUMENT ERROR!"},
    RefusedCall{"ArrayTooLarge", [] { __Array(__INIT_DOUBLE(2147483648.0), __INIT_NUL()); }, "LOW MEMORY!"},
    RefusedCall{"DimensionsTooLarge", [] { __Array(__INIT_DOUBLE(8192), __INIT_DOUBLE(8192), __INIT_NUL()); }, "LOW MEMORY!"},
    RefusedCall{"SizeTooLarge", [] { __ASize(numbers({1}), __INIT_DOUBLE(1e300)); }, "LOW MEMORY!"},
    RefusedCall{"NodeOfNoType", [] {
                    Obj record{};
                    __InitObjNode(&record, 99);
                }, "ARGUMENT ERROR!"}
), refusedCallName);

} // namespace
