// The exported window calls: thin wrappers over the platform's window owners.
#include "platform/windows.h"

#include "zelqa/windows.h"

extern "C" {

ZQ_API void *zq_window_create(const char *className, const char *title) noexcept {
    return zq::platform::createWindow(className, title).release();
}

ZQ_API void zq_window_destroy(void *window) noexcept { zq::platform::Window owner(window); }

ZQ_API int zq_window_exists(const char *className) noexcept {
    return zq::platform::windowExists(className) ? 1 : 0;
}

} // extern "C"
