// zq repair: check, back the whole directory up beside it, then mend through the runtime
// what check found (offset indexes and headers by opening, row marks, memo references,
// indexes by rebuilding them) and check again.
#include "commands.h"

#include "check.h"
#include "session.h"
#include "table_access.h"
#include "text.h"
#include "zelqa.h"

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

void mendTable(const std::string &table, const std::vector<Problem> &problems) {
    OpenTable t(table, "ZQ_REPAIR");
    bool reindex = false;
    for (const Problem &p : problems) {
        if (p.table != table)
            continue;
        std::string where = latin1ToUtf8(p.database) + ": " + p.place + ": ";
        switch (p.mend) {
        case Mend::Open:
            std::printf("%srebuilt when the table was opened\n", where.c_str());
            break;
        case Mend::Mark:
            t.go(p.row);
            t.recall();
            t.commit();
            std::printf("%sstored again with a live mark\n", where.c_str());
            break;
        case Mend::Memo:
            t.go(p.row);
            t.write(p.field, Cell{});
            t.commit();
            std::printf("%sset to an empty memo text\n", where.c_str());
            break;
        case Mend::Reindex:
            reindex = true;
            break;
        case Mend::None:
            break;
        }
    }
    if (reindex) {
        t.reindex();
        std::printf("%s: indexes rebuilt\n", latin1ToUtf8(table).c_str());
    }
}

// A database outside any table whose file storage mends when it opens it.
void mendDatabase(const std::string &name) {
    if (DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name.c_str()))) {
        DmCloseDatabase(db);
        std::printf("%s: rebuilt when the database was opened\n", latin1ToUtf8(name).c_str());
    }
}

} // namespace

int runRepair(const std::string &dir, const std::vector<std::string> &tables) {
    if (!isStorageDirectory(dir))
        return kExitUsage;
    startRuntime(dir);
    std::vector<Problem> problems = checkDirectory(dir, tables);
    if (problems.empty()) {
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
    std::set<std::string> mendedTables, mendedDatabases;
    for (const Problem &p : problems) {
        if (p.mend == Mend::None)
            std::printf("%s: %s: %s: left as it is\n", latin1ToUtf8(p.database).c_str(), p.place.c_str(),
                        latin1ToUtf8(p.what).c_str());
        else if (!p.table.empty())
            mendedTables.insert(p.table);
        else
            mendedDatabases.insert(p.database);
    }
    for (const std::string &table : mendedTables) {
        mendTable(table, problems);
        __dbCloseAll();
    }
    for (const std::string &db : mendedDatabases)
        mendDatabase(db);
    StorageClose(); // everything on disk before the files are judged again
    std::vector<Problem> after = checkDirectory(dir, tables);
    endRuntime();
    std::printf("check after repair: ");
    printProblems(after);
    return after.empty() ? kExitOk : kExitProblem;
}

} // namespace zq::tool
