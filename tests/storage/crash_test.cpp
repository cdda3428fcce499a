// A writer killed at random moments, in appends, growth, removal, compaction and emptying:
// the database always opens holding the records of every step that returned, plus at most
// the step in flight, whole or not at all.
#include "apps/storage_crash/crash_steps.h"
#include "support/storage_fixture.h"
#include "support/storage_process.h"

#include <filesystem>
#include <fstream>
#include <random>

using namespace zq::storage_test;

namespace {

class CrashTest : public StorageTest {
protected:
    std::string progressPath() const { return directory + "/progress"; }

    // The steps the writers have listed as done, in order.
    std::vector<uint32_t> doneSteps() const {
        std::ifstream in(progressPath(), std::ios::binary);
        std::vector<uint32_t> steps;
        for (uint32_t step; in.read(reinterpret_cast<char *>(&step), 4);)
            steps.push_back(step);
        return steps;
    }

    // Lists a step as done, for the step in flight that the database shows was done.
    void listStepAsDone(uint32_t step) const {
        std::ofstream(progressPath(), std::ios::binary | std::ios::app).write(reinterpret_cast<const char *>(&step), 4);
    }

    // The records a fresh process finds, and the file's layout checked along the way.
    std::vector<std::string> recordsOnDisk() {
        std::vector<std::string> records;
        LocalID id = DmFindDatabase(0, "crash.db");
        if (!id) {
            StorageClose(); // killed before the database was made
            return records;
        }
        DmOpenRef db = DmOpenDatabase(0, id);
        EXPECT_NE(db, nullptr);
        for (uint32_t k = 0; db && k < DmNumRecords(db); ++k)
            records.push_back(recordText(db, k));
        DmCloseDatabase(db);
        StorageClose();
        // The index names each record's header, back to back, to the used size. (A row
        // written whole but not yet released is a record too: its live mark says so.)
        std::vector<uint8_t> file = fileBytes("crash.db"), index = fileBytes("crash.db_OS");
        uint32_t expected = 20;
        for (size_t k = 0; k < records.size(); ++k) {
            EXPECT_EQ(readU32(index, 20 + 4 * k), expected) << "entry " << k;
            expected += 8 + readU16(file, expected + 2);
        }
        EXPECT_EQ(readU32(file, 16), expected);
        return records;
    }
};

TEST_F(CrashTest, KilledWritersLoseNoStepThatReturned) {
    std::string child = appPath("storage_crash");
    ASSERT_TRUE(std::filesystem::exists(child)) << child;
    std::mt19937 random(12345);
    int rounds = crashRounds();
    std::vector<std::string> model; // the records after the steps verified so far
    size_t verified = 0;            // steps verified so far
    for (int round = 0; round < rounds; ++round) {
        zq::platform::StartedProcess process = startProcess(child, progressPath());
        ASSERT_TRUE(process.process);
        zq::platform::sleepMilliseconds(rounds > 10 ? 5 + int(random() % 60) : 400 + int(random() % 1200));
        killProcess(process);
        SCOPED_TRACE("round " + std::to_string(round));

        std::vector<uint32_t> done = doneSteps();
        for (size_t i = verified; i < done.size(); ++i)
            applyCrashStep(model, done[i]);
        verified = done.size();
        uint32_t inFlight = done.empty() ? 0 : done.back() + 1;
        std::vector<std::string> withInFlight = model;
        applyCrashStep(withInFlight, inFlight);

        std::vector<std::string> found = recordsOnDisk();
        ASSERT_TRUE(found == model || found == withInFlight)
            << "found " << found.size() << " records, expected " << model.size() << " or " << withInFlight.size()
            << " after step " << inFlight;
        if (found != model) {
            listStepAsDone(inFlight);
            model = withInFlight;
            ++verified;
        }
    }
    EXPECT_GT(verified, size_t(rounds)); // the writers got well past their first steps
}

} // namespace
