// The index built-ins: creating, opening, closing, switching order and rebuilding.
#include "runtime/context.h"
#include "runtime/raise.h"
#include "tables/arguments.h"
#include "tables/definition_block.h"
#include "tables/field_lookup.h"
#include "tables/index_files.h"
#include "tables/index_keys.h"
#include "tables/index_orders.h"
#include "tables/opening.h"
#include "tables/positioning.h"
#include "tables/row.h"
#include "tables/shared_databases.h"
#include "zelqa/boxes.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

namespace zq::tables {
namespace {

using runtime::raiseError;

// The 1-based field numbers the expression names; a name not found is INDEX CREATE_ERROR! 50.
std::vector<int32_t> keyFieldsOf(AreaRecord &a, const std::string &expression) {
    std::vector<int32_t> fields;
    for (const std::string &name : keyFieldNames(expression)) {
        int32_t position = lookUpField(a, __INIT_CHARPTR(name.c_str()));
        if (position < 1)
            raiseError(ZQ_ERR_INDEX_CREATE, 50);
        fields.push_back(position);
    }
    return fields;
}

// The index name argument of creation: missing 47, not character ARGUMENT ERROR!, empty
// or longer than a database name 48; the table's own names 46.
std::string indexNameArgument(AreaRecord &a, pObj cIndexName) {
    if (isMissing(cIndexName))
        raiseError(ZQ_ERR_RUNTIME, 47);
    std::string name = upperText(requireText(cIndexName));
    if (name.empty() || name.size() > kTableNameMax)
        raiseError(ZQ_ERR_EG_ARG, 48);
    if (name == a.def.name || name == memoName(a.def.name))
        raiseError(ZQ_ERR_RUNTIME, 46);
    return name;
}

// The index position of the current row in the current order, when it has an entry.
void findCurrentRow(AreaRecord &a) {
    IndexDef &index = a.def.indexes[a.order];
    if (a.eof || a.bof || a.appending || !index.db)
        return;
    std::vector<uint8_t> entry = buildEntry(a, index, uint32_t(a.current));
    int32_t position = -1;
    if (FindKeyInIndexFile(index.db, entry.data(), index.attribute, &position))
        a.indexPosition = position;
}

} // namespace

int32_t indexNumber(const AreaRecord &a, const std::string &name) {
    for (size_t i = 0; i < a.def.indexes.size(); ++i)
        if (a.def.indexes[i].name == name)
            return int32_t(i);
    return -1;
}

void closeIndexes(AreaRecord &a) {
    for (auto index = a.def.indexes.rbegin(); index != a.def.indexes.rend(); ++index) {
        closeShared(index->db);
        index->db = nullptr;
    }
    a.order = kNoOrder;
    a.indexPosition = -1;
}

bool openIndex(AreaRecord &a, const std::string &name, bool makeCurrent) {
    int32_t number = indexNumber(a, name);
    if (number < 0) {
        __gMessageBox("Alert", name.c_str());
        __gMessageBox("Alert", "INVALID_INDEX");
        raiseError(ZQ_ERR_INVALID_INDEX, 15);
    }
    IndexDef &index = a.def.indexes[size_t(number)];
    if (!index.db)
        index.db = openShared(index.name);
    if (!index.db)
        return false;
    if (makeCurrent) {
        writePending(a);
        a.order = uint16_t(number);
        a.indexPosition = -1;
        bringInStep(a, index);
        goTop(a);
    }
    return true;
}

} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::logical;
using zq::runtime::raiseError;

