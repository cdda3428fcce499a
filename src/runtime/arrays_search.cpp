// Comparing, scanning and exchanging elements: __Comp, __SwapElements and __AScan.
#include "runtime/arrays.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "zelqa/arrays.h"
#include "zelqa/values.h"

#include <utility>

using namespace zq::runtime;

namespace {

bool isComparable(uint32_t type) {
    return type == TYPE_CHAR || type == TYPE_DATE || type == TYPE_NUMERIC || type == TYPE_LOGICAL;
}

int compareText(const char *x, const char *y) {
    const auto *a = reinterpret_cast<const unsigned char *>(x ? x : "");
    const auto *b = reinterpret_cast<const unsigned char *>(y ? y : "");
    for (; *a && *a == *b; ++a, ++b) {
    }
    return *a < *b ? -1 : *a > *b ? 1 : 0;
}

} // namespace

namespace zq::runtime {

pObj columnKey(pObj el, int32_t column) {
    if (el->type != TYPE_ARRAY)
        return el;
    return __GET_ARRAY_EL(el->payload.o, column);
}

} // namespace zq::runtime

int __Comp(pObj x, pObj y) noexcept {
    if (!x || !y)
        return -1;
    requireArgument(x->type == y->type && isComparable(x->type));
    switch (x->type) {
    case TYPE_CHAR:
        return compareText(x->payload.c, y->payload.c);
    case TYPE_LOGICAL:
        return x->payload.l == y->payload.l ? 0 : 1; // logicals are not ordered
    default:
        return x->payload.d < y->payload.d ? -1 : x->payload.d > y->payload.d ? 1 : 0;
    }
}

void __SwapElements(pObj x, pObj y) noexcept {
    if (!x || !y)
        return;
    // Tags stay where they are, so only records of one type, both array objects or both
    // references to one, trade payloads; a text's length goes with its buffer. The shared
    // constants and the literal record are never changed.
    requireArgument(x->type == y->type && (x->storageClass == CLASS_ARRAY) == (y->storageClass == CLASS_ARRAY));
    requireArgument(x->storageClass != CLASS_NEWCOPY && x->storageClass != CLASS_CONST &&
                    y->storageClass != CLASS_NEWCOPY && y->storageClass != CLASS_CONST);
    std::swap(x->payload, y->payload);
    if (x->type == TYPE_CHAR)
        std::swap(x->objLength, y->objLength);
}

pObj __AScan(pObj a, pObj x, pObj nStart, pObj nCount, pObj nColumn) noexcept {
    ArrayHeader &header = requireArray(a);
    if (!x || !isComparable(x->type) || (x->type == TYPE_CHAR && !x->payload.c))
        return sharedConstant(kScanNotFound);
    int32_t start = 1, end = header.count, column = 2;
    integerArgument(nStart, start);
    if (integerArgument(nCount, end) && (end < 1 || end > header.count))
        end = header.count; // nCount is the last position scanned
    integerArgument(nColumn, column);
    column = column < 1 ? -1 : column - 1; // 0-based; without nColumn the second column of each row
    if (start < 1)
        start = 1;
    if (start > end)
        return sharedConstant(kScanNotFound);
    pObj el = elementAt(header, start - 1);
    for (int32_t position = start; position <= end; ++position, el = el->next) {
        if (__Comp(columnKey(el, column), x) == 0)
            return __INIT_DOUBLE(position);
    }
    return sharedConstant(kScanNotFound);
}
