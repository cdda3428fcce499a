/* zelqa/tables.h: the table engine: tables kept as databases, work areas, rows and fields. */
#ifndef ZELQA_TABLES_H
#define ZELQA_TABLES_H

#include "base.h"
#include "storage.h"

ZQ_EXTERN_C_BEGIN

/* An area argument is nil (the current area), a 1-based number or an alias text.
   Faults end in __RuntimeError; nothing here returns an error. */

/* Creation, structure and work areas. */
ZQ_API pObj __DBCREATE(pObj cDatabase, pObj aStruct, pObj cDriver) ZQ_NOEXCEPT;
ZQ_API pObj __DBStruct(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __DBUSEAREA(pObj lNewArea, pObj cDriver, pObj cName, pObj cAlias) ZQ_NOEXCEPT;
ZQ_API void __CloseTBL(int16_t area, int flag) ZQ_NOEXCEPT;       /* area 0-based */
ZQ_API pObj __DB_CloseArea(pObj alias) ZQ_NOEXCEPT;
ZQ_API pObj __dbCloseAll(void) ZQ_NOEXCEPT;
ZQ_API int16_t __GetAliasID(pObj xArea) ZQ_NOEXCEPT;              /* 0-based, -1 = none */
ZQ_API pObj __TBL_Select(pObj xArea) ZQ_NOEXCEPT;
ZQ_API pObj __Select(pObj xArea) ZQ_NOEXCEPT;
ZQ_API pObj __Alias(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __Used(void) ZQ_NOEXCEPT;
ZQ_API pObj __File(pObj cName) ZQ_NOEXCEPT;

/* Navigation. */
ZQ_API pObj __TBL_GoTo(pObj area, pObj nRecord) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Skip(pObj area, pObj nCount) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_GoTop(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_GoBottom(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Eof(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Bof(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_RecNo(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_RecCount(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Fcount(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Found(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_RecSize(pObj area) ZQ_NOEXCEPT;

/* Fields: numbers are 1-based. */
ZQ_API pObj __GetField(pObj area, pObj xField, pObj lBare) ZQ_NOEXCEPT;
ZQ_API pObj __GetFieldByID(pObj area, pObj nField) ZQ_NOEXCEPT;
ZQ_API pObj __GetFieldByName(pObj area, pObj cName) ZQ_NOEXCEPT;
ZQ_API pObj __GetFieldPos(pObj area, pObj cName) ZQ_NOEXCEPT;
ZQ_API pObj __GetFieldName(pObj area, pObj nField) ZQ_NOEXCEPT;
ZQ_API pObj __FieldLen(pObj area, pObj nField) ZQ_NOEXCEPT;
ZQ_API pObj __FieldDecLen(pObj area, pObj nField) ZQ_NOEXCEPT;
ZQ_API pObj __FieldType(pObj area, pObj nField) ZQ_NOEXCEPT;
ZQ_API pObj __SetField(pObj area, pObj nField, pObj xValue) ZQ_NOEXCEPT;

/* Rows. */
ZQ_API pObj __DBAPPEND(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __Commit(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __CommitAll(void) ZQ_NOEXCEPT;
ZQ_API pObj __AbortEdit(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Delete(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Deleted(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_Recall(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj SETDIRTY(pObj area, pObj nRecord, pObj lFlag) ZQ_NOEXCEPT;
ZQ_API pObj __IsDirty(pObj area, pObj nRecord) ZQ_NOEXCEPT;

/* Indexes and seek: orders are 1-based, 0 = natural order. */
ZQ_API pObj __DBCREATEINDEX(pObj cIndexName, pObj cKeyExpr, ...) ZQ_NOEXCEPT; /* ends with the NUL value */
ZQ_API pObj __OpenIDX(pObj area, pObj cIndexName, pObj lMakeCurrent) ZQ_NOEXCEPT;
ZQ_API pObj __UseIndex(pObj area, pObj cIndexName) ZQ_NOEXCEPT;
ZQ_API pObj __CloseIDX(pObj area, pObj cIndexName) ZQ_NOEXCEPT;
ZQ_API pObj __CloseAllIdx(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __GetFirstOpenIDX(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __GetIdxInd(pObj area, pObj cIndexName) ZQ_NOEXCEPT;
ZQ_API pObj __ClearIndex(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __TBL_SetOrder(pObj area, pObj nOrder) ZQ_NOEXCEPT;
ZQ_API pObj __IndexOrd(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __IndexKey(pObj area, pObj nOrder) ZQ_NOEXCEPT;
ZQ_API pObj __Reindex(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __Seek(pObj area, pObj cKey, pObj lSoft) ZQ_NOEXCEPT;
/* entry: 4-byte record number then the key; true when that key and record are found. */
ZQ_API int FindKeyInIndexFile(DmOpenRef index, const void *entry, uint32_t keyLength, int32_t *position) ZQ_NOEXCEPT;
ZQ_API int FindRecnoInIndexFile(DmOpenRef index, uint32_t recordNumber, int32_t *position) ZQ_NOEXCEPT;

/* Pack, zap and removal. */
ZQ_API pObj __dbPack(pObj area) ZQ_NOEXCEPT;
ZQ_API pObj __dbZap(pObj area) ZQ_NOEXCEPT;
ZQ_API void CleanTbl(DmOpenRef db) ZQ_NOEXCEPT;
ZQ_API int __TBL_DeleteDatabase(pObj cName) ZQ_NOEXCEPT;
ZQ_API pObj __DBDROPINDEX(pObj area, pObj cIndexName) ZQ_NOEXCEPT;

/* Durable commits: when on, every stored row and memo text is on the device (fdatasync,
   FlushFileBuffers) before the call that stored it returns. Off unless the environment
   variable ZELQA_DURABLE_COMMIT is "1" at the first table write, or this call turns it on.
   Returns the previous state. */
ZQ_API int zq_set_durable_commit(int on) ZQ_NOEXCEPT;
ZQ_API int zq_durable_commit(void) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
