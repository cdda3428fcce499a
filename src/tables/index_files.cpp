// Index entries in their database: lookup, insertion, removal, rebuilding and the in-step rule.
#include "tables/index_files.h"

#include "storage/database.h"
#include "tables/index_keys.h"
#include "tables/pending_entries.h"
#include "tables/row.h"
#include "zelqa/tables.h"

#include <algorithm>
#include <cstring>

namespace zq::tables {
namespace {

// Read-only view of the fixed-stride entries of an index database.
struct Entries {
    const uint8_t *first = nullptr; // data of entry 0
    uint32_t stride = 0;            // entry bytes + record header
    uint32_t size = 0;              // entry bytes
    uint32_t count = 0;

    explicit Entries(DmOpenRef db) {
        if (!db || !db->main)
            return;
        storage::DatabaseHeader h = storage::headerOf(db);
        uint64_t start = storage::recordsStart(h);
        if (h.count == 0 || start + storage::kRecordHeaderSize > h.used)
            return;
        const uint8_t *base = db->main->base();
        auto header = storage::load<storage::RecordHeader>(base + start);
        size = std::min(header.size, header.capacity); // as the record store reads it
        stride = size + storage::kRecordHeaderSize;
        uint64_t room = (std::min<uint64_t>(h.used, db->main->mapSize()) - start) / stride;
        count = uint32_t(std::min<uint64_t>(h.count, room));
        first = base + start + storage::kRecordHeaderSize;
    }
    const uint8_t *at(uint32_t i) const { return first + uint64_t(i) * stride; }
};

// Saves what rebuilding through the edit buffer disturbs, and puts it back.
struct SavedPosition {
    AreaRecord &a;
    std::vector<uint8_t> buffer;
    int32_t current, indexPosition;
    bool eof, bof, found;
    explicit SavedPosition(AreaRecord &area)
        : a(area), buffer(area.buffer), current(area.current), indexPosition(area.indexPosition), eof(area.eof),
          bof(area.bof), found(area.found) {}
    ~SavedPosition() {
        a.buffer = buffer;
        a.current = current;
        a.indexPosition = indexPosition;
        a.eof = eof;
        a.bof = bof;
        a.found = found;
    }
};

} // namespace

std::vector<uint8_t> readEntry(DmOpenRef index, uint32_t position) {
    settleEntries(index);
    Entries e(index);
    if (position >= e.count)
        return {};
    return std::vector<uint8_t>(e.at(position), e.at(position) + e.size);
}

uint32_t entryCount(DmOpenRef index) {
    settleEntries(index);
    return DmNumRecords(index);
}

uint32_t sortPosition(DmOpenRef index, const std::vector<uint8_t> &entry, uint32_t length) {
    if (entryCount(index) == 0)
        return 0;
    return DmFindSortPosition(index, const_cast<uint8_t *>(entry.data()), &length, compareEntries, 0);
}

bool insertEntry(DmOpenRef index, uint32_t position, const std::vector<uint8_t> &entry) {
    uint32_t at = position >= DmNumRecords(index) ? dmAppendPosition : position;
    MemHandle h = DmNewRecord(index, &at, uint32_t(entry.size()));
    void *p = h ? MemHandleLock(h) : nullptr;
    if (!p)
        return false;
    DmWrite(p, 0, entry.data(), uint32_t(entry.size()));
    MemHandleUnlock(h);
    DmReleaseRecord(index, at, 0);
    return true;
}

void rebuildIndex(AreaRecord &a, IndexDef &index) {
    if (!index.db)
        return;
    // Every entry is built into one run, ordered over the whole key area with equal keys
    // in record order (as OrdenarIndice orders them), and merged into the emptied file in
    // one pass whose last write is the count: a rebuild cut short stays out of step.
    EntryRun run;
    run.entrySize = entrySize(a.def, index);
    run.keyLength = run.entrySize - 4;
    {
        SavedPosition saved(a);
        uint32_t count = DmNumRecords(a.db);
        run.bytes.assign(size_t(count) * run.entrySize, 0);
        for (uint32_t record = 0; record < count; ++record) {
            readRow(a, record);
            writeEntry(a, index, record, run.bytes.data() + size_t(record) * run.entrySize);
        }
    }
    dropHeldEntries(index.db);
    // Out of step before anything else: the count goes to 0 in one header write, so that
    // a kill while the entries are cleared never leaves an index whose count still equals
    // the table's over entries half cleared (a pack that removed nothing, a reindex).
    if (index.db->main) {
        storage::DatabaseHeader h = storage::headerOf(index.db);
        h.count = 0;
        storage::setHeaderOf(index.db, h);
    }
    __InternalZap(index.db);
    mergeRun(index.db, run);
    index.keyChanged = index.detached = false;
}

void rebuildIndexes(AreaRecord &a) {
    for (IndexDef &index : a.def.indexes)
        rebuildIndex(a, index);
}

void bringInStep(AreaRecord &a, IndexDef &index) {
    if (!index.db)
        return;
    // Entries of another size than the index's are damage no count shows; readers compare
    // a whole key area in each entry, so such an index is rebuilt as well.
    Entries entries(index.db);
    bool sized = entries.count == 0 || entries.size == entrySize(a.def, index);
    if (entryCount(index.db) != DmNumRecords(a.db) || !sized) {
        CleanTbl(index.db);
        rebuildIndex(a, index);
    }
}

void detachChangedKeys(AreaRecord &a) {
    for (IndexDef &index : a.def.indexes) {
        index.detached = false;
        if (!index.db || !index.keyChanged || entryCount(index.db) == 0)
            continue;
        int32_t position = -1;
        if (!FindRecnoInIndexFile(index.db, uint32_t(a.current), &position))
            continue;
        DmRemoveRecord(index.db, uint32_t(position));
        index.detached = true;
    }
}

void attachKeys(AreaRecord &a, bool appended) {
    for (IndexDef &index : a.def.indexes) {
        bool wanted = appended || index.detached;
        index.keyChanged = index.detached = false;
        if (!index.db || !wanted)
            continue;
        holdEntry(index.db, buildEntry(a, index, uint32_t(a.current)), index.attribute);
    }
}

void settleIndexes(AreaRecord &a) {
    for (IndexDef &index : a.def.indexes)
        settleEntries(index.db);
}

} // namespace zq::tables

