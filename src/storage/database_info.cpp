// DmDatabaseInfo and DmSetDatabaseInfo: a database's catalog entry and app info handle.
#include "storage/app_info.h"
#include "storage/catalog.h"
#include "storage/database.h"
#include "storage/handles.h"
#include "zelqa/dates.h"

#include <cstring>

using namespace zq::storage;

namespace {

double dayOf(const SystemTime &t) { return __EncodeDate(t.year, t.month, t.day); }

} // namespace

Err DmDatabaseInfo(uint16_t, LocalID id, char *name, uint16_t *attributes, uint16_t *version, double *crDate,
                   double *modDate, uint32_t *bckUpDate, uint32_t *modNum, MemHandle *appInfoH, uint32_t *sortInfo,
                   uint32_t *type, uint32_t *creator) noexcept {
    DmOpenDB *db = databaseOfId(id);
    if (!db)
        return dmErrBadArgument;
    CatalogEntry e = readEntry(db->catalogOffset);
    if (name) {
        std::memcpy(name, e.name, kNameSize);
        name[kNameSize - 1] = '\0';
    }
    if (attributes)
        *attributes = e.attributes;
    if (version)
        *version = e.version;
    if (crDate)
        *crDate = dayOf(e.created);
    if (modDate)
        *modDate = dayOf(e.modified);
    if (bckUpDate)
        *bckUpDate = e.backupDate;
    if (modNum)
        *modNum = e.modNumber;
    if (sortInfo)
        *sortInfo = db->sortInfo;
    if (type)
        *type = e.type;
    if (creator)
        *creator = e.creator;
    if (appInfoH) {
        loadAppInfo(db);
        *appInfoH = db->appInfoHandle ? slotHandle(int32_t(db->appInfoHandle) - 1) : nullptr;
        if (!*appInfoH)
            alert("no appinfo");
    }
    return dmErrNone;
}

Err DmSetDatabaseInfo(uint16_t, LocalID id, char *, uint16_t *attributes, uint16_t *version, double *, double *,
                      uint32_t *bckUpDate, uint32_t *modNum, MemHandle *appInfoH, uint32_t *sortInfo,
                      uint32_t *type, uint32_t *creator) noexcept {
    DmOpenDB *db = databaseOfId(id);
    if (!db)
        return dmErrBadArgument;
    CatalogEntry e = readEntry(db->catalogOffset);
    if (attributes)
        e.attributes = *attributes;
    if (version)
        e.version = *version;
    if (bckUpDate)
        e.backupDate = *bckUpDate;
    if (modNum)
        e.modNumber = *modNum;
    if (type)
        e.type = *type;
    if (creator)
        e.creator = *creator;
    if (sortInfo)
        db->sortInfo = *sortInfo;
    writeEntry(db->catalogOffset, e);
    flushCatalog();
    HandleRecord *r = appInfoH ? handleRecord(*appInfoH) : nullptr;
    if (r && r->owner == db && r->bare) {
        // The given block becomes the app info: it replaces the old handle and is written
        // to offset 20 now, whether or not it was written through.
        if (db->appInfoHandle && slotRecord(int32_t(db->appInfoHandle) - 1) != r)
            freeHandle(int32_t(db->appInfoHandle) - 1);
        r->appInfo = true;
        r->isNew = true;
        commitAppInfo(*r);
    }
    return dmErrNone;
}
