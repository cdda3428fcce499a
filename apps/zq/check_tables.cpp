// The table-level checks: row marks, memo references, and each index against its table.
#include "check.h"

#include "check_files.h"
#include "progress.h"
#include "tables/index_keys.h"
#include "tables/row.h"
#include "text.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace zq::tool {
namespace {

constexpr size_t kShownPerDatabase = 8; // problems printed for one database before a count

std::string n(uint64_t v) { return std::to_string(v); }

struct TableCheck {
    const std::string &dir;
    const std::vector<CatalogItem> &catalog;
    std::vector<Problem> &problems;
    std::map<std::string, uint32_t> &deletedRows;
    std::map<std::string, bool> done; // databases already scanned, uppercased

    const CatalogItem *item(const std::string &name) const {
        for (const CatalogItem &i : catalog)
            if (sameCaseless(i.name, name))
                return &i;
        return nullptr;
    }

    void add(const std::string &db, const std::string &table, const std::string &place, const std::string &what,
             Mend mend, uint32_t row = 0, uint32_t field = 0) {
        problems.push_back({db, place, what, mend, table, row, field});
    }

    std::optional<DatabaseScan> scan(const CatalogItem &i, const std::string &table,
                                     Mend missing = Mend::DropEntry) {
        done[upper(i.name)] = true;
        return scanDatabase(dir, i, table, problems, missing);
    }

    void table(const CatalogItem &t);
    void rows(const CatalogItem &t, tables::TableDef &def, const DatabaseScan &scan, std::vector<tables::AreaRecord> &decoded);
    void index(const CatalogItem &t, const tables::TableDef &def, const tables::IndexDef &listed,
               const std::vector<tables::AreaRecord> &decoded);
};

void TableCheck::table(const CatalogItem &t) {
    auto scan = this->scan(t, t.name);
    if (!scan)
        return;
    auto def = tableDefinition(scan->file);
    if (!def) {
        add(t.name, t.name, "definition",
            "the table's definition block does not parse; without it the rows cannot be read (restore the table "
            "from a backup)",
            Mend::None);
        return;
    }
    std::vector<tables::AreaRecord> decoded;
    rows(t, *def, *scan, decoded);
    for (const auto &listed : def->indexes)
        index(t, *def, listed, decoded);
}

void TableCheck::rows(const CatalogItem &t, tables::TableDef &def, const DatabaseScan &scan,
                      std::vector<tables::AreaRecord> &decoded) {
    std::optional<uint64_t> memoCount;
    if (def.hasMemo) {
        // A lost companion is made again, empty, when the table opens.
        const CatalogItem *memo = item(t.name + "_M");
        auto m = memo ? this->scan(*memo, t.name) : std::nullopt;
        if (!memo)
            add(t.name + "_M", t.name, "file", "the table has memo fields but no memo companion", Mend::Open);
        if (m)
            memoCount = m->records.size();
        else if (!memo || problems.back().mend == Mend::DropEntry)
            memoCount = 0;
    }
    Progress progress("check " + t.name, scan.records.size());
    for (size_t r = 0; r < scan.records.size(); ++r) {
        progress.advance(r + 1);
        uint32_t size = 0;
        const uint8_t *data = recordData(scan, r, size);
        tables::AreaRecord a;
        a.def = def;
        a.buffer.assign(def.bufferSize, 0);
        tables::decodeRow(a, data, size);
        if (size < 2 || (data[size - 2] != '!' && data[size - 2] != '*') || data[size - 1] != 0)
            add(t.name, t.name, "row " + n(r + 1), "the row has no deletion mark", Mend::Mark, uint32_t(r));
        else if (data[size - 2] == '*')
            ++deletedRows[upper(t.name)];
        for (size_t f = 0; memoCount && f + 1 < def.fields.size(); ++f) {
            if (def.fields[f].type != tables::kMemo)
                continue;
            uint32_t ref = storage::load<uint32_t>(a.buffer.data() + def.fields[f].slot);
            if (ref > *memoCount)
                add(t.name, t.name, "row " + n(r + 1) + ", field " + def.fields[f].name,
                    "memo reference " + n(ref) + " lies past the end of " + t.name + "_M (" + n(*memoCount) +
                        " texts)",
                    Mend::Memo, uint32_t(r), uint32_t(f));
        }
        decoded.push_back(std::move(a));
    }
}

void TableCheck::index(const CatalogItem &t, const tables::TableDef &def, const tables::IndexDef &listed,
                       const std::vector<tables::AreaRecord> &decoded) {
    const CatalogItem *i = item(listed.name);
    // The key of an index is kept only in its own file: without it the index cannot be
    // made again, and the table does not open while its definition lists it.
    if (!i) {
        add(listed.name, t.name, "file", "the table lists this index but the catalog does not", Mend::DropIndex);
        return;
    }
    auto scan = this->scan(*i, t.name, Mend::DropIndex);
    auto index = scan ? indexDefinition(scan->file) : std::nullopt;
    if (!index) {
        if (scan)
            add(i->name, t.name, "definition", "the index's definition block does not parse", Mend::DropIndex);
        return;
    }
    const std::string &db = i->name;
    if (scan->records.size() != decoded.size())
        add(db, t.name, "entries",
            "holds " + n(scan->records.size()) + " entries for " + n(decoded.size()) + " rows (out of step)",
            Mend::Reindex);
    uint32_t width = tables::keyAreaWidth(def, *index), length = index->attribute;
    std::vector<uint32_t> seen(decoded.size(), 0);
    const uint8_t *previous = nullptr;
    Progress progress("check " + db, scan->records.size());
    for (size_t e = 0; e < scan->records.size(); ++e) {
        progress.advance(e + 1);
        uint32_t size = 0;
        const uint8_t *entry = recordData(*scan, e, size);
        std::string place = "entry " + n(e + 1);
        if (size < 4 + std::min(width, length)) {
            add(db, t.name, place, "shorter than its key", Mend::Reindex);
            continue;
        }
        uint32_t row = storage::load<uint32_t>(entry);
        if (row >= decoded.size()) {
            add(db, t.name, place, "names row " + n(row + 1) + ", which does not exist", Mend::Reindex);
            continue;
        }
        ++seen[row];
        std::vector<uint8_t> built = tables::buildEntry(decoded[row], *index, row);
        uint32_t compared = std::min<uint32_t>(std::min<uint32_t>(size, uint32_t(built.size())), 4 + width);
        if (!std::equal(built.begin() + 4, built.begin() + compared, entry + 4))
            add(db, t.name, place, "its key bytes differ from the key of row " + n(row + 1), Mend::Reindex);
        if (previous && tables::compareKeys(previous + 4, entry + 4, length) > 0)
            add(db, t.name, place, "out of key order", Mend::Reindex);
        previous = entry;
    }
    for (size_t r = 0; r < seen.size(); ++r)
        if (seen[r] != 1)
            add(db, t.name, "row " + n(r + 1), seen[r] ? "has " + n(seen[r]) + " entries" : "has no entry",
                Mend::Reindex);
}

} // namespace