pObj __DBCREATEINDEX(pObj cIndexName, pObj cKeyExpr, ...) noexcept {
    AreaRecord &a = requireArea(nullptr, ZQ_ERR_EG_ARG, 45);
    writePending(a);
    std::string expression = cKeyExpr && cKeyExpr->type == TYPE_CHAR ? requireText(cKeyExpr) : std::string();
    if (keyFieldNames(expression).empty())
        raiseError(ZQ_ERR_INDEX_CREATE, 44);
    std::string name = indexNameArgument(a, cIndexName);
    std::vector<int32_t> fields = keyFieldsOf(a, expression);
    int32_t number = indexNumber(a, name);
    if (number >= 0) { // the same name again: its database is made anew
        closeShared(a.def.indexes[size_t(number)].db);
        a.def.indexes[size_t(number)].db = nullptr;
    }
    if (LocalID id = DmFindDatabase(0, name.c_str()))
        DmDeleteDatabase(0, id);
    DmCreateDatabase(0, name.c_str(), kCreatorZelq, kTypeIndex, 0);
    DmOpenRef db = openShared(name);
    if (!db)
        raiseError(ZQ_ERR_INDEX_CREATE, 49);
    if (number < 0) {
        number = int32_t(a.def.indexes.size());
        a.def.indexes.emplace_back();
    }
    IndexDef &index = a.def.indexes[size_t(number)];
    index.name = name;
    index.db = db;
    index.keyFields = fields;
    index.attribute = recordedKeyLength(a.def, fields);
    index.keyChanged = index.detached = false;
    writeTableBlock(a.def, a.db);
    writeIndexBlock(index, db);
    rebuildIndex(a, index);
    a.order = uint16_t(number);
    goTop(a);
    return logical(true);
}

pObj __OpenIDX(pObj area, pObj cIndexName, pObj lMakeCurrent) noexcept {
    AreaRecord &a = requireArea(area);
    bool makeCurrent = lMakeCurrent && lMakeCurrent->type == TYPE_LOGICAL && lMakeCurrent->payload.l;
    return logical(openIndex(a, upperText(requireText(cIndexName)), makeCurrent));
}

pObj __UseIndex(pObj area, pObj cIndexName) noexcept {
    AreaRecord &a = requireArea(area);
    return logical(openIndex(a, upperText(requireText(cIndexName)), true));
}

pObj __CloseIDX(pObj area, pObj cIndexName) noexcept {
    AreaRecord &a = requireArea(area);
    int32_t number = indexNumber(a, upperText(requireText(cIndexName)));
    if (number < 0)
        return logical(false);
    writePending(a);
    IndexDef &index = a.def.indexes[size_t(number)];
    closeShared(index.db);
    index.db = nullptr;
    if (a.order == number) {
        a.order = kNoOrder;
        a.indexPosition = -1;
    }
    return logical(true);
}

pObj __CloseAllIdx(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    writePending(a);
    closeIndexes(a);
    return __INIT_NIL();
}

pObj __GetFirstOpenIDX(pObj area) noexcept {
    AreaRecord &a = requireArea(area, ZQ_ERR_RUNTIME, 14);
    for (size_t i = 0; i < a.def.indexes.size(); ++i)
        if (a.def.indexes[i].db)
            return __INIT_DOUBLE(double(i + 1));
    return __INIT_DOUBLE(0);
}

pObj __GetIdxInd(pObj area, pObj cIndexName) noexcept {
    AreaRecord &a = requireArea(area);
    return __INIT_DOUBLE(indexNumber(a, upperText(requireText(cIndexName))) + 1.0);
}

pObj __ClearIndex(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    a.order = kNoOrder;
    a.indexPosition = -1;
    return __INIT_NIL();
}

pObj __TBL_SetOrder(pObj area, pObj nOrder) noexcept {
    int64_t order = requireWhole(nOrder) - 1;
    int16_t number = __GetAliasID(area);
    AreaRecord *a = areaAt(number);
    if (number < 0 || !a || order < 0 || order >= int64_t(a->def.indexes.size()))
        raiseError(ZQ_ERR_INVALID_INDEX, 31);
    if (a->order == order)
        return __INIT_NIL();
    writePending(*a);
    IndexDef &index = a->def.indexes[size_t(order)];
    if (!index.db)
        index.db = openShared(index.name);
    a->order = uint16_t(order);
    bringInStep(*a, index);
    findCurrentRow(*a);
    return __INIT_NIL();
}

pObj __IndexOrd(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    return __INIT_DOUBLE(a.order == kNoOrder ? 0.0 : a.order + 1.0);
}

pObj __IndexKey(pObj area, pObj nOrder) noexcept {
    AreaRecord &a = requireArea(area);
    int64_t order = isMissing(nOrder) ? (a.order == kNoOrder ? -1 : int64_t(a.order)) : requireWhole(nOrder) - 1;
    if (order < 0 || order >= int64_t(a.def.indexes.size()))
        return __INIT_CHARPTR("");
    return __INIT_CHARPTR(keyExpressionOf(a.def, a.def.indexes[size_t(order)]).c_str());
}

pObj __Reindex(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    writePending(a);
    rebuildIndexes(a);
    return __INIT_NIL();
}
