// Opening and writing the installer's log.
#include "installer/install_log.h"

#include <cstdarg>

#include "platform/processes.h"

namespace zq::installer {

InstallLog InstallLog::openIn(const std::string &directory) {
    InstallLog log;
    // Private, so that the program started at the end does not keep the log open.
    log.stream_.reset(platform::openPrivateStream((directory + "inst.txt").c_str(), "a+"));
    return log;
}

void InstallLog::write(const char *format, ...) {
    if (!stream_)
        return;
    va_list args;
    va_start(args, format);
    std::vfprintf(stream_.get(), format, args);
    va_end(args);
    std::fflush(stream_.get());
}

} // namespace zq::installer
