// zq import: a table's rows replaced by those of a CSV or DBF file, all or nothing.
//
// The file is read and every value checked first; a bad one stops the import naming its
// line or record, and nothing is stored. The rows then go into a staging table; only when
// every row is there is the table made anew (its indexes with it) and filled from the
// staging table, which is then deleted. A run cut short before that leaves the table as
// it was and, at most, the staging table behind.
#include "commands.h"

#include "export_file.h"
#include "import_file.h"
#include "import_structure.h"
#include "progress.h"
#include "session.h"
#include "storage_files.h"
#include "table_access.h"
#include "tables/index_keys.h"
#include "text.h"

#include <algorithm>
#include <cstdio>

namespace zq::tool {
namespace {

constexpr const char *kStaging = "ZQ_IMPORT_STAGE";

struct IndexPlan {
    std::string name;
    std::string expression;
};

// The table's index names and key expressions, from its files.
std::vector<IndexPlan> indexesOf(const std::string &dir, const tables::TableDef &def) {
    std::vector<IndexPlan> plans;
    for (const auto &listed : def.indexes) {
        auto bytes = readWholeFile(pathIn(dir, listed.name));
        auto index = bytes ? indexDefinition(*bytes) : std::nullopt;
        if (index)
            plans.push_back({listed.name, tables::keyExpressionOf(def, *index)});
    }
    return plans;
}

// The field each column goes to: the same name, or for a DBF's cut names, the one field
// whose name begins with it.
std::optional<std::vector<size_t>> columnFields(const ImportData &data, const std::vector<tables::FieldDef> &fields,
                                                const std::string &table, std::string &why) {
    std::vector<size_t> map;
    for (const std::string &column : data.columns) {
        std::string c = upper(trim(column));
        size_t found = fields.size(), prefixed = 0, prefixAt = 0;
        for (size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].name == c)
                found = i;
            if (c.size() == 10 && fields[i].name.compare(0, 10, c) == 0)
                ++prefixed, prefixAt = i;
        }
        if (found == fields.size() && prefixed == 1)
            found = prefixAt;
        if (found == fields.size()) {
            why = "column " + column + " is not a field of " + table;
            return std::nullopt;
        }
        map.push_back(found);
    }
    return map;
}

// Every row as cells of the structure; fields no column names stay empty.
std::optional<std::vector<std::vector<Cell>>> convertRows(const ImportData &data,
                                                          const std::vector<tables::FieldDef> &fields,
                                                          const std::vector<size_t> &map, const std::string &file,
                                                          std::string &why) {
    std::vector<std::vector<Cell>> rows;
    rows.reserve(data.rows.size());
    for (const ImportRow &row : data.rows) {
        std::vector<Cell> cells(fields.size());
        for (size_t c = 0; c < row.values.size(); ++c) {
            std::string reason;
            auto cell = cellFromText(row.values[c], fields[map[c]], reason);
            if (!cell) {
                why = file + ": " + row.place + ", column " + data.columns[c] + ": " + reason;
                return std::nullopt;
            }
            cells[map[c]] = *cell;
        }
        rows.push_back(std::move(cells));
    }
    return rows;
}

pObj structureArray(const std::vector<tables::FieldDef> &fields) {
    pObj a = __CreateArray(__INIT_NUL());
    for (const auto &f : fields) {
        char letter[2] = {tables::letterOfTypeCode(f.type), 0};
        __NewArrayElement(a, __CreateArray(__INIT_CHARPTR(f.name.c_str()), __INIT_CHARPTR(letter),
                                           __INIT_DOUBLE(f.length), __INIT_DOUBLE(f.decimals), __INIT_NUL()));
    }
    return a;
}

void fill(OpenTable &to, const std::vector<std::vector<Cell>> &rows, const std::string &label) {
    Progress progress(label, rows.size());
    uint64_t done = 0;
    for (const auto &cells : rows) {
        to.append();
        for (size_t i = 0; i < cells.size(); ++i)
            to.write(i, cells[i]);
        to.commit();
        progress.advance(++done);
    }
}

// Copies every row of the staging table into the table, field by field.
void copyRows(OpenTable &from, OpenTable &to, size_t fieldCount, const std::string &label) {
    Progress progress(label, from.recordCount());
    uint64_t done = 0;
    for (from.top(); !from.atEnd(); from.next()) {
        to.append();
        for (size_t i = 0; i < fieldCount; ++i)
            to.write(i, from.read(i));
        to.commit();
        progress.advance(++done);
    }
}

