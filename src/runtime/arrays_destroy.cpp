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

namespace {

// While a context ends, destroyed array objects stay listed, marked dead (type NIL and
// no header), and one pass unlinks them all: unlinking each from a singly linked list
// would cost a walk per array, and a sorted array releases its rows in any order.
bool sweeping = false;

bool isDead(pObj a) { return a->type != TYPE_ARRAY; }

// The headers whose chains __KillArrayEl is walking, innermost first; each link lives in
// the frame of the call walking it.
struct Emptying {
    const ArrayHeader *header;
    const Emptying *outer;
};
const Emptying *emptying = nullptr;

bool beingEmptied(const ArrayHeader *header) {
    for (const Emptying *e = emptying; e; e = e->outer)
        if (e->header == header)
            return true;
    return false;
}

} // namespace

namespace zq::runtime {

void beginArraySweep() { sweeping = true; }

void endArraySweep(OwnerList &arrays) {
    sweeping = false;
    pObj previous = nullptr;
    for (pObj a = arrays.head; a;) {
        pObj next = a->next;
        if (!isDead(a)) {
            previous = a;
        } else {
            (previous ? previous->next : arrays.head) = next;
            --arrays.count;
            release(a);
        }
        a = next;
    }
    arrays.tail = previous;
    if (arrays.count <= 0)
        arrays = OwnerList{nullptr, nullptr, 0, arrays.recordSize, arrays.constructor};
}

} // namespace zq::runtime

void __KillArrayEl(ArrayHeader *header) noexcept {
    if (!header)
        return;
    // A nested array may lead back to this header (an array holding itself): destroying
    // that array now would release the header under this walk, so it is left alone.
    Emptying walk{header, emptying};
    emptying = &walk;
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
    emptying = walk.outer;
}

pObj __KillArray(pObj a) noexcept {
    if (!a || a->storageClass != CLASS_ARRAY)
        return nullptr;
    RuntimeContext &ctx = context();
    if (isDead(a) || a->depth < ctx.depth || a->lockCount != 0 || beingEmptied(a->payload.a))
        return a->next;
    if (ArrayHeader *header = a->payload.a) {
        __KillArrayEl(header);
        if (header->count > 0)
            return a->next; // locked elements keep the array alive
        release(header);
        a->payload.a = nullptr;
    }
    if (sweeping) {
        a->type = TYPE_NIL; // unlinked and released by endArraySweep
        return a->next;
    }
    pObj following = unlinkFromList(ctx.lists[kArrayList], a);
    release(a);
    return following;
}
