// The settings slots of the runtime context: start-up values and permanent storage.
#pragma once

#include "runtime/context.h"

namespace zq::runtime {

// Fills the slots with their start-up values (date format "mm/dd/yy", epoch 1940, ...).
void setStartupSettings(RuntimeContext &ctx);
// Stores a copy of value in setting n (1..12); the stored record is never released by a context.
pObj storeSetting(int n, pObj value);

} // namespace zq::runtime
