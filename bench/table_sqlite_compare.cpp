// The table workload on SQLite, for comparison with table_bench in the same run.
//
// Same rows, same phases, same output. Phase g commits every row with the write-ahead log
// and synchronous=FULL, SQLite's durable setting: each commit is on the device before it
// returns.
#include "table_workload.h"

#include <sqlite3.h>

#include <filesystem>

using namespace table_workload;

namespace {

const char *kUsage =
    "usage: table_sqlite_compare [--dir DIR]\n"
    "Runs the table workload (phases a_append, c_scan_natural, g_append_commit) on SQLite in\n"
    "DIR (default table_bench_data, emptied first; keep it off tmpfs) and prints\n"
    "PHASE MILLISECONDS ROWS per phase, the check sums on standard error.\n";

void exec(sqlite3 *db, const char *sql) {
    char *error = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &error) != SQLITE_OK) {
        std::fprintf(stderr, "sqlite: %s: %s\n", sql, error ? error : "?");
        std::exit(1);
    }
}

sqlite3 *openStore(const std::string &path) {
    sqlite3 *db = nullptr;
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) {
        std::fprintf(stderr, "sqlite: cannot open %s\n", path.c_str());
        std::exit(1);
    }
    exec(db, "CREATE TABLE work(code TEXT, name TEXT, value REAL, day REAL, flag INTEGER)");
    return db;
}

void appendRows(sqlite3 *db, const std::vector<Row> &rows, bool commitEach) {
    double first = 45292; // 1 January 2024 as a day number counted from 30 December 1899
    sqlite3_stmt *insert = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO work VALUES(?,?,?,?,?)", -1, &insert, nullptr);
    if (!commitEach)
        exec(db, "BEGIN");
    for (const Row &r : rows) {
        sqlite3_bind_text(insert, 1, r.code.c_str(), int(r.code.size()), SQLITE_STATIC);
        sqlite3_bind_text(insert, 2, r.name.c_str(), int(r.name.size()), SQLITE_STATIC);
        sqlite3_bind_double(insert, 3, r.value);
        sqlite3_bind_double(insert, 4, first + r.dayOffset);
        sqlite3_bind_int(insert, 5, r.flag);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    if (!commitEach)
        exec(db, "COMMIT");
    sqlite3_finalize(insert);
}

} // namespace

int main(int argc, char **argv) {
    std::string dir = dataDirectory(argc, argv, kUsage);
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    std::vector<Row> rows = makeRows(kRows), durableRows = makeRows(kDurableRows);

    sqlite3 *db = nullptr;
    {
        Phase phase("a_append");
        db = openStore(dir + "/work.db");
        appendRows(db, rows, false);
        phase.done(kRows);
    }
    {
        Phase phase("c_scan_natural");
        sqlite3_stmt *scan = nullptr;
        sqlite3_prepare_v2(db, "SELECT code, value FROM work ORDER BY rowid", -1, &scan, nullptr);
        double sum = 0;
        uint32_t visited = 0;
        while (sqlite3_step(scan) == SQLITE_ROW) {
            visited += sqlite3_column_text(scan, 0)[0] != 0;
            sum += sqlite3_column_double(scan, 1);
        }
        sqlite3_finalize(scan);
        phase.done(visited);
        checkSum("c_scan_natural_sum", sum);
    }
    sqlite3_close(db);
    {
        Phase phase("g_append_commit");
        sqlite3 *durable = nullptr;
        sqlite3_open((dir + "/durable.db").c_str(), &durable);
        exec(durable, "PRAGMA journal_mode=WAL");
        exec(durable, "PRAGMA synchronous=FULL");
        exec(durable, "CREATE TABLE work(code TEXT, name TEXT, value REAL, day REAL, flag INTEGER)");
        appendRows(durable, durableRows, true);
        sqlite3_close(durable);
        phase.done(kDurableRows);
    }
    return 0;
}
