// The installer run end to end: the real Tessarin.exe against real files, databases and
// an application window held by another process.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "platform/process.h"
#include "platform/windows.h"
#include "support/installer_sandbox.h"
#include "support/unattended.h"
#include "zelqa/storage.h"
#include "zelqa/windows.h"

namespace zq::test {
namespace {

const char kDatabase[] = "ZELQAINST.tLog";
const char kWaiting[] = "Aguardando libera\347\343o de mem\363ria!";

long countLines(const std::vector<std::string> &lines, const std::string &line) {
    return std::count(lines.begin(), lines.end(), line);
}

bool hasLineStarting(const std::vector<std::string> &lines, const std::string &start) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string &l) { return l.rfind(start, 0) == 0; });
}

// The numbers of a relaunch line, in the order the line gives them.
struct RelaunchNumbers {
    long process, thread, processId, threadId;
};

bool parseRelaunch(const std::string &line, const std::string &program, RelaunchNumbers &n) {
    std::string head = " CreateProcess " + program + " OK. ";
    if (line.rfind(head, 0) != 0)
        return false;
    char end = 0;
    int got = std::sscanf(line.c_str() + head.size(), "hProcess=%ld, hThread=%ld, dwProcessId=%ld,dwThreadId =%ld%c",
                          &n.process, &n.thread, &n.processId, &n.threadId, &end);
    return got == 4;
}

// Stages one file of the sandbox (its content in "name~") in a fresh install database and
// returns the file's path.
std::string stageOne(const InstallerSandbox &box, const std::string &name, const std::string &content) {
    std::string file = box.path(name);
    writeFile(file + "~", content);
    box.createInstallDatabase(kDatabase, {{file + "~", "1"}});
    return file;
}

