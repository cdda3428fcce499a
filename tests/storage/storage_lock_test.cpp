// One process at a time: storage held here refuses other programs, which otherwise queue.
#include "support/storage_fixture.h"
#include "support/storage_process.h"

#include "platform/process.h"
#include "platform/processes.h"

#include <filesystem>
#include <fstream>

using namespace zq::storage_test;

namespace {

class StorageLockTest : public StorageTest {
protected:
    // Starts stage-update on this test's directory with the given command.
    zq::platform::StartedProcess stageUpdate(const std::string &command) {
        std::string program = appPath("stage-update");
        std::string line = program + " --app " + directory + " " + command;
        zq::platform::StartedProcess started;
        EXPECT_TRUE(zq::platform::startProgram(program.c_str(), line.c_str(), started)) << line;
        return started;
    }

    int runStageUpdate(const std::string &command) { return zq::platform::waitForExit(stageUpdate(command).process); }
};

TEST_F(StorageLockTest, AnotherProgramIsRefusedWhileStorageIsOpenHere) {
    ASSERT_EQ(DmCreateDatabase(0, "mine", 0x5A454C51u, 0x44415441u, 0), dmErrNone);
    std::vector<uint8_t> catalog = fileBytes("catalog.plm");
    EXPECT_EQ(runStageUpdate("list"), 3); // storage failure, after a short wait
    EXPECT_EQ(fileBytes("catalog.plm"), catalog);
    StorageClose();
    EXPECT_EQ(runStageUpdate("list"), 0);
}

TEST_F(StorageLockTest, ProgramsStartedTogetherTakeTurnsAndLoseNothing) {
    std::ofstream(std::filesystem::path(directory) / "new.bin") << "new contents";
    std::string source = (std::filesystem::path(directory) / "new.bin").string();
    std::vector<zq::platform::StartedProcess> adds;
    for (int k = 0; k < 6; ++k)
        adds.push_back(stageUpdate("add " + source + " target" + std::to_string(k) + ".bin 2." + std::to_string(k)));
    for (auto &add : adds)
        EXPECT_EQ(zq::platform::waitForExit(add.process), 0);
    DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, "ZELQAINST.tLog"));
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(DmNumRecords(db), 6u);
}

TEST_F(StorageLockTest, AProgramDirectoryTooLongForItsPathsIsRefusedNotCut) {
    std::string longer = directory + zq::platform::directorySeparator() + std::string(130, 'd');
    EXPECT_EXIT(
        {
            zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", longer.c_str());
            StorageStart();
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(sawBox("Caminho muito grande: " + longer));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(directory) / "DB"));
}

} // namespace