CheckResult checkDirectory(const std::string &dir, const std::vector<std::string> &tables) {
    CheckResult result;
    std::vector<Problem> &problems = result.problems;
    auto catalog = readCatalog(dir);
    if (!catalog) {
        problems.push_back({"catalog.plm", "file", "cannot be read", Mend::None, "", 0, 0});
        return result;
    }
    bool unsound = false;
    checkCatalog(dir, *catalog, problems, unsound);
    if (unsound)
        return result;
    TableCheck check{dir, *catalog, problems, result.deletedRows, {}};
    for (const std::string &name : tables) {
        const CatalogItem *t = findTable(*catalog, name);
        if (t)
            check.table(*t);
        else
            problems.push_back({upper(name), "catalog", "no table of this name", Mend::None, "", 0, 0});
    }
    if (!tables.empty())
        return result;
    for (const CatalogItem &i : *catalog)
        if (isTable(i) && !check.done.count(upper(i.name)))
            check.table(i);
    for (const CatalogItem &i : *catalog)
        if (!check.done.count(upper(i.name)))
            check.scan(i, "");
    return result;
}

size_t faultCount(const std::vector<Problem> &problems) {
    return size_t(std::count_if(problems.begin(), problems.end(), [](const Problem &p) { return !p.note; }));
}

void printProblems(const std::vector<Problem> &problems) {
    std::map<std::string, size_t> shown;
    for (const Problem &p : problems) {
        size_t &count = shown[p.database];
        if (++count <= kShownPerDatabase)
            std::printf("%s: %s: %s%s\n", latin1ToUtf8(p.database).c_str(), p.place.c_str(),
                        latin1ToUtf8(p.what).c_str(), p.note ? " (note)" : "");
    }
    for (const auto &[db, count] : shown)
        if (count > kShownPerDatabase)
            std::printf("%s: %zu more problems\n", latin1ToUtf8(db).c_str(), count - kShownPerDatabase);
    size_t faults = faultCount(problems), notes = problems.size() - faults;
    std::printf("%zu problem%s found", faults, faults == 1 ? "" : "s");
    if (notes)
        std::printf(", %zu note%s", notes, notes == 1 ? "" : "s");
    std::printf("\n");
}

} // namespace zq::tool
