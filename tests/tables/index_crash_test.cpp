// A writer changing and packing a table with two indexes, killed at random moments: after
// each kill every row is found by a seek on each index and each index walks every row once.
#include "apps/index_crash/index_crash_script.h"
#include "support/storage_process.h"
#include "support/table_fixture.h"

#include <filesystem>
#include <set>

using namespace zq::table_test;
using namespace zq::storage_test;

namespace {

class IndexCrashTest : public TableTest {
protected:
    static std::string keyOf(const IndexCrashRow &r, int order) {
        char number[16];
        std::snprintf(number, sizeof number, "%8.0f", r.number);
        return order == 1 ? r.code : number + r.code;
    }

    static std::vector<IndexCrashRow> tableRows() {
        std::vector<IndexCrashRow> rows;
        __ClearIndex(nullptr);
        for (__TBL_GoTo(nullptr, num(1)); !isTrue(__TBL_Eof(nullptr)); __TBL_Skip(nullptr, nullptr))
            rows.push_back({textOf(__GetFieldByID(nullptr, num(1))), numberOf(__GetFieldByID(nullptr, num(2))),
                            isTrue(__TBL_Deleted(nullptr))});
        return rows;
    }

    // The table as a fresh process opens it: the rows of n operations or of n + 1; each
    // index finds every row by its key and walks them all once, in key order.
    void verify(uint32_t n) {
        use("ICRASH");
        std::vector<IndexCrashRow> rows = tableRows();
        ASSERT_TRUE(rows == indexCrashRowsAfter(n) || rows == indexCrashRowsAfter(n + 1))
            << rows.size() << " rows after " << n << " operations";
        for (int order : {1, 2}) {
            __TBL_SetOrder(nullptr, num(order));
            for (size_t i = 0; i < rows.size(); ++i) {
                std::string key = keyOf(rows[i], order);
                ASSERT_TRUE(isTrue(__Seek(nullptr, text(key.c_str()), nullptr))) << "order " << order << " " << key;
                ASSERT_EQ(numberOf(__TBL_RecNo(nullptr)), double(i + 1)) << "order " << order << " " << key;
            }
            std::set<double> seen;
            std::string previous;
            for (__TBL_GoTop(nullptr); !isTrue(__TBL_Eof(nullptr)); __TBL_Skip(nullptr, nullptr)) {
                double recno = numberOf(__TBL_RecNo(nullptr));
                ASSERT_TRUE(seen.insert(recno).second) << "row " << recno << " twice in order " << order;
                std::string key = keyOf(rows[size_t(recno) - 1], order);
                ASSERT_LT(previous, key) << "order " << order;
                previous = key;
            }
            ASSERT_EQ(seen.size(), rows.size()) << "order " << order;
        }
        __dbCloseAll();
        StorageClose();
    }
};

TEST_F(IndexCrashTest, KilledWriterLeavesIndexesThatFindEveryRow) {
    std::string child = appPath("index_crash");
    ASSERT_TRUE(std::filesystem::exists(child)) << child;
    createAndUse("ICRASH", {{"CODE", "C", 6, 0}, {"NUMBER", "N", 8, 0}});
    __DBCREATEINDEX(text("ICODE"), text("CODE"), __INIT_NUL());
    __DBCREATEINDEX(text("INUMBER"), text("STR(NUMBER)+CODE"), __INIT_NUL());
    __dbCloseAll();
    StorageClose();
    std::string progress = directory + "/progress";
    killRepeatedly(child, progress, 1123, [&](uint32_t n) { verify(n); });
    if (!HasFatalFailure())
        EXPECT_GT(loggedOperations(progress), 20u);
}

} // namespace
