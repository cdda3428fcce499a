// Dynamic libraries loaded at run time by file name, and their entries by name.
#pragma once

namespace zq::platform {

// Loads the library in `path`; null when it cannot be had. Libraries stay loaded for the
// rest of the process.
void *loadLibrary(const char *path);
// The address of an exported entry, or null.
void *findEntry(void *library, const char *name);

} // namespace zq::platform
