// An area's indexes by name: finding one, opening it (and making it the order), closing all.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>
#include <string>

namespace zq::tables {

// The 0-based place of the index named name (uppercased) in the table's list, or -1.
int32_t indexNumber(const AreaRecord &a, const std::string &name);
// Opens the listed index; with makeCurrent it becomes the order, is rebuilt when out of
// step, and the area goes to the top. An index not listed shows two "Alert" boxes and is
// INVALID INDEX! 15. False when its database cannot be opened.
bool openIndex(AreaRecord &a, const std::string &name, bool makeCurrent);
// Closes every index database of the area (last first); the area is in natural order.
void closeIndexes(AreaRecord &a);

} // namespace zq::tables
