// Opening and writing the installer's log.
#include "installer/install_log.h"

#include <cstdarg>

#include "platform/processes.h"

namespace zq::installer {

InstallLog InstallLog::open(const std::string &directory, const char *mode) {
    InstallLog log;
    // Private, so that a program started later does not keep the log open.
    log.stream_.reset(platform::openPrivateStream((directory + kLogName).c_str(), mode));
    // The application's hand-off may still be writing its last lines after it has started
    // the installer: each waits for the other's lines to be complete.
    if (log.stream_)
        platform::holdStreamExclusively(log.stream_.get());
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
