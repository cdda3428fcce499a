// A writer changing and packing a table with two indexes and a memo field, and saving an
// array, killed at random moments: after each kill the rows are those of the operations
// that returned (plus at most the one in flight), memo texts byte for byte, each index
// finds every row and walks them all once in key order, the saved array is whole, and the
// data tool finds nothing wrong.
#include "apps/table_crash/table_crash_script.h"
#include "platform/processes.h"
#include "support/storage_process.h"
#include "support/table_fixture.h"

#include <filesystem>
#include <set>

using namespace zq::table_test;
using namespace zq::storage_test;
using namespace zq::table_crash;

namespace {

class TableCrashTest : public TableTest {
protected:
    static std::string keyOf(const CrashRow &r, int order) {
        char number[16];
        std::snprintf(number, sizeof number, "%8.0f", r.number);
        return order == 1 ? r.code : number + r.code;
    }

    static std::vector<CrashRow> tableRows() {
        std::vector<CrashRow> rows;
        __ClearIndex(nullptr);
        for (__TBL_GoTo(nullptr, num(1)); !isTrue(__TBL_Eof(nullptr)); __TBL_Skip(nullptr, nullptr))
            rows.push_back({textOf(__GetFieldByID(nullptr, num(1))), numberOf(__GetFieldByID(nullptr, num(2))),
                            textOf(__GetFieldByID(nullptr, num(3))), isTrue(__GetFieldByID(nullptr, num(4))),
                            numberOf(__GetFieldByID(nullptr, num(5))), isTrue(__TBL_Deleted(nullptr))});
        return rows;
    }

    // The rows match the model's; a memo text is stored when set, before its row, so the
    // text of a row may also be the other model's.
    static bool matches(const std::vector<CrashRow> &rows, const std::vector<CrashRow> &model,
                        const std::vector<CrashRow> &other) {
        if (rows.size() != model.size())
            return false;
        for (size_t i = 0; i < rows.size(); ++i)
            if (!rows[i].sameRow(model[i]) ||
                (rows[i].note != model[i].note && (i >= other.size() || rows[i].note != other[i].note)))
                return false;
        return true;
    }

    static std::string firstDifference(const std::vector<CrashRow> &rows, const std::vector<CrashRow> &model) {
        for (size_t i = 0; i < rows.size() && i < model.size(); ++i)
            if (!rows[i].sameRow(model[i]) || rows[i].note != model[i].note)
                return "row " + std::to_string(i + 1) + " holds " + rows[i].code + " (" +
                       std::to_string(rows[i].note.size()) + "-byte note" + (rows[i].deleted ? ", deleted" : "") +
                       "), the last operation leaves " + model[i].code + " (" + std::to_string(model[i].note.size()) +
                       "-byte note" + (model[i].deleted ? ", deleted" : "") + ")";
        return "the rows agree with the last operation's as far as both go";
    }

    static SavedArray restoredArray() {
        pObj restored = __RestoreArray(text("CRASHARR"));
        SavedArray saved;
        auto count = [](pObj a) { return a && a->type == TYPE_ARRAY ? __Array_Get_Amnt_Itens(a) : -1; };
        for (int32_t i = 0; i < count(restored); ++i) {
            pObj item = __GET_ARRAY_EL(restored, i);
            if (count(item) != 4) { // a save cut short
                saved.push_back({-1, "<" + std::to_string(count(item)) + " values>"});
                continue;
            }
            auto at = [&](int32_t j) { return __GET_ARRAY_EL(item, j); };
            saved.push_back({numberOf(at(0)), textOf(at(1)), isTrue(at(2)), numberOf(at(3))});
        }
        if (!saved.empty()) // a restore deletes what it read: saved again for the writer's next run
            ExecDumpArray(restored, text("CRASHARR"));
        return saved;
    }

    void checkIndexes(const std::vector<CrashRow> &rows) {
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
    }

    // The data tool's check of the whole directory, after the open above has mended what
    // a program's open mends.
    void checkWithDataTool() {
#ifdef ZQ_DATA_TOOL
        zq::platform::StartedProcess tool;
        ASSERT_TRUE(zq::platform::startProgramWithArguments(appPath("zq").c_str(),
                                                            {"zq", "check", directory + "/DB"}, tool));
        ASSERT_EQ(zq::platform::waitForExit(tool.process), 0) << "zq check " << directory << "/DB";
#endif
    }

    // Everything as a fresh process opens it after n operations returned.
    void verify(uint32_t n) {
        state.advanceTo(n);
        CrashState after = state;
        after.apply(after.next());
        use("CRASH");
        std::vector<CrashRow> rows = tableRows();
        ASSERT_TRUE(matches(rows, state.rows, after.rows) || matches(rows, after.rows, state.rows))
            << rows.size() << " rows after " << n << " operations, expected " << state.rows.size() << " or "
            << after.rows.size() << "; " << firstDifference(rows, after.rows);
        checkIndexes(rows);
        SavedArray saved = restoredArray();
        ASSERT_TRUE(saved == state.saved || saved == after.saved)
            << "saved array of " << saved.size() << " elements after " << n << " operations";
        __dbCloseAll();
        StorageClose();
        checkWithDataTool();
    }

    CrashState state; // the model after the operations verified so far
};

TEST_F(TableCrashTest, KilledWriterLosesNothingThatReturned) {
    std::string child = appPath("table_crash");
    ASSERT_TRUE(std::filesystem::exists(child)) << child;
    createCrashTable();
    StorageClose();
    std::string progress = directory + "/progress";
    killRepeatedly(child, progress, 1123, [&](uint32_t n) { verify(n); });
    if (!HasFatalFailure()) {
        EXPECT_GT(loggedOperations(progress), 20u);
        std::printf("table crash writer: %u operations over %d kills\n", loggedOperations(progress), crashRounds());
    }
}

} // namespace
