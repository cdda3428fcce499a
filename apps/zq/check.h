// Checking a storage directory from its bytes: what check reports and repair mends.
//
// Nothing here starts storage or writes a byte; every file is read whole and judged
// against what a program relies on (docs/formats/): headers and sizes, the records a
// walk of the file finds, offset indexes, row marks, memo references and index entries.
#pragma once

#include "storage_files.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace zq::tool {

// What repair does about a problem.
enum class Mend {
    None,      // nothing repair can do: reported only
    Open,      // opening the database through storage rebuilds it (offset index, header)
    Reindex,   // the table's indexes are rebuilt
    Mark,      // the row is stored again with a live mark
    Memo,      // the row's memo field is set to an empty text
    Compact,   // the table's database is compacted, its deleted rows kept (unless packing)
    DropWork,  // a compaction work file beside an intact database is removed
    DropEntry, // a catalog entry without its file is dropped (a search of it does so)
    DropIndex, // an index whose key is lost is taken out of its table's definition
    Catalog,   // catalog.plm is recovered as storage start recovers it
    Duplicate, // a later catalog entry of a name an earlier one holds is freed
    EntryType, // the catalog entry's type is set from its file's kind
};

struct Problem {
    std::string database; // the file the problem is in
    std::string place;    // "header", "record 4", "row 2, field OBS", "entry 7", ...
    std::string what;
    Mend mend = Mend::None;
    std::string table;    // the table it concerns, when it concerns one
    uint32_t row = 0;     // Mark, Memo: 0-based record number
    uint32_t field = 0;   // Memo: 0-based field number
    uint32_t entry = 0;   // Duplicate, EntryType: offset of the catalog entry
    bool note = false;    // no fault (room a compaction would give back): shown, not counted
};

// The problems that are faults, notes left out.
size_t faultCount(const std::vector<Problem> &problems);

// What a check found: the problems, and the rows marked deleted in each table checked
// (uppercased name), which only packing drops.
struct CheckResult {
    std::vector<Problem> problems;
    std::map<std::string, uint32_t> deletedRows;
};

// Every problem of the databases in scope: all of the catalog when tables is empty, else
// the named tables with their memo companions and indexes. A table named that does not
// exist is a problem too. Needs the runtime started (keys are built with its functions),
// but never storage.
CheckResult checkDirectory(const std::string &dir, const std::vector<std::string> &tables);

// The problems of catalog.plm itself: its header and sizes, and its entries' names and
// places. Unsound is set when storage start would replace the catalog (its entries are
// then not worth judging one by one).
void checkCatalog(const std::string &dir, const std::vector<CatalogItem> &catalog, std::vector<Problem> &problems,
                  bool &unsound);

// Unused bytes at the end of a table's database beyond this are worth a compaction: no
// growth of a file leaves that much room, only removals, packs and emptying do. Being a
// program's ordinary work, it is a note, not a fault.
inline constexpr uint64_t kCompactionSlack = 6 * 15360;

// Prints the problems, at most a few per database, and a last line with the count of
// faults (and of notes, when there are any).
void printProblems(const std::vector<Problem> &problems);

} // namespace zq::tool
