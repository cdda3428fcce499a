// The ring of temporaries: a fixed set of slots reused in turn, skipping locked ones.
//
// A temporary stays valid until N further temporaries have been taken, unless it is
// locked (__LockStack); locked slots are unlocked when their context ends.
#include "runtime/temporaries.h"

#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/raise.h"
#include "zelqa/context.h"

namespace zq::runtime {
namespace {

constexpr int32_t kDefaultRingSize = 150;
constexpr int32_t kLargestRingSize = 1 << 20; // a larger ring is refused: "LOW MEMORY!" at the start
int32_t requestedRingSize = 0;

} // namespace

int32_t temporaryRingSize() { return requestedRingSize > 0 ? requestedRingSize : kDefaultRingSize; }

bool buildTemporaryRing(RuntimeContext &ctx) {
    int32_t n = temporaryRingSize();
    if (n > kLargestRingSize)
        return false;
    ctx.temporaries = static_cast<pObj *>(tryAllocate(sizeof(pObj) * n));
    ctx.temporaryRecords = static_cast<Obj *>(tryAllocate(sizeof(Obj) * n));
    if (!ctx.temporaries || !ctx.temporaryRecords)
        return false;
    for (int32_t i = 0; i < n; ++i) {
        Obj &slot = ctx.temporaryRecords[i];
        slot.storageClass = CLASS_TEMP;
        slot.type = TYPE_NIL;
        slot.objLength = -1;
        slot.depth = -1;
        ctx.temporaries[i] = &slot;
    }
    ctx.temporaryCount = n;
    ctx.nextTemporary = 0;
    ctx.lockedTemporaries = 0;
    return true;
}

void dropTemporaryText(pObj slot) {
    if (slot->type == TYPE_CHAR && slot->objLength > 0)
        release(slot->payload.c);
    if (slot->type == TYPE_CHAR) {
        slot->payload.c = nullptr;
        slot->objLength = 0;
    }
}

void destroyTemporaryRing(RuntimeContext &ctx) {
    for (int32_t i = 0; ctx.temporaries && i < ctx.temporaryCount; ++i)
        dropTemporaryText(ctx.temporaries[i]);
    release(ctx.temporaries);
    release(ctx.temporaryRecords);
    ctx.temporaries = nullptr;
    ctx.temporaryRecords = nullptr;
    ctx.temporaryCount = 0;
}

pObj takeTemporary() {
    RuntimeContext &ctx = context();
    const int32_t n = ctx.temporaryCount;
    if (ctx.lockedTemporaries >= n)
        raiseError(ZQ_ERR_STACK_FULL);
    int32_t index = ctx.nextTemporary;
    for (int32_t steps = 0; ctx.temporaries[index]->lockCount != 0; ++steps) {
        if (steps >= n)
            raiseError(ZQ_ERR_STACK_FULL);
        index = index + 1 == n ? 0 : index + 1;
    }
    pObj slot = ctx.temporaries[index];
    dropTemporaryText(slot);
    ctx.nextTemporary = index + 1 == n ? 0 : index + 1;
    return slot;
}

} // namespace zq::runtime

int32_t __SetMaxStackElements(int32_t n) noexcept {
    zq::runtime::requestedRingSize = n;
    return static_cast<int32_t>(static_cast<uint32_t>(n) - 1u); // n - 1, wrapping at the lowest n
}
