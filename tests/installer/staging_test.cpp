// Staging an update: copies beside their targets, the install database, and what is
// refused. A refused or failed staging leaves an earlier one exactly as it was.
#include "installer/staged_copy.h"
#include "platform/process.h"
#include "platform/processes.h"
#include "support/installer_sandbox.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace zq::test {
namespace {

namespace fs = std::filesystem;

class Staging : public ::testing::Test {
protected:
    void SetUp() override { __BeginGlobal(); }
    void TearDown() override {
        installer::setCopyObserver(nullptr);
        __EndGlobal();
    }

    // The staged entries, read through the one-pass listing.
    std::vector<std::string> listed() const {
        std::vector<std::string> lines;
        zq_visit_staged(
            [](const char *staged, const char *version, void *out) {
                static_cast<std::vector<std::string> *>(out)->push_back(std::string(staged) + "\t" + version);
            },
            &lines);
        return lines;
    }

    InstallerSandbox box_{std::string("staging-") + ::testing::UnitTest::GetInstance()->current_test_info()->name()};
};

TEST_F(Staging, StagesListsReplacesAndCancels) {
    writeFile(box_.path("new.bin"), "version two");
    writeFile(box_.path("app.bin"), "version one");
    ASSERT_EQ(zq_stage_file(box_.path("new.bin").c_str(), "app.bin", "2.0"), ZQ_STAGE_OK);
    EXPECT_EQ(readFile(box_.path("app.bin~")), "version two");
    ASSERT_EQ(zq_staged_count(), 1);

    writeFile(box_.path("newer.bin"), "version three");
    writeFile(box_.path("other.bin"), "other");
    ASSERT_EQ(zq_stage_file(box_.path("other.bin").c_str(), "./sub/../other", "1"), ZQ_STAGE_OK);
    ASSERT_EQ(zq_stage_file(box_.path("newer.bin").c_str(), box_.path("app.bin").c_str(), "3.0"), ZQ_STAGE_OK);
    ASSERT_EQ(zq_staged_count(), 2); // staged again: one record per target, the newest
    EXPECT_EQ(listed(), (std::vector<std::string>{box_.path("other~") + "\t1", box_.path("app.bin~") + "\t3.0"}));
    char staged[256], version[256];
    ASSERT_EQ(zq_staged_entry(1, staged, sizeof staged, version, sizeof version), ZQ_STAGE_OK);
    EXPECT_EQ(std::string(staged), box_.path("app.bin~"));
    EXPECT_EQ(std::string(version), "3.0");
    EXPECT_EQ(readFile(box_.path("app.bin~")), "version three");
    EXPECT_EQ(zq_staged_entry(2, staged, sizeof staged, version, sizeof version), ZQ_STAGE_BAD_ARGUMENT);

    EXPECT_EQ(zq_cancel_staged(), ZQ_STAGE_OK);
    EXPECT_FALSE(pathExists(box_.path("app.bin~")));
    EXPECT_EQ(zq_staged_count(), 0);
    EXPECT_EQ(zq_cancel_staged(), ZQ_STAGE_NOTHING_STAGED);
    EXPECT_EQ(readFile(box_.path("app.bin")), "version one");
}

// Every refusal leaves the earlier staging of app.bin, and nothing else, behind.
TEST_F(Staging, RefusesWhatCannotBeInstalledAndKeepsTheEarlierStaging) {
    writeFile(box_.path("empty.bin"), "");
    writeFile(box_.path("new.bin"), "content");
    writeFile(box_.path("old.bin"), "staged before");
    fs::create_directories(box_.path("Sub"));
    ASSERT_EQ(zq_stage_file(box_.path("old.bin").c_str(), "app.bin", "1"), ZQ_STAGE_OK);
    std::string outside = box_.path("") + ".." + platform::directorySeparator() + "outside.bin";
    struct Case {
        const char *newFile;
        std::string target, version;
        int result;
    };
    const Case cases[] = {
        {"missing.bin", "app.bin", "2", ZQ_STAGE_NO_SOURCE},
        {"empty.bin", "app.bin", "2", ZQ_STAGE_NO_SOURCE},
        {"", "app.bin", "2", ZQ_STAGE_NO_SOURCE}, // the directory itself
        {"new.bin", std::string(260, 'a'), "2", ZQ_STAGE_TOO_LONG},
        {"new.bin", "app.bin", std::string(256, '9'), ZQ_STAGE_TOO_LONG},
        {"new.bin", "no-such-dir/app.bin", "2", ZQ_STAGE_CANNOT_COPY},
        {"new.bin", "Sub", "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", "Sub/", "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", ".", "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", "Sub/..", "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", "../outside.bin", "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", outside, "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", "app\nbin", "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", "app\tbin", "2", ZQ_STAGE_BAD_TARGET},
        {"new.bin", "app.bin", "2\n3", ZQ_STAGE_BAD_TARGET},
        {"new.bin", "app.bin", std::string("2\x7f"), ZQ_STAGE_BAD_TARGET},
    };
    for (const Case &c : cases)
        EXPECT_EQ(zq_stage_file(box_.path(c.newFile).c_str(), c.target.c_str(), c.version.c_str()), c.result)
            << '"' << c.target << "\" \"" << c.version << '"';
    EXPECT_EQ(zq_stage_file(nullptr, "app.bin", "1"), ZQ_STAGE_BAD_ARGUMENT);

    EXPECT_EQ(listed(), std::vector<std::string>{box_.path("app.bin~") + "\t1"});
    EXPECT_EQ(readFile(box_.path("app.bin~")), "staged before");
    for (const auto &entry : fs::directory_iterator(box_.path("")))
        EXPECT_TRUE(entry.path().filename() == "new.bin" || entry.path().filename() == "empty.bin" ||
                    entry.path().filename() == "old.bin" || entry.path().filename() == "app.bin~" ||
                    entry.path().filename() == "DB" || entry.path().filename() == "Sub" ||
                    entry.path().filename() == "windows")
            << entry.path();
    EXPECT_TRUE(fs::is_empty(box_.path("Sub")));
}

// The source the test is copying, whose first bytes its observer rewrites once they have
// been copied: the copy then holds no one version of the source.
std::string changingSource;

void rewriteCopiedBytes(uint64_t) {
    std::fstream source(changingSource, std::ios::in | std::ios::out | std::ios::binary);
    source.write("new!", 4);
    installer::setCopyObserver(nullptr);
}

TEST_F(Staging, SourceChangingDuringTheCopyIsRefused) {
    writeFile(box_.path("old.bin"), "staged before");
    ASSERT_EQ(zq_stage_file(box_.path("old.bin").c_str(), "app.bin", "1"), ZQ_STAGE_OK);
    changingSource = box_.path("growing.bin");
    writeFile(changingSource, std::string(200000, 'g')); // several pieces of the copy
    installer::setCopyObserver(rewriteCopiedBytes);

    EXPECT_EQ(zq_stage_file(changingSource.c_str(), "app.bin", "2"), ZQ_STAGE_SOURCE_CHANGED);

    EXPECT_EQ(readFile(box_.path("app.bin~")), "staged before");
    EXPECT_FALSE(pathExists(box_.path("app.bin~.part")));
    EXPECT_EQ(listed(), std::vector<std::string>{box_.path("app.bin~") + "\t1"});
    EXPECT_EQ(zq_stage_file(changingSource.c_str(), "app.bin", "2"), ZQ_STAGE_OK); // once it is still
    EXPECT_TRUE(readFile(box_.path("app.bin~")) == readFile(changingSource));
}

// A header claiming 2^31 records, one flipped byte: listing still reads what the file
// holds, once each, and ends.
TEST_F(Staging, CountTheFileCannotHoldListsTheRecordsThatAreThere) {
    writeFile(box_.path("new.bin"), "content");
    ASSERT_EQ(zq_stage_file(box_.path("new.bin").c_str(), "a.bin", "1"), ZQ_STAGE_OK);
    ASSERT_EQ(zq_stage_file(box_.path("new.bin").c_str(), "b.bin", "2"), ZQ_STAGE_OK);
    StorageClose();
    box_.overwriteHeaderField("ZELQAINST.tLog", 8, 0x80000002);

    EXPECT_EQ(listed(), (std::vector<std::string>{box_.path("a.bin~") + "\t1", box_.path("b.bin~") + "\t2"}));
    EXPECT_EQ(zq_staged_count(), 2);
}

int runStageUpdate(const std::vector<std::string> &arguments) {
    std::string program = appPath(platform::directorySeparator() == '/' ? "stage-update" : "stage-update.exe");
    std::vector<std::string> all = {program};
    all.insert(all.end(), arguments.begin(), arguments.end());
    platform::StartedProcess started;
    if (!platform::startProgramWithArguments(program.c_str(), all, started))
        return -1;
    return platform::waitForExit(started.process);
}

// A damaged install database stops the staging in record storage's runtime error (exit
// status 3) before the new copy is made, so the staged file still matches its record.
TEST(StageUpdate, StorageFailureLeavesTheEarlierStagingAsItWas) {
    InstallerSandbox box("stage-update-damaged");
    writeFile(box.path("v1.bin"), "version one");
    writeFile(box.path("v2.bin"), "version two");
    std::string dir = box.path("");
    ASSERT_EQ(runStageUpdate({"--app", dir, "add", box.path("v1.bin"), "app.bin", "1"}), 0);
    box.overwriteHeaderField("ZELQAINST.tLog", 4, 0x10000); // app info past the used size

    EXPECT_EQ(runStageUpdate({"--app", dir, "add", box.path("v2.bin"), "app.bin", "2"}), 3);

    EXPECT_EQ(readFile(box.path("app.bin~")), "version one");
    EXPECT_FALSE(pathExists(box.path("app.bin~.part")));
}

} // namespace
} // namespace zq::test
