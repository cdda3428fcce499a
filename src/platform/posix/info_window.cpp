// The information window on POSIX: its texts go to standard error when someone watches it.
#include "platform/info_window.h"

#include <cstdio>
#include <unistd.h>

namespace zq::platform {

void *showInfoWindow(void *, const char *text) {
    if (isatty(STDERR_FILENO))
        std::fprintf(stderr, "[OO_Info32] %s\n", text);
    return nullptr;
}

void closeInfoWindow(void *) {}

} // namespace zq::platform
