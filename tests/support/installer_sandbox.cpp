// Test support for the installer: sandbox directory, install databases, processes.
#include "support/installer_sandbox.h"

#include <fstream>
#include <sstream>

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

InstallerSandbox::InstallerSandbox(const std::string &name, const std::string &parent)
    : dir_(parent.empty() ? freshDirectory(name) : std::filesystem::path(nativePath(parent)) / name) {
    if (!parent.empty()) {
        std::filesystem::remove_all(dir_);
        std::filesystem::create_directories(dir_);
    }
    platform::setEnvironment("ZELQA_PROGRAM_DIR", dir_.string().c_str());
    std::filesystem::create_directories(dir_ / "windows");
    platform::setEnvironment("ZELQA_WINDOW_DIR", (dir_ / "windows").string().c_str());
}

InstallerSandbox::~InstallerSandbox() {
    StorageClose();
    platform::setEnvironment("ZELQA_WINDOW_DIR", nullptr);
    platform::setEnvironment("ZELQA_PROGRAM_DIR", nullptr);
}

std::string InstallerSandbox::path(const std::string &relative) const {
    return nativePath((dir_ / relative).string());
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
    std::istringstream in(readFile((dir_ / "inst.txt").string()));
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
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

void writeFile(const std::string &path, const std::string &content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

bool pathExists(const std::string &path) { return std::filesystem::exists(path); }

} // namespace zq::test
