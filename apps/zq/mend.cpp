// Mending what check found through the runtime's own functions.
#include "mend.h"

#include "platform/files.h"
#include "storage/catalog.h"
#include "storage/file_view.h"
#include "storage/state.h"
#include "table_access.h"
#include "tables/definition_block.h"
#include "text.h"
#include "zelqa.h"

#include <algorithm>
#include <cstdio>

namespace zq::tool {
namespace {

// Compacts the table's database; rows marked deleted are kept (marked live around the
// compaction, then deleted again) unless packing drops them. Returns the rows dropped.
uint32_t compactTable(OpenTable &t, bool pack) {
    std::vector<uint32_t> deleted;
    uint32_t before = t.recordCount();
    for (uint32_t r = 0; !pack && r < before; ++r) {
        t.go(r);
        if (t.deleted()) {
            deleted.push_back(r);
            t.recall();
            t.commit();
        }
    }
    t.compact();
    for (uint32_t r : deleted) {
        t.go(r);
        t.remove();
        t.commit();
    }
    return before - t.recordCount();
}

// The type the catalog gives a file of this kind when it enters it.
uint32_t typeForKind(const std::string &name, uint32_t kind) {
    if (kind == 'B')
        return tables::kTypeIndex;
    bool memo = name.size() > 2 && upper(name.substr(name.size() - 2)) == "_M";
    return memo ? tables::kTypeMemo : tables::kTypeData;
}

// True when storage finds the index (a file holding entries is entered in the catalog
// again when storage starts) and its definition parses.
bool readableIndex(const std::string &name) {
    DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name.c_str()));
    auto block = db ? tables::readBlock(db) : std::nullopt;
    DmCloseDatabase(db);
    return block && tables::parseIndexBlock(*block);
}

} // namespace

std::string placeOf(const Problem &p) { return latin1ToUtf8(p.database) + ": " + p.place + ": "; }

void mendTable(const std::string &table, const std::vector<Problem> &problems, bool pack) {
    OpenTable t(table, "ZQ_REPAIR");
    bool reindex = false, compact = pack;
    for (const Problem &p : problems) {
        if (!sameCaseless(p.table, table))
            continue;
        std::string where = placeOf(p);
        switch (p.mend) {
        case Mend::Open:
            std::printf("%smended when the table was opened\n", where.c_str());
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
        case Mend::Compact:
            compact = true;
            break;
        default:
            break;
        }
    }
    if (compact) {
        uint32_t dropped = compactTable(t, pack);
        std::printf("%s: compacted%s\n", latin1ToUtf8(table).c_str(),
                    pack ? (", " + std::to_string(dropped) + " deleted rows dropped").c_str() : ", deleted rows kept");
    }
    if (reindex || compact) {
        t.reindex();
        std::printf("%s: indexes rebuilt\n", latin1ToUtf8(table).c_str());
    }
}

void mendDatabase(const std::string &name) {
    if (DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name.c_str()))) {
        DmCloseDatabase(db);
        std::printf("%s: rebuilt when the database was opened\n", latin1ToUtf8(name).c_str());
    }
}

void mendCatalog(const Problem &p) {
    std::string where = placeOf(p);
    storage::ensureStarted(); // the entries are read and written in the open catalog
    switch (p.mend) {
    case Mend::DropEntry:
        DmFindDatabase(0, p.database.c_str()); // a search frees an entry whose file is gone
        std::printf("%scatalog entry dropped\n", where.c_str());
        break;
    case Mend::DropWork:
        platform::deleteFile(storage::storagePath(p.database));
        std::printf("%sremoved; the database beside it is intact\n", where.c_str());
        break;
    case Mend::Duplicate:
        storage::clearEntry(p.entry);
        std::printf("%sentry freed\n", where.c_str());
        break;
    case Mend::EntryType: {
        storage::CatalogEntry e = storage::readEntry(p.entry);
        e.type = typeForKind(p.database, p.field);
        storage::writeEntry(p.entry, e);
        storage::flushCatalog();
        std::printf("%stype set to %s from its file\n", where.c_str(), fourChars(e.type).c_str());
        break;
    }
    default:
        break;
    }
}

void dropIndexes(const std::string &table, const std::vector<Problem> &problems) {
    std::vector<std::string> lost;
    for (const Problem &p : problems)
        if (p.mend == Mend::DropIndex && sameCaseless(p.table, table) && !readableIndex(p.database))
            lost.push_back(p.database);
        else if (p.mend == Mend::DropIndex && sameCaseless(p.table, table))
            std::printf("%sentered in the catalog again when storage started\n", placeOf(p).c_str());
    if (lost.empty())
        return;
    DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, table.c_str()));
    auto block = db ? tables::readBlock(db) : std::nullopt;
    auto def = block ? tables::parseTableBlock(*block) : std::nullopt;
    if (!def) {
        DmCloseDatabase(db);
        return;
    }
    std::erase_if(def->indexes, [&](const tables::IndexDef &i) {
        return std::any_of(lost.begin(), lost.end(), [&](const std::string &l) { return sameCaseless(l, i.name); });
    });
    tables::writeTableBlock(*def, db);
    DmCloseDatabase(db);
    for (const std::string &index : lost) {
        if (LocalID id = DmFindDatabase(0, index.c_str()))
            DmDeleteDatabase(0, id);
        std::printf("%s: index %s taken out of the table's definition (its key is lost; make it again with "
                    "INDEX ON)\n",
                    latin1ToUtf8(table).c_str(), latin1ToUtf8(index).c_str());
    }
}

} // namespace zq::tool
