// The handle table: 7168 slots, each empty or pointing at a HandleRecord.
#pragma once

#include "storage/state.h"

namespace zq::storage {

// The record behind a handle, or null for an empty slot or an address outside the table.
HandleRecord *handleRecord(MemHandle h);
MemHandle slotHandle(int32_t slot);
HandleRecord *slotRecord(int32_t slot);

// A fresh handle record in the first empty slot; -1 when the table is full.
int32_t newHandle(DmOpenDB *owner);
void freeHandle(int32_t slot);
void freeHandlesOf(const DmOpenDB *owner);

// The database's current-record handle: reused when it is this database's and unlocked,
// otherwise the old one is freed and a new one taken. -1 when the table is full.
int32_t takeCurrentHandle(DmOpenDB *db);

// Where the handle's data lies in the mapping now.
uint8_t *dataAddress(const HandleRecord &r);
// The locked handle whose data begins at p (any handle when lockedOnly is false).
HandleRecord *handleByData(const void *p, bool lockedOnly);

} // namespace zq::storage
