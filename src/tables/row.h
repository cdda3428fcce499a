// Rows: the stored encoding of a row, the edit buffer, and moving a row between them.
//
// A stored row (docs/formats/table.md) holds the fields in table order without padding
// and ends with the deletion mark in the record's last two bytes. A record may be longer
// than its row: a row is never shrunk in place, so the mark is always read from the end.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>
#include <vector>

namespace zq::tables {

// Setting 11: deleted rows are passed over when moving with a direction.
bool deletedRowsHidden();
// Setting 9: N, D and M bytes are stored in the other byte order.
bool byteSwapped();

// The first byte of the deletion field's slot: '!', '*' or 0 for a blank buffer.
inline uint8_t &deletionMark(AreaRecord &a) { return a.buffer[a.def.fields.back().slot]; }

// Clears the edit buffer to zeros.
void blankBuffer(AreaRecord &a);

// The stored row for the buffer: trailing blanks of character slots become zeros first.
// Unknown field types are RUNTIME ERROR! 8.
std::vector<uint8_t> encodeRow(AreaRecord &a);
// Fills the buffer from a stored record of size bytes. Unknown types: RUNTIME ERROR! 7.
void decodeRow(AreaRecord &a, const uint8_t *record, uint32_t size);

// Loads record n into the buffer and makes it current; n outside the table goes to the
// top instead and gives false.
bool readRow(AreaRecord &a, int64_t n);
// Stores the buffer: a new record when appending, else over the current record (grown
// when the row got longer). A deleted row writes only its mark.
void writeRow(AreaRecord &a);
// writeRow when a write is pending.
void writePending(AreaRecord &a);

} // namespace zq::tables
