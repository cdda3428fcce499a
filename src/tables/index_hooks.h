// Where rows and fields meet the table's indexes; the index code builds on these.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>

namespace zq::tables {

// Marks every index with field (1-based) among its key parts as changed.
void markKeyChanges(AreaRecord &a, int32_t field);
// After a stored live row: brings the entries of the indexes whose key changed up to
// date and clears the marks. Tables without indexes have nothing to do.
void keepIndexesCurrent(AreaRecord &a);
// The table record number held by entry position of the current order (its first four
// bytes), or -1 when there is no such entry.
int64_t recordOfIndexPosition(AreaRecord &a, int64_t position);

} // namespace zq::tables
