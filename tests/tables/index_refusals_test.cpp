// Every fault of the index and upkeep built-ins ends the run with its class and detail code.
#include "support/table_fixture.h"

#include "platform/process.h"
#include "support/unattended.h"

using namespace zq::table_test;

namespace {

void useCodes() {
    __DBCREATE(text("codes"), TableTest::structure({{"code", "C", 4, 0}, {"memo", "M", 4, 0}}), nullptr);
    __DBUSEAREA(__INIT_BOOL(1), nullptr, text("codes"), nullptr);
}

void indexCodes() {
    useCodes();
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
}

INSTANTIATE_TEST_SUITE_P(Indexes, TableDeathTest, ::testing::Values(
    TableRefusal{"CreateIndexEmptyExpression", [] { useCodes(); __DBCREATEINDEX(text("i"), text(" "), __INIT_NUL()); },
                 ZQ_ERR_INDEX_CREATE, 44},
    TableRefusal{"CreateIndexUnknownField", [] { useCodes(); __DBCREATEINDEX(text("i"), text("STR(CODE,4)"), __INIT_NUL()); },
                 ZQ_ERR_INDEX_CREATE, 50},
    TableRefusal{"CreateIndexNoName", [] { useCodes(); __DBCREATEINDEX(nullptr, text("code"), __INIT_NUL()); },
                 ZQ_ERR_RUNTIME, 47},
    TableRefusal{"CreateIndexNumberName", [] { useCodes(); __DBCREATEINDEX(num(1), text("code"), __INIT_NUL()); },
                 ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"CreateIndexEmptyName", [] { useCodes(); __DBCREATEINDEX(text(""), text("code"), __INIT_NUL()); },
                 ZQ_ERR_EG_ARG, 48},
    TableRefusal{"CreateIndexOverItsTable", [] { useCodes(); __DBCREATEINDEX(text("codes"), text("code"), __INIT_NUL()); },
                 ZQ_ERR_RUNTIME, 46},
    TableRefusal{"CreateIndexOnMemo", [] {
        useCodes();
        __DBAPPEND(nullptr);
        __DBCREATEINDEX(text("i"), text("memo"), __INIT_NUL());
    },
                 ZQ_ERR_RUNTIME, 19},
    TableRefusal{"CreateIndexNoTable", [] { __DBCREATEINDEX(text("i"), text("code"), __INIT_NUL()); },
                 ZQ_ERR_EG_ARG, 45},
    TableRefusal{"SeekWithoutOrder", [] { useCodes(); __Seek(nullptr, text("A"), nullptr); }, ZQ_ERR_IDX_NOT_EXISTS, 4},
    TableRefusal{"SeekWithoutKey", [] { indexCodes(); __Seek(nullptr, nullptr, nullptr); }, ZQ_ERR_RUNTIME, 2},
    TableRefusal{"SeekNumber", [] { indexCodes(); __Seek(nullptr, num(1), nullptr); }, ZQ_ERR_RUNTIME, 3},
    TableRefusal{"SeekClosedIndex", [] {
        indexCodes();
        __CloseIDX(nullptr, text("bycode"));
        __TBL_SetOrder(nullptr, num(1));
        __CloseIDX(nullptr, text("bycode"));
        __DBAPPEND(nullptr);
        __Seek(nullptr, text("A"), nullptr);
    }, ZQ_ERR_IDX_NOT_EXISTS, 4},
    TableRefusal{"OrderZero", [] { indexCodes(); __TBL_SetOrder(nullptr, num(0)); }, ZQ_ERR_INVALID_INDEX, 31},
    TableRefusal{"OrderBeyondCount", [] { indexCodes(); __TBL_SetOrder(nullptr, num(2)); }, ZQ_ERR_INVALID_INDEX, 31},
    TableRefusal{"OrderUnknownAlias", [] { indexCodes(); __TBL_SetOrder(text("none"), num(1)); }, ZQ_ERR_INVALID_INDEX, 31},
    TableRefusal{"OrderText", [] { indexCodes(); __TBL_SetOrder(nullptr, text("1")); }, ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"DropWithoutName", [] { useCodes(); __DBDROPINDEX(nullptr, nullptr); }, ZQ_ERR_RUNTIME, 42},
    TableRefusal{"DropNumber", [] { useCodes(); __DBDROPINDEX(nullptr, num(1)); }, ZQ_ERR_ARGUMENT, -1},
    TableRefusal{"DropEmptyName", [] { useCodes(); __DBDROPINDEX(nullptr, text("")); }, ZQ_ERR_RUNTIME, 43},
    TableRefusal{"DropWithoutAreas", [] { __DBDROPINDEX(nullptr, text("i")); }, ZQ_ERR_RUNTIME, 41},
    TableRefusal{"PackUnknownAlias", [] { useCodes(); __dbPack(text("none")); }, ZQ_ERR_ALIAS_MISSING, 11}
), refusalName);

TEST_F(TableTest, OpeningAnIndexNotListedShowsTwoAlertsThenRefuses) {
    zq::test::UnattendedBoxes boxes;
    EXPECT_EXIT(
        {
            indexCodes();
            __UseIndex(nullptr, text("other"));
            zq::platform::exitProcess(3);
        },
        ::testing::ExitedWithCode(0), "");
    auto lines = boxes.lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Alert\t48\tOTHER");
    EXPECT_EQ(lines[1], "Alert\t48\tINVALID_INDEX");
    EXPECT_EQ(lines[2], std::string("Fatal Error\t16\t") + zq_runtime_error_text(ZQ_ERR_INVALID_INDEX) + "\\n" +
                            zq_aux_messages[15]);
}

} // namespace
