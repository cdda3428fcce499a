// Value records: constructors, assignment, variables and the ring of temporaries.
#include "support/fresh_runtime.h"
#include "runtime/context.h"
#include "runtime/memory.h"
#include "support/unattended.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace zq::runtime;

class Values : public zq::test::FreshRuntime {
protected:
    zq::test::UnattendedBoxes boxes_;
};

TEST_F(Values, TextConstructorsCountTheTerminatingNul) {
    pObj empty = __INIT_CHARPTR(nullptr);
    EXPECT_EQ(empty->type, TYPE_CHAR);
    EXPECT_EQ(empty->objLength, 1);
    EXPECT_STREQ(empty->payload.c, "");
    pObj abc = __INIT_CHARPTR("abc");
    EXPECT_EQ(abc->objLength, 4);
    EXPECT_STREQ(abc->payload.c, "abc");
    EXPECT_EQ(abc->storageClass, CLASS_TEMP);

    pObj zeros = __ALLOC_CHARPTR(5);
    EXPECT_EQ(zeros->objLength, 6);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(zeros->payload.c[i], 0);
}

TEST_F(Values, LiteralRecordIsSharedAndOverwritten) {
    pObj first = __INIT_CHARCONST("first");
    pObj second = __INIT_CHARCONST("second one");
    EXPECT_EQ(first, second);
    EXPECT_STREQ(first->payload.c, "second one");
    EXPECT_EQ(first->objLength, 11);
    EXPECT_EQ(first->storageClass, CLASS_CONST);
    // Assignment into the literal is ignored.
    EXPECT_EQ(__SET_OBJECT(first, __INIT_LONG(3)), first);
    EXPECT_EQ(first->type, TYPE_CHAR);
}

TEST_F(Values, SharedConstantsAreTheSameRecordsEveryTime) {
    EXPECT_EQ(__INIT_BOOL(5), __INIT_BOOL(1));
    EXPECT_EQ(__INIT_BOOL(5)->payload.l, 1);
    EXPECT_EQ(__INIT_BOOL(0)->payload.l, 0);
    EXPECT_EQ(__INIT_NIL()->type, TYPE_NIL);
    EXPECT_EQ(__INIT_NUL()->type, TYPE_NUL);
    for (pObj c : {__INIT_BOOL(1), __INIT_NIL(), __INIT_NUL()}) {
        EXPECT_EQ(c->storageClass, CLASS_NEWCOPY);
        EXPECT_EQ(c->lockCount, 1);
        EXPECT_EQ(c->depth, -1);
    }
    EXPECT_STREQ(sharedConstant(kEmptyText)->payload.c, "");
    EXPECT_EQ(sharedConstant(kNoBufferText)->payload.c, nullptr);
    EXPECT_EQ(sharedConstant(kOne)->payload.d, 1.0);
}

TEST_F(Values, AssigningIntoASharedConstantMakesANewVariable) {
    pObj nil = __INIT_NIL();
    pObj var = __SET_OBJECT(nil, __INIT_DOUBLE(4));
    EXPECT_NE(var, nil);
    EXPECT_EQ(nil->type, TYPE_NIL);
    EXPECT_EQ(var->storageClass, CLASS_VAR);
    EXPECT_EQ(var->payload.d, 4.0);
}

TEST_F(Values, CopiedHandleBecomesAVoidPointer) {
    int target = 0;
    pObj var = __SET_OBJECT(nullptr, __INIT_HANDLE(&target));
    EXPECT_EQ(var->type, TYPE_VOIDPTR);
    EXPECT_EQ(var->payload.p, &target);
}

TEST_F(Values, UnlockedTemporaryGivesItsTextAway) {
    pObj temp = __INIT_CHARPTR("moved");
    char *buffer = temp->payload.c;
    pObj var = __SET_OBJECT(nullptr, temp);
    EXPECT_EQ(var->payload.c, buffer);
    EXPECT_EQ(temp->payload.c, nullptr);
    EXPECT_EQ(temp->objLength, 0);

    // A variable's text is copied, not shared.
    pObj copy = __SET_OBJECT(nullptr, var);
    EXPECT_NE(copy->payload.c, var->payload.c);
    EXPECT_STREQ(copy->payload.c, "moved");
    EXPECT_EQ(copy->objLength, 6);
}

TEST_F(Values, TextWithoutBufferCopiesAsNul) {
    pObj var = __SET_OBJECT(nullptr, sharedConstant(kNoBufferText));
    EXPECT_EQ(var->type, TYPE_NUL);
    EXPECT_EQ(var->objLength, 0);
}

TEST_F(Values, ReleasingVariablesRestoresTheAllocationBalance) {
    int32_t before = allocationBalance();
    pObj a = __SET_OBJECT(nullptr, __INIT_CHARPTR("alpha"));
    pObj b = __SET_OBJECT(nullptr, __INIT_DOUBLE(1));
    pObj c = __SET_OBJECT(nullptr, __INIT_CHARPTR("gamma"));
    OwnerList &vars = context().lists[kVariableList];
    int32_t count = vars.count;
    EXPECT_EQ(__fcObj_DT(b), c); // the record that followed it
    EXPECT_EQ(vars.count, count - 1);
    EXPECT_EQ(__fcObj_DT(c), nullptr);
    EXPECT_EQ(vars.tail, a);
    // A locked variable only loses a lock; a permanent one is kept.
    a->lockCount = 1;
    __fcObj_DT(a);
    EXPECT_EQ(a->lockCount, 0);
    a->lockCount = -1;
    EXPECT_EQ(__fcObj_DT(a), nullptr);
    a->lockCount = 0;
    __fcObj_DT(a);
    EXPECT_EQ(allocationBalance(), before);
}

TEST_F(Values, ByRefMakesTheVariableOnce) {
    pObj slot = nullptr;
    pObj made = __ByRef(&slot);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->type, TYPE_NIL);
    EXPECT_EQ(made->storageClass, CLASS_VAR);
    EXPECT_EQ(__ByRef(&slot), made);
}

TEST_F(Values, InitObjNodeClearsTheCallersRecord) {
    Obj rec;
    std::memset(&rec, 0x5A, sizeof rec);
    EXPECT_EQ(__InitObjNode(&rec, TYPE_NUMERIC), &rec);
    EXPECT_EQ(rec.storageClass, CLASS_VAR);
    EXPECT_EQ(rec.type, TYPE_NUMERIC);
    EXPECT_EQ(rec.objLength, -1);
    EXPECT_EQ(rec.next, nullptr);
    EXPECT_EQ(rec.payload.d, 0.0);
}

TEST_F(Values, RingComesRoundAfterItsSize) {
    pObj first = __INIT_LONG(1);
    for (int i = 1; i < context().temporaryCount; ++i)
        EXPECT_NE(__INIT_LONG(i + 1), first);
    EXPECT_EQ(__INIT_LONG(0), first);
    EXPECT_EQ(context().temporaryCount, 150);
}

TEST(ValuesRecord, HasTheContractLayout) {
    EXPECT_EQ(offsetof(Obj, next), 0u);
    EXPECT_EQ(sizeof(Obj{}.payload), 8u);
    if (sizeof(void *) == 4) {
        EXPECT_EQ(sizeof(Obj), 32u);
    }
}

} // namespace
