// Memo texts: each one record of the table's memo companion, text and zero byte.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>
#include <string>

namespace zq::tables {

// The text behind a memo reference (record reference - 1); 0 or a lost record give "".
std::string readMemo(AreaRecord &a, uint32_t reference);
// Stores text for the slot's reference: record reference - 1 is overwritten when the
// reference lies above 0 and below the memo record count and the text fits the record,
// else a new record is made at the end. Returns the reference to keep.
uint32_t writeMemo(AreaRecord &a, uint32_t reference, const std::string &text);

} // namespace zq::tables
