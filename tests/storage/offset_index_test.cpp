// The offset index at open: damaged indexes and crash leftovers are rebuilt from the file.
#include "support/storage_fixture.h"

#include <filesystem>

using namespace zq::storage_test;

namespace {

class OffsetIndexTest : public StorageTest {
protected:
    // A closed database "idx" of five records "row0!".."row4!" of growing sizes.
    void SetUp() override {
        StorageTest::SetUp();
        DmOpenRef db = makeDatabase("idx");
        for (int i = 0; i < 5; ++i)
            append(db, "row" + std::string(size_t(i + 1), char('0' + i)) + "!");
        DmCloseDatabase(db);
        StorageClose();
        good = fileBytes("idx_OS");
    }

    // Opens "idx" and checks that all five records read back.
    void expectAllRecords() {
        DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, "idx"));
        ASSERT_NE(db, nullptr);
        ASSERT_EQ(DmNumRecords(db), 5u);
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(recordText(db, uint32_t(i)), "row" + std::string(size_t(i + 1), char('0' + i)) + "!");
        DmCloseDatabase(db);
        StorageClose();
        std::vector<uint8_t> index = fileBytes("idx_OS");
        EXPECT_EQ(readU32(index, 16), 40u);
        EXPECT_EQ(std::vector<uint8_t>(index.begin() + 20, index.begin() + 40),
                  std::vector<uint8_t>(good.begin() + 20, good.begin() + 40));
    }

    std::vector<uint8_t> good;
};

TEST_F(OffsetIndexTest, DamagedIndexesAreRebuilt) {
    using Damage = void (*)(std::vector<uint8_t> &);
    std::vector<std::pair<const char *, Damage>> cases = {
        {"entry points elsewhere", [](std::vector<uint8_t> &b) { b[24] += 3; }},
        {"last entry past the data", [](std::vector<uint8_t> &b) { b[36] = 0xF0, b[37] = 0x3F; }},
        {"index cut short", [](std::vector<uint8_t> &b) { b[16] = 28; }},
        {"entries zeroed", [](std::vector<uint8_t> &b) { std::fill(b.begin() + 20, b.begin() + 40, 0); }},
        {"index header wrong", [](std::vector<uint8_t> &b) { b[16] = 0xFF, b[17] = 0xFF, b[18] = 0xFF; }},
    };
    for (auto &[name, damage] : cases) {
        SCOPED_TRACE(name);
        std::vector<uint8_t> bad = good;
        damage(bad);
        writeBytes("idx_OS", bad);
        expectAllRecords();
    }
    std::filesystem::remove(storageFile("idx_OS"));
    expectAllRecords();
}

TEST_F(OffsetIndexTest, CrashLeftoversInTheMainFileAreSorted) {
    std::vector<uint8_t> file = fileBytes("idx");
    uint32_t used = readU32(file, 16);
    // Bytes behind the used size: an append that never committed.
    std::fill(file.begin() + used, file.begin() + used + 40, 0x33);
    writeBytes("idx", file);
    expectAllRecords();
    file = fileBytes("idx");
    EXPECT_EQ(file[used], 0);
    EXPECT_EQ(readU32(file, 16), used);

    // A committed record whose count was never raised is found by the walk.
    file[8] = 4;
    writeBytes("idx", file);
    expectAllRecords();
    EXPECT_EQ(readU32(fileBytes("idx"), 8), 5u);
}

TEST_F(OffsetIndexTest, ACorruptHeaderEndsInARuntimeErrorNotACrash) {
    std::vector<uint8_t> file = fileBytes("idx");
    file[4] = 0xF0, file[5] = 0xFF, file[6] = 0xFF, file[7] = 0xFF; // app info far beyond the file
    writeBytes("idx", file);
    EXPECT_EXIT(DmOpenDatabase(0, DmFindDatabase(0, "idx")), ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(sawBox("ARGUMENT ERROR!"));
}

} // namespace
