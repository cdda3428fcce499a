/* zelqa/windows.h: the few window facts the runtime and the installer share. */
#ifndef ZELQA_WINDOWS_H
#define ZELQA_WINDOWS_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* A top-level window of className for the calling program, or null. */
ZQ_API void *zq_window_create(const char *className, const char *title) ZQ_NOEXCEPT;
ZQ_API void zq_window_destroy(void *window) ZQ_NOEXCEPT;
/* Non-zero while a window of className exists in any process of this user. */
ZQ_API int zq_window_exists(const char *className) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
