// A table writer killed at random moments: every committed operation reads back, no row
// or memo text is half-written.
#include "apps/table_crash/crash_script.h"
#include "support/storage_process.h"
#include "support/table_fixture.h"

#include <filesystem>

using namespace zq::table_test;
using namespace zq::storage_test;

namespace {

class TableCrashTest : public TableTest {
protected:
    static CrashRow rowAt(uint32_t i) {
        __TBL_GoTo(nullptr, num(i + 1));
        CrashRow row;
        row.id = numberOf(__GetFieldByID(nullptr, num(1)));
        row.name = textOf(__GetField(nullptr, num(2), __INIT_BOOL(1)));
        row.note = textOf(__GetFieldByID(nullptr, num(3)));
        row.flag = isTrue(__GetFieldByID(nullptr, num(4)));
        row.deleted = isTrue(__TBL_Deleted(nullptr));
        return row;
    }

    static bool sameRow(const CrashRow &a, const CrashRow &b) {
        return a.id == b.id && a.name == b.name && a.flag == b.flag && a.deleted == b.deleted;
    }

    // The table as a fresh process opens it: the rows of n committed operations, the
    // operation in flight either whole or not at all. Its memo text is stored when set,
    // before the row, so the note is checked on its own.
    void verify(uint32_t n) {
        std::vector<CrashRow> before = crashRowsAfter(n), after = crashRowsAfter(n + 1);
        use("CRASH");
        uint32_t count = uint32_t(numberOf(__TBL_RecCount(nullptr)));
        ASSERT_TRUE(count == before.size() || count == after.size()) << count << " rows after " << n << ", expected " << before.size() << " or " << after.size();
        for (uint32_t i = 0; i < count; ++i) {
            CrashRow row = rowAt(i);
            const CrashRow &old = i < before.size() ? before[i] : after[i];
            ASSERT_TRUE(sameRow(row, old) || sameRow(row, after[i])) << "row " << i << " holds " << row.id << " " << row.name << " " << row.flag << row.deleted
                << ", expected " << old.id << " " << old.name << " " << old.flag << old.deleted << " or " << after[i].id;
            ASSERT_TRUE(row.note == old.note || row.note == after[i].note) << "note of row " << i << ": " << row.note.size() << " " << row.note.substr(0, 40) << " expected " << old.note.size() << " " << old.note.substr(0, 40) << " or " << after[i].note.size();
        }
        __dbCloseAll();
        StorageClose();
    }
};

TEST_F(TableCrashTest, KilledWriterLosesNoCommittedOperation) {
    std::string child = appPath("table_crash");
    ASSERT_TRUE(std::filesystem::exists(child)) << child;
    ASSERT_TRUE(isTrue(__DBCREATE(text("CRASH"), structure({{"ID", "N", 8, 0}, {"NAME", "C", 20, 0},
                                                             {"NOTE", "M", 4, 0}, {"FLAG", "L", 1, 0}}), nullptr)));
    StorageClose();
    std::string progress = directory + "/progress";
    killRepeatedly(child, progress, 4242, [&](uint32_t n) { verify(n); });
    if (!HasFatalFailure())
        EXPECT_GT(loggedOperations(progress), 20u);
}

} // namespace
