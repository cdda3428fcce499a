// When a table's bytes are handed to the system, and the durable-commit mode.
//
// Every stored row is committed by the record store, which hands the record's own bytes,
// the file header and the offset-index entry to the system's write-back (FlushViewOfFile;
// msync(MS_ASYNC) on POSIX). That is the flush after every stored live row: a second,
// whole-view flush would hand over no further changed page. Every 2000 counted row reads
// and writes the whole views of the table and its memo companion are flushed as well.
// In durable-commit mode each stored row also waits until the files written are on the
// device.
#pragma once

#include "tables/work_areas.h"

namespace zq::tables {

constexpr uint32_t kFlushEvery = 2000;

// Counts a row read; past 2000 the table's views are flushed and the count starts again.
void countRowRead(AreaRecord &a);
// Counts a stored row; at 2001 (a table without indexes) the views are flushed.
void countRowWrite(AreaRecord &a);
// Counts a memo read or write; at 2001 the memo companion is flushed.
void countMemoOperation(AreaRecord &a);

// After a stored row or memo text: in durable-commit mode, flushes db's file and waits
// until it is on the device.
void settleWrite(DmOpenRef db);

// Flushes the whole mapped views of a database (main file and offset index).
void flushDatabase(DmOpenRef db);

bool durableCommit();

} // namespace zq::tables
