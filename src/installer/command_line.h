// The installer's command line: the install database and the program to start afterwards.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zq::installer {

// Texts the installer handles are kept to this many bytes, the rest is dropped.
inline constexpr std::size_t kMaxText = 255;

// The install database when the command line names none.
inline constexpr char kDefaultDatabase[] = "ZELQAINST.tLog";

struct Parameters {
    std::string database; // PARAM1: the install database's name
    std::string program;  // PARAM2: the program to start again; may hold blanks
};

// Cuts the line at its first blank: before it the database (kDefaultDatabase when
// empty), after it, to the end, the program. Without a blank the program is empty.
Parameters splitCommandLine(std::string_view line);

// The first kMaxText bytes of text.
std::string clipText(std::string_view text);

} // namespace zq::installer
