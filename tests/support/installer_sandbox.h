// Test support for the installer: a scratch program directory, install databases, and
// running the real installer and stand-in application as processes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/processes.h"

namespace zq::test {

// One record of an install database.
struct StagedRecord {
    std::string staged;  // path of the staged file
    std::string version;
};

// A fresh directory that stands for the installer's own: ZELQA_PROGRAM_DIR points at it
// (so storage, "inst.txt" and the stand-in application use it) and, on POSIX,
// ZELQA_WINDOW_DIR at a directory inside it, so that window classes of other runs never
// meet this one's.
class InstallerSandbox {
public:
    explicit InstallerSandbox(const std::string &name);
    // The same in a directory `name` made afresh in `parent` (a path as POSIX writes it;
    // under wine the drive Z: maps it), for paths that hold blanks and Latin-1 bytes.
    InstallerSandbox(const std::string &name, const std::string &parent);
    ~InstallerSandbox();
    InstallerSandbox(const InstallerSandbox &) = delete;
    InstallerSandbox &operator=(const InstallerSandbox &) = delete;

    // The path of a file in the sandbox ('/' in `relative` stands for this system's
    // separator); path("") ends with the separator.
    std::string path(const std::string &relative) const;

    // Makes an install database holding the records and closes storage, so that another
    // process finds it in the catalog.
    void createInstallDatabase(const std::string &name, const std::vector<StagedRecord> &records) const;
    // The number of records of a database, or -1 when the catalog does not know it.
    long recordCount(const std::string &name) const;

    // The log's lines, split at line breaks (carriage returns dropped). A log
    // ending in a line break gives no empty last line.
    std::vector<std::string> logLines() const;

    // Overwrites one 32-bit field of a database file's header (little-endian), as a damaged
    // file holds it; storage must be closed.
    void overwriteHeaderField(const std::string &name, long offset, uint32_t value) const;

private:
    std::string dir_; // the sandbox's path as the system writes it, without a final separator
};

// A program built beside the installer: "Tessarin.exe" or "fake_app".
std::string appPath(const std::string &name);
// The stand-in application's program file.
std::string applicationPath();

// Starts the installer with a command line (program name excluded); empty handle on failure.
platform::StartedProcess startInstaller(const std::string &arguments);
// Runs the installer to its end and returns its exit code.
int runInstaller(const std::string &arguments);

// Starts the stand-in application holding its "OO_Window32" window for holdMs and returns
// once the window is there.
platform::StartedProcess startApplication(uint32_t holdMs);

// Polls until the predicate holds or about 60 s have gone; the predicate's last answer.
template <class Predicate>
bool eventually(Predicate predicate) {
    for (int i = 0; i < 600; ++i) {
        if (predicate())
            return true;
        platform::sleepMilliseconds(100);
    }
    return predicate();
}

// Files through the C library, which takes paths in the system's own encoding.
void writeFile(const std::string &path, const std::string &content);
std::string readFile(const std::string &path); // empty when missing
// A text file's content with its carriage returns dropped (Windows writes them).
std::string readText(const std::string &path);
// ASCII letters lowered, as the installer writes paths it has tested.
std::string lower(std::string text);
void copyFile(const std::string &from, const std::string &to);
bool pathExists(const std::string &path); // a file or a directory

} // namespace zq::test
