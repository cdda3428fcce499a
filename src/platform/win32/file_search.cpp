// Directory search on Windows: FindFirstFileA and FindClose.
#include "platform/file_search.h"

#include <windows.h>

namespace zq::platform {

bool findFirstFile(const char *path, FoundFile &found) {
    if (!path)
        return false;
    WIN32_FIND_DATAA data{};
    HANDLE search = FindFirstFileA(path, &data);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    found.name = data.cFileName;
    found.sizeLow = data.nFileSizeLow;
    FindClose(search);
    return true;
}

} // namespace zq::platform
