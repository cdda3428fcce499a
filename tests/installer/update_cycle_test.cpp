// The update cycle with real programs: the sample application hands off to the installer at
// the end of its run, the installer puts its successor in place, the successor runs.
#include "platform/process.h"
#include "platform/processes.h"
#include "platform/windows.h"
#include "support/installer_sandbox.h"
#include "support/unattended.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace zq::test {
namespace {

namespace fs = std::filesystem;

const char kDatabase[] = "ZELQAINST.tLog";
const char kWaiting[] = "Aguardando libera\347\343o de mem\363ria!";

bool onPosix() { return platform::directorySeparator() == '/'; }
std::string programName(const std::string &base) { return onPosix() ? base : base + ".exe"; }

// Runs the sample application of the build with the sandbox as its directory.
int runSample(const std::string &arguments) {
    std::string program = appPath(programName("sample"));
    std::string line = platform::commandLineName(program) + " " + arguments;
    platform::StartedProcess started;
    if (!platform::startProgram(program.c_str(), line.c_str(), started))
        return -1;
    return platform::waitForExit(started.process);
}

class HandOff : public ::testing::Test {
protected:
    // One directory per test: tests may run side by side.
    InstallerSandbox box_{std::string("hand-off-") + ::testing::UnitTest::GetInstance()->current_test_info()->name()};
    std::string dir_ = box_.path("") ;
    std::string installer_ = box_.path("Tessarin.exe");

