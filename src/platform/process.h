// Facts about the running process: its directory, its environment and how it ends.
#pragma once

#include <string>

namespace zq::platform {

// The directory separator of this system.
char directorySeparator();

// The directory of the running program without a trailing separator, or the value of
// ZELQA_PROGRAM_DIR when that is set.
std::string programDirectory();

// The full path of the running program; its directory is ZELQA_PROGRAM_DIR when that is set.
std::string programPath();

// Sets (or, with a null value, removes) an environment variable of this process.
void setEnvironment(const char *name, const char *value);

// True when the standard error stream is a terminal (progress is shown only there).
bool standardErrorIsTerminal();

// Ends the process at once with the given exit code.
[[noreturn]] void exitProcess(int code);

} // namespace zq::platform
