// Holder counts of the databases that work areas keep open.
#include "tables/shared_databases.h"

#include "tables/pending_entries.h"

#include <map>

namespace zq::tables {
namespace {

std::map<DmOpenRef, int> &holders() {
    static auto *counts = new std::map<DmOpenRef, int>();
    return *counts;
}

} // namespace

DmOpenRef openShared(const std::string &name) {
    LocalID id = DmFindDatabase(0, name.c_str());
    DmOpenRef db = id ? DmOpenDatabase(0, id) : nullptr;
    if (db)
        ++holders()[db];
    return db;
}

void closeShared(DmOpenRef db) {
    if (!db)
        return;
    auto it = holders().find(db);
    if (it != holders().end() && --it->second > 0)
        return;
    if (it != holders().end())
        holders().erase(it);
    settleEntries(db);
    DmCloseDatabase(db);
}

void forgetHolders() { holders().clear(); }

} // namespace zq::tables
