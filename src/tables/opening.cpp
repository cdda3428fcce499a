// Opening a table: its database, its definition, its indexes and its memo companion.
#include "tables/opening.h"

#include "runtime/raise.h"
#include "tables/definition_block.h"
#include "tables/index_files.h"
#include "tables/positioning.h"
#include "tables/shared_databases.h"
#include "tables/work_areas.h"

namespace zq::tables {
namespace {

// A lost companion is made again, empty, so that the table stays usable.
DmOpenRef openMemo(const std::string &table) {
    std::string name = memoName(table);
    if (!DmFindDatabase(0, name.c_str()))
        DmCreateDatabase(0, name.c_str(), kCreatorZelq, kTypeMemo, 0);
    return openShared(name);
}

void openIndexes(AreaRecord &a) {
    for (IndexDef &index : a.def.indexes) {
        if (!DmFindDatabase(0, index.name.c_str()))
            runtime::raiseError(ZQ_ERR_IDX_NOT_EXISTS);
        index.db = openShared(index.name);
        auto block = index.db ? readBlock(index.db) : std::nullopt;
        auto stored = block ? parseIndexBlock(*block) : std::nullopt;
        if (!stored)
            runtime::raiseError(ZQ_ERR_RUNTIME, 55);
        index.attribute = stored->attribute;
        index.keyFields = stored->keyFields;
    }
}

} // namespace

int16_t openTable(const OpenRequest &request) {
    if (!request.newArea)
        closeArea(workAreas().current); // its number is taken again below
    DmOpenRef db = openShared(request.name);
    if (!db)
        return -1;
    TableDef def;
    if (request.created) {
        def = *request.created;
    } else {
        auto block = readBlock(db);
        auto stored = block ? parseTableBlock(*block) : std::nullopt;
        if (!stored) {
            closeShared(db);
            runtime::raiseError(ZQ_ERR_RUNTIME, 54);
        }
        def = std::move(*stored);
    }
    layoutBuffer(def);
    int16_t number = request.newArea ? handOutArea() : reuseCurrentArea();
    if (number < 0) {
        closeShared(db);
        return -1;
    }
    AreaRecord &a = *areaAt(number);
    a.def = std::move(def);
    a.db = db;
    a.buffer.assign(a.def.bufferSize, 0);
    a.alias = request.alias.empty() ? request.name : request.alias;
    a.aliasObject = request.aliasObject;
    a.order = kNoOrder;
    workAreas().current = number;
    openIndexes(a);
    if (a.def.hasMemo && !request.created)
        a.memo = openMemo(request.name);
    if (!request.created) {
        for (IndexDef &index : a.def.indexes)
            bringInStep(a, index); // a run killed while changing it left it apart
        goTop(a);
    }
    return number;
}

} // namespace zq::tables
