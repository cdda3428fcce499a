// Databases: find, create, delete, open and close, over the catalog and the open table.
#include "storage/database.h"

#include "platform/files.h"
#include "runtime/raise.h"
#include "storage/app_info.h"
#include "storage/catalog.h"
#include "storage/handles.h"
#include "storage/move_journal.h"
#include "storage/offset_index.h"
#include "storage/records.h"

#include <cstring>
#include <string>

namespace zq::storage {
namespace {

std::string entryName(uint32_t offset) {
    CatalogEntry e = readEntry(offset);
    return std::string(e.name, strnlen(e.name, kNameSize));
}

// The open-table slot for a new record: slot 0, else the first empty one, else the spare
// slot after the table, whose previous record is let go.
uint32_t freeSlot() {
    auto &open = state().open;
    for (uint32_t i = 0; i < kOpenSlots; ++i)
        if (!open[i])
            return i;
    if (open[kOpenSlots])
        freeDatabase(open[kOpenSlots]);
    open[kOpenSlots] = nullptr;
    return kOpenSlots;
}

// A name becomes a file name in the storage directory: it must fit the catalog and
// must not reach into another directory.
bool acceptableName(std::string_view name) {
    if (name.empty() || name.size() >= kNameSize)
        return false;
    return name.find_first_of("/\\:") == std::string_view::npos;
}

// The header's kind byte decides how records are found, so a damaged one must not stand:
// a type the catalog knows decides the kind, else a kind byte that means one is kept.
void settleKind(DmOpenDB *db) {
    DatabaseHeader h = headerOf(db);
    uint8_t kind = kindForType(readEntry(db->catalogOffset).type); // 'X': a type it does not know
    bool meaningful = h.kind == 'V' || h.kind == 'B' || h.kind == 'X';
    if (h.kind == kind || (kind == 'X' && meaningful))
        return;
    h.kind = kind;
    setHeaderOf(db, h);
    trace((std::string(db->name) + ": tipo do cabecalho refeito").c_str());
}

void deleteFiles(const std::string &name) {
    platform::deleteFile(storagePath(name));
    platform::deleteFile(storagePath(name + "_OS"));
    platform::deleteFile(storagePath(name + "_Temp"));
    platform::deleteFile(storagePath(name + "_Jn"));
}

// A file of this name that the catalog does not know: a leftover of a creation or a
// removal that never finished is deleted, but one that holds records is kept aside as
// "<name>.orphan", so that no data goes because an entry did.
void clearStrayFiles(const std::string &name) {
    std::string path = storagePath(name);
    DatabaseHeader h{};
    platform::File file = platform::openFile(path, platform::FileOpen::Existing);
    bool holdsData = file.valid() && platform::readFileStart(file, &h, kHeaderSize) && h.format == 2 &&
                     h.used > kHeaderSize + h.appInfoSize && h.count > 0;
    file.close();
    if (holdsData) {
        platform::deleteFile(path + ".orphan");
        if (platform::moveFile(path, path + ".orphan"))
            trace((name + " fora do catalogo: guardado como " + name + ".orphan").c_str());
    }
    deleteFiles(name);
}

} // namespace

DmOpenDB *databaseOfId(LocalID id) {
    if (!ensureStarted() || id == 0 || id > kOpenSlots + 1)
        return nullptr;
    return state().open[id - 1];
}

void freeDatabase(DmOpenDB *db) {
    freeHandlesOf(db);
    closeJournal(db);
    closeView(db->index);
    closeView(db->main);
    delete db;
}

} // namespace zq::storage

using namespace zq::storage;

