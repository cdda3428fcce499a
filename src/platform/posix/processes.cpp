// Programs and pauses on POSIX: posix_spawn, waitpid, nanosleep.
#include "platform/processes.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>
#include <string_view>
#include <vector>

extern char **environ;

namespace zq::platform {

namespace {

// Cuts at every blank, keeping empty words, so that joining with blanks restores the text.
void splitAtBlanks(std::string_view text, std::vector<std::string> &words) {
    words.emplace_back();
    for (char c : text) {
        if (c == ' ')
            words.emplace_back();
        else
            words.back() += c;
    }
}

// The program name as Windows programs find it, then the rest cut at every blank.
std::vector<std::string> splitCommandLine(std::string_view line) {
    std::vector<std::string> words;
    size_t nameEnd = 0, restStart = std::string_view::npos;
    if (!line.empty() && line[0] == '"') {
        size_t close = line.find('"', 1);
        words.emplace_back(line.substr(1, close == std::string_view::npos ? close : close - 1));
        nameEnd = close == std::string_view::npos ? line.size() : close + 1;
        if (nameEnd < line.size() && line[nameEnd] == ' ')
            restStart = nameEnd + 1;
    } else {
        nameEnd = line.find(' ');
        words.emplace_back(line.substr(0, nameEnd));
        if (nameEnd != std::string_view::npos)
            restStart = nameEnd + 1;
    }
    if (restStart != std::string_view::npos)
        splitAtBlanks(line.substr(restStart), words);
    return words;
}

bool spawn(const char *application, std::vector<std::string> words, StartedProcess &out) {
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

} // namespace

void closeHandle(HandleKind, std::intptr_t) noexcept {}

bool startProgram(const char *application, const char *commandLine, StartedProcess &out) {
    if (!application || !*application)
        return false;
    if (!commandLine || !*commandLine)
        return spawn(application, {application}, out);
    return spawn(application, splitCommandLine(commandLine), out);
}

bool startProgramWithArguments(const char *application, const std::vector<std::string> &arguments,
                               StartedProcess &out) {
    if (!application || !*application || arguments.empty())
        return false;
    return spawn(application, arguments, out);
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

std::string wholeCommandLine(int argc, char **argv) {
    std::string line = argc > 0 ? commandLineName(argv[0]) : std::string();
    for (int i = 1; i < argc; ++i)
        line += std::string(" ") + argv[i];
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
