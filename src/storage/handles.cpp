// Record handles: the slot table, locking, and writing through a locked handle.
#include "storage/handles.h"

#include "storage/app_info.h"

#include <cstring>

namespace zq::storage {

MemHandle slotHandle(int32_t slot) { return reinterpret_cast<MemHandle>(&state().handles[slot]); }

HandleRecord *slotRecord(int32_t slot) {
    if (slot < 0 || slot >= int32_t(kHandleSlots) || !state().handles)
        return nullptr;
    return static_cast<HandleRecord *>(state().handles[slot]);
}

HandleRecord *handleRecord(MemHandle h) {
    void **table = state().handles.get();
    if (!h || !table || h < table || h >= table + kHandleSlots)
        return nullptr;
    return static_cast<HandleRecord *>(*h);
}

int32_t newHandle(DmOpenDB *owner) {
    void **table = state().handles.get();
    for (uint32_t i = 0; i < kHandleSlots; ++i) {
        if (table[i])
            continue;
        auto *r = new HandleRecord();
        r->owner = owner;
        table[i] = r;
        return int32_t(i);
    }
    return -1;
}

void freeHandle(int32_t slot) {
    HandleRecord *r = slotRecord(slot);
    if (!r)
        return;
    if (r->owner && r->owner->current == slot)
        r->owner->current = -1;
    if (r->owner && r->owner->appInfoHandle == uint32_t(slot) + 1)
        r->owner->appInfoHandle = 0;
    delete r;
    state().handles[slot] = nullptr;
}

void freeHandlesOf(const DmOpenDB *owner) {
    if (!state().handles)
        return;
    for (uint32_t i = 0; i < kHandleSlots; ++i) {
        HandleRecord *r = slotRecord(int32_t(i));
        if (r && r->owner == owner)
            freeHandle(int32_t(i));
    }
}

int32_t takeCurrentHandle(DmOpenDB *db) {
    HandleRecord *r = slotRecord(db->current);
    if (r && r->owner == db && !r->locked && !r->appInfo) {
        *r = HandleRecord();
        r->owner = db;
        return db->current;
    }
    if (r && r->owner == db && !r->appInfo)
        freeHandle(db->current);
    db->current = newHandle(db);
    return db->current;
}

uint8_t *dataAddress(const HandleRecord &r) {
    if (!r.owner || !r.owner->main)
        return nullptr;
    return r.owner->main->base() + r.fileOffset + (r.bare ? 0 : kRecordHeaderSize);
}

HandleRecord *handleByData(const void *p, bool lockedOnly) {
    if (!p || !state().handles)
        return nullptr;
    for (uint32_t i = 0; i < kHandleSlots; ++i) {
        HandleRecord *r = slotRecord(int32_t(i));
        if (r && (r->locked || !lockedOnly) && dataAddress(*r) == p)
            return r;
    }
    return nullptr;
}

} // namespace zq::storage

using namespace zq::storage;

MemPtr MemHandleLock(MemHandle h) noexcept {
    HandleRecord *r = handleRecord(h);
    if (!r)
        return nullptr;
    if (r->locked)
        alert("already locked");
    r->locked = true;
    return dataAddress(*r);
}

void MemHandleUnlock(MemHandle h) noexcept {
    if (HandleRecord *r = handleRecord(h))
        r->locked = false;
}

uint32_t MemHandleSize(MemHandle h) noexcept {
    HandleRecord *r = handleRecord(h);
    return r ? r->size : 0;
}

void MemPtrUnlock(MemPtr p) noexcept {
    HandleRecord *r = handleByData(p, false);
    if (!r)
        return;
    r->locked = false;
    if (r->appInfo && r->fileOffset == kHeaderSize)
        commitAppInfo(*r);
}

Err DmWrite(void *data, uint32_t offset, const void *src, uint32_t bytes) noexcept {
    HandleRecord *r = handleByData(data, true);
    if (!r || (!src && bytes))
        return dmErrBadArgument;
    if (uint64_t(offset) + bytes > r->size)
        return dmErrWriteOutOfBounds;
    if (bytes)
        std::memmove(static_cast<uint8_t *>(data) + offset, src, bytes);
    r->dirty = true;
    return dmErrNone;
}

Err DmSet(void *data, uint32_t offset, uint32_t bytes, uint8_t value) noexcept {
    HandleRecord *r = handleByData(data, true);
    if (!r)
        return dmErrBadArgument;
    if (uint64_t(offset) + bytes > r->size)
        return dmErrWriteOutOfBounds;
    std::memset(static_cast<uint8_t *>(data) + offset, value, bytes);
    r->dirty = true;
    return dmErrNone;
}
