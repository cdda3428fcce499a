// Child processes for the storage crash test: POSIX spawn and kill, or Win32 create and terminate.
#include "support/storage_process.h"

#include <chrono>
#include <thread>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
extern char **environ;
#endif

namespace zq::storage_test {

void sleepMilliseconds(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

#ifdef _WIN32

intptr_t startProcess(const std::string &program, const std::string &argument) {
    std::string line = "\"" + program + "\" \"" + argument + "\"";
    STARTUPINFOA si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
        return -1;
    CloseHandle(pi.hThread);
    return reinterpret_cast<intptr_t>(pi.hProcess);
}

void killProcess(intptr_t process) {
    HANDLE h = reinterpret_cast<HANDLE>(process);
    TerminateProcess(h, 9);
    WaitForSingleObject(h, INFINITE);
    CloseHandle(h);
}

std::string appPath(const std::string &name) {
    std::string path = std::string(ZQ_APPS_BIN_DIR) + "/" + name + ".exe";
    for (char &c : path)
        if (c == '/')
            c = '\\';
    // A build directory given as a Unix path (cross builds run under wine) lies on Z:.
    return path[0] == '\\' ? "Z:" + path : path;
}

int crashRounds() { return 6; }

#else

intptr_t startProcess(const std::string &program, const std::string &argument) {
    pid_t pid = -1;
    std::string arg0 = program, arg1 = argument;
    char *argv[] = {arg0.data(), arg1.data(), nullptr};
    if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, environ) != 0)
        return -1;
    return pid;
}

void killProcess(intptr_t process) {
    kill(pid_t(process), SIGKILL);
    int status = 0;
    waitpid(pid_t(process), &status, 0);
}

std::string appPath(const std::string &name) { return std::string(ZQ_APPS_BIN_DIR) + "/" + name; }

int crashRounds() { return 25; }

#endif

} // namespace zq::storage_test
