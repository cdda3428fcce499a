// The installer's command line: the install database and the program to start afterwards.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zq::installer {

// The longest text the installer takes (database name, program to start, a record's paths
// and version, its log's path), in bytes. Longer ones are refused, never cut.
inline constexpr std::size_t kMaxText = 255;

// The install database when the command line names none.
inline constexpr char kDefaultDatabase[] = "ZELQAINST.tLog";

struct Parameters {
    std::string database; // PARAM1: the install database's name
    std::string program;  // PARAM2: the program to start again; may hold blanks
};

// The whole command line less its first word, the program name, and the blanks after it.
// The first word is found as Windows programs find it, and as the hand-off's line needs:
// 1. starting with a double quote, it runs to the closing quote;
// 2. else, when the line has the hand-off's shape, a name holding blanks, a blank, one
//    word, a blank and the same name again at the end, it is that name;
// 3. else it ends at the first blank or tab.
std::string_view argumentsAfterProgramName(std::string_view line);

// Cuts the arguments at their first blank: before it the database (kDefaultDatabase when
// empty), after it, to the end, the program. Without a blank the program is empty.
Parameters splitCommandLine(std::string_view arguments);

// True when text is at most kMaxText bytes and holds no control character (bytes below
// 32, and 127), which would break a line of the log.
bool acceptableText(std::string_view text);

} // namespace zq::installer
