// The table workload on our table engine: append, natural scan, durable appends.
//
// The index phases (seek, index scan, pack, reindex) wait for indexes; the phases run here
// print the same lines as the SQLite comparison program, table_sqlite_compare.
#include "table_workload.h"
#include "platform/process.h"
#include "zelqa.h"

#include <cstdlib>
#include <filesystem>

using namespace table_workload;

namespace {

const char *kUsage =
    "usage: table_bench [--dir DIR]\n"
    "Runs the table workload (phases a_append, c_scan_natural, g_append_commit) on the table\n"
    "engine in DIR (default table_bench_data, emptied first; keep it off tmpfs) and prints\n"
    "PHASE MILLISECONDS ROWS per phase, the check sums on standard error.\n";

pObj field(const char *name, const char *type, double length, double decimals) {
    return __CreateArray(__INIT_CHARPTR(name), __INIT_CHARPTR(type), __INIT_DOUBLE(length), __INIT_DOUBLE(decimals),
                         __INIT_NUL());
}

void createTable(const char *name) {
    pObj s = __CreateArray(field("CODE", "C", 10, 0), field("NAME", "C", 20, 0), field("VALUE", "N", 10, 2),
                           field("DAY", "D", 8, 0), field("FLAG", "L", 1, 0), __INIT_NUL());
    __DBCREATE(__INIT_CHARPTR(name), s, nullptr);
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR(name), nullptr);
}

// Appends the rows; commits after each when asked, else once at the end.
void appendRows(const std::vector<Row> &rows, bool commitEach) {
    double first = __EncodeDate(2024, 1, 1);
    pObj one = __INIT_DOUBLE(1), two = __INIT_DOUBLE(2), three = __INIT_DOUBLE(3), four = __INIT_DOUBLE(4),
         five = __INIT_DOUBLE(5);
    __LockStack(one, two, three, four, five, __INIT_NUL());
    for (const Row &r : rows) {
        __begin_context();
        __DBAPPEND(nullptr);
        __SetField(nullptr, one, __INIT_CHARPTR(r.code.c_str()));
        __SetField(nullptr, two, __INIT_CHARPTR(r.name.c_str()));
        __SetField(nullptr, three, __INIT_DOUBLE(r.value));
        __SetField(nullptr, four, __INIT_DATE(first + r.dayOffset));
        __SetField(nullptr, five, __INIT_BOOL(r.flag));
        if (commitEach)
            __Commit(nullptr);
        __end_context(nullptr);
    }
    __Commit(nullptr);
}

} // namespace

int main(int argc, char **argv) {
    std::string dir = dataDirectory(argc, argv, kUsage);
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", std::filesystem::absolute(dir).string().c_str());
    std::vector<Row> rows = makeRows(kRows), durableRows = makeRows(kDurableRows);
    __BeginGlobal();

    {
        Phase phase("a_append");
        createTable("WORK");
        appendRows(rows, false);
        phase.done(kRows);
    }
    {
        Phase phase("c_scan_natural");
        double sum = 0;
        uint32_t visited = 0;
        pObj one = __INIT_DOUBLE(1), three = __INIT_DOUBLE(3);
        __LockStack(one, three, __INIT_NUL());
        for (__TBL_GoTop(nullptr); !__TBL_Eof(nullptr)->payload.l; __TBL_Skip(nullptr, nullptr)) {
            sum += __GetFieldByID(nullptr, three)->payload.d;
            visited += __GetFieldByID(nullptr, one)->payload.c[0] != 0;
        }
        phase.done(visited);
        checkSum("c_scan_natural_sum", sum);
    }
    {
        zq_set_durable_commit(1);
        Phase phase("g_append_commit");
        createTable("DURABLE");
        appendRows(durableRows, true);
        phase.done(kDurableRows);
        zq_set_durable_commit(0);
    }
    __EndGlobal();
    return 0;
}
