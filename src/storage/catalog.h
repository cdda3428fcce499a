// The catalog "catalog.plm": a header and a run of 88-byte entries, one per database.
#pragma once

#include "storage/layout.h"

#include <string_view>

namespace zq::storage {

// Compares a name with an entry's name byte by byte, each byte lowered first.
bool sameName(std::string_view name, const char *entryName, size_t entryRoom);

// Entries are addressed by their offset in the catalog; offsets outside it read as free.
CatalogEntry readEntry(uint32_t offset);
void writeEntry(uint32_t offset, const CatalogEntry &entry, uint32_t bytes = kEntrySize);
void clearEntry(uint32_t offset);

// The offset of the entry with this name, or 0.
uint32_t findEntry(std::string_view name);
// Where a new entry of this name goes: the first free or same-named entry, else a new
// zero-filled one appended to the catalog.
uint32_t placeEntry(std::string_view name);

// A new entry: name, zero attributes, version, backup date and modification number, both
// times from the local clock, and the codes.
CatalogEntry makeEntry(std::string_view name, uint32_t type, uint32_t creator);
// Writes a new entry at its place (placeEntry) and flushes the catalog.
void addEntry(const CatalogEntry &entry);

void flushCatalog();

} // namespace zq::storage
