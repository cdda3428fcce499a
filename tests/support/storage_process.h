// Starting a child program and killing it without warning, for the storage crash test.
#pragma once

#include <cstdint>
#include <string>

namespace zq::storage_test {

// Starts program with one argument; returns an id for killProcess, or -1.
intptr_t startProcess(const std::string &program, const std::string &argument);
// Kills it at once (SIGKILL / TerminateProcess) and waits until it is gone.
void killProcess(intptr_t process);
void sleepMilliseconds(int ms);
// Executable name of an app built under apps/<name>/.
std::string appPath(const std::string &name);
// How many kills the crash test makes: process starts cost more under Windows.
int crashRounds();

} // namespace zq::storage_test
