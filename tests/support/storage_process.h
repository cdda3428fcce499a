// Starting a child program and killing it without warning, for the storage crash test.
#pragma once

#include "platform/processes.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zq::storage_test {

// Starts program with one argument; an empty handle when it cannot start.
platform::StartedProcess startProcess(const std::string &program, const std::string &argument);
// Kills it at once (SIGKILL / TerminateProcess) and waits until it is gone.
void killProcess(const platform::StartedProcess &process);
// The program file of an app built beside the tests.
std::string appPath(const std::string &name);
// How many kills a crash test makes: process starts cost more under Windows; the
// environment variable ZELQA_CRASH_KILLS, when it holds a positive number, says instead.
int crashRounds();

// The operations a crash writer logged in its progress file, 4 bytes each.
uint32_t loggedOperations(const std::string &progress);
// Starts program on its progress file and kills it at a random moment, crashRounds()
// times, calling check with the operations logged after each kill; stops after a fatal
// failure. The caller holds no storage while the writer runs.
void killRepeatedly(const std::string &program, const std::string &progress, uint32_t seed,
                    const std::function<void(uint32_t)> &check);

} // namespace zq::storage_test
