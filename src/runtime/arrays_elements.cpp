// Making arrays and reaching their elements: __CreateArray, __NewArrayElement, the
// element getters and setters and __ARRAY_EL.
#include "runtime/arrays.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "zelqa/arrays.h"
#include "zelqa/values.h"

#include <cstdarg>

using namespace zq::runtime;

namespace {

// Puts x into the element el of array a: arrays by reference, everything else by value.
void putValue(pObj a, pObj el, pObj x) {
    if (pObj nested = arrayOf(x)) {
        storeArrayReference(el, nested, a->depth);
        return;
    }
    if (el->type == TYPE_ARRAY)
        dropArrayReference(el); // the nested array no longer counts this element
    __SET_OBJECT(el, x);
}

} // namespace

pObj __CreateArray(pObj first, ...) noexcept {
    pObj a = __fcpObj_CT(kArrayList);
    va_list args;
    va_start(args, first);
    for (pObj x = first; !x || x->type != TYPE_NUL; x = va_arg(args, pObj)) {
        requireArgument(x != nullptr);
        __NewArrayElement(a, x);
    }
    va_end(args);
    return a;
}

pObj __NewArrayElement(pObj a, pObj x) noexcept {
    requireArray(a);
    requireArgument(x != nullptr);
    pObj el = appendElement(a);
    if (x->type != TYPE_NIL)
        putValue(a, el, x);
    return el;
}

pObj __GET_ARRAY_EL(pObj a, int32_t i) noexcept {
    pObj el = elementAt(requireArray(a), i);
    return el->type == TYPE_ARRAY ? el->payload.o : el;
}

pObj __SET_ARRAY_EL(pObj a, pObj x, int32_t i) noexcept {
    requireArgument(x != nullptr);
    pObj el = elementAt(requireArray(a), i);
    putValue(a, el, x);
    return el;
}

int32_t __Array_Get_Amnt_Itens(pObj a) noexcept {
    requireArgument(a && a->storageClass == CLASS_ARRAY && a->type == TYPE_ARRAY);
    return a->payload.a ? a->payload.a->count : -1;
}

pObj __Array_Get_Item(pObj a, pObj nIndex) noexcept {
    int32_t position = 0;
    requireArgument(integerArgument(nIndex, position));
    return __GET_ARRAY_EL(a, position < 1 ? -1 : position - 1); // below 1 is out of bounds
}

pObj __ARRAY_EL(pObj a, ...) noexcept {
    requireArray(a);
    pObj current = a;
    va_list args;
    va_start(args, a);
    for (pObj index = va_arg(args, pObj); index && index->type != TYPE_NUL; index = va_arg(args, pObj)) {
        if (!isArrayObject(current))
            break; // a scalar reached before the indexes ran out
        int32_t position = 0;
        requireArgument(integerArgument(index, position));
        current = __GET_ARRAY_EL(current, position < 1 ? -1 : position - 1);
    }
    va_end(args);
    return current;
}
