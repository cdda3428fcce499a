// Lookup by name, and __GetFieldPos.
//
// Names are compared by hash first and text second; the hash is the one every field
// definition carries, with characters above 127 counting negative.
#include "tables/field_lookup.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

namespace zq::tables {

int32_t lookUpField(AreaRecord &a, pObj cName) {
    if (!cName)
        runtime::raiseError(ZQ_ERR_INVALID_FIELD, 27);
    runtime::requireArgument(cName->type == TYPE_CHAR);
    if (!cName->payload.c || cName->objLength < 1)
        runtime::raiseError(ZQ_ERR_INVALID_FIELD, 28);
    if (a.def.fields.empty())
        runtime::raiseError(ZQ_ERR_INVALID_FIELD, 30);
    std::string_view name = cName->payload.c;
    uint32_t hash = fieldHash(name);
    auto matches = [&](int32_t position) {
        const FieldDef &f = a.def.fields[size_t(position) - 1];
        return f.hash == hash && f.name == name;
    };
    int32_t fields = int32_t(a.def.fields.size());
    if (a.rememberedField >= 1 && a.rememberedField <= fields && matches(a.rememberedField))
        return a.rememberedField;
    for (int32_t position = 1; position <= fields; ++position)
        if (matches(position))
            return a.rememberedField = position;
    return 0;
}

} // namespace zq::tables

using namespace zq::tables;

pObj __GetFieldPos(pObj area, pObj cName) noexcept {
    AreaRecord &a = requireArea(area, ZQ_ERR_INVALID_FIELD, 29);
    int32_t position = lookUpField(a, cName);
    if (position < 1)
        return zq::runtime::sharedConstant(zq::runtime::kNoField);
    return __INIT_DOUBLE(position);
}
