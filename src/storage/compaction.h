// Work-copy rewrites beyond DmCompactDatabase: compaction that changes the kept records,
// and dropping a database's first records, each in one step across a kill.
#pragma once

#include "zelqa/storage.h"

#include <cstdint>
#include <functional>

namespace zq::storage {

// Changes a kept record's data (size bytes) in the work copy, in place.
using RecordChange = std::function<void(uint8_t *data, uint32_t size)>;

// DmCompactDatabase, with change applied to each kept record in the copy: a kill leaves
// the database as it was or compacted and changed throughout.
int compactChanging(DmOpenRef db, const RecordChange &change);

// Keeps the records from index first on and drops those before it: a kill leaves either
// every record or only the kept ones. Does nothing for first 0 or a database without an
// offset index.
void keepRecordsFrom(DmOpenRef db, uint32_t first);

} // namespace zq::storage
