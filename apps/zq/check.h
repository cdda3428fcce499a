// Checking a storage directory from its bytes: what check reports and repair mends.
//
// Nothing here starts storage or writes a byte; every file is read whole and judged
// against what a program relies on (docs/formats/): headers and sizes, the records a
// walk of the file finds, offset indexes, row marks, memo references and index entries.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zq::tool {

// What repair does about a problem.
enum class Mend {
    None,    // nothing repair can do: reported only
    Open,    // opening the database through storage rebuilds it (offset index, header)
    Reindex, // the table's indexes are rebuilt
    Mark,    // the row is stored again with a live mark
    Memo,    // the row's memo field is set to an empty text
};

struct Problem {
    std::string database; // the file the problem is in
    std::string place;    // "header", "record 4", "row 2, field OBS", "entry 7", ...
    std::string what;
    Mend mend = Mend::None;
    std::string table;    // the table it concerns, when it concerns one
    uint32_t row = 0;     // Mark, Memo: 0-based record number
    uint32_t field = 0;   // Memo: 0-based field number
};

// Every problem of the databases in scope: all of the catalog when tables is empty, else
// the named tables with their memo companions and indexes. A table named that does not
// exist is a problem too. Needs the runtime started (keys are built with its functions),
// but never storage.
std::vector<Problem> checkDirectory(const std::string &dir, const std::vector<std::string> &tables);

// Prints the problems, at most a few per database, and a last line with the count.
void printProblems(const std::vector<Problem> &problems);

} // namespace zq::tool
