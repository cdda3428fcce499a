// New index entries held in memory and merged into their index file in one pass.
//
// An index file is a sorted array of fixed entries: inserting each new entry in place
// would move half the file per row. A stored row's entries wait here instead, and the
// index's file takes them all in one merge before anything reads it (every reader below
// settles first), at a commit and when the index closes. Until then the file holds fewer
// entries than the table has records, so a process killed in between leaves the index
// out of step, and it is rebuilt when next opened; the merge itself writes the new count
// last (docs/formats/index.md, "In step").
#pragma once

#include "zelqa/storage.h"

#include <cstdint>
#include <vector>

namespace zq::tables {

// Holds entry for the index, to go after every entry of an equal key (compared over
// keyLength bytes of the key area) already in the file or held before it.
void holdEntry(DmOpenRef index, const std::vector<uint8_t> &entry, uint32_t keyLength);
// Merges the entries held for the index into its file; nothing when none are held.
void settleEntries(DmOpenRef index);
// Forgets the entries held for an index that is being emptied or rebuilt.
void dropHeldEntries(DmOpenRef index);
// Forgets every held entry, when the record store is let go without writing.
void dropAllHeldEntries();

} // namespace zq::tables
