// The installer's pieces that need no process: command line, record reading, backup
// names and the existence test.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "installer/command_line.h"
#include "installer/file_exists.h"
#include "installer/install_record.h"
#include "platform/process.h"
#include "support/unattended.h"

namespace zq::installer {
namespace {

TEST(installerCommandLine, SplitsAtTheFirstBlankAndDefaultsTheDatabase) {
    struct Case {
        const char *line, *database, *program;
    };
    const Case cases[] = {
        {"", "ZELQAINST.tLog", ""},
        {"A.tLog", "A.tLog", ""},
        {"A.tLog /opt/app", "A.tLog", "/opt/app"},
        {"A.tLog /opt/app -x  y", "A.tLog", "/opt/app -x  y"},
        {" /opt/app", "ZELQAINST.tLog", "/opt/app"},
        {"A.tLog ", "A.tLog", ""},
    };
    for (const Case &c : cases) {
        Parameters p = splitCommandLine(c.line);
        EXPECT_EQ(p.database, c.database) << '"' << c.line << '"';
        EXPECT_EQ(p.program, c.program) << '"' << c.line << '"';
    }
    Parameters longOne = splitCommandLine("A " + std::string(400, 'p'));
    EXPECT_EQ(longOne.program, std::string(kMaxText, 'p'));
}

std::span<const std::byte> bytesOf(const std::string &s) {
    return std::as_bytes(std::span(s.data(), s.size()));
}

TEST(installerRecord, ReadsStagedPathSkipsOneByteThenVersion) {
    const char sep = platform::directorySeparator();
    std::string dir = std::string("d") + sep + "Sub" + sep;
    std::string bytes = dir + "App.exeX" + '\0' + "\x7f" + "1.2.3" + '\0' + "trailing";
    InstallRecord r = readInstallRecord(bytesOf(bytes));
    EXPECT_EQ(r.staged, dir + "App.exeX");
    EXPECT_EQ(r.target, dir + "App.exe");
    EXPECT_EQ(r.backup, dir + "_App.exe");
    EXPECT_EQ(r.version, "1.2.3");

    // The skipped byte may be anything, a NUL included.
    std::string nulSkip = std::string("a.bX") + '\0' + '\0' + "7" + '\0';
    EXPECT_EQ(readInstallRecord(bytesOf(nulSkip)).version, "7");

    // Texts that run to the record's end stop there; no version without room for one.
    std::string cut = "a.bX";
    InstallRecord c = readInstallRecord(bytesOf(cut));
    EXPECT_EQ(c.staged, "a.bX");
    EXPECT_EQ(c.version, "");
    std::string noNul = std::string("a.bX") + '\0' + '#' + "9.9";
    EXPECT_EQ(readInstallRecord(bytesOf(noNul)).version, "9.9");

    InstallRecord empty = readInstallRecord({});
    EXPECT_EQ(empty.staged, "");
    EXPECT_EQ(empty.target, "");
}

TEST(installerRecord, BackupGoesBeforeTheBaseNameOrEqualsTheTarget) {
    const std::string sep(1, platform::directorySeparator());
    EXPECT_EQ(backupPath("dir" + sep + "name.ext"), "dir" + sep + "_name.ext");
    EXPECT_EQ(backupPath("a" + sep + "b.c" + sep + "n"), "a" + sep + "b.c" + sep + "_n");
    EXPECT_EQ(backupPath(sep + "n"), sep + "_n");
    EXPECT_EQ(backupPath("name.ext"), "name.ext");
}

TEST(installerExistence, CountsOnlyNonEmptyEntriesAndLowersWhatItFinds) {
    auto dir = test::freshDirectory("installer-exists");
    std::ofstream(dir / "Full.TXT") << "x";
    std::ofstream(dir / "Empty.txt");
    std::filesystem::create_directories(dir / "Folder");

    std::string full = (dir / "Full.TXT").string();
    EXPECT_TRUE(fileExists(full));
    EXPECT_EQ(full, [&] {
        std::string l = (dir / "Full.TXT").string();
        for (char &c : l)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return l;
    }());

    for (const char *absent : {"Empty.txt", "Folder", "Missing.txt"}) {
        std::string path = (dir / absent).string();
        const std::string before = path;
        EXPECT_FALSE(fileExists(path)) << absent;
        EXPECT_EQ(path, before) << absent; // not lowered when nothing of size was found
    }
}

} // namespace
} // namespace zq::installer
