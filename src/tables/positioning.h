// Moving an area's current row: the step behind go to, skip, top and bottom.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>

namespace zq::tables {

// The record store's append position: as a go-to target it means the last record.
constexpr int64_t kAppendTarget = 268435454;

// Writes a pending row, then loads target (an index position when indexTarget and an
// order is set, else a record number). With direction +1 or -1 and the deleted-rows
// switch on, deleted rows are passed over in that direction. A target outside the table
// sets the end and beginning flags as described in docs and gives false.
bool positionArea(AreaRecord &a, int64_t target, bool indexTarget, int direction);

bool goTop(AreaRecord &a);
// With no order set this lands beyond the last row (end and beginning both set).
bool goBottom(AreaRecord &a);

} // namespace zq::tables
