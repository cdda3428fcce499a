// Splitting the installer's command line into its two parameters.
#include "installer/command_line.h"

namespace zq::installer {

std::string clipText(std::string_view text) { return std::string(text.substr(0, kMaxText)); }

Parameters splitCommandLine(std::string_view line) {
    Parameters params;
    size_t blank = line.find(' ');
    params.database = clipText(line.substr(0, blank));
    if (blank != std::string_view::npos)
        params.program = clipText(line.substr(blank + 1));
    if (params.database.empty())
        params.database = kDefaultDatabase;
    return params;
}

} // namespace zq::installer
