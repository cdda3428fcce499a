// Table upkeep: pack, zap, emptying one database, deleting a table, dropping an index.
#include "runtime/context.h"
#include "runtime/raise.h"
#include "storage/compaction.h"
#include "tables/arguments.h"
#include "tables/definition_block.h"
#include "tables/index_files.h"
#include "tables/index_orders.h"
#include "tables/opening.h"
#include "tables/pending_entries.h"
#include "tables/positioning.h"
#include "tables/row.h"
#include "tables/shared_databases.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

#include <cstring>

namespace zq::tables {
namespace {

using runtime::raiseError;

// Compacts the table with every memo reference of the kept rows set to 0 in the copy, so
// that a kill leaves the table unpacked or packed without references; the memo companion,
// whose texts no row reaches any more, is emptied afterwards.
void packWithoutMemoReferences(AreaRecord &a) {
    storage::compactChanging(a.db, [&a](uint8_t *record, uint32_t size) {
        decodeRow(a, record, size);
        for (const FieldDef &f : a.def.fields)
            if (f.type == kMemo)
                std::memset(a.buffer.data() + f.slot, 0, 4);
        std::vector<uint8_t> row = encodeRow(a);
        if (row.size() <= size)
            std::memcpy(record, row.data(), row.size() - 2); // the fields; the mark stays
    });
    CleanTbl(a.memo);
}

void standOnNothing(AreaRecord &a) {
    a.eof = a.bof = true;
    a.found = false;
    a.indexPosition = -1;
    a.current = 0;
    blankBuffer(a);
}

// Truncates, closes and deletes the database of every index of the area that exists.
void deleteIndexes(AreaRecord &a) {
    for (IndexDef &index : a.def.indexes) {
        LocalID id = DmFindDatabase(0, index.name.c_str());
        if (!id)
            continue;
        CleanTbl(index.db);
        closeShared(index.db);
        index.db = nullptr;
        DmDeleteDatabase(0, DmFindDatabase(0, index.name.c_str()));
    }
    a.order = kNoOrder;
}

} // namespace
} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::raiseError;

pObj __dbPack(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    writePending(a);
    if (DmNumRecords(a.db) == 0)
        return __INIT_NIL();
    if (a.def.hasMemo)
        packWithoutMemoReferences(a);
    else
        DmCompactDatabase(a.db);
    rebuildIndexes(a);
    if (DmNumRecords(a.db) == 0)
        standOnNothing(a);
    else
        goTop(a);
    return __INIT_NIL();
}

pObj __dbZap(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    writePending(a);
    CleanTbl(a.db);
    CleanTbl(a.memo);
    for (IndexDef &index : a.def.indexes)
        CleanTbl(index.db);
    goTop(a);
    return __INIT_NIL();
}

void CleanTbl(DmOpenRef db) noexcept {
    dropHeldEntries(db);
    if (db)
        __InternalZap(db);
}

int __TBL_DeleteDatabase(pObj cName) noexcept {
    std::string name = requireText(cName);
    if (name.empty() || !DmFindDatabase(0, name.c_str()))
        return 0;
    WorkAreas &w = workAreas();
    int16_t number = -1;
    for (int16_t area = 0; area < w.handedOut && number < 0; ++area)
        if (AreaRecord *a = areaAt(area); a && a->def.name == name)
            number = area;
    if (number < 0) {
        __DBUSEAREA(zq::runtime::logical(true), __INIT_CHARPTR("LOCAL"), cName, cName);
        number = w.current;
    }
    AreaRecord &a = *areaAt(number);
    deleteIndexes(a);
    std::string table = a.def.name;
    CleanTbl(a.db);
    __CloseTBL(number, 0);
    return DmDeleteDatabase(0, DmFindDatabase(0, table.c_str()));
}

pObj __DBDROPINDEX(pObj area, pObj cIndexName) noexcept {
    if (!workAreas().slots)
        raiseError(ZQ_ERR_RUNTIME, 41);
    AreaRecord &a = requireArea(area);
    writePending(a);
    closeIndexes(a);
    if (isMissing(cIndexName))
        raiseError(ZQ_ERR_RUNTIME, 42);
    std::string name = upperText(requireText(cIndexName));
    if (name.empty())
        raiseError(ZQ_ERR_RUNTIME, 43);
    size_t first = name.find_first_not_of(' ');
    name = first == std::string::npos ? std::string() : name.substr(first, name.find_last_not_of(' ') - first + 1);
    LocalID id = name.empty() ? 0 : DmFindDatabase(0, name.c_str());
    if (!id)
        return zq::runtime::logical(false);
    DmDeleteDatabase(0, id);
    int32_t number = indexNumber(a, name);
    // The count goes down by one whatever the name: one not listed drops the last index,
    // and a table with none is stored with the count 65535.
    bool hadNone = a.def.indexes.empty();
    if (number >= 0)
        a.def.indexes.erase(a.def.indexes.begin() + number);
    else if (!hadNone)
        a.def.indexes.pop_back();
    writeTableBlock(a.def, a.db, hadNone ? uint16_t(65535) : uint16_t(a.def.indexes.size()));
    a.order = kNoOrder;
    return __INIT_NIL();
}
