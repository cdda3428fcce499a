// New index entries held in memory and merged into their index file in one pass, and the
// merge itself, which a rebuild uses as well.
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

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zq::tables {

// Entries of one shape back to back, compared over keyLength bytes of their key area.
struct EntryRun {
    uint32_t keyLength = 0;
    uint32_t entrySize = 0;
    std::vector<uint8_t> bytes;
    uint32_t count() const { return entrySize ? uint32_t(bytes.size() / entrySize) : 0; }
    const uint8_t *at(uint32_t i) const { return bytes.data() + size_t(i) * entrySize; }
};

// Sorts the run by key (equal keys in the order they came) and merges it into the index
// file in one pass, each entry after the file's entries of an equal key; the new count is
// written last.
void mergeRun(DmOpenRef index, const EntryRun &run);

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
