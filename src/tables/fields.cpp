// Field access: reading a field of the current row, changing it, and the field facts.
#include "runtime/context.h"
#include "runtime/raise.h"
#include "tables/arguments.h"
#include "tables/field_lookup.h"
#include "tables/index_hooks.h"
#include "tables/memo.h"
#include "tables/row.h"
#include "zelqa/boxes.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

#include <cstring>

namespace zq::tables {
namespace {

using runtime::raiseError;

double slotDouble(const uint8_t *slot) {
    double d;
    std::memcpy(&d, slot, 8);
    return d;
}

uint32_t slotReference(const uint8_t *slot) {
    uint32_t r;
    std::memcpy(&r, slot, 4);
    return r;
}

// A character field as a value: the slot's text, blank-padded to the declared length
// unless bare is asked for.
pObj characterValue(const uint8_t *slot, int32_t length, bool bare) {
    size_t limit = size_t(length < 0 ? 0 : length);
    const void *end = std::memchr(slot, 0, limit);
    size_t n = end ? size_t(static_cast<const uint8_t *>(end) - slot) : limit;
    pObj value = __ALLOC_CHARPTR(int32_t(bare ? n : limit));
    std::memcpy(value->payload.c, slot, n);
    if (!bare)
        std::memset(value->payload.c + n, ' ', limit - n);
    return value;
}

pObj fieldValue(AreaRecord &a, const FieldDef &f, bool bare) {
    const uint8_t *slot = a.buffer.data() + f.slot;
    switch (f.type) {
    case kNumeric: return __INIT_DOUBLE(slotDouble(slot));
    case kDate: return __INIT_DATE(slotDouble(slot));
    case kCharacter: return characterValue(slot, f.length, bare);
    case kLogical: return runtime::logical(slot[0] != 0);
    case kMemo: return __INIT_CHARPTR(readMemo(a, slotReference(slot)).c_str());
    default:
        __gMessageBox("Alert", "campo n\343o identificado!");
        return __INIT_NIL();
    }
}

// The field a 1-based number names; INVALID FIELD! with aux outside 1..field count.
const FieldDef &fieldAt(AreaRecord &a, pObj nField, int aux) {
    int64_t n = requireWhole(nField);
    if (n < 1 || n > int64_t(a.def.fields.size()))
        raiseError(ZQ_ERR_INVALID_FIELD, aux);
    return a.def.fields[size_t(n) - 1];
}

bool valueFits(uint32_t type, pObj x) {
    switch (type) {
    case kNumeric: return isNumber(x);
    case kDate: return x->type == TYPE_DATE;
    case kCharacter:
    case kMemo: return x->type == TYPE_CHAR;
    case kLogical: return x->type == TYPE_LOGICAL;
    default: return false;
    }
}

void storeValue(AreaRecord &a, const FieldDef &f, pObj x) {
    uint8_t *slot = a.buffer.data() + f.slot;
    switch (f.type) {
    case kNumeric:
    case kDate: {
        double d = x->type == TYPE_LONG ? double(x->payload.l) : x->payload.d;
        std::memcpy(slot, &d, 8);
        break;
    }
    case kLogical:
        slot[0] = x->payload.l != 0;
        break;
    case kCharacter: {
        std::string text = requireText(x);
        size_t length = size_t(f.length < 0 ? 0 : f.length);
        std::memset(slot, ' ', length);
        std::memcpy(slot, text.data(), std::min(text.size(), length));
        slot[length] = 0;
        break;
    }
    case kMemo: {
        uint32_t reference = writeMemo(a, slotReference(slot), requireText(x));
        std::memcpy(slot, &reference, 4);
        break;
    }
    }
}

} // namespace
} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::raiseError;

pObj __GetFieldByID(pObj area, pObj nField) noexcept {
    AreaRecord &a = requireArea(area);
    return fieldValue(a, fieldAt(a, nField, 25), false);
}

pObj __GetFieldByName(pObj area, pObj cName) noexcept {
    AreaRecord &a = requireArea(area);
    int32_t position = lookUpField(a, cName);
    if (position < 1)
        raiseError(ZQ_ERR_INVALID_FIELD, 26);
    return fieldValue(a, a.def.fields[size_t(position) - 1], false);
}

pObj __GetField(pObj area, pObj xField, pObj lBare) noexcept {
    AreaRecord &a = requireArea(area);
    bool bare = lBare && lBare->type == TYPE_LOGICAL && lBare->payload.l;
    if (xField && xField->type == TYPE_CHAR) {
        int32_t position = lookUpField(a, xField);
        if (position < 1)
            raiseError(ZQ_ERR_INVALID_FIELD, 26);
        return fieldValue(a, a.def.fields[size_t(position) - 1], bare);
    }
    return fieldValue(a, fieldAt(a, xField, 25), bare);
}

pObj __GetFieldName(pObj area, pObj nField) noexcept {
    AreaRecord &a = requireArea(area);
    return __INIT_CHARPTR(fieldAt(a, nField, 26).name.c_str());
}

pObj __FieldLen(pObj area, pObj nField) noexcept {
    AreaRecord &a = requireArea(area);
    return __INIT_DOUBLE(fieldAt(a, nField, 26).length);
}

pObj __FieldDecLen(pObj area, pObj nField) noexcept {
    AreaRecord &a = requireArea(area);
    return __INIT_DOUBLE(fieldAt(a, nField, 26).decimals);
}

pObj __FieldType(pObj area, pObj nField) noexcept {
    AreaRecord &a = requireArea(area);
    char letter[2] = {letterOfTypeCode(fieldAt(a, nField, 26).type), 0};
    return __INIT_CHARPTR(letter);
}

pObj __SetField(pObj area, pObj nField, pObj xValue) noexcept {
    AreaRecord &a = requireArea(area);
    int64_t n = requireWhole(nField);
    if (n < 1 || n > int64_t(a.def.fields.size()))
        return __INIT_NIL(); // a field out of range is ignored
    const FieldDef &f = a.def.fields[size_t(n) - 1];
    if (!xValue)
        raiseError(ZQ_ERR_RUNTIME, 22);
    if (f.type == kInteger || f.type > kBinary)
        raiseError(ZQ_ERR_RUNTIME, 23);
    if (f.type == kBinary)
        return xValue; // accepted, holds nothing
    zq::runtime::requireArgument(valueFits(f.type, xValue));
    if ((a.eof || a.bof) && !a.appending)
        return xValue; // no row to change
    storeValue(a, f, xValue);
    a.pending = true;
    if (f.type != kMemo)
        markKeyChanges(a, int32_t(n));
    return xValue;
}
