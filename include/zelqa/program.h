/* zelqa/program.h: where the running program lives. */
#ifndef ZELQA_PROGRAM_H
#define ZELQA_PROGRAM_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* The directory of the running program with its trailing separator (ZELQA_PROGRAM_DIR
   when set); the text stays valid until the next call. */
ZQ_API const char *zq_program_directory(void) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
