// Mending what check found, through the runtime's own functions: storage's searches,
// opening and compaction, the catalog's entries, and the table engine.
#pragma once

#include "check.h"

#include <string>
#include <vector>

namespace zq::tool {

// "<database>: <place>: ", the start of each line repair prints.
std::string placeOf(const Problem &p);

// Opens the table and mends its problems (row marks, memo references, compaction, then
// its indexes). pack: its rows marked deleted are dropped by the compaction.
void mendTable(const std::string &table, const std::vector<Problem> &problems, bool pack);

// A database outside any table whose file storage mends when it opens it.
void mendDatabase(const std::string &name);

// A problem of the catalog or of a file beside a database: an entry without its file, a
// second entry of a name, an entry's type, a compaction work file left behind.
void mendCatalog(const Problem &p);

// Takes the table's indexes whose key is lost out of its definition, so that it opens
// again, and deletes what is left of their databases.
void dropIndexes(const std::string &table, const std::vector<Problem> &problems);

} // namespace zq::tool
