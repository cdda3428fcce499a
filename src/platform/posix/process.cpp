// Process facts on POSIX: the program's directory from /proc/self/exe, and exit.
#include "platform/process.h"

#include <cstdio>
#include <cstdlib>
#include <climits>
#include <unistd.h>

namespace zq::platform {

char directorySeparator() { return '/'; }

std::string programDirectory() {
    if (const char *dir = std::getenv("ZELQA_PROGRAM_DIR"); dir && *dir)
        return dir;
    char path[PATH_MAX] = {};
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0)
        return ".";
    std::string full(path, static_cast<size_t>(n));
    return full.substr(0, full.rfind('/'));
}

void setEnvironment(const char *name, const char *value) {
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

void exitProcess(int code) {
    std::fflush(nullptr);
    _exit(code);
}

} // namespace zq::platform
