// The running program's directory, for applications.
#include "platform/process.h"
#include "zelqa/program.h"

#include <cstdio>

const char *zq_program_directory(void) noexcept {
    static char directory[1024];
    std::snprintf(directory, sizeof directory, "%s%c", zq::platform::programDirectory().c_str(),
                  zq::platform::directorySeparator());
    return directory;
}
