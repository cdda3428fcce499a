// Directory search on POSIX.
//
// A path without wildcards is looked up with stat; one with '*' or '?' through glob, whose
// first match stands for FindFirstFileA's first entry. Directories report size 0, as
// Windows reports them.
#include "platform/file_search.h"

#include <cstring>
#include <glob.h>
#include <sys/stat.h>

namespace zq::platform {

namespace {

// The entry to stat: the path itself, or the first match of a pattern.
bool resolveEntry(const char *path, std::string &entry) {
    if (!std::strpbrk(path, "*?")) {
        entry = path;
        return true;
    }
    glob_t matches{};
    bool found = glob(path, GLOB_NOSORT, nullptr, &matches) == 0 && matches.gl_pathc > 0;
    if (found)
        entry = matches.gl_pathv[0];
    globfree(&matches);
    return found;
}

} // namespace

bool findFirstFile(const char *path, FoundFile &found) {
    std::string entry;
    struct stat st {};
    if (!path || !*path || !resolveEntry(path, entry) || stat(entry.c_str(), &st) != 0)
        return false;
    while (entry.size() > 1 && entry.back() == '/')
        entry.pop_back();
    size_t slash = entry.rfind('/');
    found.name = slash == std::string::npos ? entry : entry.substr(slash + 1);
    found.sizeLow = S_ISDIR(st.st_mode) ? 0 : static_cast<uint32_t>(st.st_size);
    return true;
}

} // namespace zq::platform
