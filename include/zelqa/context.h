/* zelqa/context.h: start and end of the run, contexts, the temporary ring and settings. */
#ifndef ZELQA_CONTEXT_H
#define ZELQA_CONTEXT_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Sets the size of the temporary ring; only before __BeginGlobal. Returns n - 1. */
ZQ_API int32_t __SetMaxStackElements(int32_t n) ZQ_NOEXCEPT;
/* Starts the runtime; non-zero when the runtime context exists. */
ZQ_API int __BeginGlobal(void) ZQ_NOEXCEPT;
/* flag 0: the runtime context (null before start-up); non-zero: builds a new one. */
ZQ_API void *__RetGlob(int flag) ZQ_NOEXCEPT;
/* Ends the run: frees the values and, after SHUTDOWN, hands over to the installer. */
ZQ_API void __EndGlobal(void) ZQ_NOEXCEPT;

ZQ_API void __begin_context(void) ZQ_NOEXCEPT;
ZQ_API pObj __end_context(pObj ret) ZQ_NOEXCEPT;
ZQ_API int __KillContext(void) ZQ_NOEXCEPT;
/* Locks the listed temporaries until the current context ends; list ends with NUL. */
ZQ_API void __LockStack(pObj first, ...) ZQ_NOEXCEPT;
ZQ_API void __ReleaseStack2(void) ZQ_NOEXCEPT;

ZQ_API pObj __Set(pObj nSetting, pObj xValue) ZQ_NOEXCEPT;
ZQ_API pObj __SetCentury(pObj lOn) ZQ_NOEXCEPT;
ZQ_API pObj __GetRTVer(void) ZQ_NOEXCEPT;
/* Asks for the installer hand-off at the end of the run; returns 0. */
ZQ_API int SHUTDOWN(void) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
