// The runtime error texts; the auxiliary texts are the exported zq_aux_messages table.
#pragma once

#include "zelqa/errors.h"

namespace zq::runtime {

extern const char *const kRuntimeErrorTexts[ZQ_RUNTIME_ERROR_COUNT];

} // namespace zq::runtime
