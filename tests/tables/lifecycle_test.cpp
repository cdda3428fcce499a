// Rows still pending in an edit buffer are written when the run ends, however it ends.
#include "support/table_fixture.h"

#include "platform/process.h"
#include "support/unattended.h"

using namespace zq::table_test;

namespace {

class LifecycleTest : public TableTest {
protected:
    // Opens the table as the next run would and gives its one field's values.
    std::vector<std::string> names() {
        __RetGlob(1);
        use("log");
        std::vector<std::string> seen;
        for (__TBL_GoTop(nullptr); !isTrue(__TBL_Eof(nullptr)); __TBL_Skip(nullptr, nullptr))
            seen.push_back(textOf(__GetField(nullptr, num(1), __INIT_BOOL(1))));
        return seen;
    }
    static void appendPending(const char *name) {
        __DBCREATE(text("log"), structure({{"name", "C", 8, 0}, {"note", "M", 4, 0}}), nullptr);
        __DBUSEAREA(__INIT_BOOL(1), nullptr, text("log"), nullptr);
        __DBAPPEND(nullptr);
        __SetField(nullptr, num(1), text(name));
        __SetField(nullptr, num(2), text("memo text"));
    }
};

TEST_F(LifecycleTest, EndOfTheRunWritesThePendingRow) {
    appendPending("ended");
    __EndGlobal();
    EXPECT_EQ(names(), std::vector<std::string>{"ended"});
    __TBL_GoTop(nullptr);
    EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(2))), "memo text");
}

TEST_F(LifecycleTest, RuntimeErrorWritesThePendingRow) {
    zq::test::UnattendedBoxes boxes;
    EXPECT_EXIT(
        {
            appendPending("failed");
            __RuntimeError(ZQ_ERR_ARGUMENT, -1);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(names(), std::vector<std::string>{"failed"});
    __TBL_GoTop(nullptr);
    EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(2))), "memo text");
}

TEST_F(LifecycleTest, DurableModeStoresRowsAlike) {
    EXPECT_EQ(zq_set_durable_commit(1), 0);
    EXPECT_EQ(zq_durable_commit(), 1);
    appendPending("durable");
    __Commit(nullptr);
    __dbCloseAll();
    EXPECT_EQ(names(), std::vector<std::string>{"durable"});
    zq_set_durable_commit(0);
}

} // namespace
