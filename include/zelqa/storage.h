/* zelqa/storage.h: record storage: the catalog, databases, records and their handles. */
#ifndef ZELQA_STORAGE_H
#define ZELQA_STORAGE_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

typedef uint32_t LocalID;           /* database id: slot + 1, 0 = none */
typedef uint16_t Err;               /* 0 or a storage error code */
typedef struct DmOpenDB *DmOpenRef; /* an open database record */
typedef void **MemHandle;           /* address of a handle-table slot */
typedef void *MemPtr;
typedef int16_t (*DmComparF)(void *key, void *rec, int16_t flag, void *extra, void *r1, void *r2);

/* Storage error codes. */
enum {
    dmErrNone = 0,
    dmErrBadArgument = 1,        /* bad argument or empty id */
    dmErrWriteOutOfBounds = 514, /* write past the record's size */
    dmErrCatalogMapping = 518,   /* catalog cannot be mapped */
    dmErrNoRecord = 531,         /* no such record or no current handle */
    dmErrAlreadyExists = 537     /* database already exists */
};

#define dmAppendPosition 0x0FFFFFFEu

ZQ_API Err StorageStart(void) ZQ_NOEXCEPT;
ZQ_API void StorageClose(void) ZQ_NOEXCEPT;

ZQ_API LocalID DmFindDatabase(uint16_t card, const char *name) ZQ_NOEXCEPT;
ZQ_API Err DmCreateDatabase(uint16_t card, const char *name, uint32_t creator, uint32_t type, int resDB) ZQ_NOEXCEPT;
ZQ_API Err DmDeleteDatabase(uint16_t card, LocalID id) ZQ_NOEXCEPT;
ZQ_API DmOpenRef DmOpenDatabase(uint16_t card, LocalID id) ZQ_NOEXCEPT;
ZQ_API Err DmCloseDatabase(DmOpenRef db) ZQ_NOEXCEPT;
ZQ_API Err DmDatabaseInfo(uint16_t card, LocalID id, char *name, uint16_t *attributes, uint16_t *version,
                          double *crDate, double *modDate, uint32_t *bckUpDate, uint32_t *modNum,
                          MemHandle *appInfoH, uint32_t *sortInfo, uint32_t *type, uint32_t *creator) ZQ_NOEXCEPT;
ZQ_API Err DmSetDatabaseInfo(uint16_t card, LocalID id, char *name, uint16_t *attributes, uint16_t *version,
                             double *crDate, double *modDate, uint32_t *bckUpDate, uint32_t *modNum,
                             MemHandle *appInfoH, uint32_t *sortInfo, uint32_t *type, uint32_t *creator) ZQ_NOEXCEPT;

ZQ_API uint32_t DmNumRecords(DmOpenRef db) ZQ_NOEXCEPT;
ZQ_API MemHandle DmQueryRecord(DmOpenRef db, uint32_t index) ZQ_NOEXCEPT;
ZQ_API MemHandle DmGetRecord(DmOpenRef db, uint32_t index) ZQ_NOEXCEPT;
ZQ_API MemHandle DmNewRecord(DmOpenRef db, uint32_t *index, uint32_t size) ZQ_NOEXCEPT;
ZQ_API MemHandle DmNewHandle(DmOpenRef db, uint32_t size) ZQ_NOEXCEPT;
ZQ_API void DmResizeRecord(MemHandle h, uint32_t newSize) ZQ_NOEXCEPT;
ZQ_API Err DmReleaseRecord(DmOpenRef db, uint32_t index, int dirty) ZQ_NOEXCEPT;
ZQ_API Err DmRemoveRecord(DmOpenRef db, uint32_t index) ZQ_NOEXCEPT;
ZQ_API MemPtr MemHandleLock(MemHandle h) ZQ_NOEXCEPT;
ZQ_API void MemHandleUnlock(MemHandle h) ZQ_NOEXCEPT;
ZQ_API uint32_t MemHandleSize(MemHandle h) ZQ_NOEXCEPT;
ZQ_API void MemPtrUnlock(MemPtr p) ZQ_NOEXCEPT;
ZQ_API Err DmWrite(void *data, uint32_t offset, const void *src, uint32_t bytes) ZQ_NOEXCEPT;
ZQ_API Err DmSet(void *data, uint32_t offset, uint32_t bytes, uint8_t value) ZQ_NOEXCEPT;
ZQ_API uint32_t DmFindSortPosition(DmOpenRef db, void *key, void *extra, DmComparF compar, int16_t flag) ZQ_NOEXCEPT;
ZQ_API void __InternalZap(DmOpenRef db) ZQ_NOEXCEPT;
ZQ_API int OrdenarIndice(DmOpenRef db) ZQ_NOEXCEPT;
/* Drops the records marked deleted; true when at least one record was kept. */
ZQ_API int DmCompactDatabase(DmOpenRef db) ZQ_NOEXCEPT;

/* Databases named by a base name and a one-letter kind. */
ZQ_API void KindDatabaseName(pObj baseName, char *name, uint32_t *creator, char kind) ZQ_NOEXCEPT;
ZQ_API DmOpenRef OpenKindDatabase(uint16_t card, pObj baseName, int recreate, char kind) ZQ_NOEXCEPT;
ZQ_API int DeleteKindDatabase(uint16_t card, pObj baseName, char kind) ZQ_NOEXCEPT;
ZQ_API uint32_t ReadRecordBuffer(DmOpenRef db, uint32_t index, void *buf, uint32_t max) ZQ_NOEXCEPT;
ZQ_API void WriteRecordBuffer(DmOpenRef db, const void *src, uint32_t length, uint32_t *index) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
