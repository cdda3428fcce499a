// Value constructors: temporaries of every type, heap records, literals and shared constants.
#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/owner_lists.h"
#include "runtime/raise.h"
#include "runtime/temporaries.h"
#include "zelqa/values.h"

#include <cstddef>
#include <cstring>

using namespace zq::runtime;

// Saved arrays and compiled code of the 32-bit target rely on this layout.
static_assert(sizeof(void *) != 4 || sizeof(Obj) == 32, "a value record is 32 bytes on 32-bit builds");
static_assert(offsetof(Obj, payload) % 8 == 0 && sizeof(Obj::payload) == 8, "8-byte aligned payload");

namespace {

pObj scalarTemporary(uint32_t type) {
    pObj t = takeTemporary();
    t->type = type;
    t->objLength = -1;
    return t;
}

Obj literalRecord = {nullptr, CLASS_CONST, TYPE_CHAR, 1, {0}, 0, -1};

} // namespace

pObj __INIT_LONG(int32_t value) noexcept {
    pObj t = scalarTemporary(TYPE_LONG);
    t->payload.l = value;
    return t;
}

pObj __INIT_DOUBLE(double value) noexcept {
    pObj t = scalarTemporary(TYPE_NUMERIC);
    t->payload.d = value;
    return t;
}

pObj __INIT_DATE(double dayNumber) noexcept {
    pObj t = scalarTemporary(TYPE_DATE);
    t->payload.d = dayNumber;
    return t;
}

pObj __INIT_HANDLE(void *handle) noexcept {
    pObj t = scalarTemporary(TYPE_HANDLE);
    t->payload.p = handle;
    return t;
}

pObj __INIT_VOIDPTR(void *pointer) noexcept {
    pObj t = scalarTemporary(TYPE_VOIDPTR);
    t->payload.p = pointer;
    return t;
}

pObj __ALLOC_CHARPTR(int32_t n) noexcept {
    if (n < 0 || n >= INT16_MAX)
        raiseError(ZQ_ERR_LOW_MEMORY);
    pObj t = takeTemporary();
    t->payload.c = static_cast<char *>(allocate(textBufferSize(n + 1)));
    t->type = TYPE_CHAR;
    t->objLength = static_cast<int16_t>(n + 1);
    return t;
}

pObj __INIT_CHARPTR(const char *text) noexcept {
    size_t length = text ? std::strlen(text) : 0;
    if (length >= INT16_MAX - 1)
        raiseError(ZQ_ERR_LOW_MEMORY);
    pObj t = __ALLOC_CHARPTR(static_cast<int32_t>(length));
    if (length)
        std::memcpy(t->payload.c, text, length);
    return t;
}

pObj __INIT_CHARCONST(const char *text) noexcept {
    if (!text)
        text = ""; // as __INIT_CHARPTR takes a null text
    literalRecord.storageClass = CLASS_CONST;
    literalRecord.type = TYPE_CHAR;
    literalRecord.depth = -1;
    literalRecord.payload.c = const_cast<char *>(text);
    literalRecord.objLength = static_cast<int16_t>(std::strlen(text) + 1);
    return &literalRecord;
}

pObj __INIT_BOOL(int value) noexcept { return logical(value != 0); }

pObj __INIT_NIL(void) noexcept { return sharedConstant(kNil); }

pObj __INIT_NUL(void) noexcept { return sharedConstant(kNul); }

pObj __fcpObj_CT(int list) noexcept {
    requireArgument(list >= kArrayList && list <= kElementList);
    RuntimeContext &ctx = context();
    auto rec = static_cast<pObj>(allocate(sizeof(Obj)));
    rec->objLength = -1;
    rec->storageClass = static_cast<uint32_t>(list);
    rec->depth = ctx.depth;
    rec->type = TYPE_NIL;
    if (list == kArrayList) {
        rec->payload.a = static_cast<ArrayHeader *>(allocate(sizeof(ArrayHeader)));
        rec->type = TYPE_ARRAY;
    }
    if (list != kElementList)
        appendToList(ctx.lists[list], rec);
    return rec;
}

pObj __InitObjNode(pObj rec, uint32_t type) noexcept {
    // A record tagged with no type the runtime knows would be read as whatever it is not.
    requireArgument(rec && (type == TYPE_LONG || type == TYPE_CHAR || type == TYPE_ARRAY || type == TYPE_DATE ||
                            type == TYPE_NUMERIC || type == TYPE_LOGICAL || type == TYPE_NIL || type == TYPE_NUL ||
                            type == TYPE_VOIDPTR || type == TYPE_HANDLE));
    std::memset(rec, 0, sizeof(Obj));
    rec->storageClass = CLASS_VAR;
    rec->type = type;
    rec->objLength = -1;
    return rec;
}
