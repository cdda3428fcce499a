// Row edits: append, commit, abandon, delete and recall, and the dirty attribute.
#include "runtime/context.h"
#include "runtime/raise.h"
#include "storage/layout.h"
#include "storage/records.h"
#include "tables/arguments.h"
#include "tables/index_files.h"
#include "tables/positioning.h"
#include "tables/row.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

namespace zq::tables {
namespace {

// The 0-based record an optional 1-based number names; the current record otherwise.
int64_t recordArgument(AreaRecord &a, pObj nRecord) {
    return isNumber(nRecord) ? requireWhole(nRecord) - 1 : a.current;
}

} // namespace
} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::logical;

pObj __DBAPPEND(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    writePending(a);
    blankBuffer(a);
    a.appending = a.pending = true;
    a.eof = a.bof = false;
    a.current = int32_t(DmNumRecords(a.db));
    return logical(true);
}

// A commit also brings the held index entries into the index files.
pObj __Commit(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    writePending(a);
    settleIndexes(a);
    return __INIT_NIL();
}

pObj __CommitAll(void) noexcept {
    WorkAreas &w = workAreas();
    for (int16_t area = 0; area < w.handedOut; ++area)
        if (AreaRecord *a = areaAt(area)) {
            writePending(*a);
            settleIndexes(*a);
        }
    return __INIT_NIL();
}

pObj __AbortEdit(pObj area) noexcept {
    AreaRecord &a = requireArea(area);
    a.pending = a.appending = false;
    blankBuffer(a);
    goBottom(a);
    return __INIT_NIL();
}

pObj __TBL_Delete(pObj area) noexcept {
    AreaRecord &a = requireArea(area, ZQ_ERR_RUNTIME, 16);
    deletionMark(a) = '*';
    a.pending = true;
    return __INIT_NIL();
}

pObj __TBL_Recall(pObj area) noexcept {
    AreaRecord &a = requireArea(area, ZQ_ERR_RUNTIME, 18);
    deletionMark(a) = '!';
    a.pending = true;
    return __INIT_NIL();
}

pObj __TBL_Deleted(pObj area) noexcept {
    return logical(deletionMark(requireArea(area, ZQ_ERR_RUNTIME, 17)) == '*');
}

pObj SETDIRTY(pObj area, pObj nRecord, pObj lFlag) noexcept {
    AreaRecord &a = requireArea(area);
    zq::runtime::requireArgument(lFlag && lFlag->type == TYPE_LOGICAL);
    int64_t record = recordArgument(a, nRecord);
    if (record < 0 || record >= int64_t(DmNumRecords(a.db)))
        return logical(false);
    // Committing a touched record writes its attributes: 64 with the dirty flag, else 0.
    MemHandle h = DmGetRecord(a.db, uint32_t(record));
    auto *p = static_cast<uint8_t *>(h ? MemHandleLock(h) : nullptr);
    if (!p)
        return logical(false);
    uint8_t first = p[0];
    DmWrite(p, 0, &first, 1);
    MemHandleUnlock(h);
    DmReleaseRecord(a.db, uint32_t(record), lFlag->payload.l != 0);
    return logical(true);
}

pObj __IsDirty(pObj area, pObj nRecord) noexcept {
    AreaRecord &a = requireArea(area);
    int64_t record = recordArgument(a, nRecord);
    if (record < 0 || record >= int64_t(DmNumRecords(a.db)))
        return logical(false);
    zq::storage::RecordHeader header;
    uint32_t offset = zq::storage::recordOffset(a.db, uint32_t(record));
    if (!zq::storage::readRecordHeader(a.db, offset, header))
        return logical(false);
    return logical((header.attributes & zq::storage::kAttrDirty) != 0);
}
