// Reading a storage directory's files as bytes, without starting storage: the catalog's
// entries, database headers and definition blocks, for the commands that must not change
// anything (ls, struct, check).
#pragma once

#include "storage/layout.h"
#include "tables/definition.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zq::tool {

using Bytes = std::vector<uint8_t>;

std::optional<Bytes> readWholeFile(const std::string &path);

struct CatalogItem {
    uint32_t offset = 0;          // of the entry in catalog.plm
    storage::CatalogEntry entry{};
    std::string name;             // as stored
};

// The used entries of catalog.plm in dir, in catalog order; none when it cannot be read.
std::optional<std::vector<CatalogItem>> readCatalog(const std::string &dir);

// The four characters of a type or creator code ("DATA").
std::string fourChars(uint32_t code);

// The database file's header, when the file holds one.
std::optional<storage::DatabaseHeader> headerOf(const Bytes &file);
// The app info block of a database file, when its header describes one inside the file.
std::optional<Bytes> appInfoOf(const Bytes &file);

// A table's definition from its database file, or its index's from an index file.
std::optional<tables::TableDef> tableDefinition(const Bytes &file);
std::optional<tables::IndexDef> indexDefinition(const Bytes &file);

// A 'DATA' database that is a table: the runtime's kind-named databases (a saved array,
// the installer's log; creators 'tLog', 'tHst', 'tIns', 'tPda') are 'DATA' too, but hold
// no definition block.
bool isTable(const CatalogItem &item);

// The catalog item of a table named caselessly, when the catalog lists a table of that name.
const CatalogItem *findTable(const std::vector<CatalogItem> &catalog, const std::string &name);

std::string pathIn(const std::string &dir, const std::string &name);

// The catalog item of the table named in the storage directory dir; none after a message
// when dir is not a storage directory or has no such table (both bad usage).
std::optional<CatalogItem> requireTable(const std::string &dir, const std::string &table);

// The databases a table's files make: the table, its memo companion and its indexes.
std::vector<std::string> tableDatabases(const std::string &dir, const std::string &table);

} // namespace zq::tool
