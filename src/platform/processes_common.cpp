// The system-neutral half of the process seam: how a program name stands in a command line.
#include "platform/processes.h"

namespace zq::platform {

std::string commandLineName(const std::string &name) {
    if (name.find_first_of(" \t") == std::string::npos)
        return name;
    return '"' + name + '"';
}

} // namespace zq::platform
