// The table workload on SQLite, for comparison with table_bench in the same run.
//
// Same rows, same phases, same output. Every connection uses the write-ahead log,
// synchronous=FULL and a 1 GiB memory map; phase a is one transaction, the seeks run in
// one read transaction, and phase g commits every row on its own, each on the device
// before it returns.
#include "table_workload.h"

#include <sqlite3.h>

#include <filesystem>

using namespace table_workload;

namespace {

const char *kUsage = "usage: table_sqlite_compare [--dir DIR] [--rows N] [--append-only]\n"
                     "Runs the table workload on SQLite.\n" TABLE_WORKLOAD_USAGE_TAIL;

void fail(sqlite3 *db, const char *what) {
    std::fprintf(stderr, "sqlite: %s: %s\n", what, sqlite3_errmsg(db));
    std::exit(1);
}

void exec(sqlite3 *db, const char *sql) {
    if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(db, sql);
}

sqlite3_stmt *prepare(sqlite3 *db, const char *sql) {
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) != SQLITE_OK)
        fail(db, sql);
    return statement;
}

// Opens a new store with the table and its index on CODE.
sqlite3 *openStore(const std::string &path) {
    sqlite3 *db = nullptr;
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK)
        fail(db, path.c_str());
    exec(db, "PRAGMA journal_mode=WAL");
    exec(db, "PRAGMA synchronous=FULL");
    exec(db, "PRAGMA mmap_size=1073741824");
    exec(db, "CREATE TABLE work(code TEXT, name TEXT, value REAL, day REAL, flag INTEGER)");
    exec(db, "CREATE INDEX work_code ON work(code)");
    return db;
}

void appendRows(sqlite3 *db, const std::vector<Row> &rows, bool commitEach) {
    double first = 45292; // 1 January 2024 as a day number counted from 30 December 1899
    sqlite3_stmt *insert = prepare(db, "INSERT INTO work VALUES(?,?,?,?,?)");
    if (!commitEach)
        exec(db, "BEGIN");
    for (const Row &r : rows) {
        sqlite3_bind_text(insert, 1, r.code.c_str(), int(r.code.size()), SQLITE_STATIC);
        sqlite3_bind_text(insert, 2, r.name.c_str(), int(r.name.size()), SQLITE_STATIC);
        sqlite3_bind_double(insert, 3, r.value);
        sqlite3_bind_double(insert, 4, first + r.dayOffset);
        sqlite3_bind_int(insert, 5, r.flag);
        if (sqlite3_step(insert) != SQLITE_DONE)
            fail(db, "insert");
        sqlite3_reset(insert);
    }
    if (!commitEach)
        exec(db, "COMMIT");
    sqlite3_finalize(insert);
}

// Steps a query of (code, value) rows, summing the values; the rows visited.
uint32_t scan(sqlite3 *db, const char *sql, double &sum) {
    sqlite3_stmt *query = prepare(db, sql);
    uint32_t visited = 0;
    while (sqlite3_step(query) == SQLITE_ROW) {
        visited += sqlite3_column_text(query, 0)[0] != 0;
        sum += sqlite3_column_double(query, 1);
    }
    sqlite3_finalize(query);
    return visited;
}

uint32_t rowCount(sqlite3 *db) {
    sqlite3_stmt *count = prepare(db, "SELECT count(*) FROM work");
    sqlite3_step(count);
    uint32_t n = uint32_t(sqlite3_column_int64(count, 0));
    sqlite3_finalize(count);
    return n;
}

} // namespace

int main(int argc, char **argv) {
    Options options = readOptions(argc, argv, kUsage);
    std::filesystem::remove_all(options.dir);
    std::filesystem::create_directories(options.dir);
    Data data = makeData(options.rows, !options.appendOnly);
    Data durable = makeData(kDurableRows, false);

    sqlite3 *db = nullptr;
    {
        Phase phase("a_append");
        db = openStore(options.dir + "/work.db");
        appendRows(db, data.rows, false);
        phase.done(options.rows);
    }
    if (options.appendOnly) {
        sqlite3_close(db);
        return 0;
    }
    {
        Phase phase("b_seek");
        sqlite3_stmt *seek = prepare(db, "SELECT value FROM work WHERE code = ? ORDER BY code LIMIT 1");
        double sum = 0;
        uint32_t found = 0;
        exec(db, "BEGIN");
        for (const std::string &target : data.targets) {
            sqlite3_bind_text(seek, 1, target.c_str(), int(target.size()), SQLITE_STATIC);
            if (sqlite3_step(seek) == SQLITE_ROW) {
                sum += sqlite3_column_double(seek, 0);
                ++found;
            }
            sqlite3_reset(seek);
        }
        exec(db, "COMMIT");
        sqlite3_finalize(seek);
        phase.done(found);
        checkSum("b_sum", sum);
    }
    {
        Phase phase("c_scan_natural");
        double sum = 0;
        uint32_t visited = scan(db, "SELECT code, value FROM work ORDER BY rowid", sum);
        phase.done(visited);
        checkSum("c_scan_natural_sum", sum);
    }
    {
        Phase phase("d_scan_index");
        double sum = 0;
        uint32_t visited = scan(db, "SELECT code, value FROM work INDEXED BY work_code ORDER BY code", sum);
        phase.done(visited);
        checkSum("d_scan_index_sum", sum);
    }
    {
        Phase phase("e_delete_pack");
        sqlite3_stmt *remove = prepare(db, "DELETE FROM work WHERE rowid = ?");
        exec(db, "BEGIN");
        for (uint32_t record = 10; record <= options.rows; record += 10) {
            sqlite3_bind_int64(remove, 1, record);
            if (sqlite3_step(remove) != SQLITE_DONE)
                fail(db, "delete");
            sqlite3_reset(remove);
        }
        exec(db, "COMMIT");
        sqlite3_finalize(remove);
        exec(db, "VACUUM");
        phase.done(rowCount(db));
    }
    {
        Phase phase("f_reindex");
        exec(db, "REINDEX work_code");
        phase.done(rowCount(db));
    }
    sqlite3_close(db);
    {
        Phase phase("g_append_commit");
        sqlite3 *store = openStore(options.dir + "/durable.db");
        appendRows(store, durable.rows, true);
        sqlite3_close(store);
        phase.done(kDurableRows);
    }
    return 0;
}