std::optional<ImportData> readImport(const std::string &file, std::string &why) {
    std::string ext = extensionOf(file);
    return ext == "csv" ? readCsv(file, why) : readDbf(file, why);
}

// The structure of the new table: the old table's, or with --create the one given, the
// DBF's or the one inferred from the CSV values.
std::optional<std::vector<tables::FieldDef>> targetStructure(const ImportOptions &options, const ImportData &data,
                                                             const std::optional<tables::TableDef> &old,
                                                             std::string &why) {
    if (!options.create) {
        auto fields = old->fields;
        fields.pop_back(); // the deletion field
        return fields;
    }
    if (!options.structure.empty())
        return parseStructure(options.structure, why);
    if (!data.structure.empty())
        return validFieldNames(data.structure, why) ? std::optional(data.structure) : std::nullopt;
    return inferStructure(data, why);
}

} // namespace

int runImport(const std::string &dir, const std::string &table, const std::string &file, const ImportOptions &options) {
    std::string ext = extensionOf(file);
    if (ext != "csv" && ext != "dbf") {
        complain(file + ": unknown format; the file must end in .csv or .dbf");
        return kExitUsage;
    }
    if (!options.structure.empty() && (!options.create || ext != "csv")) {
        complain("--struct goes with --create and a CSV file");
        return kExitUsage;
    }
    if (!isStorageDirectory(dir))
        return kExitUsage;
    std::string name = upper(table);
    if (name.empty() || name.size() > tables::kTableNameMax || name.find_first_of("/\\:") != std::string::npos ||
        name == kStaging) {
        complain("\"" + table + "\" cannot be a table name");
        return kExitUsage;
    }
    auto catalog = readCatalog(dir);
    const CatalogItem *item = catalog ? findTable(*catalog, name) : nullptr;
    auto oldBytes = item ? readWholeFile(pathIn(dir, item->name)) : std::nullopt;
    std::optional<tables::TableDef> old = oldBytes ? tableDefinition(*oldBytes) : std::nullopt;
    if (!old && !options.create) {
        complain(dir + ": no table " + table + " (--create makes it from the file)");
        return kExitUsage;
    }
    std::string why;
    auto data = readImport(file, why);
    auto fields = data ? targetStructure(options, *data, old, why) : std::nullopt;
    auto map = fields ? columnFields(*data, *fields, name, why) : std::nullopt;
    auto rows = map ? convertRows(*data, *fields, *map, file, why) : std::nullopt;
    if (!rows) {
        complain(why + "; nothing was imported");
        return kExitProblem;
    }
    std::vector<IndexPlan> indexes = old ? indexesOf(dir, *old) : std::vector<IndexPlan>{};

    startRuntime(dir);
    __DBCREATE(__INIT_CHARPTR(kStaging), structureArray(*fields), nullptr);
    {
        OpenTable staging(kStaging, "ZQ_STAGE");
        fill(staging, *rows, "import " + name);
        __DBCREATE(__INIT_CHARPTR(name.c_str()), structureArray(*fields), nullptr);
        OpenTable target(name, "ZQ_TARGET");
        copyRows(staging, target, fields->size(), "store " + name);
        __TBL_Select(__INIT_CHARPTR("ZQ_TARGET"));
        for (const IndexPlan &index : indexes) {
            bool keyKept = true;
            for (const std::string &part : tables::keyFieldNames(index.expression))
                keyKept = keyKept && std::any_of(fields->begin(), fields->end(),
                                                 [&](const tables::FieldDef &f) { return f.name == part; });
            if (keyKept)
                __DBCREATEINDEX(__INIT_CHARPTR(index.name.c_str()), __INIT_CHARPTR(index.expression.c_str()),
                                __INIT_NUL());
            else {
                complain("index " + index.name + " (" + index.expression + ") dropped: its key fields are gone");
                if (LocalID id = DmFindDatabase(0, index.name.c_str()))
                    DmDeleteDatabase(0, id);
            }
        }
    }
    __dbCloseAll();
    __TBL_DeleteDatabase(__INIT_CHARPTR(kStaging));
    if (LocalID memo = DmFindDatabase(0, (std::string(kStaging) + "_M").c_str()))
        DmDeleteDatabase(0, memo);
    endRuntime();
    std::printf("imported %zu rows into %s from %s\n", rows->size(), name.c_str(), file.c_str());
    return kExitOk;
}

} // namespace zq::tool
