// Process facts on Windows: the program's path from GetModuleFileNameA, the environment, exit.
#include "platform/process.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace zq::platform {
namespace {

std::string executablePath() {
    char path[512] = {};
    DWORD n = GetModuleFileNameA(nullptr, path, sizeof path - 1);
    return std::string(path, n);
}

} // namespace

char directorySeparator() { return '\\'; }

std::string programDirectory() {
    if (const char *dir = std::getenv("ZELQA_PROGRAM_DIR"); dir && *dir)
        return dir;
    std::string full = executablePath();
    size_t cut = full.rfind('\\');
    return cut == std::string::npos ? "." : full.substr(0, cut);
}

std::string programPath() {
    std::string full = executablePath();
    return programDirectory() + '\\' + full.substr(full.rfind('\\') + 1);
}

void setEnvironment(const char *name, const char *value) {
    // _putenv keeps the C runtime's copy, which getenv reads, in step with the process's.
    std::string entry = std::string(name) + "=" + (value ? value : "");
    _putenv(entry.c_str());
    SetEnvironmentVariableA(name, value);
}

void exitProcess(int code) {
    std::fflush(nullptr);
    ExitProcess(static_cast<UINT>(code));
}

} // namespace zq::platform
