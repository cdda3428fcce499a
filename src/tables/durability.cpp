// Flush counting and the durable-commit mode, with its switch for programs.
#include "tables/durability.h"

#include "platform/files.h"
#include "storage/state.h"
#include "storage/file_view.h"
#include "zelqa/tables.h"

#include <cstdlib>
#include <cstring>

namespace zq::tables {
namespace {

int durable = -1; // -1 until the environment has been read

void syncView(storage::FileView *view) {
    if (!view)
        return;
    storage::flushView(*view);
    platform::syncFile(view->file);
}

} // namespace

bool durableCommit() {
    if (durable < 0) {
        const char *value = std::getenv("ZELQA_DURABLE_COMMIT");
        durable = value && std::strcmp(value, "1") == 0;
    }
    return durable != 0;
}

void flushDatabase(DmOpenRef db) {
    if (!db)
        return;
    if (db->main)
        storage::flushView(*db->main);
    if (db->index)
        storage::flushView(*db->index);
}

void countRowRead(AreaRecord &a) {
    if (++a.operations <= kFlushEvery)
        return;
    flushDatabase(a.db);
    a.operations = 0;
}

void countRowWrite(AreaRecord &a) {
    ++a.operations;
    if (!a.def.indexes.empty() || a.operations < kFlushEvery + 1)
        return;
    flushDatabase(a.db);
    a.operations = 0;
}

void countMemoOperation(AreaRecord &a) {
    if (++a.operations < kFlushEvery + 1)
        return;
    flushDatabase(a.memo);
    a.operations = 0;
}

// The database file alone: its offset index is rebuilt from the file at the next open
// whenever it lags behind, so a row on the device is never lost with the index.
void settleWrite(DmOpenRef db) {
    if (!db || !durableCommit())
        return;
    syncView(db->main.get());
}

} // namespace zq::tables

int zq_set_durable_commit(int on) noexcept {
    int before = zq::tables::durableCommit();
    zq::tables::durable = on != 0;
    return before;
}

int zq_durable_commit(void) noexcept { return zq::tables::durableCommit(); }
