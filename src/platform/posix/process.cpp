// Process facts on POSIX: the program's path from /proc/self/exe, the environment, and exit.
#include "platform/process.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace zq::platform {
namespace {

std::string executablePath() {
    char path[PATH_MAX] = {};
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    return n > 0 ? std::string(path, static_cast<size_t>(n)) : std::string("./program");
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

void exitProcess(int code) {
    std::fflush(nullptr);
    _exit(code);
}

} // namespace zq::platform