using namespace zq::tables;

int FindRecnoInIndexFile(DmOpenRef index, uint32_t recordNumber, int32_t *position) noexcept {
    settleEntries(index);
    Entries e(index);
    for (uint32_t i = 0; i < e.count; ++i)
        if (std::memcmp(e.at(i), &recordNumber, 4) == 0) {
            if (position)
                *position = int32_t(i);
            return 1;
        }
    return 0;
}

int FindKeyInIndexFile(DmOpenRef index, const void *entry, uint32_t keyLength, int32_t *position) noexcept {
    settleEntries(index);
    Entries e(index);
    if (e.count == 0 || e.size < 4)
        return 0;
    keyLength = std::min(keyLength, e.size - 4); // no comparison reads past an entry
    int64_t p = 0;
    if (e.count > 1) {
        uint32_t length = keyLength;
        p = DmFindSortPosition(index, const_cast<void *>(entry), &length, compareEntries, 0);
        if (p > 0)
            --p;
    }
    const uint8_t *key = static_cast<const uint8_t *>(entry);
    for (; p >= 0 && p < int64_t(e.count); --p) {
        const uint8_t *at = e.at(uint32_t(p));
        if (compareKeys(at + 4, key + 4, keyLength) != 0)
            return 0;
        if (std::memcmp(at, key, 4) == 0) {
            if (position)
                *position = int32_t(p);
            return 1;
        }
    }
    return 0;
}
