// Programs and pauses on POSIX: posix_spawn, waitpid, nanosleep.
#include "platform/processes.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace zq::platform {

namespace {

// Cuts at every blank, keeping empty words, so that joining with blanks restores the line.
std::vector<std::string> splitAtBlanks(const char *line) {
    std::vector<std::string> words(1);
    for (const char *p = line; *p; ++p) {
        if (*p == ' ')
            words.emplace_back();
        else
            words.back() += *p;
    }
    return words;
}

} // namespace

void closeHandle(HandleKind, std::intptr_t) noexcept {}

bool startProgram(const char *application, const char *commandLine, StartedProcess &out) {
    if (!application || !*application)
        return false;
    std::vector<std::string> words =
        commandLine && *commandLine ? splitAtBlanks(commandLine) : std::vector<std::string>{application};
    std::vector<char *> argv;
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    // glibc's posix_spawn reports a failed exec as its result, so a missing or
    // unrunnable program is a failure here, as it is for CreateProcessA.
    if (posix_spawn(&pid, application, nullptr, nullptr, argv.data(), environ) != 0)
        return false;
    out.process = ProcessHandle(pid, static_cast<uint32_t>(pid));
    out.thread = ThreadHandle(pid, static_cast<uint32_t>(pid));
    return true;
}

int waitForExit(const ProcessHandle &process) {
    int status = 0;
    pid_t pid = static_cast<pid_t>(process.id());
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : -1;
}

void terminateProcess(const ProcessHandle &process) {
    if (process)
        kill(static_cast<pid_t>(process.id()), SIGKILL);
}

void sleepMilliseconds(uint32_t ms) {
    timespec left{static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000L};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

uint32_t currentProcessId() { return static_cast<uint32_t>(getpid()); }

std::string commandLineArguments(int argc, char **argv) {
    std::string line;
    for (int i = 1; i < argc; ++i) {
        if (i > 1)
            line += ' ';
        line += argv[i];
    }
    return line;
}

std::FILE *openPrivateStream(const char *path, const char *mode) {
    return std::fopen(path, (std::string(mode) + "e").c_str()); // "e": O_CLOEXEC
}

void holdStreamExclusively(std::FILE *stream) {
    while (flock(fileno(stream), LOCK_EX) != 0 && errno == EINTR) {
    }
}

} // namespace zq::platform
