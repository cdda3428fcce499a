// Assignment (__SET_OBJECT), by-reference variables and the release of a variable.
//
// Scalars are copied by value; a temporary's text buffer moves instead of being copied.
// Arrays are shared by reference, and assigning one lowers its depth to the target's,
// so it lives as long as the outermost context that refers to it.
#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/owner_lists.h"
#include "runtime/raise.h"
#include "zelqa/arrays.h"
#include "zelqa/values.h"

#include <cstring>

using namespace zq::runtime;

namespace {

bool isValueType(uint32_t type) {
    switch (type) {
    case TYPE_LONG: case TYPE_CHAR: case TYPE_ARRAY: case TYPE_DATE: case TYPE_NUMERIC:
    case TYPE_LOGICAL: case TYPE_NIL: case TYPE_NUL: case TYPE_VOIDPTR: case TYPE_HANDLE:
        return true;
    default:
        return false;
    }
}

void copyText(pObj dst, pObj src) {
    if (!src->payload.c) {
        dst->objLength = 0; // a text without a buffer copies as NUL, on purpose
        dst->type = TYPE_NUL;
        return;
    }
    dst->type = TYPE_CHAR;
    dst->objLength = src->objLength;
    if (src->storageClass == CLASS_TEMP && src->lockCount == 0) {
        dst->payload.c = src->payload.c; // the temporary gives its buffer away
        src->payload.c = nullptr;
        src->objLength = 0;
        return;
    }
    size_t size = textBufferSize(src->objLength);
    dst->payload.c = static_cast<char *>(allocate(size));
    std::memcpy(dst->payload.c, src->payload.c, strnlen(src->payload.c, size - 1)); // zeroed: stays terminated
}

pObj copyByValue(pObj dst, pObj src) {
    if (!dst)
        dst = __fcpObj_CT(kVariableList);
    dst->objLength = -1;
    requireArgument(isValueType(src->type) && src->type != TYPE_ARRAY);
    switch (src->type) {
    case TYPE_CHAR:
        copyText(dst, src);
        break;
    case TYPE_VOIDPTR:
    case TYPE_HANDLE:
        dst->type = TYPE_VOIDPTR; // a copied handle is a plain pointer, on purpose
        dst->payload = src->payload;
        break;
    default:
        dst->type = src->type;
        dst->payload = src->payload;
        break;
    }
    return dst;
}

pObj shareArray(pObj dst, pObj src) {
    if (!dst || dst->storageClass == CLASS_TEMP)
        return src;
    if (dst->storageClass == CLASS_VAR) {
        int16_t depth = dst->depth;
        __fcObj_DT(dst);
        if (depth < src->depth)
            src->depth = depth;
        return src;
    }
    if (dst->depth < src->depth)
        src->depth = dst->depth;
    return src;
}

// Moves src's elements into the array dst and destroys what dst held before.
pObj moveArray(pObj dst, pObj src) {
    ArrayHeader *held = dst->payload.a;
    dst->payload.a = src->payload.a;
    src->payload.a = held;
    __ASize(src, __INIT_LONG(0));
    __KillArray(src);
    return dst;
}

} // namespace

pObj __SET_OBJECT(pObj dst, pObj src) noexcept {
    if (dst == src)
        return dst;
    requireArgument(src != nullptr);
    if (dst) {
        if (dst->storageClass == CLASS_CONST)
            return dst;
        if (dst->storageClass == CLASS_NEWCOPY)
            dst = nullptr;
        else if (dst->storageClass == CLASS_ARRAY && src->storageClass == CLASS_ARRAY)
            return moveArray(dst, src);
        else if (dst->storageClass == CLASS_ARRAY)
            raiseError(ZQ_ERR_ARGUMENT); // an array object holds its elements, never a scalar
        else if (dst->type == TYPE_CHAR) {
            bool owned = (dst->storageClass != CLASS_ARRAY && dst->storageClass != CLASS_ELEMENT) ||
                         dst->objLength >= 1;
            if (owned)
                releaseText(dst);
        }
    }
    if (src->storageClass != CLASS_ARRAY)
        return copyByValue(dst, src);
    return shareArray(dst, src);
}

pObj __ByRef(pObj *slot) noexcept {
    if (!slot)
        raiseError(ZQ_ERR_ARGUMENT);
    if (!*slot)
        *slot = __SET_OBJECT(nullptr, sharedConstant(kNil));
    return *slot;
}

pObj __fcObj_DT(pObj rec) noexcept {
    if (!rec || rec->lockCount < 0)
        return nullptr;
    if (rec->lockCount > 0) {
        --rec->lockCount;
        return rec->next;
    }
    if (rec->storageClass != CLASS_VAR)
        return nullptr;
    pObj following = unlinkFromList(context().lists[kVariableList], rec);
    releaseText(rec);
    release(rec);
    return following;
}
