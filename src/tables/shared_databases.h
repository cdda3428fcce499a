// Databases held by work areas: one table may be open in several areas at once, and the
// record store hands out one open record per database, so it is closed with the last area.
#pragma once

#include "zelqa/storage.h"

#include <string>

namespace zq::tables {

// Finds and opens a database by name, counting the holder; null when it cannot.
DmOpenRef openShared(const std::string &name);
// Drops one holder; the database closes when none is left, an index after taking its
// held entries (pending_entries.h).
void closeShared(DmOpenRef db);
// Forgets every holder count, when the record store is let go without closing.
void forgetHolders();

} // namespace zq::tables
