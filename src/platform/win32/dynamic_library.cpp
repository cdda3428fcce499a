// Dynamic libraries on Windows: LoadLibraryA and GetProcAddress.
#include "platform/dynamic_library.h"

#include <windows.h>

namespace zq::platform {

void *loadLibrary(const char *path) { return reinterpret_cast<void *>(LoadLibraryA(path)); }

void *findEntry(void *library, const char *name) {
    if (!library)
        return nullptr;
    return reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(library), name));
}

} // namespace zq::platform
