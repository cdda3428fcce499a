// The table workload on our table engine: every phase, a to g, with the index on CODE.
//
// It prints the same lines as the SQLite comparison program, table_sqlite_compare;
// bench/compare-tables runs both interleaved and compares them.
#include "table_workload.h"
#include "platform/process.h"
#include "zelqa.h"

#include <cstdlib>
#include <filesystem>

using namespace table_workload;

namespace {

const char *kUsage = "usage: table_bench [--dir DIR] [--rows N] [--append-only]\n"
                     "Runs the table workload on the table engine.\n" TABLE_WORKLOAD_USAGE_TAIL;

pObj field(const char *name, const char *type, double length, double decimals) {
    return __CreateArray(__INIT_CHARPTR(name), __INIT_CHARPTR(type), __INIT_DOUBLE(length), __INIT_DOUBLE(decimals),
                         __INIT_NUL());
}

// Creates the table, opens it in a new area and creates its index on CODE.
void createTable(const char *name, const char *index) {
    pObj s = __CreateArray(field("CODE", "C", 10, 0), field("NAME", "C", 20, 0), field("VALUE", "N", 10, 2),
                           field("DAY", "D", 8, 0), field("FLAG", "L", 1, 0), __INIT_NUL());
    __DBCREATE(__INIT_CHARPTR(name), s, nullptr);
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR(name), nullptr);
    __DBCREATEINDEX(__INIT_CHARPTR(index), __INIT_CHARPTR("CODE"), __INIT_NUL());
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

// Walks the current order top to bottom, summing VALUE; the rows visited.
uint32_t scan(double &sum) {
    uint32_t visited = 0;
    pObj one = __INIT_DOUBLE(1), three = __INIT_DOUBLE(3);
    __LockStack(one, three, __INIT_NUL());
    for (__TBL_GoTop(nullptr); !__TBL_Eof(nullptr)->payload.l; __TBL_Skip(nullptr, nullptr)) {
        sum += __GetFieldByID(nullptr, three)->payload.d;
        visited += __GetFieldByID(nullptr, one)->payload.c[0] != 0;
    }
    return visited;
}

uint32_t recordCount() { return uint32_t(__TBL_RecCount(nullptr)->payload.d); }

} // namespace

int main(int argc, char **argv) {
    Options options = readOptions(argc, argv, kUsage);
    std::filesystem::remove_all(options.dir);
    std::filesystem::create_directories(options.dir);
    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", std::filesystem::absolute(options.dir).string().c_str());
    Data data = makeData(options.rows, !options.appendOnly);
    Data durable = makeData(kDurableRows, false);
    __BeginGlobal();

    {
        Phase phase("a_append");
        createTable("WORK", "WORKCODE");
        appendRows(data.rows, false);
        phase.done(options.rows);
    }
    if (options.appendOnly) {
        __EndGlobal();
        return 0;
    }
    {
        Phase phase("b_seek");
        double sum = 0;
        uint32_t found = 0;
        pObj three = __INIT_DOUBLE(3);
        __LockStack(three, __INIT_NUL());
        for (const std::string &target : data.targets) {
            __begin_context();
            if (__Seek(nullptr, __INIT_CHARPTR(target.c_str()), nullptr)->payload.l) {
                sum += __GetFieldByID(nullptr, three)->payload.d;
                ++found;
            }
            __end_context(nullptr);
        }
        phase.done(found);
        checkSum("b_sum", sum);
    }
    {
        Phase phase("c_scan_natural");
        __ClearIndex(nullptr);
        double sum = 0;
        uint32_t visited = scan(sum);
        phase.done(visited);
        checkSum("c_scan_natural_sum", sum);
    }
    {
        Phase phase("d_scan_index");
        __TBL_SetOrder(nullptr, __INIT_DOUBLE(1));
        double sum = 0;
        uint32_t visited = scan(sum);
        phase.done(visited);
        checkSum("d_scan_index_sum", sum);
    }
    {
        Phase phase("e_delete_pack");
        for (uint32_t record = 10; record <= options.rows; record += 10) {
            __begin_context();
            __TBL_GoTo(nullptr, __INIT_DOUBLE(record));
            __TBL_Delete(nullptr);
            __end_context(nullptr);
        }
        __Commit(nullptr);
        __dbPack(nullptr);
        phase.done(recordCount());
    }
    {
        Phase phase("f_reindex");
        __Reindex(nullptr);
        phase.done(recordCount());
    }
    {
        zq_set_durable_commit(1);
        Phase phase("g_append_commit");
        createTable("DURABLE", "DURACODE");
        appendRows(durable.rows, true);
        phase.done(kDurableRows);
        zq_set_durable_commit(0);
    }
    __EndGlobal();
    return 0;
}
