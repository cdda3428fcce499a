// zq export: a table's live rows, in natural order, to CSV, DBF or XLSX, read through the
// runtime from a private copy of the table's files.
#include "commands.h"

#include "export_file.h"
#include "memo_file.h"
#include "progress.h"
#include "session.h"
#include "storage_files.h"
#include "table_access.h"

#include <cstdio>
#include <filesystem>

namespace zq::tool {
namespace {

void removeOutput(const std::string &file) {
    std::error_code ec;
    std::filesystem::remove(file, ec);
    if (extensionOf(file) == "dbf")
        std::filesystem::remove(memoPathOf(file, false), ec);
}

} // namespace

int runExport(const std::string &dir, const std::string &table, const std::string &file) {
    std::unique_ptr<ExportFile> out = exportFor(file);
    if (!out) {
        complain(file + ": unknown format; the file must end in .csv, .dbf or .xlsx");
        return kExitUsage;
    }
    auto item = requireTable(dir, table);
    if (!item)
        return kExitUsage;
    startRuntime(privateCopy(dir, tableDatabases(dir, item->name)));
    OpenTable t(item->name, "ZQ_EXPORT");
    std::vector<tables::FieldDef> fields = t.fields();
    std::string why;
    bool ok = out->begin(fields, why);
    uint64_t rows = 0, seen = 0;
    {
        Progress progress("export " + item->name, t.recordCount());
        for (t.top(); ok && !t.atEnd(); t.next()) {
            progress.advance(++seen);
            if (t.deleted())
                continue;
            std::vector<Cell> cells;
            for (size_t i = 0; i < fields.size(); ++i)
                cells.push_back(t.read(i));
            ok = out->row(cells, why);
            rows += ok;
        }
    }
    endRuntime();
    if (ok)
        ok = out->finish(why);
    if (!ok) {
        out.reset();
        removeOutput(file);
        complain("export of " + item->name + " failed: " + why);
        return kExitProblem;
    }
    std::printf("exported %llu rows of %s to %s\n", (unsigned long long)rows, item->name.c_str(), file.c_str());
    return kExitOk;
}

} // namespace zq::tool
