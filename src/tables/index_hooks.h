// Where rows and fields meet the table's indexes; the index code builds on these.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>

namespace zq::tables {

// Marks every index with field (1-based) among its key parts as changed.
void markKeyChanges(AreaRecord &a, int32_t field);
// Before a live row is stored over itself: takes out the entries whose key changed.
void prepareIndexesForWrite(AreaRecord &a);
// After a stored row: an appended row gets its entries, an edited one new entries where
// its key changed; the marks are cleared. Tables without indexes have nothing to do.
void keepIndexesCurrent(AreaRecord &a, bool appended);
// The table record number held by entry position of the current order (its first four
// bytes), or -1 when there is no such entry.
int64_t recordOfIndexPosition(AreaRecord &a, int64_t position);

} // namespace zq::tables