    std::vector<std::string> handOffHead() const {
        return {"DIRAPP=" + dir_, "Finding EXE=" + installer_};
    }
};

TEST_F(HandOff, WithoutShutdownNothingIsWrittenOrStarted) {
    fs::copy_file(appPath("Tessarin.exe"), installer_);
    box_.createInstallDatabase(kDatabase, {{box_.path("x~"), "1"}});
    EXPECT_EQ(runSample(""), 0);
    EXPECT_FALSE(pathExists(box_.path("inst.txt")));
    EXPECT_EQ(box_.recordCount(kDatabase), 1);
}

TEST_F(HandOff, MissingOrEmptyInstallerEndsAfterTheSearch) {
    writeFile(box_.path("inst.txt"), "an earlier run\n");
    box_.createInstallDatabase(kDatabase, {{box_.path("x~"), "1"}});
    EXPECT_EQ(runSample("--shutdown"), 0);
    EXPECT_EQ(box_.logLines(), handOffHead()); // a fresh log: the earlier run's line is gone

    writeFile(installer_, "");
    EXPECT_EQ(runSample("--shutdown"), 0);
    EXPECT_EQ(box_.logLines(), handOffHead());
    EXPECT_EQ(box_.recordCount(kDatabase), 1);
}

TEST_F(HandOff, InstallerWithoutInstallDatabaseIsNotStarted) {
    fs::copy_file(appPath("Tessarin.exe"), installer_);
    EXPECT_EQ(runSample("--shutdown"), 0);
    std::vector<std::string> expected = handOffHead();
    expected.push_back("EXE=" + installer_ + " OK");
    EXPECT_EQ(box_.logLines(), expected);
}

// An installer path the installer could not take itself is refused at the hand-off,
// before anything is looked up or started.
TEST_F(HandOff, ProgramDirectoryTooLongForTheInstallerIsRefused) {
    std::string sep(1, platform::directorySeparator());
    std::string dir = dir_ + std::string(256 - dir_.size() - 1 - std::string("Tessarin.exe").size(), 'd');
    fs::create_directories(dir);
    fs::copy_file(appPath("Tessarin.exe"), dir + sep + "Tessarin.exe");
    platform::setEnvironment("ZELQA_PROGRAM_DIR", dir.c_str());

    EXPECT_EQ(runSample("--shutdown"), 0);

    EXPECT_EQ(readText(dir + sep + "inst.txt"),
              "DIRAPP=" + dir + sep + "\nCaminho longo demais: " + dir + sep + "Tessarin.exe\n");
}

// Copies the programs an installed application has into the sandbox.
void installApplication(const InstallerSandbox &box) {
    for (const std::string &file : {programName("sample"), std::string(ZQ_RUNTIME_FILE), std::string("Tessarin.exe")})
        copyFile(appPath(file), box.path(file));
}

// The application lives where blanks and a Latin-1 byte are in its path, as under
// "C:\Program Files": the hand-off's command line still reaches the installer whole.
TEST(UpdateCycle, ApplicationStagesItsSuccessorAndComesBackAsIt) {
    InstallerSandbox box("Update Cycle \351", std::string(ZQ_TEST_BIN_DIR) + "/Program Files");
    installApplication(box);
    std::string dir = box.path("");
    std::string app = box.path(programName("sample"));
    std::string successor = appPath(programName("sample-next"));
    std::string version1 = readFile(app);

    std::string program = app, line = platform::commandLineName(app) + " --update-from " + successor + " 2.0";
    platform::StartedProcess started;
    ASSERT_TRUE(platform::startProgram(program.c_str(), line.c_str(), started));
    EXPECT_EQ(platform::waitForExit(started.process), 0);
    ASSERT_TRUE(eventually([&] { return readFile(box.path("inst.txt")).find("Install END") != std::string::npos; }));
    ASSERT_TRUE(eventually([&] { return readFile(box.path("sample.log")).find("version 2.0 table") != std::string::npos; }));
    // Under Windows window classes are shared by every program: let the installer and the
    // new version end before the next test looks for their windows.
    EXPECT_TRUE(eventually([] { return !platform::windowExists("Tessarin") && !platform::windowExists("OO_Window32"); }));

    // Version 2.0 finds in the table every row version 1.0 kept.
    EXPECT_EQ(readText(box.path("sample.log")), "version 1.0 started\nversion 1.0 table: 1.0 started\n"
                                                "version 1.0 staged its successor and shuts down\n"
                                                "version 2.0 started\n"
                                                "version 2.0 table: 1.0 started, 1.0 staged, 2.0 started\n");
    EXPECT_EQ(readFile(app), readFile(successor));
    EXPECT_EQ(readFile(box.path("_" + programName("sample"))), version1);
    EXPECT_FALSE(pathExists(app + "~"));
    EXPECT_EQ(box.recordCount(kDatabase), -1);

    std::string installer = box.path("Tessarin.exe");
    std::vector<std::string> expected = {
        "DIRAPP=" + dir, "Finding EXE=" + installer, "EXE=" + installer + " OK",
        "CreateProcess Begin " + installer + " .", std::string("Param=") + kDatabase, "CreateProcess OK",
        std::string("LOGFILE=") + kDatabase, "Install BEGIN", std::string("PARAM1=") + kDatabase, "PARAM2=" + app,
        kWaiting, "Mem\363ria liberada", std::string("!Procurando ") + kDatabase + "!",
        std::string("ENCONTROU ") + kDatabase, "INSTALANDO " + app + "~",
        "RENOMEANDO " + app + " para " + box.path("_" + programName("sample")),
        "Criado backup do arquivo " + app, "COPIANDO " + app + "~ para " + app,
        "Instalado o arquivo " + app + " vers\343o 2.0", ""};
    std::vector<std::string> lines = box.logLines();
    // The installer waits as many passes as the application takes to go: keep one.
    auto firstWait = std::find(lines.begin(), lines.end(), kWaiting);
    ASSERT_NE(firstWait, lines.end());
    lines.erase(std::remove(firstWait + 1, lines.end(), std::string(kWaiting)), lines.end());
    std::string whole;
    for (const std::string &l : lines)
        whole += l + "\n";
    ASSERT_EQ(lines.size(), expected.size() + 2) << whole;
    for (size_t i = 0; i < expected.size(); ++i) // the installer lowers paths it has tested
        EXPECT_EQ(lower(lines[i]), lower(expected[i])) << "line " << i;
    EXPECT_EQ(lines[expected.size()].rfind(" CreateProcess " + app + " OK. hProcess=", 0), 0u) << lines[expected.size()];
    EXPECT_EQ(lines.back(), "Install END");
}

} // namespace
} // namespace zq::test
