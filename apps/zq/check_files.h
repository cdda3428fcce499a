// The database-level checks: a file's header, the records a walk finds, its offset index.
#pragma once

#include "check.h"
#include "storage_files.h"

#include <optional>

namespace zq::tool {

// A database file as check sees it: its bytes and the records found in it.
struct DatabaseScan {
    Bytes file;
    storage::DatabaseHeader header{};
    std::vector<uint32_t> records; // offset of each record header, in order
};

// Reads and judges one database file, adding to problems; none when there is no file to
// look into. table names the table the problems concern (may be empty); missing is what
// repair does when the file is gone. A file gone with the complete copy a compaction
// makes beside it is judged from that copy, which the next opening puts in its place.
std::optional<DatabaseScan> scanDatabase(const std::string &dir, const CatalogItem &item, const std::string &table,
                                         std::vector<Problem> &problems, Mend missing = Mend::DropEntry);

// The data of record i of a scan and its size in use (cut to its capacity).
const uint8_t *recordData(const DatabaseScan &scan, size_t i, uint32_t &size);

} // namespace zq::tool
