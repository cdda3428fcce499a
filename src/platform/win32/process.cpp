// Process facts on Windows: the program's path from GetModuleFileNameA, the environment, exit.
#include "platform/process.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <io.h>
#include <string>

namespace zq::platform {
namespace {

// The whole path, however long: a buffer the path fills completely may have cut it, so it
// grows until the path fits with room to spare.
std::string executablePath() {
    std::string path(512, '\0');
    for (;;) {
        DWORD n = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (n == 0)
            return std::string();
        if (n < path.size() - 1) {
            path.resize(n);
            return path;
        }
        path.resize(path.size() * 2);
    }
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

bool standardErrorIsTerminal() { return _isatty(_fileno(stderr)) != 0; }

void exitProcess(int code) {
    std::fflush(nullptr);
    ExitProcess(static_cast<UINT>(code));
}

} // namespace zq::platform
