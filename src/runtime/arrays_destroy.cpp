// Destroying arrays: __KillArray and __KillArrayEl.
//
// Only records made at or above the current context depth and not locked are released,
// so an array shared with an outer context, or still referred to by another array's
// element, survives the destruction of whatever held it.
#include "runtime/arrays.h"

#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/owner_lists.h"
#include "zelqa/arrays.h"

using namespace zq::runtime;

void __KillArrayEl(ArrayHeader *header) noexcept {
    if (!header)
        return;
    const int16_t depth = context().depth;
    pObj keptFirst = nullptr, keptLast = nullptr;
    for (pObj el = header->first; el;) {
        pObj next = el->next;
        if (el->depth < depth || el->lockCount != 0) {
            // A kept element stays in the chain, in order.
            el->next = nullptr;
            (keptLast ? keptLast->next : keptFirst) = el;
            keptLast = el;
        } else {
            pObj nested = el->type == TYPE_ARRAY ? el->payload.o : nullptr;
            releaseElement(el); // lowers the nested array's lock count
            --header->count;
            if (nested)
                __KillArray(nested);
        }
        el = next;
    }
    header->first = keptFirst;
    header->last = keptLast;
}

pObj __KillArray(pObj a) noexcept {
    if (!a || a->storageClass != CLASS_ARRAY)
        return nullptr;
    RuntimeContext &ctx = context();
    if (a->depth < ctx.depth || a->lockCount != 0)
        return a->next;
    if (ArrayHeader *header = a->payload.a) {
        __KillArrayEl(header);
        if (header->count > 0)
            return a->next; // locked elements keep the array alive
        release(header);
        a->payload.a = nullptr;
    }
    pObj following = unlinkFromList(ctx.lists[kArrayList], a);
    release(a);
    return following;
}
