// Storage as a program uses it, for the fuzz targets: catalogs made to order, databases
// read record by record and changed a little.
#pragma once

#include "harness.h"
#include "zelqa/storage.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zq::fuzz {

inline constexpr uint32_t kTypeData = 0x44415441u;  // 'DATA': records found through the offset index
inline constexpr uint32_t kTypeIndex = 0x494E4458u; // 'INDX': fixed-stride index entries
inline constexpr uint32_t kTypeOther = 0x4F544852u; // 'OTHR'
inline constexpr uint32_t kCreatorTables = 0x5A454C51u; // 'ZELQ'
inline constexpr uint32_t kCreatorLog = 0x744C6F67u;    // 'tLog'

struct CatalogLine {
    std::string name;
    uint32_t type;
    uint32_t creator;
};

// The bytes of a sound "catalog.plm" listing these databases.
std::vector<uint8_t> catalogBytes(const std::vector<CatalogLine> &lines);

// Reads every record the database (of this name) says it has, touching every byte, a
// few through ReadRecordBuffer, and the app info block. Returns the number of records found.
uint32_t readAllRecords(DmOpenRef db, const char *name);

// Changes the database as a program would, each step chosen by a bit of `steps`: append,
// grow and mark the first record, remove the first record, compact, new app info block.
void changeRecords(DmOpenRef db, uint8_t steps);

} // namespace zq::fuzz
