// Programs and pauses on Windows: CreateProcessA, WaitForSingleObject, Sleep.
#include "platform/processes.h"

#include <windows.h>

#include <io.h>

namespace zq::platform {

void closeHandle(HandleKind, std::intptr_t handle) noexcept {
    CloseHandle(reinterpret_cast<HANDLE>(handle));
}

bool startProgram(const char *application, const char *commandLine, StartedProcess &out) {
    // All zero but its size and the flags show-window, size, position and forced-off
    // feedback; so the show-window value, position and size are all 0.
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW | STARTF_USESIZE | STARTF_USEPOSITION | STARTF_FORCEOFFFEEDBACK;
    PROCESS_INFORMATION info{};
    std::string line = commandLine ? commandLine : ""; // CreateProcessA may write into it
    if (!CreateProcessA(application, commandLine ? line.data() : nullptr, nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &startup, &info))
        return false;
    out.process = ProcessHandle(reinterpret_cast<std::intptr_t>(info.hProcess), info.dwProcessId);
    out.thread = ThreadHandle(reinterpret_cast<std::intptr_t>(info.hThread), info.dwThreadId);
    return true;
}

bool startProgramWithArguments(const char *application, const std::vector<std::string> &arguments,
                               StartedProcess &out) {
    if (arguments.empty())
        return false;
    std::string line = commandLineName(arguments.front());
    for (size_t i = 1; i < arguments.size(); ++i)
        line += " " + arguments[i];
    return startProgram(application, line.c_str(), out);
}

int waitForExit(const ProcessHandle &process) {
    HANDLE h = reinterpret_cast<HANDLE>(process.handle());
    DWORD code = 0;
    if (WaitForSingleObject(h, INFINITE) != WAIT_OBJECT_0 || !GetExitCodeProcess(h, &code))
        return -1;
    return static_cast<int>(code);
}

void terminateProcess(const ProcessHandle &process) {
    if (process)
        TerminateProcess(reinterpret_cast<HANDLE>(process.handle()), 1);
}

void sleepMilliseconds(uint32_t ms) { Sleep(ms); }

uint32_t currentProcessId() { return GetCurrentProcessId(); }

std::string wholeCommandLine(int, char **) { return GetCommandLineA(); }

// Programs are started without inherited handles, so a plain stream is already private.
std::FILE *openPrivateStream(const char *path, const char *mode) { return std::fopen(path, mode); }

void holdStreamExclusively(std::FILE *stream) {
    HANDLE file = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    OVERLAPPED whole{};
    LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &whole); // blocks until free
}

} // namespace zq::platform
