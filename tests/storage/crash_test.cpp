// A writer killed at random moments: every record whose commit returned survives intact.
#include "apps/storage_crash/crash_payload.h"
#include "support/storage_fixture.h"
#include "support/storage_process.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <cstring>

using namespace zq::storage_test;

namespace {

class CrashTest : public StorageTest {
protected:
    // How many records the child saw committed, from its progress file.
    uint32_t committed() {
        std::ifstream in(directory + "/progress", std::ios::binary);
        std::vector<char> bytes((std::istreambuf_iterator<char>(in)), {});
        if (bytes.size() < 4)
            return 0;
        uint32_t last;
        std::memcpy(&last, bytes.data() + (bytes.size() / 4 - 1) * 4, 4);
        return last + 1;
    }

    // Opens the database as a fresh process would and checks it against the payloads.
    void verify(uint32_t atLeast) {
        LocalID id = DmFindDatabase(0, "crash.db");
        if (atLeast == 0 && id == 0) {
            StorageClose(); // killed before its first commit
            return;
        }
        DmOpenRef db = DmOpenDatabase(0, id);
        ASSERT_NE(db, nullptr);
        uint32_t count = DmNumRecords(db);
        ASSERT_GE(count, atLeast);
        ASSERT_LE(count, atLeast + 1); // at most the record in flight at the kill
        for (uint32_t k = 0; k < count; ++k)
            ASSERT_EQ(recordText(db, k), crashPayload(k)) << "record " << k;
        DmCloseDatabase(db);
        StorageClose();
        // The index names each record's header, back to back, to the used size.
        std::vector<uint8_t> file = fileBytes("crash.db"), index = fileBytes("crash.db_OS");
        ASSERT_EQ(readU32(index, 16), 20 + 4 * count);
        uint32_t expected = 20;
        for (uint32_t k = 0; k < count; ++k) {
            ASSERT_EQ(readU32(index, 20 + 4 * k), expected);
            ASSERT_EQ(readU16(file, expected + 6), 0xFFFF);
            expected += 8 + readU16(file, expected + 2);
        }
        ASSERT_EQ(readU32(file, 16), expected);
    }
};

TEST_F(CrashTest, KilledWritersLoseNoCommittedRecord) {
    std::string child = appPath("storage_crash");
    ASSERT_TRUE(std::filesystem::exists(child)) << child;
    std::mt19937 random(12345);
    int rounds = crashRounds();
    for (int round = 0; round < rounds; ++round) {
        zq::platform::StartedProcess process = startProcess(child, directory + "/progress");
        ASSERT_TRUE(process.process);
        zq::platform::sleepMilliseconds(rounds > 10 ? 5 + int(random() % 40) : 400 + int(random() % 1200));
        killProcess(process);
        SCOPED_TRACE("round " + std::to_string(round));
        verify(committed());
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(committed(), 0u);
}

} // namespace