LocalID DmFindDatabase(uint16_t, const char *name) noexcept {
    if (!name || !ensureStarted())
        return 0;
    std::string_view wanted(name);
    auto &open = state().open;
    for (uint32_t i = 0; i < kOpenSlots; ++i)
        if (open[i] && sameName(wanted, open[i]->name, kMaxFileName))
            return i + 1;
    uint32_t offset = findEntry(wanted);
    if (!offset)
        return 0;
    std::string stored = entryName(offset);
    std::string path = storagePath(stored);
    if (!zq::platform::fileExists(path) && zq::platform::fileExists(storagePath(wanted))) {
        // Names match without regard to case; where files do not, the file's spelling wins.
        CatalogEntry entry = readEntry(offset);
        std::memcpy(entry.name, wanted.data(), wanted.size());
        writeEntry(offset, entry, kNameSize);
        stored = wanted;
        path = storagePath(stored);
    }
    if (!zq::platform::fileExists(path)) {
        // A compaction that ended between removing the file and renaming its copy
        // leaves the complete copy under "%s_Temp".
        if (!zq::platform::moveFile(storagePath(stored + "_Temp"), path)) {
            clearEntry(offset);
            return 0;
        }
    } else if (zq::platform::fileExists(storagePath(stored + "_Temp"))) {
        // One that ended before removing the file leaves the file whole and a copy that
        // may be cut short: the copy goes.
        zq::platform::deleteFile(storagePath(stored + "_Temp"));
    }
    uint32_t slot = freeSlot();
    auto *db = new DmOpenDB();
    std::snprintf(db->name, sizeof db->name, "%s", stored.c_str());
    db->catalogOffset = offset;
    open[slot] = db;
    flushCatalog();
    return slot + 1;
}

Err DmCreateDatabase(uint16_t card, const char *name, uint32_t creator, uint32_t type, int) noexcept {
    if (!name || !*name || !ensureStarted())
        return dmErrBadArgument;
    if (!acceptableName(name))
        return dmErrBadArgument;
    if (DmFindDatabase(card, name))
        return dmErrAlreadyExists;
    std::string fileName(name);
    std::string path = storagePath(fileName);
    clearStrayFiles(fileName);
    DatabaseHeader header{};
    header.format = 2;
    header.kind = kindForType(type);
    {
        zq::platform::File file = zq::platform::openFile(path, zq::platform::FileOpen::CreateNew);
        if (!file.valid())
            file = zq::platform::openFile(path, zq::platform::FileOpen::Existing);
        if (!file.valid() || !zq::platform::writeFileStart(file, &header, kHeaderSize))
            zq::runtime::raiseError(ZQ_ERR_CREATE);
    }
    // The entry is written only once its file exists: a crash in between leaves a stray
    // file, which the next creation of that name removes.
    addEntry(makeEntry(fileName, type, creator));
    return dmErrNone;
}

Err DmDeleteDatabase(uint16_t, LocalID id) noexcept {
    DmOpenDB *db = databaseOfId(id);
    if (!db)
        return dmErrBadArgument;
    // Files first: a removal cut short leaves an entry without its file, which the next
    // find frees, never a file that a later creation would take for a leftover.
    std::string name = db->name;
    uint32_t entry = db->catalogOffset;
    state().open[id - 1] = nullptr;
    freeDatabase(db);
    deleteFiles(name);
    clearEntry(entry);
    flushCatalog();
    return dmErrNone;
}

DmOpenRef DmOpenDatabase(uint16_t, LocalID id) noexcept {
    DmOpenDB *db = databaseOfId(id);
    if (!db)
        return nullptr;
    freeHandlesOf(db);
    if (!db->main) {
        if (!zq::platform::fileExists(storagePath(db->name))) {
            alert(std::string("Falhou Abertura de ") + db->name);
            return nullptr;
        }
        db->main = openView(db->name);
        undoInterruptedMove(db);
        settleKind(db);
    }
    DatabaseHeader h = headerOf(db);
    if (h.used < kHeaderSize || uint64_t(kHeaderSize) + h.appInfoSize > h.used) {
        std::string line = std::string(db->name) + " header > used";
        trace(line.c_str());
        zq::runtime::raiseError(ZQ_ERR_ARGUMENT);
    }
    loadAppInfo(db);
    if (h.kind != 'V')
        fitFixedStrideCount(db);
    if (h.kind == 'V' && !db->index) {
        db->index = openView(std::string(db->name) + "_OS");
        checkIndexAtOpen(db);
    }
    return db;
}

Err DmCloseDatabase(DmOpenRef db) noexcept {
    if (!db)
        return dmErrBadArgument;
    if (HandleRecord *r = slotRecord(int32_t(db->appInfoHandle) - 1))
        commitAppInfo(*r);
    if (db->appInfoHandle)
        freeHandle(int32_t(db->appInfoHandle) - 1);
    auto &open = state().open;
    for (uint32_t i = 0; open && i <= kOpenSlots; ++i) {
        if (open[i] && std::strcmp(open[i]->name, db->name) == 0) {
            open[i] = nullptr;
            freeDatabase(db);
            return dmErrNone;
        }
    }
    return dmErrNone;
}
