// Looking a path up as a directory search does: the first matching entry's name and size.
#pragma once

#include <cstdint>
#include <string>

namespace zq::platform {

// The first directory entry matching a path (wildcards allowed, as FindFirstFileA).
struct FoundFile {
    std::string name;  // the entry's own name, without its directory
    uint32_t sizeLow;  // low 32 bits of its size in bytes; 0 for a directory
};

// False when nothing matches. The search handle is always closed.
bool findFirstFile(const char *path, FoundFile &found);

} // namespace zq::platform
