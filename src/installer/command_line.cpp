// Splitting the installer's command line into its two parameters.
#include "installer/command_line.h"

namespace zq::installer {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

// Where a name holding blanks ends, when the line is that name, a blank, one word, a blank
// and the name again; npos otherwise.
size_t handOffNameEnd(std::string_view line) {
    for (size_t end = line.find(' '); end != std::string_view::npos; end = line.find(' ', end + 1)) {
        std::string_view name = line.substr(0, end);
        if (line.size() < 2 * end + 3 || !line.ends_with(name) || line[line.size() - end - 1] != ' ')
            continue;
        std::string_view word = line.substr(end + 1, line.size() - 2 * end - 2);
        if (word.find(' ') == std::string_view::npos)
            return end;
    }
    return std::string_view::npos;
}

size_t programNameEnd(std::string_view line) {
    if (!line.empty() && line[0] == '"') {
        size_t close = line.find('"', 1);
        return close == std::string_view::npos ? line.size() : close + 1;
    }
    if (size_t end = handOffNameEnd(line); end != std::string_view::npos)
        return end;
    size_t end = 0;
    while (end < line.size() && !isBlank(line[end]))
        ++end;
    return end;
}

} // namespace

std::string_view argumentsAfterProgramName(std::string_view line) {
    size_t start = programNameEnd(line);
    while (start < line.size() && isBlank(line[start]))
        ++start;
    return line.substr(start);
}

Parameters splitCommandLine(std::string_view arguments) {
    Parameters params;
    size_t blank = arguments.find(' ');
    params.database = std::string(arguments.substr(0, blank));
    if (blank != std::string_view::npos)
        params.program = std::string(arguments.substr(blank + 1));
    if (params.database.empty())
        params.database = kDefaultDatabase;
    return params;
}

bool acceptableText(std::string_view text) {
    if (text.size() > kMaxText)
        return false;
    for (char c : text) {
        auto byte = static_cast<unsigned char>(c);
        if (byte < 32 || byte == 127)
            return false;
    }
    return true;
}

} // namespace zq::installer
