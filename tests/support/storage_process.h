// Starting a child program and killing it without warning, for the storage crash test.
#pragma once

#include "platform/processes.h"

#include <string>

namespace zq::storage_test {

// Starts program with one argument; an empty handle when it cannot start.
platform::StartedProcess startProcess(const std::string &program, const std::string &argument);
// Kills it at once (SIGKILL / TerminateProcess) and waits until it is gone.
void killProcess(const platform::StartedProcess &process);
// The program file of an app built beside the tests.
std::string appPath(const std::string &name);
// How many kills the crash test makes: process starts cost more under Windows.
int crashRounds();

} // namespace zq::storage_test
