// Records and their handles: query, insert, resize, commit, release and removal.
//
// Records lie back to back from the end of the app info block: each an 8-byte header and
// `capacity` bytes. Every change keeps them contiguous, so entry i+1 of the offset index
// is always entry i plus capacity + 8; the check at open relies on it.
#include "storage/records.h"

#include "runtime/raise.h"
#include "storage/handles.h"
#include "storage/move_journal.h"
#include "storage/offset_index.h"

#include <algorithm>

namespace zq::storage {

bool plausibleRecord(const uint8_t *base, uint64_t offset, uint64_t limit, bool walking) {
    if (offset + kRecordHeaderSize > limit)
        return false;
    RecordHeader rh = load<RecordHeader>(base + offset);
    static const uint8_t zeros[kRecordHeaderSize] = {};
    if (std::memcmp(base + offset, zeros, kRecordHeaderSize) == 0)
        return false;
    if (walking)
        rh.size = std::min(rh.size, rh.capacity);
    if (rh.capacity == 0 || rh.capacity > kMaxBlock || rh.size > rh.capacity)
        return false;
    if (offset + kRecordHeaderSize + rh.capacity > limit)
        return false;
    if (rh.marker == kCommitMarker)
        return true;
    if (rh.size < 2)
        return false;
    uint8_t mark = base[offset + kRecordHeaderSize + rh.size - 2];
    return mark == '!' || mark == '*';
}

uint32_t recordOffset(DmOpenDB *db, uint32_t index, uint32_t strideSize) {
    DatabaseHeader h = headerOf(db);
    if (index >= kAppend)
        return h.used;
    uint64_t offset;
    if (h.kind == 'V') {
        offset = indexEntry(db, index);
    } else {
        uint32_t start = recordsStart(h);
        if (!strideSize) {
            if (uint64_t(start) + kRecordHeaderSize > h.used)
                return h.used;
            strideSize = load<RecordHeader>(db->main->base() + start).size;
        }
        offset = start + uint64_t(index) * (strideSize + kRecordHeaderSize);
    }
    if (offset > h.capacity || offset > h.used)
        return h.used;
    return uint32_t(offset);
}

bool readRecordHeader(DmOpenDB *db, uint32_t offset, RecordHeader &rh) {
    FileView &v = *db->main;
    if (uint64_t(offset) + kRecordHeaderSize > v.used())
        return false;
    rh = load<RecordHeader>(v.base() + offset);
    if (uint64_t(offset) + kRecordHeaderSize + rh.capacity > v.mapSize())
        return false;
    if (rh.size > rh.capacity) {
        rh.size = rh.capacity;
        store(v.base() + offset, rh);
        flushRange(v, offset, kRecordHeaderSize);
    }
    return true;
}

bool openGap(DmOpenDB *db, uint32_t offset, uint32_t n, uint32_t savedFrom) {
    FileView &v = *db->main;
    uint32_t oldUsed = v.used() == 1 ? 0 : v.used();
    if (offset >= oldUsed) {
        growView(v, int64_t(offset) + n - oldUsed);
        return false;
    }
    beginMove(db, std::min(savedFrom, offset));
    growView(v, n);
    uint8_t *base = v.base();
    std::memmove(base + offset + n, base + offset, oldUsed - offset);
    std::memset(base + offset, 0, n);
    DatabaseHeader h = v.header();
    h.used = std::max(h.used, kHeaderSize);
    writeHeader(v, h);
    flushRange(v, offset, h.used - offset);
    if (isVariable(db) && db->index)
        shiftIndexEntries(db, offset, n);
    return true;
}

void removeBytes(DmOpenDB *db, uint32_t offset, uint32_t n) {
    FileView &v = *db->main;
    DatabaseHeader h = v.header();
    if (offset >= h.used)
        return;
    n = std::min(n, h.used - offset);
    beginMove(db, offset);
    uint8_t *base = v.base();
    std::memmove(base + offset, base + offset + n, h.used - offset - n);
    std::memset(base + h.used - n, 0, n);
    uint32_t oldUsed = h.used;
    h.used = std::max(h.used - n, kHeaderSize);
    writeHeader(v, h);
    flushRange(v, offset, oldUsed - offset);
    endMove(db);
}

void fitFixedStrideCount(DmOpenDB *db) {
    DatabaseHeader h = headerOf(db);
    uint32_t start = recordsStart(h);
    uint64_t room = h.used > start ? h.used - start : 0;
    uint64_t fits = 0;
    if (room >= kRecordHeaderSize)
        fits = room / (load<RecordHeader>(db->main->base() + start).size + kRecordHeaderSize);
    if (h.count <= fits)
        return;
    h.count = uint32_t(fits);
    setHeaderOf(db, h);
}

void commitCurrent(DmOpenDB *db, bool dirtyFlag) {
    HandleRecord *r = slotRecord(db->current);
    if (!r || r->owner != db || r->bare || !(r->dirty || r->isNew))
        return;
    r->size = std::min(r->size, r->capacity);
    uint32_t offset = r->fileOffset ? r->fileOffset : recordOffset(db, r->index);
    RecordHeader rh{uint16_t(r->size), uint16_t(r->capacity), uint8_t(dirtyFlag ? kAttrDirty : 0), 0, kCommitMarker};
    store(db->main->base() + offset, rh);
    if (r->isNew) {
        DatabaseHeader h = headerOf(db);
        ++h.count;
        setHeaderOf(db, h);
    }
    flushRange(*db->main, 0, kHeaderSize);
    flushRange(*db->main, offset, kRecordHeaderSize + r->capacity);
    // The index entry comes last: a crash before it leaves an index shorter than the
    // count, which the next open rebuilds.
    if (r->isNew && isVariable(db))
        insertIndexEntry(db, r->index, offset);
    if (r->holdsMove)
        endMove(db); // the inserted record is whole: a walk now passes it
    r->isNew = r->dirty = r->resized = r->holdsMove = false;
}

bool findRecord(DmOpenDB *db, uint32_t index, uint32_t &offset, RecordHeader &rh) {
    if (!db || !db->main)
        return false;
    DatabaseHeader h = headerOf(db);
    if (recordsStart(h) > h.used || index >= kAppend)
        return false;
    if (h.kind == 'V' && index >= h.count)
        return false;
    offset = recordOffset(db, index);
    if (!readRecordHeader(db, offset, rh) || rh.size == 0 || (rh.attributes & kAttrDeleted))
        return false;
    return h.kind != 'V' || plausibleRecord(db->main->base(), offset, db->main->used());
}

const uint8_t *peekRecord(DmOpenDB *db, uint32_t index, uint32_t &size) {
    uint32_t offset;
    RecordHeader rh;
    if (!findRecord(db, index, offset, rh))
        return nullptr;
    size = rh.size;
    return db->main->base() + offset + kRecordHeaderSize;
}

} // namespace zq::storage

