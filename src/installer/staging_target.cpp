// Resolving a staging's target by its text alone, so no file outside the program
// directory is ever named, whatever links or names lie on the way.
#include "installer/staging_target.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/process.h"

namespace zq::installer {

namespace {

bool onWindows() { return platform::directorySeparator() == '\\'; }
bool isSeparator(char c) { return c == '/' || (onWindows() && c == '\\'); }

// A path cut into its root ("/"; on Windows "C:\", "\\" or "\"; "" when relative) and its
// names, "." dropped and ".." taken back; false when ".." climbs past the root.
struct SplitPath {
    std::string root;
    std::vector<std::string> names;
};

size_t rootLength(std::string_view path) {
    if (onWindows() && path.size() >= 2 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':')
        return path.size() > 2 && isSeparator(path[2]) ? 3 : 2;
    size_t n = 0;
    while (n < path.size() && isSeparator(path[n]))
        ++n;
    return n;
}

bool splitPath(std::string_view path, SplitPath &split) {
    size_t root = rootLength(path);
    split.root = std::string(path.substr(0, root));
    if (onWindows())
        std::replace(split.root.begin(), split.root.end(), '/', '\\');
    else
        split.root.assign(root ? 1 : 0, '/'); // "/" or nothing
    for (size_t at = root; at < path.size();) {
        size_t end = at;
        while (end < path.size() && !isSeparator(path[end]))
            ++end;
        std::string_view name = path.substr(at, end - at);
        if (name == "..") {
            if (split.names.empty())
                return false;
            split.names.pop_back();
        } else if (!name.empty() && name != ".") {
            split.names.emplace_back(name);
        }
        at = end + 1;
    }
    return true;
}

bool sameName(const std::string &a, const std::string &b) {
    if (!onWindows())
        return a == b;
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
        return std::tolower(x) == std::tolower(y);
    });
}

bool isAbsolute(std::string_view path) { return rootLength(path) > 0; }

} // namespace

bool namesNonFile(const std::string &path) {
    platform::FoundFile found;
    return platform::findFirstFile(path.c_str(), found) && !platform::fileExists(path);
}

std::string installableTarget(std::string_view directory, std::string_view target) {
    if (target.empty() || isSeparator(target.back()))
        return std::string();
    std::string sep(1, platform::directorySeparator());
    std::string whole = isAbsolute(target) ? std::string(target) : std::string(directory) + sep + std::string(target);
    SplitPath dir, file;
    if (!splitPath(directory, dir) || !splitPath(whole, file))
        return std::string();
    if (!sameName(dir.root, file.root) || file.names.size() <= dir.names.size() ||
        !std::equal(dir.names.begin(), dir.names.end(), file.names.begin(), sameName))
        return std::string();
    std::string path = file.root;
    for (size_t i = 0; i < file.names.size(); ++i)
        path += (i ? sep : "") + file.names[i];
    return namesNonFile(path) ? std::string() : path;
}

} // namespace zq::installer
