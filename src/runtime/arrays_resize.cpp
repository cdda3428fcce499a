// Growing and shrinking arrays: __Array, __AAdd, __ASize, __AIns, __ADel, __DelEl, __ATail.
#include "runtime/arrays.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "zelqa/arrays.h"
#include "zelqa/values.h"

#include <cstdarg>
#include <cstddef>
#include <vector>

using namespace zq::runtime;

namespace {

// A new array of dims[level] elements, each an array of the next dimension; NIL innermost.
pObj buildDimensions(const std::vector<int32_t> &dims, std::size_t level) {
    pObj a = __fcpObj_CT(kArrayList);
    for (int32_t i = 0; i < dims[level]; ++i) {
        pObj el = appendElement(a);
        if (level + 1 < dims.size())
            storeArrayReference(el, buildDimensions(dims, level + 1), a->depth);
    }
    return a;
}

// Unlinks the element at 0-based index i (inside the bounds) and returns it.
pObj unlinkElement(ArrayHeader &header, int32_t i) {
    pObj previous = i > 0 ? elementAt(header, i - 1) : nullptr;
    pObj el = previous ? previous->next : header.first;
    (previous ? previous->next : header.first) = el->next;
    if (header.last == el)
        header.last = previous;
    el->next = nullptr;
    --header.count;
    return el;
}

// Cuts the chain after its first n elements and releases the rest.
void truncateTo(ArrayHeader &header, int32_t n) {
    pObj rest = n > 0 ? elementAt(header, n - 1)->next : header.first;
    if (n > 0) {
        header.last = elementAt(header, n - 1);
        header.last->next = nullptr;
    } else {
        header.first = header.last = nullptr;
    }
    header.count = n;
    while (rest) {
        pObj next = rest->next;
        releaseElement(rest);
        rest = next;
    }
}

bool isFalse(pObj x) {
    if (!x)
        return false;
    if (x->type == TYPE_LOGICAL || x->type == TYPE_LONG)
        return x->payload.l == 0;
    return x->type == TYPE_NUMERIC && x->payload.d == 0.0;
}

} // namespace

pObj __Array(pObj nDim1, ...) noexcept {
    std::vector<int32_t> dims;
    va_list args;
    va_start(args, nDim1);
    for (pObj n = nDim1; n && n->type != TYPE_NUL; n = va_arg(args, pObj)) {
        int32_t count = 0;
        requireArgument(integerArgument(n, count));
        dims.push_back(count < 0 ? 0 : count);
    }
    va_end(args);
    requireArgument(!dims.empty());
    int64_t total = 1, made = 0;
    for (int32_t count : dims) {
        total *= count;
        made += total;
        if (made > kMaxArrayElements)
            raiseError(ZQ_ERR_LOW_MEMORY);
        if (total == 0)
            break;
    }
    return buildDimensions(dims, 0);
}

pObj __AAdd(pObj a, pObj x) noexcept {
    requireArray(a);
    requireArgument(x != nullptr);
    __NewArrayElement(a, x);
    return a;
}

pObj __ASize(pObj a, pObj n) noexcept {
    ArrayHeader &header = requireArray(a);
    int32_t target = 0;
    requireArgument(integerArgument(n, target));
    if (target < 0)
        target = 0;
    if (target > kMaxArrayElements)
        raiseError(ZQ_ERR_LOW_MEMORY);
    if (target < header.count)
        truncateTo(header, target);
    while (header.count < target)
        appendElement(a);
    return a;
}

pObj __AIns(pObj a, pObj nPos) noexcept {
    ArrayHeader &header = requireArray(a);
    int32_t position = 0;
    requireArgument(integerArgument(nPos, position));
    if (position < 1 || position > header.count)
        return a;
    pObj el = newElementRecord(a->depth);
    pObj previous = position > 1 ? elementAt(header, position - 2) : nullptr;
    el->next = previous ? previous->next : header.first;
    (previous ? previous->next : header.first) = el;
    ++header.count;
    truncateTo(header, header.count - 1); // the old last element drops off the end
    return a;
}

pObj __DelEl(pObj a, pObj nPos, pObj lFill) noexcept {
    ArrayHeader &header = requireArray(a);
    int32_t position = 0;
    requireArgument(integerArgument(nPos, position));
    if (position < 1 || position > header.count)
        return a;
    pObj removed = unlinkElement(header, position - 1);
    const bool heldArray = removed->type == TYPE_ARRAY;
    releaseElement(removed);
    if (isFalse(lFill))
        return a;
    pObj filler = appendElement(a);
    if (heldArray)
        storeArrayReference(filler, __fcpObj_CT(kArrayList), a->depth);
    return a;
}

pObj __ADel(pObj a, pObj nPos) noexcept { return __DelEl(a, nPos, nullptr); }

pObj __ATail(pObj a) noexcept {
    ArrayHeader &header = requireArray(a);
    if (header.count == 0)
        return nullptr;
    return __GET_ARRAY_EL(a, header.count - 1);
}
