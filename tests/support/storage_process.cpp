// Child processes for the storage crash test, through the platform's process calls.
#include "support/storage_process.h"

#include "platform/process.h"
#include "support/installer_sandbox.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>

namespace zq::storage_test {
namespace {

bool onPosix() { return platform::directorySeparator() == '/'; }

// Waits (at most ten seconds) until the writer has logged more than before operations.
void awaitProgress(const std::string &progress, uint32_t before) {
    for (int waited = 0; waited < 10000 && loggedOperations(progress) <= before; waited += 2)
        platform::sleepMilliseconds(2);
}

} // namespace

platform::StartedProcess startProcess(const std::string &program, const std::string &argument) {
    platform::StartedProcess started;
    std::string line = program + " " + argument;
    platform::startProgram(program.c_str(), line.c_str(), started);
    return started;
}

void killProcess(const platform::StartedProcess &process) {
    platform::terminateProcess(process.process);
    platform::waitForExit(process.process);
}

std::string appPath(const std::string &name) { return test::appPath(onPosix() ? name : name + ".exe"); }

int crashRounds() {
    if (const char *kills = std::getenv("ZELQA_CRASH_KILLS"); kills && std::atoi(kills) > 0)
        return std::atoi(kills); // scripts/kill-tables asks for a thousand
    return onPosix() ? 25 : 6;
}

uint32_t loggedOperations(const std::string &progress) {
    std::error_code ec;
    auto size = std::filesystem::file_size(progress, ec);
    return ec ? 0 : uint32_t(size / 4);
}

void killRepeatedly(const std::string &program, const std::string &progress, uint32_t seed,
                    const std::function<void(uint32_t)> &check) {
    std::mt19937 random(seed);
    int rounds = crashRounds();
    for (int round = 0; round < rounds; ++round) {
        uint32_t before = loggedOperations(progress);
        platform::StartedProcess process = startProcess(program, progress);
        ASSERT_TRUE(process.process) << program;
        // Every fifth kill lands wherever the start has got to; the others count from the
        // round's first logged operation, so that a start slowed by a sanitizer or a loaded
        // machine does not take most kills before any work.
        if (round % 5 != 4)
            awaitProgress(progress, before);
        platform::sleepMilliseconds(rounds > 10 ? 5 + int(random() % 60) : 400 + int(random() % 1200));
        killProcess(process);
        SCOPED_TRACE("round " + std::to_string(round));
        check(loggedOperations(progress));
        if (::testing::Test::HasFatalFailure())
            return;
    }
}

} // namespace zq::storage_test
