// Records inside a database file: addressing, headers, gaps and commits.
#pragma once

#include "storage/database.h"

namespace zq::storage {

// Offset of record i's header; kAppend and anything past the data give the used size.
// strideSize overrides the first record's size for fixed-stride databases (0 = use it).
uint32_t recordOffset(DmOpenDB *db, uint32_t index, uint32_t strideSize = 0);

// Reads the record header at offset; false when it does not lie whole inside the data.
// A size above the capacity is cut and written back at once.
bool readRecordHeader(DmOpenDB *db, uint32_t offset, RecordHeader &rh);

// The test a record header passes to count as a record. A walk of the file takes a size
// above the capacity as the capacity (the cut is written when the record is first read),
// so one bad size field does not hide the records behind it; a walk never writes.
bool plausibleRecord(const uint8_t *base, uint64_t offset, uint64_t limit, bool walking = false);

// Opens n zero bytes at offset in the main file, moving what follows up, and moves the
// offset-index entries of the moved records with it. When bytes moved, the move stays
// open (move_journal.h): the caller ends it with endMove once the headers that make the
// gap part of a record or block are written, so a walk never meets a bare gap. The
// journal saves the file from savedFrom (at most offset): a caller that rewrites bytes in
// front of the gap (a grown record's header) starts it there. True when a move was begun
// (and must be ended).
bool openGap(DmOpenDB *db, uint32_t offset, uint32_t n, uint32_t savedFrom);
// Removes n bytes at offset, moving what follows down; the index is the caller's.
void removeBytes(DmOpenDB *db, uint32_t offset, uint32_t n);

// Cuts a fixed-stride database's record count to what its data can hold, so that no
// count read from the file bounds a loop beyond the file.
void fitFixedStrideCount(DmOpenDB *db);

// Finds record index as a query does: its offset and header; false when the database has
// no such record (out of range, empty, removed, or not a record).
bool findRecord(DmOpenDB *db, uint32_t index, uint32_t &offset, RecordHeader &rh);
// The bytes of record index, read in place without taking a handle; nullptr where
// DmQueryRecord gives no handle. Valid until the database next changes.
const uint8_t *peekRecord(DmOpenDB *db, uint32_t index, uint32_t &size);

// Commits the database's current handle when it is new or dirty.
void commitCurrent(DmOpenDB *db, bool dirtyFlag);

} // namespace zq::storage
