// The index side of rows and fields: key-change marks and reading an index entry.
#include "tables/index_hooks.h"

#include "tables/index_files.h"
#include "tables/pending_entries.h"

#include <algorithm>
#include <cstring>

namespace zq::tables {

void markKeyChanges(AreaRecord &a, int32_t field) {
    for (IndexDef &index : a.def.indexes)
        if (std::find(index.keyFields.begin(), index.keyFields.end(), field) != index.keyFields.end())
            index.keyChanged = true;
}

void prepareIndexesForWrite(AreaRecord &a) { detachChangedKeys(a); }

void keepIndexesCurrent(AreaRecord &a, bool appended) { attachKeys(a, appended); }

int64_t recordOfIndexPosition(AreaRecord &a, int64_t position) {
    if (a.order >= a.def.indexes.size() || position < 0)
        return -1;
    DmOpenRef db = a.def.indexes[a.order].db;
    settleEntries(db);
    MemHandle h = db ? DmQueryRecord(db, uint32_t(position)) : nullptr;
    auto *p = static_cast<const uint8_t *>(h ? MemHandleLock(h) : nullptr);
    if (!p)
        return -1;
    uint32_t record = 0;
    if (MemHandleSize(h) >= 4)
        std::memcpy(&record, p, 4);
    MemHandleUnlock(h);
    return record;
}

} // namespace zq::tables
