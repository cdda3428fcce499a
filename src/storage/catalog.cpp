// Storage start and close, and the catalog's entries: lookup, placement and backup.
#include "storage/catalog.h"

#include "platform/files.h"
#include "platform/process.h"
#include "platform/processes.h"
#include "storage/catalog_recovery.h"
#include "runtime/raise.h"
#include "storage/state.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <new>

namespace zq::storage {
namespace {

bool entryFits(uint32_t offset) {
    FileView &c = *state().catalog;
    return offset >= kHeaderSize && offset + kEntrySize <= c.mapSize();
}

// The backup is a byte copy of the catalog's whole mapped extent.
void writeBackup() {
    FileView &catalog = *state().catalog;
    std::unique_ptr<FileView> backup = openView(kBackupName);
    if (backup->mapSize() != catalog.mapSize())
        remapView(*backup, catalog.mapSize());
    std::memcpy(backup->base(), catalog.base(), catalog.mapSize());
    closeView(backup);
}

void freeTables() {
    StorageState &s = state();
    if (s.open)
        for (uint32_t i = 0; i <= kOpenSlots; ++i)
            delete s.open[i];
    if (s.handles)
        for (uint32_t i = 0; i < kHandleSlots; ++i)
            delete static_cast<HandleRecord *>(s.handles[i]);
    s.open.reset();
    s.handles.reset();
}

// Storage belongs to one process at a time: another one holding it is waited for a
// little, then refused with the failure path.
void takeStorageLock() {
    StorageState &s = state();
    std::string path = storagePath(kLockName);
    for (uint32_t waited = 0;; waited += kLockPollMs) {
        s.lock = platform::openExclusive(path);
        if (s.lock.valid())
            return;
        if (waited >= kLockWaitMs)
            break;
        platform::sleepMilliseconds(kLockPollMs);
    }
    freeTables();
    alert("DB em uso por outro programa: " + s.directory);
    runtime::raiseError(ZQ_ERR_LOW_MEMORY);
}

} // namespace

bool sameName(std::string_view name, const char *entryName, size_t entryRoom) {
    size_t i = 0;
    for (; i < name.size(); ++i) {
        if (i >= entryRoom || !entryName[i])
            return false;
        if (std::tolower(static_cast<unsigned char>(name[i])) != std::tolower(static_cast<unsigned char>(entryName[i])))
            return false;
    }
    return i == entryRoom || entryName[i] == '\0';
}

CatalogEntry readEntry(uint32_t offset) {
    CatalogEntry entry{};
    if (entryFits(offset))
        entry = load<CatalogEntry>(state().catalog->base() + offset);
    return entry;
}

void writeEntry(uint32_t offset, const CatalogEntry &entry, uint32_t bytes) {
    if (entryFits(offset))
        std::memcpy(state().catalog->base() + offset, &entry, bytes);
}

void clearEntry(uint32_t offset) {
    if (!entryFits(offset))
        return;
    std::memset(state().catalog->base() + offset, 0, kEntrySize);
    flushRange(*state().catalog, offset, kEntrySize);
}

uint32_t findEntry(std::string_view name) {
    FileView &c = *state().catalog;
    for (uint32_t at = kHeaderSize; at < c.used() && entryFits(at); at += kEntrySize) {
        const char *entryName = reinterpret_cast<const char *>(c.base() + at);
        if (entryName[0] && sameName(name, entryName, kNameSize))
            return at;
    }
    return 0;
}

uint32_t placeEntry(std::string_view name) {
    FileView &c = *state().catalog;
    for (uint32_t at = kHeaderSize; at + kEntrySize <= c.used() && entryFits(at); at += kEntrySize) {
        const char *entryName = reinterpret_cast<const char *>(c.base() + at);
        if (!entryName[0] || sameName(name, entryName, kNameSize))
            return at;
    }
    if (c.used() < kHeaderSize)
        growView(c, kHeaderSize);
    growView(c, kEntrySize);
    std::memset(c.base() + c.cursor, 0, kEntrySize);
    return c.cursor;
}

CatalogEntry makeEntry(std::string_view name, uint32_t type, uint32_t creator) {
    CatalogEntry entry{};
    std::memcpy(entry.name, name.data(), std::min<size_t>(name.size(), kNameSize - 1));
    platform::LocalTime now = platform::localTime();
    std::memcpy(&entry.created, &now, sizeof entry.created);
    entry.modified = entry.created;
    entry.type = type;
    entry.creator = creator;
    return entry;
}

void addEntry(const CatalogEntry &entry) {
    uint32_t place = placeEntry(std::string_view(entry.name, strnlen(entry.name, kNameSize)));
    writeEntry(place, entry, kEntrySize - sizeof entry.reserved);
    state().catalog->cursor = place + kEntrySize;
    flushCatalog();
}

void flushCatalog() { flushView(*state().catalog); }

bool ensureStarted() { return state().started || StorageStart() == dmErrNone; }

void useDirectory(const std::string &directory) { state().chosenDirectory = directory; }

void abandonStorage() {
    StorageState &s = state();
    freeTables();
    s.catalog.reset();
    s.lock.close();
    if (s.trace)
        std::fclose(s.trace);
    s.trace = nullptr;
    s.started = false;
    s.bulk = false;
}

} // namespace zq::storage

using namespace zq::storage;

Err StorageStart(void) noexcept {
    StorageState &s = state();
    if (s.started)
        return dmErrNone;
    s.handles.reset(new (std::nothrow) void *[kHandleSlots]());
    if (!s.handles) {
        trace("falhou 1");
        zq::runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    }
    s.open.reset(new (std::nothrow) DmOpenDB *[kOpenSlots + 1]());
    if (!s.open) {
        trace("falhou 2");
        zq::runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    }
    std::string program = s.chosenDirectory.empty() ? zq::platform::programDirectory() : s.chosenDirectory;
    // Paths are never cut: a cut one would put the data in another directory.
    if (program.size() > kMaxProgramDir) {
        alert("Caminho muito grande: " + program);
        zq::runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    }
    s.directory = s.chosenDirectory.empty() ? program + zq::platform::directorySeparator() + "DB" : program;
    zq::platform::createDirectory(s.directory);
    takeStorageLock();
    s.started = true;
    bool recovered = restoreCatalogFile();
    s.catalog = openView(kCatalogName);
    if (!s.catalog) {
        alert(std::string("falhou mapeamento ") + kCatalogName + " ...");
        s.started = false;
        freeTables();
        s.lock.close();
        return dmErrCatalogMapping;
    }
    // Even a sound catalog may have lost an entry; a file holding records is never left out.
    adoptDatabaseFiles(recovered);
    return dmErrNone;
}

void StorageClose(void) noexcept {
    StorageState &s = state();
    if (s.catalog) {
        flushCatalog();
        writeBackup();
    }
    freeTables();
    closeView(s.catalog);
    s.lock.close();
    if (s.trace)
        std::fclose(s.trace);
    s.trace = nullptr;
    s.started = false;
}
