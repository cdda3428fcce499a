// Storage start and close, and the catalog's entries: lookup, placement and backup.
#include "storage/catalog.h"

#include "platform/files.h"
#include "platform/process.h"
#include "runtime/raise.h"
#include "storage/state.h"

#include <cctype>
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
    std::unique_ptr<FileView> backup = openView("catalog.bck");
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

void flushCatalog() { flushView(*state().catalog); }

bool ensureStarted() { return state().started || StorageStart() == dmErrNone; }

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
    std::string dir = zq::platform::programDirectory() + zq::platform::directorySeparator() + "DB";
    std::snprintf(s.directory, sizeof s.directory, "%s", dir.c_str());
    zq::platform::createDirectory(s.directory);
    s.started = true;
    s.catalog = openView("catalog.plm");
    if (!s.catalog) {
        alert(std::string("falhou mapeamento ") + "catalog.plm" + " ...");
        s.started = false;
        freeTables();
        return dmErrCatalogMapping;
    }
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
    if (s.trace)
        std::fclose(s.trace);
    s.trace = nullptr;
    s.started = false;
}
