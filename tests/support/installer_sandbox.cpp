// Test support for the installer: sandbox directory, install databases, processes.
#include "support/installer_sandbox.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <sstream>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/windows.h"
#include "support/unattended.h"
#include "zelqa/storage.h"

namespace zq::test {

namespace {

constexpr uint32_t fourChars(const char (&code)[5]) {
    return uint32_t(uint8_t(code[0])) << 24 | uint32_t(uint8_t(code[1])) << 16 | uint32_t(uint8_t(code[2])) << 8 |
           uint32_t(uint8_t(code[3]));
}

// A path as this system writes it. Under wine the build directory is a POSIX path, which
// the drive Z: maps.
std::string nativePath(std::string path) {
    if (platform::directorySeparator() == '/')
        return path;
    if (!path.empty() && path[0] == '/')
        path = "Z:" + path;
    for (char &c : path)
        if (c == '/')
            c = '\\';
    return path;
}

// The bytes of one record: staged path, its NUL, one skipped byte, version, its NUL.
std::string recordBytes(const StagedRecord &record) {
    std::string bytes = record.staged;
    bytes += '\0';
    bytes += '#';
    bytes += record.version;
    bytes += '\0';
    return bytes;
}

} // namespace

InstallerSandbox::InstallerSandbox(const std::string &name) : InstallerSandbox(name, "") {}

// Paths are kept as the system's own bytes: under Windows std::filesystem reads narrow
// texts as UTF-8, while the system's calls read them in the ANSI code page, so a Latin-1
// name passes through std::filesystem only when it holds no such byte.
InstallerSandbox::InstallerSandbox(const std::string &name, const std::string &parent) {
    if (parent.empty()) {
        dir_ = nativePath(freshDirectory(name).string());
    } else {
        std::string top = nativePath(parent); // made afresh, with no byte outside ASCII
        std::filesystem::remove_all(top);
        std::filesystem::create_directories(top);
        dir_ = top + platform::directorySeparator() + name;
        platform::createDirectory(dir_);
    }
    platform::setEnvironment("ZELQA_PROGRAM_DIR", dir_.c_str());
    platform::createDirectory(path("windows"));
    platform::setEnvironment("ZELQA_WINDOW_DIR", path("windows").c_str());
}

InstallerSandbox::~InstallerSandbox() {
    StorageClose();
    platform::setEnvironment("ZELQA_WINDOW_DIR", nullptr);
    platform::setEnvironment("ZELQA_PROGRAM_DIR", nullptr);
}

std::string InstallerSandbox::path(const std::string &relative) const {
    return dir_ + platform::directorySeparator() + nativePath(relative);
}

void InstallerSandbox::createInstallDatabase(const std::string &name, const std::vector<StagedRecord> &records) const {
    DmCreateDatabase(0, name.c_str(), fourChars("tLog"), fourChars("DATA"), 0);
    DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name.c_str()));
    if (db) {
        for (const StagedRecord &record : records) {
            std::string bytes = recordBytes(record);
            uint32_t index = dmAppendPosition;
            MemHandle handle = DmNewRecord(db, &index, static_cast<uint32_t>(bytes.size()));
            if (!handle)
                continue;
            DmWrite(MemHandleLock(handle), 0, bytes.data(), static_cast<uint32_t>(bytes.size()));
            MemHandleUnlock(handle);
            DmReleaseRecord(db, index, 1);
        }
        DmCloseDatabase(db);
    }
    StorageClose();
}

long InstallerSandbox::recordCount(const std::string &name) const {
    long count = -1;
    if (LocalID id = DmFindDatabase(0, name.c_str())) {
        if (DmOpenRef db = DmOpenDatabase(0, id)) {
            count = static_cast<long>(DmNumRecords(db));
            DmCloseDatabase(db);
        }
    }
    StorageClose();
    return count;
}

std::vector<std::string> InstallerSandbox::logLines() const {
    std::vector<std::string> lines;
    std::istringstream in(readText(path("inst.txt")));
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string appPath(const std::string &name) { return nativePath(std::string(ZQ_APPS_BIN_DIR) + "/" + name); }

std::string applicationPath() { return appPath(platform::directorySeparator() == '/' ? "fake_app" : "fake_app.exe"); }

platform::StartedProcess startInstaller(const std::string &arguments) {
    platform::StartedProcess started;
    std::string program = appPath("Tessarin.exe");
    std::string name = platform::commandLineName(program);
    std::string line = arguments.empty() ? name : name + " " + arguments;
    platform::startProgram(program.c_str(), line.c_str(), started);
    return started;
}

int runInstaller(const std::string &arguments) {
    platform::StartedProcess started = startInstaller(arguments);
    return started.process ? platform::waitForExit(started.process) : -1;
}

platform::StartedProcess startApplication(uint32_t holdMs) {
    platform::StartedProcess started;
    std::string program = applicationPath();
    std::string line = platform::commandLineName(program) + " " + std::to_string(holdMs);
    if (platform::startProgram(program.c_str(), line.c_str(), started))
        eventually([] { return platform::windowExists("OO_Window32"); });
    return started;
}

void InstallerSandbox::overwriteHeaderField(const std::string &name, long offset, uint32_t value) const {
    const unsigned char bytes[4] = {uint8_t(value), uint8_t(value >> 8), uint8_t(value >> 16), uint8_t(value >> 24)};
    if (std::FILE *file = std::fopen(path("DB/" + name).c_str(), "r+b")) {
        std::fseek(file, offset, SEEK_SET);
        std::fwrite(bytes, 1, 4, file);
        std::fclose(file);
    }
}

void writeFile(const std::string &path, const std::string &content) {
    if (std::FILE *out = std::fopen(path.c_str(), "wb")) {
        std::fwrite(content.data(), 1, content.size(), out);
        std::fclose(out);
    }
}

std::string readFile(const std::string &path) {
    std::string content;
    if (std::FILE *in = std::fopen(path.c_str(), "rb")) {
        char buffer[65536];
        for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, in)) > 0;)
            content.append(buffer, n);
        std::fclose(in);
    }
    return content;
}

std::string readText(const std::string &path) {
    std::string text = readFile(path);
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

std::string lower(std::string text) {
    for (char &c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

void copyFile(const std::string &from, const std::string &to) {
    if (platform::directorySeparator() == '/') {
        std::filesystem::copy_file(from, to); // keeps the mode, so programs stay runnable
        return;
    }
    writeFile(to, readFile(from));
}

bool pathExists(const std::string &path) {
    platform::FoundFile found;
    return platform::findFirstFile(path.c_str(), found);
}

} // namespace zq::test
