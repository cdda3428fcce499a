// The app info block: loading its handle, committing a changed block, and DmNewHandle.
#include "storage/app_info.h"

#include "runtime/raise.h"
#include "storage/database.h"
#include "storage/handles.h"
#include "storage/move_journal.h"
#include "storage/offset_index.h"
#include "storage/records.h"

#include <algorithm>

namespace zq::storage {

void loadAppInfo(DmOpenDB *db) {
    if (!db->main)
        return;
    db->appInfoLoaded = true;
    if (db->appInfoHandle && !slotRecord(int32_t(db->appInfoHandle) - 1))
        db->appInfoHandle = 0;
    DatabaseHeader h = headerOf(db);
    if (h.appInfoSize == 0 || db->appInfoHandle)
        return;
    if (uint64_t(kHeaderSize) + h.appInfoSize > db->main->mapSize())
        return;
    int32_t slot = newHandle(db);
    if (slot < 0)
        return;
    HandleRecord &r = *slotRecord(slot);
    r.size = r.capacity = h.appInfoSize;
    r.fileOffset = kHeaderSize;
    r.appInfo = r.bare = true;
    db->appInfoHandle = uint32_t(slot) + 1;
}

void commitAppInfo(HandleRecord &r) {
    DmOpenDB *db = r.owner;
    if (!db || !db->main || !(r.isNew || r.dirty))
        return;
    uint32_t size = std::min(r.size, r.capacity);
    DatabaseHeader h = headerOf(db);
    uint32_t old = h.appInfoSize;
    bool moved = false;
    if (r.fileOffset != kHeaderSize) {
        // A block made elsewhere moves to offset 20; the records move up when it is larger.
        if (size > old)
            moved = openGap(db, kHeaderSize + old, size - old, kHeaderSize); // the block moves to 20 too
        uint32_t from = r.fileOffset + (size > old ? size - old : 0);
        std::memmove(db->main->base() + kHeaderSize, db->main->base() + from, size);
        removeBytes(db, from, r.capacity);
        if (isVariable(db) && db->index)
            shiftIndexEntries(db, from + 1, -int64_t(r.capacity));
    } else if (db->main->used() < kHeaderSize + size) {
        growView(*db->main, int64_t(kHeaderSize) + size - db->main->used());
    }
    // The block is never made smaller in the file.
    h = headerOf(db);
    h.appInfoSize = std::max(old, size);
    setHeaderOf(db, h);
    flushRange(*db->main, 0, kHeaderSize + h.appInfoSize);
    if (moved)
        endMove(db);
    for (uint32_t i = 0; i < kHandleSlots; ++i)
        if (slotRecord(int32_t(i)) == &r) {
            freeHandle(int32_t(i));
            break;
        }
}

} // namespace zq::storage

using namespace zq::storage;

MemHandle DmNewHandle(DmOpenRef db, uint32_t size) noexcept {
    if (!db || !db->main)
        return nullptr;
    if (size > kMaxBlock)
        zq::runtime::raiseError(ZQ_ERR_RUNTIME, 53);
    FileView &v = *db->main;
    if (v.used() < kHeaderSize)
        growView(v, kHeaderSize - (v.used() == 1 ? 0 : v.used()));
    growView(v, size);
    uint32_t at = v.cursor;
    std::memset(v.base() + at, 0, size);
    int32_t slot = newHandle(db);
    if (slot < 0)
        zq::runtime::raiseError(ZQ_ERR_RUNTIME, 53);
    HandleRecord &r = *slotRecord(slot);
    r.size = r.capacity = size;
    r.fileOffset = at;
    r.isNew = r.bare = true;
    if (at == kHeaderSize) {
        if (db->appInfoHandle)
            freeHandle(int32_t(db->appInfoHandle) - 1);
        r.appInfo = true;
        db->appInfoHandle = uint32_t(slot) + 1;
    }
    return slotHandle(slot);
}
