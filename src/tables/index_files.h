// The entries of an index database: finding, inserting, removing, rebuilding, and keeping
// them in step with the table.
//
// An index is in step when it holds one entry per table record. Every change that could
// be cut short by a killed process leaves the counts apart until it is done: an edited
// key loses its old entry before the row is stored and gets the new one after, an
// appended row is stored before its entries. An index found out of step when it is opened
// or made current is emptied and rebuilt, so a seek never reads a stale entry.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>
#include <vector>

namespace zq::tables {

// Every reader here first merges the entries held for the index (pending_entries.h).

// The entry at position, or empty when there is none.
std::vector<uint8_t> readEntry(DmOpenRef index, uint32_t position);
// The position DmFindSortPosition gives for entry (its key compared over length bytes).
uint32_t sortPosition(DmOpenRef index, const std::vector<uint8_t> &entry, uint32_t length);
// The number of entries in the index's file.
uint32_t entryCount(DmOpenRef index);
// Inserts entry at position; false when the store refuses.
bool insertEntry(DmOpenRef index, uint32_t position, const std::vector<uint8_t> &entry);

// Empties the index and fills it again from every row of the table, sorted. The area's
// current row, flags and positions are kept.
void rebuildIndex(AreaRecord &a, IndexDef &index);
// Rebuilds every open index of the area.
void rebuildIndexes(AreaRecord &a);
// Rebuilds the index when its entry count differs from the table's record count, or its
// entries are not the size the index's key makes.
void bringInStep(AreaRecord &a, IndexDef &index);

// Before the current row is stored over itself: removes the entry of every open index
// whose key changed (none when the row is deleted), remembering which had one.
void detachChangedKeys(AreaRecord &a);
// After a row is stored: an appended row gets an entry in every open index; an existing
// live row gets new entries where detachChangedKeys removed one. The entries are held
// until the index is next read (pending_entries.h). Clears the marks.
void attachKeys(AreaRecord &a, bool appended);
// Merges the held entries of every index of the area into their files.
void settleIndexes(AreaRecord &a);

} // namespace zq::tables
