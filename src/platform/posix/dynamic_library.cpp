// Dynamic libraries on POSIX: dlopen and dlsym.
#include "platform/dynamic_library.h"

#include <dlfcn.h>

namespace zq::platform {

void *loadLibrary(const char *path) { return dlopen(path, RTLD_NOW | RTLD_LOCAL); }

void *findEntry(void *library, const char *name) { return library ? dlsym(library, name) : nullptr; }

} // namespace zq::platform
