// Structures for --create: parsed from --struct or inferred from the values of a CSV file.
#include "import_structure.h"

#include "cell.h"
#include "text.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

namespace zq::tool {
namespace {

constexpr int kTextMax = 254; // longer inferred texts become memo fields

std::vector<std::string> split(const std::string &text, char by) {
    std::vector<std::string> parts;
    std::stringstream in(text);
    for (std::string part; std::getline(in, part, by);)
        parts.push_back(trim(part));
    return parts;
}

bool isNumber(const std::string &v) {
    char *end = nullptr;
    std::strtod(v.c_str(), &end);
    return !v.empty() && end && !*end && v.find_first_of("xXnN") == std::string::npos;
}

bool isLogical(const std::string &v) {
    std::string u = upper(v);
    return u == "T" || u == "F" || u == "TRUE" || u == "FALSE";
}

tables::FieldDef inferred(const std::string &name, const ImportData &data, size_t column) {
    bool numbers = true, dates = true, logicals = true, any = false;
    size_t longest = 1, decimals = 0, width = 1;
    for (const ImportRow &row : data.rows) {
        std::string v = trim(row.values[column]);
        std::string latin1;
        utf8ToLatin1(row.values[column], latin1);
        longest = std::max(longest, latin1.size());
        if (v.empty())
            continue;
        any = true;
        numbers = numbers && isNumber(v);
        dates = dates && v.size() == 10 && parseDate(v).value_or(0) != 0;
        logicals = logicals && isLogical(v);
        width = std::max(width, v.size());
        if (size_t dot = v.find('.'); dot != std::string::npos)
            decimals = std::max(decimals, v.size() - dot - 1);
    }
    tables::FieldDef f;
    f.name = upper(trim(name));
    if (any && numbers) {
        f.type = tables::kNumeric;
        f.length = int32_t(std::max(width, decimals + 2));
        f.decimals = int32_t(decimals);
    } else if (any && dates) {
        f.type = tables::kDate;
        f.length = 8;
    } else if (any && logicals) {
        f.type = tables::kLogical;
        f.length = 1;
    } else {
        f.type = longest > size_t(kTextMax) ? tables::kMemo : tables::kCharacter;
        f.length = f.type == tables::kMemo ? 4 : int32_t(longest);
    }
    return f;
}

} // namespace

bool validFieldNames(const std::vector<tables::FieldDef> &fields, std::string &why) {
    std::set<std::string> seen;
    for (const auto &f : fields) {
        bool ok = !f.name.empty() && f.name.size() <= tables::kFieldNameMax &&
                  std::all_of(f.name.begin(), f.name.end(), [](char c) {
                      return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
                  });
        if (!ok) {
            why = "\"" + f.name + "\" cannot be a field name (1 to 23 letters, digits or _)";
            return false;
        }
        if (!seen.insert(f.name).second || f.name == tables::kDeletionField) {
            why = "the field name " + f.name + " is repeated or reserved";
            return false;
        }
    }
    return true;
}

std::optional<std::vector<tables::FieldDef>> parseStructure(const std::string &text, std::string &why) {
    std::vector<tables::FieldDef> fields;
    for (const std::string &item : split(text, ',')) {
        std::vector<std::string> p = split(item, ':');
        if (p.size() < 2 || p.size() > 4 || p[1].size() != 1) {
            why = "--struct: \"" + item + "\" is not NAME:TYPE[:LENGTH[:DECIMALS]]";
            return std::nullopt;
        }
        tables::FieldDef f;
        f.name = upper(p[0]);
        char letter = char(std::toupper(static_cast<unsigned char>(p[1][0])));
        if (std::string("CNDLM").find(letter) == std::string::npos) {
            why = "--struct: " + f.name + ": the type must be C, N, D, L or M";
            return std::nullopt;
        }
        f.type = tables::typeCodeOfLetter(letter);
        long length = p.size() > 2 ? std::strtol(p[2].c_str(), nullptr, 10) : 0;
        long decimals = p.size() > 3 ? std::strtol(p[3].c_str(), nullptr, 10) : 0;
        if ((letter == 'C' || letter == 'N') && (length < 1 || length > 254 || decimals < 0 || decimals >= length)) {
            why = "--struct: " + f.name + ": a length of 1 to 254 (and fewer decimals) is needed";
            return std::nullopt;
        }
        f.length = tables::storedLength(f.type, letter == 'L' ? 1 : int32_t(length));
        f.decimals = letter == 'N' ? int32_t(decimals) : 0;
        fields.push_back(f);
    }
    if (fields.empty()) {
        why = "--struct: no fields";
        return std::nullopt;
    }
    return fields;
}

std::optional<std::vector<tables::FieldDef>> inferStructure(const ImportData &data, std::string &why) {
    std::vector<tables::FieldDef> fields;
    for (size_t i = 0; i < data.columns.size(); ++i)
        fields.push_back(inferred(data.columns[i], data, i));
    if (!validFieldNames(fields, why))
        return std::nullopt;
    return fields;
}

} // namespace zq::tool
