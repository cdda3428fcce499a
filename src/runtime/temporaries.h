// The ring of temporaries from which constructors and operators draw their results.
#pragma once

#include "zelqa/base.h"

#include <cstdint>

namespace zq::runtime {

struct RuntimeContext;

// The ring size the next context is built with (150 unless set before start-up).
int32_t temporaryRingSize();
// Makes the ring's slots for a new context; false when memory ran out.
bool buildTemporaryRing(RuntimeContext &ctx);
// Releases the slots' text buffers and the ring itself.
void destroyTemporaryRing(RuntimeContext &ctx);

// The next free slot, its old text released; raises "STACK FULL!" when every slot is locked.
pObj takeTemporary();

// Drops a slot's text buffer (its objLength becomes 0).
void dropTemporaryText(pObj slot);

} // namespace zq::runtime