TEST(installerRun, FullRunMovesFilesKeepsBackupsAndStartsTheApplicationAgain) {
    InstallerSandbox box("install-full");
    std::filesystem::create_directories(box.path("Files"));
    std::string app = box.path("Files/App.bin"), data = box.path("Files/New.dat");
    std::string empty = box.path("Files/Empty.txt"), missing = box.path("Files/Missing.txt");
    writeFile(app + "~", "new app");
    writeFile(app, "old app");
    writeFile(box.path("Files/_App.bin"), "older app");
    writeFile(data + "~", "new data");
    writeFile(empty + "~", "");
    writeFile(empty, "kept");
    box.createInstallDatabase(kDatabase, {{app + "~", "2.1"}, {data + "~", "1.0"}, {empty + "~", "3"},
                                          {missing + "~", "4"}});
    platform::StartedProcess window = startApplication(1500);
    ASSERT_TRUE(window.process);

    ASSERT_EQ(runInstaller(std::string(kDatabase) + " " + applicationPath()), 0);
    platform::waitForExit(window.process);

    // Files moved into place; the previous backup replaced; the empty staged file skipped.
    EXPECT_EQ(readFile(app), "new app");
    EXPECT_EQ(readFile(box.path("Files/_App.bin")), "old app");
    EXPECT_FALSE(pathExists(app + "~"));
    EXPECT_EQ(readFile(data), "new data");
    EXPECT_FALSE(pathExists(box.path("Files/_New.dat")));
    EXPECT_TRUE(pathExists(empty + "~"));
    EXPECT_EQ(readFile(empty), "kept");
    EXPECT_EQ(box.recordCount(kDatabase), -1);
    EXPECT_TRUE(pathExists(box.path("DB/catalog.bck")));

    // The log, the waiting lines (as many as the window took) counted apart.
    std::vector<std::string> lines = box.logLines();
    long waits = countLines(lines, kWaiting);
    EXPECT_GE(waits, 1);
    EXPECT_LE(waits, 40);
    lines.erase(std::remove(lines.begin(), lines.end(), std::string(kWaiting)), lines.end());
    ASSERT_GE(lines.size(), 3u);
    RelaunchNumbers n{};
    ASSERT_TRUE(parseRelaunch(lines[lines.size() - 2], applicationPath(), n)) << lines[lines.size() - 2];
    lines[lines.size() - 2] = "<relaunch>";
    std::vector<std::string> expected = {
        "Install BEGIN",
        "PARAM1=ZELQAINST.tLog",
        "PARAM2=" + applicationPath(),
        "Mem\363ria liberada",
        "!Procurando ZELQAINST.tLog!",
        "ENCONTROU ZELQAINST.tLog",
        "INSTALANDO " + app + "~",
        "RENOMEANDO " + app + " para " + box.path("Files/_App.bin"),
        "Criado backup do arquivo " + lower(app),
        "COPIANDO " + lower(app + "~") + " para " + lower(app),
        "Instalado o arquivo " + lower(app) + " vers\343o 2.1",
        "INSTALANDO " + data + "~",
        "RENOMEANDO " + data + " para " + box.path("Files/_New.dat"),
        "COPIANDO " + lower(data + "~") + " para " + data,
        "Instalado o arquivo " + data + " vers\343o 1.0",
        "INSTALANDO " + empty + "~",
        "INSTALANDO " + missing + "~",
        "",
        "<relaunch>",
        "Install END",
    };
    ASSERT_EQ(lines.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(lines[i], expected[i]) << "line " << i;

    // The application really started again, as the process the log names.
    std::string marker = box.path("relaunched.txt");
    ASSERT_TRUE(eventually([&] { return !readFile(marker).empty(); }));
    EXPECT_EQ(std::stol(readFile(marker)), n.processId);
}

// The last record that reached a decision decides the relaunch. A target that is a
// directory cannot be replaced, so its record fails; a directory counts as absent, so its
// path is not lowered in the log.
TEST(installerRun, LastDecidedRecordDecidesTheRelaunch) {
    struct Case {
        bool goodFirst;
        bool relaunched;
    };
    for (Case c : {Case{true, false}, Case{false, true}}) {
        SCOPED_TRACE(c.goodFirst ? "installed, then failed" : "failed, then installed");
        InstallerSandbox box("install-order");
        std::string good = box.path("Good.txt"), bad = box.path("Bad");
        writeFile(good + "~", "good");
        writeFile(bad + "~", "bad");
        std::filesystem::create_directories(bad);
        StagedRecord goodRecord{good + "~", "1"}, badRecord{bad + "~", "9"};
        box.createInstallDatabase(kDatabase, c.goodFirst ? std::vector{goodRecord, badRecord}
                                                         : std::vector{badRecord, goodRecord});
        std::string program = box.path("no such program");

        ASSERT_EQ(runInstaller(std::string(kDatabase) + " " + program), 0);

        std::vector<std::string> lines = box.logLines();
        EXPECT_EQ(readFile(good), "good");
        EXPECT_EQ(countLines(lines, "Falhou Instala\347\343o do arquivo " + bad + " vers\343o 9"), 1);
        EXPECT_TRUE(pathExists(bad + "~"));
        EXPECT_EQ(box.recordCount(kDatabase), -1);
        // PARAM2 keeps its blanks and names a file that is not there.
        EXPECT_EQ(countLines(lines, "CreateProcess NOK " + program), c.relaunched ? 1 : 0);
        EXPECT_FALSE(hasLineStarting(lines, " CreateProcess"));
        EXPECT_EQ(lines.back(), "Install END");
    }
}

// What a run killed between setting the old file aside and moving the new one in leaves:
// no file at the target, the old version as the backup, and, unless it went since, the
// staged file. The next run finishes the install, or puts the old file back. An empty
// command line names the default database and no program: nothing is started again.
TEST(installerRun, RunAfterAnInterruptedOneFinishesItFromTheFiles) {
    InstallerSandbox box("install-interrupted");
    std::filesystem::create_directories(box.path("Files"));
    std::string finish = box.path("Files/Prog.bin"), undo = box.path("Files/Data.bin");
    writeFile(box.path("Files/_Prog.bin"), "old prog");
    writeFile(finish + "~", "new prog");
    writeFile(box.path("Files/_Data.bin"), "old data");
    box.createInstallDatabase(kDatabase, {{finish + "~", "2"}, {undo + "~", "3"}});

    ASSERT_EQ(runInstaller(""), 0);

    EXPECT_EQ(readFile(finish), "new prog");
    EXPECT_EQ(readFile(box.path("Files/_Prog.bin")), "old prog");
    EXPECT_FALSE(pathExists(finish + "~"));
    EXPECT_EQ(readFile(undo), "old data");
    EXPECT_FALSE(pathExists(box.path("Files/_Data.bin")));
    EXPECT_EQ(box.recordCount(kDatabase), -1);
    std::vector<std::string> lines = box.logLines();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[1], "PARAM1=ZELQAINST.tLog");
    EXPECT_EQ(lines[2], "PARAM2=");
    auto first = std::find(lines.begin(), lines.end(), "INSTALANDO " + finish + "~");
    ASSERT_NE(first, lines.end());
    std::vector<std::string> expected = {
        "INSTALANDO " + finish + "~",
        "RENOMEANDO " + finish + " para " + box.path("Files/_Prog.bin"),
        "Mantido backup do arquivo " + finish,
        "COPIANDO " + lower(finish + "~") + " para " + finish,
        "Instalado o arquivo " + finish + " vers\343o 2",
        "INSTALANDO " + undo + "~",
        "Restaurado backup do arquivo " + undo,
        "",
        "Install END",
    };
    EXPECT_EQ(std::vector<std::string>(first, lines.end()), expected);
}

