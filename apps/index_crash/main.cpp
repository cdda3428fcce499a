// Runs the index crash script on table "ICRASH" (indexes "ICODE" and "INUMBER") until
// killed, logging each operation that returned.
//
// Usage: index_crash <progress file>. After operation k returns, k is appended to the
// progress file as 4 bytes. A run starts after the last logged operation; an append that
// reached the table before the kill is logged first, every other operation is run again
// (running it twice leaves what running it once does).
#include "index_crash_script.h"
#include "zelqa.h"

#include <cstring>

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

// Runs operation k. Every other append is stored by moving to its own row rather than by
// a commit, so its index entries stay held and later operations merge several at once.
void run(uint32_t k, const IndexCrashOp &op) {
    pObj none = nullptr;
    switch (op.kind) {
    case IndexCrashKind::Pack:
        __dbPack(none);
        return;
    case IndexCrashKind::Append:
        __DBAPPEND(none);
        break;
    default:
        __ClearIndex(none);
        __TBL_GoTo(none, __INIT_DOUBLE(op.row + 1));
        break;
    }
    if (op.kind == IndexCrashKind::Append || op.kind == IndexCrashKind::Edit) {
        __SetField(none, __INIT_DOUBLE(1), __INIT_CHARPTR(op.values.code.c_str()));
        __SetField(none, __INIT_DOUBLE(2), __INIT_DOUBLE(op.values.number));
    }
    if (op.kind == IndexCrashKind::Delete)
        __TBL_Delete(none);
    if (op.kind == IndexCrashKind::Recall)
        __TBL_Recall(none);
    if (op.kind == IndexCrashKind::Append && k % 2)
        __TBL_GoTo(none, __INIT_DOUBLE(op.row + 1));
    else
        __Commit(none);
}

pObj field(const char *name, const char *type, double length) {
    return __CreateArray(__INIT_CHARPTR(name), __INIT_CHARPTR(type), __INIT_DOUBLE(length), __INIT_DOUBLE(0),
                         __INIT_NUL());
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2 || !std::strcmp(argv[1], "--help")) {
        std::puts("usage: index_crash <progress file>\n"
                  "Changes and packs table ICRASH with two indexes until killed, logging each operation.");
        return argc < 2 ? 2 : 0;
    }
    __BeginGlobal();
    if (!__File(__INIT_CHARPTR("ICRASH"))->payload.l) {
        __DBCREATE(__INIT_CHARPTR("ICRASH"),
                   __CreateArray(field("CODE", "C", 6), field("NUMBER", "N", 8), __INIT_NUL()), nullptr);
        __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("ICRASH"), nullptr);
        __DBCREATEINDEX(__INIT_CHARPTR("ICODE"), __INIT_CHARPTR("CODE"), __INIT_NUL());
        __DBCREATEINDEX(__INIT_CHARPTR("INUMBER"), __INIT_CHARPTR("STR(NUMBER)+CODE"), __INIT_NUL());
    } else {
        __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("ICRASH"), nullptr);
    }
    std::FILE *progress = std::fopen(argv[1], "ab");
    if (!progress)
        return 3;
    uint32_t k = loggedOperations(argv[1]);
    std::vector<IndexCrashRow> rows = indexCrashRowsAfter(k);
    for (;; ++k) {
        IndexCrashOp op = indexCrashOp(k, rows);
        bool reached = op.kind == IndexCrashKind::Append && __TBL_RecCount(nullptr)->payload.d > rows.size();
        if (!reached)
            run(k, op);
        applyIndexCrashOp(rows, op);
        std::fwrite(&k, 4, 1, progress);
        std::fflush(progress);
    }
}
