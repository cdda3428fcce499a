// Every fault of the table built-ins ends the run with its error class and detail code.
#include "support/table_fixture.h"

#include "runtime/context.h"
#include "tables/definition_block.h"

using namespace zq::table_test;

namespace {

TEST_P(TableDeathTest, EndsTheRun) { expectRefused(GetParam()); }

pObj oneField() { return TableTest::structure({{"id", "N", 4, 0}}); }

void makeItems() { __DBCREATE(text("items"), oneField(), nullptr); }

void useItems() {
    makeItems();
    __DBUSEAREA(__INIT_BOOL(1), nullptr, text("items"), nullptr);
}

// Rewrites the stored definition of ITEMS, opened in area 1.
void storeDefinition(void (*change)(zq::tables::TableDef &)) {
    if (!__File(text("items"))->payload.l)
        makeItems();
    __DBUSEAREA(__INIT_BOOL(1), nullptr, text("items"), nullptr);
    auto def = zq::tables::parseTableBlock(*zq::tables::readBlock(
        DmOpenDatabase(0, DmFindDatabase(0, "ITEMS"))));
    change(*def);
    zq::tables::writeTableBlock(*def, DmOpenDatabase(0, DmFindDatabase(0, "ITEMS")));
    __dbCloseAll();
}

void appendRow() {
    __DBAPPEND(nullptr);
    __SetField(nullptr, num(1), num(1));
    __Commit(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Creation, TableDeathTest, ::testing::Values(
    TableRefusal{"CreateWithoutName", [] { __DBCREATE(nullptr, oneField(), nullptr); }, ZQ_ERR_RUNTIME, 36},
    TableRefusal{"CreateWithoutStructure", [] { __DBCREATE(text("t"), nullptr, nullptr); }, ZQ_ERR_RUNTIME, 36},
    TableRefusal{"CreateNumberName", [] { __DBCREATE(num(1), oneField(), nullptr); }, ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"CreateEmptyName", [] { __DBCREATE(text(""), oneField(), nullptr); }, ZQ_ERR_EG_ARG, 37},
    TableRefusal{"CreateNoFields", [] { __DBCREATE(text("t"), __CreateArray(__INIT_NUL()), nullptr); }, ZQ_ERR_EG_ARG, 38},
    TableRefusal{"CreateShortField", [] {
        __DBCREATE(text("t"), __CreateArray(__CreateArray(text("A"), text("N"), num(1), __INIT_NUL()), __INIT_NUL()), nullptr);
    }, ZQ_ERR_EG_ARG, 39},
    TableRefusal{"CreateNameTooLong", [] { __DBCREATE(text("abcdefghijklmnopqrstuvwxyz012345"), oneField(), nullptr); }, ZQ_ERR_RUNTIME, 40},
    TableRefusal{"CreateMemoNameTooLong", [] {
        __DBCREATE(text("abcdefghijklmnopqrstuvwxyz0123"), TableTest::structure({{"m", "M", 4, 0}}), nullptr);
    }, ZQ_ERR_RUNTIME, 40}
), refusalName);

INSTANTIATE_TEST_SUITE_P(Areas, TableDeathTest, ::testing::Values(
    TableRefusal{"UseWithoutName", [] { __DBUSEAREA(__INIT_BOOL(1), nullptr, nullptr, nullptr); }, ZQ_ERR_RUNTIME, 53},
    TableRefusal{"UseMissingTable", [] { __DBUSEAREA(__INIT_BOOL(1), nullptr, text("none"), nullptr); }, ZQ_ERR_ALIAS_MISSING, 53},
    TableRefusal{"UseWithoutDefinition", [] {
        DmCreateDatabase(0, "RAW", 0x5A454C51u, 0x44415441u, 0);
        __DBUSEAREA(__INIT_BOOL(1), nullptr, text("raw"), nullptr);
    }, ZQ_ERR_RUNTIME, 54},
    TableRefusal{"UseWithMissingIndex", [] {
        storeDefinition([](zq::tables::TableDef &def) { def.indexes.resize(1); def.indexes[0].name = "ITEMS.IDX"; });
        __DBUSEAREA(__INIT_BOOL(1), nullptr, text("items"), nullptr);
    }, ZQ_ERR_IDX_NOT_EXISTS, -1},
    TableRefusal{"UseWithIndexWithoutBlock", [] {
        storeDefinition([](zq::tables::TableDef &def) { def.indexes.resize(1); def.indexes[0].name = "ITEMS.IDX"; });
        DmCreateDatabase(0, "ITEMS.IDX", 0x5A454C51u, 0x494E4458u, 0);
        __DBUSEAREA(__INIT_BOOL(1), nullptr, text("items"), nullptr);
    }, ZQ_ERR_RUNTIME, 55},
    TableRefusal{"The129thArea", [] {
        makeItems();
        for (int i = 0; i < 129; ++i)
            __DBUSEAREA(__INIT_BOOL(1), nullptr, text("items"), text(("A" + std::to_string(i)).c_str()));
    }, ZQ_ERR_ALIAS_MISSING, 53},
    TableRefusal{"AliasOfLogical", [] { __GetAliasID(__INIT_BOOL(1)); }, ZQ_ERR_ALIAS_MISSING, 11},
    TableRefusal{"UnknownAlias", [] { useItems(); __TBL_GoTop(text("NONE")); }, ZQ_ERR_ALIAS_MISSING, 11},
    TableRefusal{"ClosedArea", [] { useItems(); __CloseTBL(1, 0); __TBL_GoTop(num(2)); }, ZQ_ERR_ALIAS_MISSING, 13},
    TableRefusal{"AliasOfNothing", [] { useItems(); __Alias(text("NONE")); }, ZQ_ERR_ALIAS_MISSING, 11},
    TableRefusal{"CloseAreaOutOfRange", [] { __DB_CloseArea(num(5)); }, ZQ_ERR_RUNTIME, 14},
    TableRefusal{"CloseTableOutOfRange", [] { __CloseTBL(3, 0); }, ZQ_ERR_RUNTIME, 56},
    TableRefusal{"FileOfNumber", [] { __File(num(1)); }, ZQ_ERR_ARGUMENT, -1}
), refusalName);

INSTANTIATE_TEST_SUITE_P(Rows, TableDeathTest, ::testing::Values(
    TableRefusal{"DeleteOutOfRange", [] { useItems(); __TBL_Delete(num(9)); }, ZQ_ERR_RUNTIME, 16},
    TableRefusal{"DeletedOutOfRange", [] { useItems(); __TBL_Deleted(num(9)); }, ZQ_ERR_RUNTIME, 17},
    TableRefusal{"RecallOutOfRange", [] { useItems(); __TBL_Recall(num(9)); }, ZQ_ERR_RUNTIME, 18},
    TableRefusal{"RecSizeOutOfRange", [] { useItems(); __TBL_RecSize(num(9)); }, ZQ_ERR_RUNTIME, 6},
    TableRefusal{"GoToText", [] { useItems(); __TBL_GoTo(nullptr, text("1")); }, ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"ReadUnknownType", [] {
        useItems();
        appendRow();
        __dbCloseAll();
        storeDefinition([](zq::tables::TableDef &def) { def.fields[0].type = zq::tables::kInteger; });
        __DBUSEAREA(__INIT_BOOL(1), nullptr, text("items"), nullptr);
    }, ZQ_ERR_RUNTIME, 7},
    TableRefusal{"WriteUnknownType", [] {
        __DBCREATE(text("odd"), TableTest::structure({{"i", "I", 4, 0}}), nullptr);
        __DBUSEAREA(__INIT_BOOL(1), nullptr, text("odd"), nullptr);
        __DBAPPEND(nullptr);
        __Commit(nullptr);
    }, ZQ_ERR_RUNTIME, 8},
    TableRefusal{"DirtyFlagNotLogical", [] { useItems(); SETDIRTY(nullptr, num(1), num(1)); }, ZQ_ERR_ARGUMENT, -1}
), refusalName);

INSTANTIATE_TEST_SUITE_P(Fields, TableDeathTest, ::testing::Values(
    TableRefusal{"SetWithoutValue", [] { useItems(); __SetField(nullptr, num(1), nullptr); }, ZQ_ERR_RUNTIME, 22},
    TableRefusal{"SetIntegerField", [] {
        __DBCREATE(text("odd"), TableTest::structure({{"i", "I", 4, 0}}), nullptr);
        __DBUSEAREA(__INIT_BOOL(1), nullptr, text("odd"), nullptr);
        __SetField(nullptr, num(1), num(1));
    }, ZQ_ERR_RUNTIME, 23},
    TableRefusal{"SetNumberToText", [] { useItems(); __DBAPPEND(nullptr); __SetField(nullptr, num(1), text("1")); }, ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"SetNumberToNil", [] { useItems(); __SetField(nullptr, num(1), __INIT_NIL()); }, ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"FieldZero", [] { useItems(); __GetFieldByID(nullptr, num(0)); }, ZQ_ERR_INVALID_FIELD, 25},
    TableRefusal{"FieldBeyond", [] { useItems(); __GetFieldByID(nullptr, num(3)); }, ZQ_ERR_INVALID_FIELD, 25},
    TableRefusal{"NameNotFound", [] { useItems(); __GetFieldByName(nullptr, text("id")); }, ZQ_ERR_INVALID_FIELD, 26},
    TableRefusal{"LengthBeyond", [] { useItems(); __FieldLen(nullptr, num(3)); }, ZQ_ERR_INVALID_FIELD, 26},
    TableRefusal{"TypeBeyond", [] { useItems(); __FieldType(nullptr, num(0)); }, ZQ_ERR_INVALID_FIELD, 26},
    TableRefusal{"PositionWithoutName", [] { useItems(); __GetFieldPos(nullptr, nullptr); }, ZQ_ERR_INVALID_FIELD, 27},
    TableRefusal{"PositionOfNumber", [] { useItems(); __GetFieldPos(nullptr, num(1)); }, ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"PositionOfNoText", [] {
        useItems();
        __GetFieldPos(nullptr, zq::runtime::sharedConstant(zq::runtime::kNoBufferText));
    }, ZQ_ERR_INVALID_FIELD, 28},
    TableRefusal{"PositionInClosedArea", [] { useItems(); __CloseTBL(1, 0); __GetFieldPos(num(2), text("ID")); }, ZQ_ERR_INVALID_FIELD, 29}
), refusalName);

} // namespace
