// zq repair: check, back the whole directory up beside it, then mend through the runtime
// what check found (the catalog as storage start recovers it, entries without their file,
// offset indexes and headers by opening, row marks, memo references, indexes by
// rebuilding them, compaction) and check again.
#include "commands.h"

#include "check.h"
#include "mend.h"
#include "session.h"
#include "text.h"
#include "zelqa.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace zq::tool {
namespace {

// "<dir>.backup-YYYYMMDD-HHMMSS" beside the directory, made a copy of it; empty on failure.
std::string backUp(const std::string &dir) {
    fs::path source = fs::absolute(dir).lexically_normal();
    if (source.filename().empty())
        source = source.parent_path();
    std::time_t now = std::time(nullptr);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y%m%d-%H%M%S", std::localtime(&now));
    fs::path target = source.string() + ".backup-" + stamp;
    std::error_code ec;
    for (int n = 2; fs::exists(target, ec); ++n)
        target = source.string() + ".backup-" + stamp + "-" + std::to_string(n);
    fs::copy(source, target, fs::copy_options::recursive, ec);
    return ec ? std::string() : target.string();
}

bool hasMend(const std::vector<Problem> &problems, Mend mend) {
    return std::any_of(problems.begin(), problems.end(), [&](const Problem &p) { return p.mend == mend; });
}

} // namespace

int runRepair(const std::string &dir, const std::vector<std::string> &tables, bool pack) {
    if (!isStorageDirectory(dir))
        return kExitUsage;
    startRuntime(dir);
    CheckResult found = checkDirectory(dir, tables);
    bool packing = pack && !found.deletedRows.empty();
    if (found.problems.empty() && !packing) {
        endRuntime();
        std::printf("nothing to repair: 0 problems found\n");
        return kExitOk;
    }
    std::string backup = backUp(dir);
    if (backup.empty()) {
        endRuntime();
        complain(dir + ": the backup copy could not be made; nothing was changed");
        return kExitProblem;
    }
    std::printf("backup: %s\n", backup.c_str());
    if (hasMend(found.problems, Mend::Catalog)) {
        // Storage start replaces an unsound catalog (from catalog.bck, else from the files)
        // and rewrites a wrong capacity; what it found is judged anew.
        for (const Problem &p : found.problems)
            if (p.mend == Mend::Catalog)
                std::printf("%smended when storage started\n", placeOf(p).c_str());
        bool kept = fs::exists(fs::path(dir) / "catalog.plm.damaged");
        StorageStart();
        StorageClose();
        if (!kept && fs::exists(fs::path(dir) / "catalog.plm.damaged"))
            std::printf("catalog.plm: replaced from catalog.bck or the database files; the damaged one is kept as "
                        "catalog.plm.damaged\n");
        found = checkDirectory(dir, tables);
    }
    std::set<std::string> mendedTables, unreadable, dropping;
    for (const Problem &p : found.problems)
        if (p.mend == Mend::None && !p.table.empty())
            unreadable.insert(upper(p.table));
    for (const Problem &p : found.problems) {
        if (p.mend == Mend::None)
            std::printf("%s%s: left as it is\n", placeOf(p).c_str(), latin1ToUtf8(p.what).c_str());
        else if (p.mend == Mend::DropIndex)
            dropping.insert(upper(p.table));
        else if (p.mend == Mend::Open && !unreadable.count(upper(p.table)) && !p.table.empty())
            mendedTables.insert(upper(p.table));
        else if (p.mend == Mend::Open)
            mendDatabase(p.database);
        else if (p.mend == Mend::Mark || p.mend == Mend::Memo || p.mend == Mend::Reindex || p.mend == Mend::Compact)
            mendedTables.insert(upper(p.table));
        else
            mendCatalog(p);
    }
    for (const std::string &table : dropping)
        dropIndexes(table, found.problems);
    if (pack)
        for (const auto &[table, count] : found.deletedRows)
            mendedTables.insert(table);
    for (const std::string &table : mendedTables) {
        if (unreadable.count(table))
            continue;
        mendTable(table, found.problems, pack && found.deletedRows.count(table));
        __dbCloseAll();
    }
    StorageClose(); // everything on disk before the files are judged again
    CheckResult after = checkDirectory(dir, tables);
    endRuntime();
    std::printf("check after repair: ");
    printProblems(after.problems);
    return faultCount(after.problems) == 0 ? kExitOk : kExitProblem;
}

} // namespace zq::tool
