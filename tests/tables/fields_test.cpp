// Field access: lookup by name, the silent cases of __SetField, values of every type.
#include "support/table_fixture.h"

using namespace zq::table_test;

namespace {

class FieldsTest : public TableTest {
protected:
    void SetUp() override {
        TableTest::SetUp();
        createAndUse("people", {{"name", "C", 6, 0}, {"age", "N", 3, 0}, {"ok", "L", 1, 0}});
    }
};

TEST_F(FieldsTest, LookupByNameIsExactAndRemembersItsHit) {
    EXPECT_EQ(numberOf(__GetFieldPos(nullptr, text("AGE"))), 2);
    EXPECT_EQ(numberOf(__GetFieldPos(nullptr, text("AGE"))), 2); // the remembered field
    EXPECT_EQ(numberOf(__GetFieldPos(nullptr, text("NAME"))), 1);
    EXPECT_EQ(numberOf(__GetFieldPos(nullptr, text("D_E_L_E_T_"))), 4);
    pObj none = __GetFieldPos(nullptr, text("age"));
    EXPECT_EQ(none->storageClass, uint32_t(CLASS_NEWCOPY)); // the shared no-field constant
    EXPECT_EQ(numberOf(none), 0);
    EXPECT_EQ(numberOf(__GetFieldPos(nullptr, text("N\xC3ME"))), 0);
}

TEST_F(FieldsTest, SetFieldChecksTypesAndIgnoresWhatItCannotStore) {
    __DBAPPEND(nullptr);
    EXPECT_EQ(__SetField(nullptr, num(9), text("x"))->type, uint32_t(TYPE_NIL)); // out of range
    __SetField(nullptr, num(2), __INIT_LONG(42));    // a long is a number
    __SetField(nullptr, num(3), __INIT_BOOL(1));
    __SetField(nullptr, num(1), text("Bob"));
    __Commit(nullptr);
    __TBL_GoTop(nullptr);
    EXPECT_EQ(numberOf(__GetFieldByName(nullptr, text("AGE"))), 42);
    EXPECT_EQ(textOf(__GetFieldByName(nullptr, text("NAME"))), "Bob   ");
    EXPECT_TRUE(isTrue(__GetFieldByName(nullptr, text("OK"))));
    EXPECT_EQ(numberOf(__FieldDecLen(nullptr, num(2))), 0);
}

TEST_F(FieldsTest, ReservedTypesHoldNothing) {
    createAndUse("odd", {{"blob", "B", 4, 0}, {"kind", "I", 4, 0}});
    __DBAPPEND(nullptr);
    pObj value = text("anything");
    EXPECT_EQ(__SetField(nullptr, num(1), value), value); // accepted, stored nowhere
    EXPECT_EQ(__GetFieldByID(nullptr, num(2))->type, uint32_t(TYPE_NIL));
    EXPECT_TRUE(sawBox("campo n\343o identificado!"));
    __AbortEdit(nullptr); // such a row cannot be stored
}

TEST_F(FieldsTest, UncommittedRowIsWrittenWhenTheAreaMoves) {
    __DBAPPEND(nullptr);
    __SetField(nullptr, num(1), text("Ann"));
    __DBAPPEND(nullptr); // writes the first row
    __SetField(nullptr, num(1), text("Bea"));
    __TBL_GoTop(nullptr); // writes the second
    EXPECT_EQ(numberOf(__TBL_RecCount(nullptr)), 2);
    __TBL_Skip(nullptr, nullptr);
    EXPECT_EQ(textOf(__GetField(nullptr, text("NAME"), __INIT_BOOL(1))), "Bea");
}

} // namespace
