// Process facts on POSIX: the program's path from /proc/self/exe, the environment, and exit.
#include "platform/process.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace zq::platform {
namespace {

// The whole path, however long: a buffer the link fills completely may have cut it, so it
// grows until the link fits with room to spare.
std::string executablePath() {
    std::string path(PATH_MAX, '\0');
    for (;;) {
        ssize_t n = readlink("/proc/self/exe", path.data(), path.size());
        if (n <= 0)
            return "./program";
        if (static_cast<size_t>(n) < path.size()) {
            path.resize(static_cast<size_t>(n));
            return path;
        }
        path.resize(path.size() * 2);
    }
}

} // namespace

char directorySeparator() { return '/'; }

std::string programDirectory() {
    if (const char *dir = std::getenv("ZELQA_PROGRAM_DIR"); dir && *dir)
        return dir;
    std::string full = executablePath();
    return full.substr(0, full.rfind('/'));
}

std::string programPath() {
    std::string full = executablePath();
    return programDirectory() + '/' + full.substr(full.rfind('/') + 1);
}

void setEnvironment(const char *name, const char *value) {
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

bool standardErrorIsTerminal() { return isatty(2) == 1; }

void exitProcess(int code) {
    std::fflush(nullptr);
    _exit(code);
}

} // namespace zq::platform
