// Calls in forked children: the shared progress record, the hang watch and the verdicts.
#include "child_calls.h"

#include "platform/process.h"
#include "zelqa.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zq::robustness {
namespace {

// Written by the child, read by the parent once the child has ended.
struct Progress {
    volatile int64_t current;  // the call being made; calls.size() once all are made
    volatile int64_t fatalAt;  // the call that showed the "Fatal Error" box, or -1
    volatile uint64_t returned;
};

Progress *progress = nullptr;

int answerBox(const char *caption, const char *, unsigned) {
    if (std::strcmp(caption, "Fatal Error") == 0)
        progress->fatalAt = progress->current;
    return ZQ_BUTTON_OK;
}

[[noreturn]] void childRun(const std::vector<Call> &calls, size_t from) {
    zq_set_box_hook(answerBox);
    __RetGlob(1);
    for (size_t k = from; k < calls.size(); ++k) {
        progress->current = int64_t(k);
        calls[k].run();
        __RetGlob(1); // the call's values are released as part of it
        progress->returned = progress->returned + 1;
    }
    progress->current = int64_t(calls.size());
    _exit(0);
}

// Waits for the child; kills it when its current call runs past the hang limit.
// Returns its wait status and sets hung when it was killed.
int waitWatching(pid_t child, int hangMs, bool &hung) {
    sigset_t childEnded;
    sigemptyset(&childEnded);
    sigaddset(&childEnded, SIGCHLD);
    int64_t watched = progress->current;
    int waitedMs = 0;
    hung = false;
    for (;;) {
        int status = 0;
        if (waitpid(child, &status, WNOHANG) == child)
            return status;
        timespec step{0, 20 * 1000 * 1000};
        if (sigtimedwait(&childEnded, nullptr, &step) == SIGCHLD)
            continue;
        int64_t now = progress->current;
        waitedMs = now == watched ? waitedMs + 20 : 0;
        watched = now;
        if (waitedMs >= hangMs) {
            hung = true;
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return status;
        }
    }
}

std::string verdict(int status, bool hung, int64_t at) {
    if (hung)
        return "ran longer than the hang limit";
    if (WIFSIGNALED(status))
        return std::string("ended by signal ") + strsignal(WTERMSIG(status));
    if (WEXITSTATUS(status) != 0)
        return "ended with exit code " + std::to_string(WEXITSTATUS(status)) + " (a sanitizer's report is above)";
    if (progress->fatalAt != at)
        return "ended the process without a runtime error";
    return {};
}

} // namespace

CallResults runInChildren(const std::vector<Call> &calls, const std::string &directory, int hangMs) {
    void *shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    progress = static_cast<Progress *>(shared);
    sigset_t childEnded, before;
    sigemptyset(&childEnded);
    sigaddset(&childEnded, SIGCHLD);
    sigprocmask(SIG_BLOCK, &childEnded, &before);
    std::filesystem::current_path(directory);
    platform::setEnvironment("ZELQA_PROGRAM_DIR", directory.c_str());
    std::fflush(nullptr);

    CallResults results;
    progress->returned = 0;
    for (size_t next = 0; next < calls.size();) {
        progress->current = int64_t(next);
        progress->fatalAt = -1;
        pid_t child = fork();
        if (child < 0) {
            results.defects.push_back(std::string("fork failed: ") + std::strerror(errno));
            break;
        }
        if (child == 0)
            childRun(calls, next);
        bool hung = false;
        int status = waitWatching(child, hangMs, hung);
        int64_t at = progress->current;
        if (at >= int64_t(calls.size()) && !hung && WIFEXITED(status) && WEXITSTATUS(status) == 0)
            break;
        std::string what = verdict(status, hung, at);
        if (what.empty())
            ++results.runtimeErrors;
        else
            results.defects.push_back(calls[size_t(at)].name + ": " + what);
        next = size_t(at) + 1;
    }
    results.calls = calls.size();
    results.returned = progress->returned;
    sigprocmask(SIG_SETMASK, &before, nullptr);
    munmap(shared, sizeof(Progress));
    progress = nullptr;
    return results;
}

} // namespace zq::robustness
