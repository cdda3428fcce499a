// Finding a field by name: the remembered last hit first, then every field in order.
#pragma once

#include "tables/work_areas.h"

namespace zq::tables {

// The 1-based position of the field named exactly (case-sensitive) by cName, or 0.
// cName missing is INVALID FIELD! 27, not character ARGUMENT ERROR!, without text
// INVALID FIELD! 28; an area without fields INVALID FIELD! 30.
int32_t lookUpField(AreaRecord &a, pObj cName);

} // namespace zq::tables