TEST(installerRun, WindowThatNeverGoesStopsTheInstallAfterFortyPasses) {
    InstallerSandbox box("install-stuck");
    std::string file = stageOne(box, "Stuck.txt", "staged");
    void *window = zq_window_create("OO_Window32", "held by the test");
    ASSERT_NE(window, nullptr);

    ASSERT_EQ(runInstaller(std::string(kDatabase) + " " + applicationPath()), 0);
    zq_window_destroy(window);

    std::vector<std::string> expected = {"Install BEGIN", "PARAM1=ZELQAINST.tLog", "PARAM2=" + applicationPath()};
    expected.insert(expected.end(), 40, kWaiting);
    expected.insert(expected.end(), {"Falhou libera\347\343o de mem\363ria!", "", "Install END"});
    EXPECT_EQ(box.logLines(), expected);
    EXPECT_EQ(box.recordCount(kDatabase), 1);
    EXPECT_EQ(readFile(file + "~"), "staged");
    EXPECT_FALSE(pathExists(file));
}

// A database the catalog does not know, and one without records: neither relaunches; the
// empty one is deleted all the same. The log keeps the lines of both runs.
TEST(installerRun, MissingOrEmptyDatabaseEndsWithoutRelaunch) {
    InstallerSandbox box("install-nothing");
    box.createInstallDatabase("EMPTY.tLog", {});

    ASSERT_EQ(runInstaller("OTHER.tLog " + applicationPath()), 0);
    ASSERT_EQ(runInstaller("EMPTY.tLog " + applicationPath()), 0);

    std::vector<std::string> lines = box.logLines();
    EXPECT_EQ(countLines(lines, "Install BEGIN"), 2);
    EXPECT_EQ(countLines(lines, "!Procurando OTHER.tLog!"), 1);
    EXPECT_EQ(countLines(lines, "N\343o encontrou OTHER.tLog!"), 1);
    EXPECT_EQ(countLines(lines, "ENCONTROU EMPTY.tLog"), 1);
    EXPECT_FALSE(hasLineStarting(lines, " CreateProcess"));
    EXPECT_EQ(box.recordCount("EMPTY.tLog"), -1);
}

TEST(installerRun, SecondInstallerFindsTheFirstAndLeavesEverythingAlone) {
    InstallerSandbox box("install-twice");
    std::string file = stageOne(box, "Once.txt", "once");
    platform::StartedProcess window = startApplication(3000);
    platform::StartedProcess first = startInstaller(kDatabase);
    ASSERT_TRUE(first.process);
    ASSERT_TRUE(eventually([&] { return countLines(box.logLines(), "Install BEGIN") == 1; }));
    ASSERT_TRUE(zq_window_exists("Tessarin"));

    EXPECT_EQ(runInstaller(kDatabase), 0);

    EXPECT_EQ(platform::waitForExit(first.process), 0);
    platform::waitForExit(window.process);
    std::vector<std::string> lines = box.logLines();
    EXPECT_EQ(countLines(lines, "Install BEGIN"), 1);
    EXPECT_EQ(countLines(lines, "Install END"), 1);
    EXPECT_EQ(readFile(file), "once");
    EXPECT_FALSE(zq_window_exists("Tessarin"));
}

