// Window classes on POSIX: a shared flock on a per-user class file stands for a window.
#include "platform/windows.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <utility>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files.h"
#include "platform/processes.h"
#include "platform/system_error.h"

namespace zq::platform {

namespace {

struct ClassLock {
    int fd; // open class file holding a shared flock
};

std::string windowDirectory() {
    if (const char *dir = std::getenv("ZELQA_WINDOW_DIR"); dir && *dir)
        return dir;
    if (const char *run = std::getenv("XDG_RUNTIME_DIR"); run && *run)
        return std::string(run) + "/zelqa-windows";
    return "/tmp/zelqa-windows-" + std::to_string(getuid());
}

// Class names compare without regard to case; bytes that are not plainly safe in a file
// name are written as %XX. The suffix tells a window's file from an instance claim's.
std::string classFile(const char *className, const char *suffix = ".class") {
    static const char hex[] = "0123456789ABCDEF";
    std::string name;
    for (const unsigned char *p = reinterpret_cast<const unsigned char *>(className); *p; ++p) {
        unsigned char c = static_cast<unsigned char>(std::tolower(*p));
        if (std::isalnum(c) || c == '_' || c == '-' || c == '.') {
            name += static_cast<char>(c);
        } else {
            name += '%';
            name += hex[c >> 4];
            name += hex[c & 15];
        }
    }
    return windowDirectory() + "/" + name + suffix;
}

// The class file's path, its directory made when missing.
std::string classFileToHold(const char *className, const char *suffix) {
    mkdir(windowDirectory().c_str(), 0700); // an existing directory is fine
    return classFile(className, suffix);
}

// The class file opened (made when missing) for locking; -1 when impossible.
int openClassFile(const char *className) {
    return open(classFileToHold(className, ".class").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
}

int lockFile(int fd, int operation) {
    int rc;
    while ((rc = flock(fd, operation)) != 0 && errno == EINTR) {
    }
    return rc;
}

} // namespace

void *createNativeWindow(const char *className, const char *) {
    if (!className || !*className)
        return nullptr;
    int fd = openClassFile(className);
    if (fd < 0)
        return nullptr;
    if (lockFile(fd, LOCK_SH) != 0) {
        close(fd);
        return nullptr;
    }
    return new ClassLock{fd};
}

void destroyNativeWindow(void *window) noexcept {
    auto *lock = static_cast<ClassLock *>(window);
    if (!lock)
        return;
    close(lock->fd); // drops the flock; the file stays for the next holder
    delete lock;
}

bool windowExists(const char *className) {
    if (!className || !*className)
        return false;
    int fd = open(classFile(className).c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    // An exclusive lock is refused exactly while some holder keeps its shared lock.
    bool held = flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(fd);
    return held;
}

bool bringWindowForward(const char *className) { return windowExists(className); }

// The claim is the class's ".instance" file opened exclusively: the kernel grants it to one
// process at a time, without waiting, and drops it with its process.
bool claimInstance(const char *className, InstanceClaim &claim) {
    claim = InstanceClaim();
    if (!className || !*className)
        return true;
    File file = openExclusive(classFileToHold(className, ".instance"));
    if (!file.valid())
        return lastSystemError() != EWOULDBLOCK; // held elsewhere, or no place for a claim
    claim = InstanceClaim(new File(std::move(file)));
    return true;
}

void releaseNativeClaim(void *claim) noexcept { delete static_cast<File *>(claim); }

void serveWindows(uint32_t ms) { sleepMilliseconds(ms); }

} // namespace zq::platform
