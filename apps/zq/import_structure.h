// The structure of a table made by an import: given on the command line or inferred from
// a CSV file's values.
#pragma once

#include "import_file.h"

#include <optional>
#include <string>
#include <vector>

namespace zq::tool {

// NAME:TYPE[:LENGTH[:DECIMALS]] separated by commas; types C, N, D, L, M. C and N need a
// length; D and M take theirs from the type, L is 1.
std::optional<std::vector<tables::FieldDef>> parseStructure(const std::string &text, std::string &why);

// One field per column, named after it: N when every value is a number (length and
// decimals from the widest), D when every value is a YYYY-MM-DD date, L when every value
// is T or F, otherwise C as long as the longest value (M past 254 characters).
std::optional<std::vector<tables::FieldDef>> inferStructure(const ImportData &data, std::string &why);

// False with the reason when a field name is not 1 to 23 letters, digits or "_", or repeats.
bool validFieldNames(const std::vector<tables::FieldDef> &fields, std::string &why);

} // namespace zq::tool
