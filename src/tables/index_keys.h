// Index keys: reading a key expression, the recorded key length, building and comparing keys.
//
// Layout in docs/formats/index.md. An entry is the table record number (4 bytes, native
// order) followed by the key area: the built key, zero-filled to the entry's key width.
#pragma once

#include "tables/work_areas.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zq::tables {

// The field names a key expression names, in order: uppercased and trimmed, split at "+",
// alias prefixes, "STR(" and "DTOS(" dropped, then every character but letters, digits
// and "_" removed (so STR(VALOR,10,2) names VALOR102). An empty expression names none.
std::vector<std::string> keyFieldNames(const std::string &expression);

// The recorded key length: N and D count 8, C and type 6 their length, M and type 5
// count 4, L the previous part's size plus 1 (1 when first). It is the comparison length.
uint32_t recordedKeyLength(const TableDef &def, const std::vector<int32_t> &keyFields);
// Bytes of the built key: N and C their declared length, D 8, L 1.
uint32_t builtKeyWidth(const TableDef &def, const std::vector<int32_t> &keyFields);
// Bytes of an entry's key area: the larger of the two above.
uint32_t keyAreaWidth(const TableDef &def, const IndexDef &index);
// Bytes of one entry: 4 + keyAreaWidth.
uint32_t entrySize(const TableDef &def, const IndexDef &index);

// The entry for the row in the area's buffer: record number, then the key of each part,
// zero-filled to the key area. A key part of another type is RUNTIME ERROR! 19.
std::vector<uint8_t> buildEntry(const AreaRecord &a, const IndexDef &index, uint32_t record);
// The same entry written over entrySize zero bytes at entry.
void writeEntry(const AreaRecord &a, const IndexDef &index, uint32_t record, uint8_t *entry);

// Bytewise unsigned comparison of two key areas over length bytes: -1, 0 or 1.
int compareKeys(const uint8_t *left, const uint8_t *right, uint32_t length);

// The comparison DmFindSortPosition takes: key and record are whole entries, extra points
// to the comparison length (uint32_t).
int16_t compareEntries(void *key, void *record, int16_t flag, void *extra, void *, void *);

// An expression that names the parts again: the field names joined by "+".
std::string keyExpressionOf(const TableDef &def, const IndexDef &index);

} // namespace zq::tables