// Another installer that has claimed its place but not yet made its window is the moment
// two installers started together meet: the second must end there, touching nothing.
TEST(installerRun, ClaimHeldByAnotherInstallerEndsTheRunBeforeItsWindowExists) {
    InstallerSandbox box("install-claimed");
    std::string file = stageOne(box, "Claimed.txt", "staged");
    platform::InstanceClaim claim;
    ASSERT_TRUE(platform::claimInstance("Tessarin", claim));
    ASSERT_TRUE(claim);
    ASSERT_FALSE(zq_window_exists("Tessarin"));

    EXPECT_EQ(runInstaller(kDatabase), 0);

    EXPECT_FALSE(pathExists(box.path("inst.txt")));
    EXPECT_EQ(box.recordCount(kDatabase), 1);
    EXPECT_EQ(readFile(file + "~"), "staged");
}

TEST(installerRun, InstallersStartedTogetherRunOnce) {
    InstallerSandbox box("install-together");
    std::string file = stageOne(box, "Together.txt", "together");
    platform::StartedProcess window = startApplication(1000);
    std::vector<platform::StartedProcess> installers(4);
    for (platform::StartedProcess &installer : installers)
        installer = startInstaller(kDatabase);

    for (platform::StartedProcess &installer : installers)
        EXPECT_EQ(platform::waitForExit(installer.process), 0);
    platform::waitForExit(window.process);
    std::vector<std::string> lines = box.logLines();
    EXPECT_EQ(countLines(lines, "Install BEGIN"), 1);
    EXPECT_EQ(countLines(lines, "Install END"), 1);
    EXPECT_EQ(readFile(file), "together");
}

// The claim goes with its process however it ends, so a killed installer blocks no later one.
TEST(installerRun, KilledInstallerLeavesNoClaimBehind) {
    InstallerSandbox box("install-killed");
    box.createInstallDatabase(kDatabase, {});
    void *window = zq_window_create("OO_Window32", "held by the test"); // the installer waits
    platform::StartedProcess installer = startInstaller(kDatabase);
    ASSERT_TRUE(eventually([&] { return countLines(box.logLines(), kWaiting) > 0; }));
    platform::InstanceClaim claim;
    EXPECT_FALSE(platform::claimInstance("Tessarin", claim));

    platform::terminateProcess(installer.process);
    platform::waitForExit(installer.process);
    zq_window_destroy(window);

    EXPECT_TRUE(platform::claimInstance("Tessarin", claim));
    EXPECT_TRUE(claim);
}

// The "Fatal Error" box goes into the log unseen, and the database that could not be read
// is gone, so that later installs are not stopped by it again.
TEST(installerRun, RuntimeErrorIsLoggedUnseenAndTheUnreadableDatabaseGoes) {
    InstallerSandbox box("install-fatal");
    std::string file = stageOne(box, "Fatal.txt", "staged");
    box.overwriteHeaderField("ZELQAINST.tLog", 4, 0x10000); // app info past the used size
    UnattendedBoxes shownBoxes; // boxes shown the ordinary way would be listed here

    EXPECT_EQ(runInstaller(std::string(kDatabase) + " " + applicationPath()), 0);

    EXPECT_TRUE(shownBoxes.lines().empty());
    std::vector<std::string> lines = box.logLines();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[lines.size() - 4], "[Fatal Error] ARGUMENT ERROR!");
    EXPECT_EQ(lines[lines.size() - 3], "Exclu\355do ZELQAINST.tLog ap\363s erro fatal!");
    EXPECT_EQ(lines[lines.size() - 2], "");
    EXPECT_EQ(lines.back(), "Install END");
    // Opened here, a database left damaged would end this test's process in its runtime error.
    EXPECT_FALSE(pathExists(box.path(std::string("DB/") + kDatabase)));
    EXPECT_EQ(readFile(file + "~"), "staged");
}

