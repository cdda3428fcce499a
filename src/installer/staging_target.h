// Where a staged file goes: the target of a staging as a file inside the program directory.
#pragma once

#include <string>
#include <string_view>

namespace zq::installer {

// The target as an absolute path without "." or ".." and with this system's separators,
// taken from `directory` when relative. Empty when it cannot be installed: it names the
// directory itself, leaves it (".." past it, or an absolute path elsewhere), ends with a
// separator, or names something there that is not a file (a directory). On Windows both
// separators are accepted, and the directory's part compares without regard to case.
std::string installableTarget(std::string_view directory, std::string_view target);

// True when something that is not a file (a directory) is there under the path.
bool namesNonFile(const std::string &path);

} // namespace zq::installer