using namespace zq::storage;

namespace {

MemHandle queryRecord(DmOpenDB *db, uint32_t index, bool busy) {
    uint32_t offset;
    RecordHeader rh;
    if (!findRecord(db, index, offset, rh))
        return nullptr;
    int32_t slot = takeCurrentHandle(db);
    if (slot < 0)
        return nullptr;
    HandleRecord &r = *slotRecord(slot);
    r.index = index;
    r.size = rh.size;
    r.capacity = rh.capacity;
    r.fileOffset = offset;
    if (busy) {
        rh.attributes |= kAttrBusy;
        store(db->main->base() + offset, rh);
    }
    return slotHandle(slot);
}

// Where an appended record goes: the end of the data.
uint32_t appendSpace(DmOpenDB *db, uint32_t bytes) {
    FileView &v = *db->main;
    if (v.used() < kHeaderSize)
        growView(v, kHeaderSize - (v.used() == 1 ? 0 : v.used()));
    growView(v, bytes);
    return v.cursor;
}

} // namespace

uint32_t DmNumRecords(DmOpenRef db) noexcept { return db && db->main ? headerOf(db).count : 0; }

MemHandle DmQueryRecord(DmOpenRef db, uint32_t index) noexcept { return queryRecord(db, index, false); }

MemHandle DmGetRecord(DmOpenRef db, uint32_t index) noexcept { return queryRecord(db, index, true); }

