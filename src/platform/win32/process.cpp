// Process facts on Windows: the program's directory from GetModuleFileNameA, and exit.
#include "platform/process.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace zq::platform {

char directorySeparator() { return '\\'; }

std::string programDirectory() {
    if (const char *dir = std::getenv("ZELQA_PROGRAM_DIR"); dir && *dir)
        return dir;
    char path[MAX_PATH] = {};
    DWORD n = GetModuleFileNameA(nullptr, path, sizeof path);
    std::string full(path, n);
    size_t cut = full.rfind('\\');
    return cut == std::string::npos ? "." : full.substr(0, cut);
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
