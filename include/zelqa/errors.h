/* zelqa/errors.h: the runtime's single failure path and the message tables. */
#ifndef ZELQA_ERRORS_H
#define ZELQA_ERRORS_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Runtime error codes (the first argument of __RuntimeError). */
enum {
    ZQ_ERR_ARGUMENT = 0,
    ZQ_ERR_BOUND = 1,
    ZQ_ERR_DIVIDE_BY_ZERO = 2,
    ZQ_ERR_RUNTIME = 3,
    ZQ_ERR_INVALID_FIELD = 4,
    ZQ_ERR_LOW_MEMORY = 5,
    ZQ_ERR_EG_ARG = 6,
    ZQ_ERR_ALIAS_EXISTS = 7,
    ZQ_ERR_IDX_CREATE = 8,
    ZQ_ERR_IDX_NOT_EXISTS = 9,
    ZQ_ERR_INVALID_ORDER = 10,
    ZQ_ERR_CREATE = 11,
    ZQ_ERR_INDEX_CREATE = 12,
    ZQ_ERR_INVALID_INDEX = 13,
    ZQ_ERR_ALIAS_MISSING = 14,
    ZQ_ERR_STACK_FULL = 15
};

#define ZQ_RUNTIME_ERROR_COUNT 16
#define ZQ_AUX_MESSAGE_COUNT 135

/* Shows the "Fatal Error" window, runs the exit routine, closes tables and
   ends the process with exit code 0. aux is 0..134 or -1 for none. */
ZQ_NORETURN ZQ_API void __RuntimeError(int code, int aux) ZQ_NOEXCEPT;

/* The auxiliary message table: writable, entries may be null. */
ZQ_API extern const char *zq_aux_messages[ZQ_AUX_MESSAGE_COUNT];
/* The text of a runtime error code, or null outside 0..15. */
ZQ_API const char *zq_runtime_error_text(int code) ZQ_NOEXCEPT;
/* A character temporary holding auxiliary message nAux (numeric), "" when none. */
ZQ_API pObj __GetAuxError(pObj nAux) ZQ_NOEXCEPT;
/* The routine __RuntimeError runs before the process ends; null removes it. */
ZQ_API void __RegisterExit(void (*routine)(void)) ZQ_NOEXCEPT;

/* Names the running function and line for the list shown by __RuntimeError: the first
   call in a context adds a function to the list, later calls move its line on. */
ZQ_API void zq_enter_function(const char *name, int line) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
