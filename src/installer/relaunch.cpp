// The relaunch of the application and its log line.
#include "installer/relaunch.h"

#include "platform/processes.h"

namespace zq::installer {

void relaunch(const std::string &program, InstallLog &log) {
    platform::StartedProcess started;
    if (!platform::startProgram(program.c_str(), nullptr, started)) {
        log.write("\nCreateProcess NOK %s\n", program.c_str());
        return;
    }
    // No line break at the end: the next line written starts with its own.
    log.write("\n CreateProcess %s OK. hProcess=%ld, hThread=%ld, dwProcessId=%ld,dwThreadId =%ld", program.c_str(),
              static_cast<long>(started.process.handle()), static_cast<long>(started.thread.handle()),
              static_cast<long>(started.process.id()), static_cast<long>(started.thread.id()));
}

} // namespace zq::installer
