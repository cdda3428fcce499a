// Opening a table into a work area: the procedure behind __DBUSEAREA and __DBCREATE.
#pragma once

#include "tables/definition.h"

#include <cstdint>
#include <string>

namespace zq::tables {

struct OpenRequest {
    std::string name;                  // table name, uppercased
    std::string alias;                 // uppercased; empty for the table name
    const void *aliasObject = nullptr; // the value the alias came in
    bool newArea = true;               // false: the current area is closed and reused
    const TableDef *created = nullptr; // a table just made: its definition, not yet stored
};

// The area now holding the table, made current; -1 when the table is not in the store,
// cannot be opened or no area number is left. A table without a definition block is
// RUNTIME ERROR! 54, a listed index missing IDX NOT EXISTS!, an index without its block
// RUNTIME ERROR! 55.
int16_t openTable(const OpenRequest &request);

// The name of a table's memo companion.
inline std::string memoName(const std::string &table) { return table + "_M"; }

} // namespace zq::tables