MemHandle DmNewRecord(DmOpenRef db, uint32_t *index, uint32_t size) noexcept {
    if (!db || !db->main)
        return nullptr;
    if (size > kMaxBlock)
        zq::runtime::raiseError(ZQ_ERR_RUNTIME, 53);
    commitCurrent(db, false);
    int32_t slot = takeCurrentHandle(db);
    if (slot < 0)
        return nullptr;
    DatabaseHeader h = headerOf(db);
    uint32_t wanted = index ? *index : kAppend;
    bool append = wanted >= h.count;
    uint32_t bytes = size + kRecordHeaderSize;
    uint32_t offset;
    bool moved = false;
    if (append) {
        offset = appendSpace(db, bytes);
    } else {
        offset = recordOffset(db, wanted, h.kind == 'V' ? 0 : size);
        moved = openGap(db, offset, bytes, offset);
    }
    uint8_t *at = db->main->base() + offset;
    std::memset(at, 0, bytes);
    store(at, RecordHeader{uint16_t(size), uint16_t(size), 0, 0, 0});
    HandleRecord &r = *slotRecord(slot);
    r.index = append ? h.count : wanted;
    r.size = r.capacity = size;
    r.fileOffset = offset;
    r.isNew = true;
    r.holdsMove = moved;
    if (index)
        *index = r.index;
    return slotHandle(slot);
}

void DmResizeRecord(MemHandle handle, uint32_t newSize) noexcept {
    HandleRecord *r = handleRecord(handle);
    if (!r || !r->owner || !r->owner->main || newSize == r->size)
        return;
    if (newSize > kMaxBlock)
        zq::runtime::raiseError(ZQ_ERR_RUNTIME, 53);
    DmOpenDB *db = r->owner;
    if (newSize > r->capacity) {
        uint32_t gapAt = r->fileOffset + (r->bare ? 0 : kRecordHeaderSize) + r->capacity;
        bool moved = openGap(db, gapAt, newSize - r->capacity, r->fileOffset);
        r->capacity = newSize;
        r->resized = true;
        if (r->appInfo && r->fileOffset == kHeaderSize) {
            DatabaseHeader h = headerOf(db);
            h.appInfoSize = newSize;
            setHeaderOf(db, h);
        } else if (!r->bare) {
            // The header says the new capacity at once, so a walk of the file still
            // finds the next record if the process ends before the commit.
            uint8_t *at = db->main->base() + r->fileOffset;
            RecordHeader rh = load<RecordHeader>(at);
            rh.capacity = uint16_t(newSize);
            store(at, rh);
            flushRange(*db->main, r->fileOffset, kRecordHeaderSize);
        }
        if (moved)
            endMove(db);
    }
    r->size = newSize;
    r->dirty = true;
}

Err DmReleaseRecord(DmOpenRef db, uint32_t index, int dirty) noexcept {
    if (!db)
        return dmErrBadArgument;
    HandleRecord *r = slotRecord(db->current);
    if (!r || r->owner != db)
        return dmErrNoRecord;
    if (r->index != index && index != kAppend)
        return dmErrBadArgument;
    commitCurrent(db, dirty != 0);
    freeHandle(db->current);
    return dmErrNone;
}

Err DmRemoveRecord(DmOpenRef db, uint32_t index) noexcept {
    if (!db || !db->main)
        return dmErrBadArgument;
    DatabaseHeader h = headerOf(db);
    if (index >= h.count)
        return dmErrNoRecord;
    uint32_t offset = recordOffset(db, index);
    RecordHeader rh;
    if (!readRecordHeader(db, offset, rh))
        return dmErrNoRecord;
    freeHandle(db->current);
    h.count--;
    setHeaderOf(db, h);
    // The whole reserved space goes, so the records stay back to back.
    uint32_t bytes = rh.capacity + kRecordHeaderSize;
    removeBytes(db, offset, bytes);
    if (h.kind == 'V') {
        removeIndexEntry(db, index);
        shiftIndexEntries(db, offset + 1, -int64_t(bytes));
    }
    return dmErrNone;
}
