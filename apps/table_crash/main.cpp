// Runs the table crash script on table "CRASH" (indexes "CRCODE" and "CRNUMBER", a memo
// field) and the saved array "CRASHARR" until killed, logging each operation that returned.
//
// Usage: table_crash <progress file>. After operation k returns, k is appended to the
// progress file as 4 bytes. A run starts after the last logged operation; an append that
// reached the table before the kill is logged first, every other operation is run again
// (running it twice leaves what running it once does).
#include "table_crash_script.h"
#include "zelqa.h"

#include <cstring>

using namespace zq::table_crash;

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

void save(const SavedArray &saved) {
    pObj array = __CreateArray(__INIT_NUL());
    for (const SavedItem &item : saved)
        __NewArrayElement(array, __CreateArray(__INIT_DOUBLE(item.number), __INIT_CHARPTR(item.text.c_str()),
                                               __INIT_BOOL(item.flag), __INIT_DATE(item.day), __INIT_NUL()));
    ExecDumpArray(array, __INIT_CHARPTR("CRASHARR"));
}

// Runs operation k. Every other append is stored by moving to its own row rather than by
// a commit, so its index entries stay held and later operations merge several at once.
void run(uint32_t k, const CrashOp &op) {
    pObj none = nullptr;
    switch (op.kind) {
    case CrashKind::Pack:
        __dbPack(none);
        return;
    case CrashKind::Save:
        save(crashSaved(k));
        return;
    case CrashKind::Append:
        __DBAPPEND(none);
        break;
    default:
        __ClearIndex(none);
        __TBL_GoTo(none, __INIT_DOUBLE(op.row + 1));
        break;
    }
    if (op.kind == CrashKind::Append || op.kind == CrashKind::Edit) {
        const CrashRow &v = op.values;
        __SetField(none, __INIT_DOUBLE(1), __INIT_CHARPTR(v.code.c_str()));
        __SetField(none, __INIT_DOUBLE(2), __INIT_DOUBLE(v.number));
        __SetField(none, __INIT_DOUBLE(3), __INIT_CHARPTR(v.note.c_str()));
        __SetField(none, __INIT_DOUBLE(4), __INIT_BOOL(v.flag));
        __SetField(none, __INIT_DOUBLE(5), __INIT_DATE(v.day));
    }
    if (op.kind == CrashKind::Delete)
        __TBL_Delete(none);
    if (op.kind == CrashKind::Recall)
        __TBL_Recall(none);
    if (op.kind == CrashKind::Append && k % 2)
        __TBL_GoTo(none, __INIT_DOUBLE(op.row + 1));
    else
        __Commit(none);
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2 || !std::strcmp(argv[1], "--help")) {
        std::puts("usage: table_crash <progress file>\n"
                  "Appends, edits, deletes, recalls and packs rows of table CRASH (two indexes, a memo\n"
                  "field) and saves array CRASHARR until killed, logging each operation that returned.");
        return argc < 2 ? 2 : 0;
    }
    __BeginGlobal();
    if (!__File(__INIT_CHARPTR("CRASH"))->payload.l)
        createCrashTable();
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("CRASH"), nullptr);
    std::FILE *progress = std::fopen(argv[1], "ab");
    if (!progress)
        return 3;
    CrashState state;
    state.advanceTo(loggedOperations(argv[1]));
    for (;;) {
        CrashOp op = state.next();
        bool reached = op.kind == CrashKind::Append && __TBL_RecCount(nullptr)->payload.d > state.rows.size();
        if (!reached)
            run(state.done, op);
        std::fwrite(&state.done, 4, 1, progress);
        std::fflush(progress);
        state.apply(op);
    }
}
