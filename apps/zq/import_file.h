// Files a table is imported from, read whole before anything is stored: CSV (libcsv) and
// DBF (shapelib, memo texts from the .dbt file).
#pragma once

#include "tables/definition.h"

#include <optional>
#include <string>
#include <vector>

namespace zq::tool {

struct ImportRow {
    std::string place;               // "line 7" or "record 3", for messages
    std::vector<std::string> values; // UTF-8 texts, one per column
};

struct ImportData {
    std::vector<std::string> columns;          // names, as the file has them
    std::vector<tables::FieldDef> structure;   // DBF only: the file's fields
    std::vector<ImportRow> rows;
};

// The whole file; none with the reason (naming the line or record) in why.
std::optional<ImportData> readCsv(const std::string &path, std::string &why);
std::optional<ImportData> readDbf(const std::string &path, std::string &why);

} // namespace zq::tool
