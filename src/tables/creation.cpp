// __DBCREATE and __DBStruct: a table's structure array in and out.
//
// Creation replaces a table of the same name, makes the database, opens it for a moment
// in a new area to store its definition, makes the memo companion and closes the area.
// It is not transactional: a fault after the database is made leaves it in the store.
#include "runtime/arrays.h"
#include "runtime/context.h"
#include "runtime/raise.h"
#include "tables/arguments.h"
#include "tables/definition_block.h"
#include "tables/opening.h"
#include "tables/work_areas.h"
#include "zelqa/arrays.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

namespace zq::tables {
namespace {

using runtime::raiseError;

// The structure array's rows; each must be an array of at least four values.
std::vector<pObj> structureRows(pObj aStruct) {
    pObj structure = runtime::arrayOf(aStruct);
    runtime::requireArgument(structure != nullptr);
    int32_t count = __Array_Get_Amnt_Itens(structure);
    if (count < 1)
        raiseError(ZQ_ERR_EG_ARG, 38);
    std::vector<pObj> rows;
    for (int32_t i = 0; i < count; ++i) {
        pObj row = runtime::arrayOf(__GET_ARRAY_EL(structure, i));
        if (!row || __Array_Get_Amnt_Itens(row) < 4)
            raiseError(ZQ_ERR_EG_ARG, 39);
        rows.push_back(row);
    }
    return rows;
}

// Lengths and decimals as stored: 0 to the largest record.
int32_t clampedLength(int64_t n) { return int32_t(n < 0 ? 0 : (n > 15360 ? 15360 : n)); }

FieldDef fieldOfRow(pObj row) {
    FieldDef f;
    f.name = upperText(requireText(__GET_ARRAY_EL(row, 0))).substr(0, kFieldNameMax);
    std::string letter = requireText(__GET_ARRAY_EL(row, 1));
    f.type = typeCodeOfLetter(letter.empty() ? 'C' : letter[0]);
    f.length = storedLength(f.type, clampedLength(requireWhole(__GET_ARRAY_EL(row, 2))));
    f.decimals = clampedLength(requireWhole(__GET_ARRAY_EL(row, 3)));
    f.hash = fieldHash(f.name);
    return f;
}

TableDef definitionOf(const std::string &name, const std::vector<pObj> &rows) {
    TableDef def;
    def.name = name;
    for (pObj row : rows) {
        def.fields.push_back(fieldOfRow(row));
        def.hasMemo = def.hasMemo || def.fields.back().type == kMemo;
    }
    def.fields.push_back(deletionField());
    layoutBuffer(def);
    return def;
}

// Closes the areas holding the table, then deletes it and its memo companion.
void dropTable(const std::string &name) {
    WorkAreas &w = workAreas();
    for (int16_t area = 0; area < w.handedOut; ++area)
        if (AreaRecord *a = areaAt(area); a && a->def.name == name)
            closeArea(area);
    for (const std::string &db : {name, memoName(name)})
        if (LocalID id = DmFindDatabase(0, db.c_str()))
            DmDeleteDatabase(0, id);
}

} // namespace
} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::raiseError;

pObj __DBCREATE(pObj cDatabase, pObj aStruct, pObj) noexcept {
    if (!cDatabase || !aStruct)
        raiseError(ZQ_ERR_RUNTIME, 36);
    std::string name = upperText(requireText(cDatabase));
    if (name.empty())
        raiseError(ZQ_ERR_EG_ARG, 37);
    TableDef def = definitionOf(name, structureRows(aStruct));
    // Names the catalog cannot hold, for the table or its memo companion, cannot be opened.
    if (name.size() > kTableNameMax || (def.hasMemo && memoName(name).size() > kTableNameMax))
        raiseError(ZQ_ERR_RUNTIME, 40);
    if (__File(cDatabase) == zq::runtime::logical(true))
        dropTable(name);
    if (DmFindDatabase(0, name.c_str()))
        return zq::runtime::logical(false);
    DmCreateDatabase(0, name.c_str(), kCreatorZelq, kTypeData, 0);
    int16_t previous = workAreas().current;
    OpenRequest request{name, std::string(), nullptr, true, &def};
    int16_t area = openTable(request);
    if (area < 0)
        raiseError(ZQ_ERR_RUNTIME, 40);
    writeTableBlock(def, areaAt(area)->db);
    if (def.hasMemo)
        DmCreateDatabase(0, memoName(name).c_str(), kCreatorZelq, kTypeMemo, 0);
    closeArea(area);
    workAreas().current = previous;
    return zq::runtime::logical(true);
}

pObj __DBStruct(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    pObj result = __CreateArray(__INIT_NUL());
    for (size_t i = 0; i + 1 < a.def.fields.size(); ++i) {
        const FieldDef &f = a.def.fields[i];
        char letter[2] = {letterOfTypeCode(f.type), 0};
        pObj row = __CreateArray(__INIT_CHARPTR(f.name.c_str()), __INIT_CHARPTR(letter), __INIT_DOUBLE(f.length),
                                 __INIT_DOUBLE(f.decimals), __INIT_NUL());
        __NewArrayElement(result, row);
    }
    return result;
}