// The hand-off starts the installer before the application has closed its storage: the
// installer waits for it like any other program, then installs.
TEST(installerRun, StorageStillHeldByTheApplicationIsWaitedFor) {
    InstallerSandbox box("install-storage-held");
    std::string file = stageOne(box, "Held.txt", "staged");
    ASSERT_NE(DmFindDatabase(0, kDatabase), 0u); // storage open here, as in the closing application
    platform::StartedProcess installer = startInstaller(kDatabase);
    ASSERT_TRUE(eventually([&] { return countLines(box.logLines(), std::string("!Procurando ") + kDatabase + "!"); }));
    StorageClose();

    EXPECT_EQ(platform::waitForExit(installer.process), 0);
    EXPECT_EQ(readFile(file), "staged");
    EXPECT_EQ(countLines(box.logLines(), std::string("ENCONTROU ") + kDatabase), 1);
}

const size_t kLongest = 255; // the longest text the installer takes

// Texts the installer cannot take are refused, never cut: the staged path below, cut to
// 255 bytes, would name another staged file and move it over its target.
TEST(installerRun, RecordsAndProgramTheInstallerCannotTakeAreRefusedNeverCut) {
    InstallerSandbox box("install-refused");
    std::string dir = box.path("");
    std::string cutTarget = dir + std::string(kLongest - dir.size() - 1, 'a');
    writeFile(cutTarget, "kept");
    writeFile(cutTarget + "~", "never staged by this record");
    std::string good = box.path("Good.txt"), tab = box.path("Tab\tName.txt");
    writeFile(good + "~", "good");
    writeFile(tab + "~", "tab"); // Windows takes no tab in a name: then there is no such file
    std::string tabBefore = readFile(tab + "~");
    box.createInstallDatabase(kDatabase, {{cutTarget + "~b~", "1"}, {tab + "~", "2"}, {good + "~", "3\n4"},
                                          {good + "~", "5"}});
    std::string program = box.path(std::string(300, 'p'));

    ASSERT_EQ(runInstaller(std::string(kDatabase) + " " + program), 0);

    EXPECT_EQ(readFile(cutTarget), "kept");
    EXPECT_EQ(readFile(cutTarget + "~"), "never staged by this record");
    EXPECT_EQ(readFile(tab + "~"), tabBefore);
    EXPECT_EQ(readFile(good), "good");
    std::vector<std::string> lines = box.logLines();
    EXPECT_EQ(countLines(lines, "Caminho longo demais: " + program), 1);
    for (int index : {0, 1, 2})
        EXPECT_EQ(countLines(lines, "INSTALANDO Recusado Registro " + std::to_string(index)), 1) << index;
    EXPECT_EQ(countLines(lines, "Instalado o arquivo " + good + " vers\343o 5"), 1);
    EXPECT_FALSE(hasLineStarting(lines, " CreateProcess")); // the last record installed, but no program
    EXPECT_FALSE(hasLineStarting(lines, "CreateProcess"));
}

// A directory whose log path would not fit: nothing is installed, and nothing lands in a
// directory named by a cut path.
TEST(installerRun, ProgramDirectoryTooLongIsRefusedBeforeStorageIsTouched) {
    InstallerSandbox box("install-long-dir");
    std::string top = box.path("");
    std::string dir = top + std::string(kLongest + 1 - std::string("/inst.txt").size() - top.size(), 'd');
    std::filesystem::create_directories(dir);
    platform::setEnvironment("ZELQA_PROGRAM_DIR", dir.c_str());

    EXPECT_EQ(runInstaller(std::string(kDatabase) + " " + applicationPath()), 0);

    std::string sep(1, platform::directorySeparator());
    std::vector<std::string> expected = {"Install BEGIN", "PARAM1=ZELQAINST.tLog", "PARAM2=" + applicationPath(),
                                         "Caminho longo demais: " + dir + sep, "", "Install END"};
    std::string whole;
    for (const std::string &line : expected)
        whole += line + "\n";
    EXPECT_EQ(readText(dir + sep + "inst.txt"), whole);
    EXPECT_FALSE(pathExists(dir + sep + "DB"));
    EXPECT_FALSE(pathExists(top + "inst.txt"));
}

} // namespace
} // namespace zq::test
