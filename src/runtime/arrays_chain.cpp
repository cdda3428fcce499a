// The element chain of an array: making, finding and releasing element records, and the
// references elements hold to nested arrays.
#include "runtime/arrays.h"

#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/owner_lists.h"
#include "runtime/raise.h"
#include "zelqa/values.h"

#include <cmath>

namespace zq::runtime {

bool isArrayObject(pObj x) {
    return x && x->storageClass == CLASS_ARRAY && x->type == TYPE_ARRAY && x->payload.a;
}

ArrayHeader &requireArray(pObj a) {
    requireArgument(isArrayObject(a));
    return *a->payload.a;
}

pObj arrayOf(pObj x) {
    if (isArrayObject(x))
        return x;
    if (x && x->storageClass == CLASS_ELEMENT && x->type == TYPE_ARRAY && isArrayObject(x->payload.o))
        return x->payload.o;
    return nullptr;
}

pObj elementAt(ArrayHeader &header, int32_t i) {
    if (i < 0 || i >= header.count)
        raiseError(ZQ_ERR_BOUND);
    if (i == header.count - 1)
        return header.last; // appending and reading the tail stay O(1)
    pObj el = header.first;
    while (i-- > 0)
        el = el->next;
    return el;
}

pObj newElementRecord(int16_t depth) {
    pObj el = __fcpObj_CT(kElementList);
    el->depth = depth;
    ++context().lists[kElementList].count; // elements are counted, not listed
    return el;
}

pObj appendElement(pObj a) {
    ArrayHeader &header = requireArray(a);
    if (header.count >= kMaxArrayElements)
        raiseError(ZQ_ERR_LOW_MEMORY);
    pObj el = newElementRecord(a->depth);
    if (header.last)
        header.last->next = el;
    else
        header.first = el;
    header.last = el;
    ++header.count;
    return el;
}

void dropArrayReference(pObj el) {
    pObj nested = el->payload.o;
    if (nested && nested->lockCount > 0)
        --nested->lockCount;
    el->type = TYPE_NIL;
    el->payload.p = nullptr;
    el->objLength = -1;
}

void releaseElement(pObj el) {
    if (el->type == TYPE_ARRAY)
        dropArrayReference(el);
    else if (el->type == TYPE_CHAR && el->objLength > 0)
        releaseText(el);
    --context().lists[kElementList].count;
    release(el);
}

void lowerArrayDepth(pObj x, int16_t depth) {
    // Stops at arrays already as shallow: that also ends the walk of a cyclic structure.
    if (!isArrayObject(x) || x->depth <= depth)
        return;
    x->depth = depth;
    for (pObj el = x->payload.a->first; el; el = el->next) {
        if (el->depth > depth)
            el->depth = depth;
        if (el->type == TYPE_ARRAY)
            lowerArrayDepth(el->payload.o, depth);
    }
}

void storeArrayReference(pObj el, pObj x, int16_t depth) {
    if (x->lockCount >= 0)
        ++x->lockCount; // before the old value goes: el may already refer to x
    if (el->type == TYPE_ARRAY)
        dropArrayReference(el);
    else if (el->type == TYPE_CHAR && el->objLength > 0)
        releaseText(el);
    el->type = TYPE_ARRAY;
    el->objLength = -1;
    el->payload.o = x;
    lowerArrayDepth(x, depth);
}

bool integerArgument(pObj x, int32_t &out) {
    if (!x)
        return false;
    if (x->type == TYPE_LONG) {
        out = x->payload.l;
        return true;
    }
    if (x->type != TYPE_NUMERIC)
        return false;
    double d = std::trunc(x->payload.d);
    out = d >= INT32_MAX ? INT32_MAX : d <= INT32_MIN ? INT32_MIN : static_cast<int32_t>(d);
    if (std::isnan(d))
        out = 0;
    return true;
}

} // namespace zq::runtime
