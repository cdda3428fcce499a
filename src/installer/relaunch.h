// Starting the application again at the end of an install.
#pragma once

#include <string>

#include "installer/install_log.h"

namespace zq::installer {

// Starts `program` (the whole text names the program file; no command line is passed) and
// logs the outcome: the started process's handles and ids, or the failure. Does not wait.
void relaunch(const std::string &program, InstallLog &log);

} // namespace zq::installer
