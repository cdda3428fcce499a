// The existence test for staged, target and backup files.
#include "installer/file_exists.h"

#include <cctype>

#include "platform/file_search.h"

namespace zq::installer {

namespace {

void lower(std::string &text) {
    for (char &c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

} // namespace

bool fileExists(std::string &path) {
    platform::FoundFile found;
    if (!platform::findFirstFile(path.c_str(), found))
        return false;
    // Empty files, and those of an exact multiple of 4 GiB, count as absent.
    if (found.sizeLow == 0)
        return false;
    lower(found.name);
    lower(path);
    return !found.name.empty() && path.find(found.name) != std::string::npos;
}

} // namespace zq::installer
