// The app info block of a table or index database: the definition as stored text.
//
// Layout in docs/formats/table.md. Encoding and parsing are pure; writeTableBlock and
// readTableBlock move the block in and out of a database through the record store.
#pragma once

#include "tables/definition.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zq::tables {

constexpr uint32_t kHeadSize = 72; // descriptor copy in front of every block

// The whole block of a table: head, name, counts, fields, index names. indexCount, when
// given, is stored as the count instead of the number of indexes listed (an index drop
// on a table with none stores 65535).
std::vector<uint8_t> encodeTableBlock(const TableDef &def, std::optional<uint16_t> indexCount = {});
// The definition in a table block; none when the block is not one (short, missing
// terminators, counts that do not match what follows, an unknown type digit). The count
// 65535, which an index drop on a table with none stores, reads as no indexes.
std::optional<TableDef> parseTableBlock(std::span<const uint8_t> block);

// The block of an index database: head, name, key-part count, attribute, field numbers.
std::vector<uint8_t> encodeIndexBlock(const IndexDef &index);
std::optional<IndexDef> parseIndexBlock(std::span<const uint8_t> block);

// Writes the block of the table named def.name, open as db, resized to its exact size.
// Faults: RUNTIME ERROR! 32 (database not found or not open), 33 (its information cannot
// be read), 34 (no block can be attached), 35 (the block cannot be locked).
void writeTableBlock(const TableDef &def, DmOpenRef db, std::optional<uint16_t> indexCount = {});
// Writes an index database's block (no error codes of its own: false on failure).
bool writeIndexBlock(const IndexDef &index, DmOpenRef db);
// The bytes of a database's app info block; none when it has none.
std::optional<std::vector<uint8_t>> readBlock(DmOpenRef db);

} // namespace zq::tables
