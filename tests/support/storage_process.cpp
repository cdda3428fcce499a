// Child processes for the storage crash test, through the platform's process calls.
#include "support/storage_process.h"

#include "platform/process.h"
#include "support/installer_sandbox.h"

namespace zq::storage_test {
namespace {
bool onPosix() { return platform::directorySeparator() == '/'; }
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

int crashRounds() { return onPosix() ? 40 : 6; }

} // namespace zq::storage_test
