// The one way internal code reports a fault: it ends in __RuntimeError and never returns.
#pragma once

#include "zelqa/errors.h"

namespace zq::runtime {

[[noreturn]] inline void raiseError(int code, int aux = -1) { __RuntimeError(code, aux); }

// Raises "ARGUMENT ERROR!" unless the condition holds.
inline void requireArgument(bool ok) {
    if (!ok)
        raiseError(ZQ_ERR_ARGUMENT);
}

} // namespace zq::runtime
