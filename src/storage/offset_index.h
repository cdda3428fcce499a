// The offset index "%s_OS": entry i holds the file offset of record i of a 'V' database.
#pragma once

#include "storage/database.h"

namespace zq::storage {

// Entry i; raises runtime error 0 when the index file does not hold it.
uint32_t indexEntry(DmOpenDB *db, uint32_t i);
void insertIndexEntry(DmOpenDB *db, uint32_t i, uint32_t offset);
void removeIndexEntry(DmOpenDB *db, uint32_t i);
// Adds delta to every entry at or above `from`.
void shiftIndexEntries(DmOpenDB *db, uint32_t from, int64_t delta);

// At open: rebuilds the index when it disagrees with the file, then trims the used size.
void checkIndexAtOpen(DmOpenDB *db);
// Walks the records from the start of the data and writes the index afresh; the record
// count and used size of the main file follow the walk.
void rebuildIndex(DmOpenDB *db);
void resetIndex(DmOpenDB *db); // an empty index

} // namespace zq::storage
