// Runs the table crash script on table "CRASH" until killed, logging each operation whose
// commit returned.
//
// Usage: table_crash <progress file>. After operation k's __Commit returns, k is appended
// to the progress file as 4 bytes. A run starts after the last logged operation; when that
// one's successor was an append that reached the table before the kill, it is logged first.
#include "crash_script.h"
#include "zelqa.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

uint32_t loggedOperations(const char *path) {
    std::FILE *f = std::fopen(path, "rb");
    if (!f)
        return 0;
    std::fseek(f, 0, SEEK_END);
    long size = std::ftell(f);
    std::fclose(f);
    return uint32_t(size / 4);
}

void run(const CrashOp &op) {
    pObj none = nullptr;
    if (op.kind == CrashOpKind::Append)
        __DBAPPEND(none);
    else
        __TBL_GoTo(none, __INIT_DOUBLE(op.row + 1));
    if (op.kind == CrashOpKind::Append || op.kind == CrashOpKind::Edit) {
        __SetField(none, __INIT_DOUBLE(1), __INIT_DOUBLE(op.values.id));
        __SetField(none, __INIT_DOUBLE(2), __INIT_CHARPTR(op.values.name.c_str()));
        __SetField(none, __INIT_DOUBLE(3), __INIT_CHARPTR(op.values.note.c_str()));
        __SetField(none, __INIT_DOUBLE(4), __INIT_BOOL(op.values.flag));
    }
    if (op.kind == CrashOpKind::Delete)
        __TBL_Delete(none);
    if (op.kind == CrashOpKind::Recall)
        __TBL_Recall(none);
    __Commit(none);
}

pObj structure() {
    auto field = [](const char *name, const char *type, double length) {
        return __CreateArray(__INIT_CHARPTR(name), __INIT_CHARPTR(type), __INIT_DOUBLE(length), __INIT_DOUBLE(0),
                             __INIT_NUL());
    };
    return __CreateArray(field("ID", "N", 8), field("NAME", "C", 20), field("NOTE", "M", 4), field("FLAG", "L", 1),
                         __INIT_NUL());
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2 || !std::strcmp(argv[1], "--help")) {
        std::puts("usage: table_crash <progress file>\n"
                  "Runs the table crash script on table CRASH until killed, logging each committed operation.");
        return argc < 2 ? 2 : 0;
    }
    __BeginGlobal();
    if (!__File(__INIT_CHARPTR("CRASH"))->payload.l)
        __DBCREATE(__INIT_CHARPTR("CRASH"), structure(), nullptr);
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("CRASH"), nullptr);
    std::FILE *progress = std::fopen(argv[1], "ab");
    if (!progress)
        return 3;
    uint32_t k = loggedOperations(argv[1]);
    std::vector<CrashRow> rows = crashRowsAfter(k);
    for (;; ++k) {
        CrashOp op = crashOp(k, rows);
        bool reached = op.kind == CrashOpKind::Append && __TBL_RecCount(nullptr)->payload.d > rows.size();
        if (!reached)
            run(op);
        applyCrashOp(rows, op);
        std::fwrite(&k, 4, 1, progress);
        std::fflush(progress);
    }
}
