// Compaction through the work file "%s_Temp" (changing the kept records in the copy, when
// asked), dropping a database's first records the same way, and emptying a database
// (__InternalZap).
//
// Order, so that a crash at any step leaves the database or its complete copy:
// 1. copy the kept records into "%s_Temp" and close it (flushed);
// 2. delete the database file; 3. rename the copy to the database's name.
// A find that meets a missing file with a "%s_Temp" beside it finishes step 3.
#include "storage/compaction.h"

#include "platform/files.h"
#include "storage/database.h"
#include "storage/handles.h"
#include "storage/offset_index.h"

#include <algorithm>
#include <cstring>

using namespace zq::storage;

namespace {

bool isMarkedDeleted(const uint8_t *base, uint32_t offset, const RecordHeader &rh) {
    return rh.size >= 2 && base[offset + kRecordHeaderSize + rh.size - 2] == '*';
}

// Appends the records keep(index, mark) accepts to the work view, letting change alter
// each copy's data; returns how many.
template <class Keep> uint32_t copyKept(DmOpenDB *db, FileView &work, Keep keep, const RecordChange &change) {
    FileView &main = *db->main;
    uint32_t count = headerOf(db).count, kept = 0;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t offset = indexEntry(db, i);
        if (uint64_t(offset) + kRecordHeaderSize > main.mapSize())
            break;
        RecordHeader rh = load<RecordHeader>(main.base() + offset);
        if (rh.capacity == 0 || rh.capacity > kMaxBlock)
            break;
        if (!keep(i, isMarkedDeleted(main.base(), offset, rh)))
            continue;
        uint32_t bytes = kRecordHeaderSize + rh.capacity;
        growView(work, bytes);
        std::memcpy(work.base() + work.cursor, main.base() + offset, bytes);
        if (change)
            change(work.base() + work.cursor + kRecordHeaderSize, std::min<uint32_t>(rh.size, rh.capacity));
        ++kept;
    }
    return kept;
}

// Steps 1 to 3 for the records keep accepts; returns how many were kept.
template <class Keep> uint32_t rewrite(DmOpenDB *db, Keep keep, const RecordChange &change = {}) {
    std::string name = db->name;
    std::string workName = name + "_Temp";
    zq::platform::deleteFile(storagePath(workName));
    freeHandlesOf(db);
    bool bulk = state().bulk;
    state().bulk = true;
    rebuildIndex(db);
    DatabaseHeader h = headerOf(db);
    std::unique_ptr<FileView> work = openView(workName);
    work->setHeader(DatabaseHeader{0, 0, 0, 0, 0, work->header().capacity, 1});
    growView(*work, h.used);
    // Header and app info block first; the records follow from the copy's end.
    uint32_t start = recordsStart(h);
    std::memcpy(work->base(), db->main->base(), start);
    DatabaseHeader wh = h;
    wh.capacity = work->header().capacity;
    wh.used = start;
    work->setHeader(wh);
    uint32_t kept = copyKept(db, *work, keep, change);
    wh = work->header();
    wh.count = kept;
    wh.capacity = h.used;
    writeHeader(*work, wh);
    closeView(work);
    closeView(db->main);
    zq::platform::deleteFile(storagePath(name));
    zq::platform::moveFile(storagePath(workName), storagePath(name));
    db->main = openView(name);
    rebuildIndex(db);
    state().bulk = bulk;
    return kept;
}

} // namespace

namespace zq::storage {

void keepRecordsFrom(DmOpenRef db, uint32_t first) {
    if (db && db->main && db->index && isVariable(db) && first > 0)
        rewrite(db, [first](uint32_t i, bool) { return i >= first; });
}

int compactChanging(DmOpenRef db, const RecordChange &change) {
    if (!db || !db->main || !db->index || !isVariable(db))
        return 0;
    return rewrite(db, [](uint32_t, bool deleted) { return !deleted; }, change) > 0;
}

} // namespace zq::storage

int DmCompactDatabase(DmOpenRef db) noexcept { return compactChanging(db, {}); }

void __InternalZap(DmOpenRef db) noexcept {
    if (!db || !db->main)
        return;
    freeHandlesOf(db);
    FileView &v = *db->main;
    DatabaseHeader h = v.header();
    uint32_t start = recordsStart(h);
    if (start < v.mapSize())
        std::memset(v.base() + start, 0, v.mapSize() - start);
    h.used = start;
    h.count = 0;
    writeHeader(v, h);
    flushView(v);
    if (db->index)
        resetIndex(db);
}
