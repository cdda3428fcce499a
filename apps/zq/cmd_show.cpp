// zq show: a table's rows as an aligned text table, in natural or index order, read
// through the runtime from a private copy of the table's files.
#include "commands.h"

#include "session.h"
#include "storage_files.h"
#include "table_access.h"
#include "text.h"

#include <cstdio>

namespace zq::tool {
namespace {

constexpr size_t kMemoShown = 40; // characters of a memo text shown

size_t codePoints(const std::string &utf8) {
    size_t n = 0;
    for (unsigned char c : utf8)
        n += (c & 0xC0) != 0x80;
    return n;
}

std::string shownCell(const Cell &cell, const tables::FieldDef &f) {
    if (f.type != tables::kMemo)
        return cellToText(cell, f);
    std::string t = cell.text;
    for (char &c : t)
        if (c == '\n' || c == '\r' || c == '\t')
            c = ' ';
    if (t.size() > kMemoShown)
        t = t.substr(0, kMemoShown) + "...";
    return latin1ToUtf8(t);
}

void printRow(const std::vector<std::string> &cells, const std::vector<size_t> &widths,
              const std::vector<bool> &right) {
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i) {
        std::string pad(widths[i] - codePoints(cells[i]), ' ');
        line += right[i] ? pad + cells[i] : cells[i] + (i + 1 < cells.size() ? pad : "");
        if (i + 1 < cells.size())
            line += "  ";
    }
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    std::printf("%s\n", line.c_str());
}

// The 1-based order of the index named, or 0 when the table has none of that name.
int orderOf(const tables::TableDef &def, const std::string &index) {
    for (size_t i = 0; i < def.indexes.size(); ++i)
        if (sameCaseless(def.indexes[i].name, index))
            return int(i + 1);
    return 0;
}

} // namespace

int runShow(const std::string &dir, const std::string &table, const ShowOptions &options) {
    auto item = requireTable(dir, table);
    if (!item)
        return kExitUsage;
    startRuntime(privateCopy(dir, tableDatabases(dir, item->name)));
    OpenTable t(item->name, "ZQ_SHOW");
    int order = options.order.empty() ? 0 : orderOf(t.definition(), options.order);
    if (!options.order.empty() && order == 0) {
        complain("table " + table + " has no index " + options.order);
        endRuntime();
        return kExitUsage;
    }
    std::vector<tables::FieldDef> fields = t.fields();
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> head{"#"};
    std::vector<bool> right{true};
    for (const auto &f : fields) {
        head.push_back(latin1ToUtf8(f.name));
        right.push_back(f.type == tables::kNumeric);
    }
    if (options.deleted) {
        head.push_back("DEL");
        right.push_back(false);
    }
    if (order)
        t.setOrder(order);
    t.top();
    for (; !t.atEnd() && (options.limit < 0 || (long long)rows.size() < options.limit); t.next()) {
        bool deleted = t.deleted();
        if (deleted && !options.deleted)
            continue;
        std::vector<std::string> row{std::to_string(t.record() + 1)};
        for (size_t i = 0; i < fields.size(); ++i)
            row.push_back(shownCell(t.read(i), fields[i]));
        if (options.deleted)
            row.push_back(deleted ? "*" : "");
        rows.push_back(row);
    }
    endRuntime();
    std::vector<size_t> widths(head.size());
    for (size_t i = 0; i < head.size(); ++i) {
        widths[i] = codePoints(head[i]);
        for (const auto &r : rows)
            widths[i] = std::max(widths[i], codePoints(r[i]));
    }
    printRow(head, widths, right);
    for (const auto &r : rows)
        printRow(r, widths, right);
    std::printf("(%zu rows)\n", rows.size());
    return kExitOk;
}

} // namespace zq::tool
