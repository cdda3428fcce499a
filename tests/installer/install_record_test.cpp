// The installer's pieces that need no process: the command line and record reading.
#include <gtest/gtest.h>

#include "installer/command_line.h"
#include "installer/install_record.h"
#include "platform/process.h"

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
    EXPECT_EQ(longOne.program, std::string(400, 'p')); // never cut; the driver refuses it
}

TEST(installerCommandLine, ProgramNameEndsWhereItsQuotesOrTheHandOffsShapeSay) {
    struct Case {
        const char *line, *arguments;
    };
    const Case cases[] = {
        {"", ""},
        {"Tessarin.exe", ""},
        {"Tessarin.exe A.tLog /opt/app", "A.tLog /opt/app"},
        {"Tessarin.exe \t A.tLog", "A.tLog"},
        {"\"C:\\Program Files\\App\\app.exe\" ZELQAINST.tLog C:\\Program Files\\App\\app.exe",
         "ZELQAINST.tLog C:\\Program Files\\App\\app.exe"},
        {"\"C:\\no end", ""},
        // The hand-off's shape without quotes: the name is found again at the line's end.
        {"C:\\Program Files\\App\\app.exe ZELQAINST.tLog C:\\Program Files\\App\\app.exe",
         "ZELQAINST.tLog C:\\Program Files\\App\\app.exe"},
        {"/opt/my app/\351 ZELQAINST.tLog /opt/my app/\351", "ZELQAINST.tLog /opt/my app/\351"},
        {"/opt/my app ZELQAINST.tLog /opt/other app", "app ZELQAINST.tLog /opt/other app"},
        {"a b a", "b a"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(argumentsAfterProgramName(c.line), c.arguments) << '"' << c.line << '"';
}

TEST(installerCommandLine, TextsTooLongOrHoldingControlCharactersAreNotAcceptable) {
    EXPECT_TRUE(acceptableText(""));
    EXPECT_TRUE(acceptableText(std::string(kMaxText, 'a')));
    EXPECT_TRUE(acceptableText("C:\\Program Files\\Caf\351 \377"));
    EXPECT_FALSE(acceptableText(std::string(kMaxText + 1, 'a')));
    for (char c : {'\n', '\r', '\t', '\x01', '\x1f', '\x7f'})
        EXPECT_FALSE(acceptableText(std::string("a") + c + "b")) << int(c);
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

    // Without a separator the backup name is the target's own.
    EXPECT_EQ(readInstallRecord(bytesOf(std::string("name.extX") + '\0')).backup, "name.ext");
    EXPECT_EQ(backupPath(std::string(1, sep) + "n"), std::string(1, sep) + "_n");
}

} // namespace
} // namespace zq::installer
