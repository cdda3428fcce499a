// Moving through a table: flags at both ends, the deleted-rows switch, skips and bottoms.
#include "support/table_fixture.h"

#include <vector>

using namespace zq::table_test;

namespace {

constexpr int kRows = 300;

class NavigationTest : public TableTest {
protected:
    // Rows 1..kRows with ID = row number; every seventh row deleted.
    void makeRows() {
        createAndUse("walk", {{"id", "N", 5, 0}, {"name", "C", 8, 0}});
        for (int i = 1; i <= kRows; ++i) {
            __DBAPPEND(nullptr);
            __SetField(nullptr, num(1), num(i));
            __SetField(nullptr, num(2), text(("r" + std::to_string(i)).c_str()));
            if (i % 7 == 0)
                __TBL_Delete(nullptr);
        }
        __Commit(nullptr);
    }
    double id() { return numberOf(__GetFieldByID(nullptr, num(1))); }
    std::vector<int> walk(int step) {
        std::vector<int> seen;
        while (!isTrue(step > 0 ? __TBL_Eof(nullptr) : __TBL_Bof(nullptr))) {
            seen.push_back(int(id()));
            __TBL_Skip(nullptr, num(step));
        }
        return seen;
    }
    static std::vector<int> expected(bool hidden, bool backward) {
        std::vector<int> ids;
        for (int i = 1; i <= kRows; ++i)
            if (!hidden || i % 7 != 0)
                ids.push_back(i);
        if (backward)
            std::reverse(ids.begin(), ids.end());
        return ids;
    }
};

TEST_F(NavigationTest, WalksVisitDeletedRowsOnlyWhenTheSwitchIsOff) {
    makeRows();
    for (bool hidden : {false, true}) {
        SCOPED_TRACE(hidden ? "deleted rows hidden" : "deleted rows visited");
        __Set(num(11), __INIT_BOOL(hidden));
        __TBL_GoTop(nullptr);
        EXPECT_EQ(walk(1), expected(hidden, false));
        EXPECT_TRUE(isTrue(__TBL_Eof(nullptr)));
        EXPECT_EQ(numberOf(__TBL_RecNo(nullptr)), kRows + 1);
        __TBL_GoTo(nullptr, num(kRows));
        EXPECT_EQ(walk(-1), expected(hidden, true));
        EXPECT_EQ(id(), 1); // before the first row the area stays on the top row
        EXPECT_FALSE(isTrue(__TBL_Eof(nullptr)));
    }
}

TEST_F(NavigationTest, SkipsOfSeveralRowsPassOverDeletedOnes) {
    makeRows();
    __Set(num(11), __INIT_BOOL(1));
    __TBL_GoTo(nullptr, num(5));
    EXPECT_TRUE(isTrue(__TBL_Skip(nullptr, num(2)))); // 7 is deleted: on to 8
    EXPECT_EQ(id(), 8);
    EXPECT_TRUE(isTrue(__TBL_Skip(nullptr, num(-1)))); // 7 again: back to 6
    EXPECT_EQ(id(), 6);
    __TBL_GoTo(nullptr, num(14)); // go to does not filter
    EXPECT_TRUE(isTrue(__TBL_Deleted(nullptr)));
    EXPECT_TRUE(isTrue(__TBL_Skip(nullptr, num(0)))); // reloads, no filter
    EXPECT_EQ(id(), 14);
    __TBL_GoTo(nullptr, num(268435454)); // the append position means the last row
    EXPECT_EQ(id(), kRows);
}

TEST_F(NavigationTest, BottomInNaturalOrderEndsBeyondTheLastRow) {
    makeRows();
    __TBL_GoBottom(nullptr);
    EXPECT_TRUE(isTrue(__TBL_Eof(nullptr)));
    EXPECT_TRUE(isTrue(__TBL_Bof(nullptr)));
    EXPECT_EQ(id(), 0);
    EXPECT_TRUE(isTrue(__TBL_Skip(nullptr, num(-1))));
    EXPECT_EQ(id(), kRows);
    __SetField(nullptr, num(2), text("edited"));
    __AbortEdit(nullptr); // drops the edit and goes to the bottom
    EXPECT_TRUE(isTrue(__TBL_Eof(nullptr)));
    __TBL_GoTo(nullptr, num(__TBL_RecCount(nullptr)->payload.d));
    EXPECT_EQ(textOf(__GetField(nullptr, num(2), __INIT_BOOL(1))), "r300");
}

// No row to stand on (an empty table, or every row deleted and hidden): both ends at
// once, a blank row that takes no field, and no skip.
TEST_F(NavigationTest, WithoutAVisibleRowTheAreaIsAtBothEnds) {
    for (int rows : {0, 3}) {
        SCOPED_TRACE(std::to_string(rows) + " deleted rows");
        createAndUse("none", {{"id", "N", 5, 0}, {"t", "C", 3, 0}});
        for (int i = 0; i < rows; ++i) {
            __DBAPPEND(nullptr);
            __SetField(nullptr, num(1), num(i));
            __TBL_Delete(nullptr);
        }
        __Commit(nullptr);
        __Set(num(11), __INIT_BOOL(1));
        EXPECT_FALSE(isTrue(__TBL_GoTop(nullptr)));
        EXPECT_TRUE(isTrue(__TBL_Eof(nullptr)));
        EXPECT_TRUE(isTrue(__TBL_Bof(nullptr)));
        EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(2))), "   ");
        EXPECT_FALSE(isTrue(__TBL_Skip(nullptr, nullptr)));
        __SetField(nullptr, num(1), num(5)); // no row: nothing changes
        __Commit(nullptr);
        EXPECT_EQ(numberOf(__TBL_RecCount(nullptr)), rows);
        __dbCloseAll();
    }
}

} // namespace
