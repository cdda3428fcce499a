// Positioning an area, and the navigation built-ins over it.
//
// A failed positioning is no error: it sets the flags and blanks the buffer. Beyond the
// last row the area stands on record count (so __TBL_RecNo is one past the last row).
#include "tables/positioning.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "tables/arguments.h"
#include "tables/index_hooks.h"
#include "tables/row.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

namespace zq::tables {
namespace {

bool failBeyondEnd(AreaRecord &a, int64_t count) {
    a.found = false;
    a.eof = a.bof = true;
    a.indexPosition = -1;
    a.current = int32_t(count);
    blankBuffer(a);
    return false;
}

bool failBeforeStart(AreaRecord &a, int64_t count) {
    a.indexPosition = -1;
    if (count == 0) {
        a.eof = a.bof = true;
        a.current = 0;
        blankBuffer(a);
        return false;
    }
    goTop(a);
    a.bof = true;
    return false;
}

} // namespace

bool positionArea(AreaRecord &a, int64_t target, bool indexTarget, int direction) {
    writePending(a);
    bool ordered = indexTarget && a.order != kNoOrder;
    for (;;) {
        int64_t count = DmNumRecords(a.db);
        if (target > count - 1)
            return failBeyondEnd(a, count);
        if (count == 0 || target < 0)
            return failBeforeStart(a, count);
        int64_t record = ordered ? recordOfIndexPosition(a, target) : target;
        if (record < 0 || record >= count)
            return failBeyondEnd(a, count);
        readRow(a, record);
        a.indexPosition = ordered ? int32_t(target) : -1;
        if (direction == 0 || deletionMark(a) != '*' || !deletedRowsHidden())
            return true;
        target += direction;
    }
}

bool goTop(AreaRecord &a) { return positionArea(a, 0, true, +1); }

bool goBottom(AreaRecord &a) {
    if (a.order == kNoOrder)
        return positionArea(a, kAppendTarget, false, -1);
    int64_t count = DmNumRecords(a.db);
    if (count == 0)
        return positionArea(a, 0, true, 0);
    return positionArea(a, count - 1, true, -1);
}

} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::logical;

pObj __TBL_GoTo(pObj area, pObj nRecord) noexcept {
    AreaRecord &a = requireArea(area);
    int64_t n = requireWhole(nRecord);
    int64_t target = n == kAppendTarget ? int64_t(DmNumRecords(a.db)) - 1 : n - 1;
    return logical(positionArea(a, target, false, 0));
}

pObj __TBL_Skip(pObj area, pObj nCount) noexcept {
    AreaRecord &a = requireArea(area);
    int64_t k = isMissing(nCount) ? 1 : requireWhole(nCount);
    bool ordered = a.order != kNoOrder && a.indexPosition >= 0;
    int64_t from = ordered ? a.indexPosition : a.current;
    return logical(positionArea(a, from + k, ordered, k > 0 ? 1 : (k < 0 ? -1 : 0)));
}

pObj __TBL_GoTop(pObj area) noexcept { return logical(goTop(requireArea(area))); }

pObj __TBL_GoBottom(pObj area) noexcept { return logical(goBottom(requireArea(area))); }

pObj __TBL_Eof(pObj area) noexcept { return logical(requireArea(area).eof); }

pObj __TBL_Bof(pObj area) noexcept { return logical(requireArea(area).bof); }

pObj __TBL_Found(pObj area) noexcept { return logical(requireArea(area).found); }

pObj __TBL_RecNo(pObj area) noexcept { return __INIT_DOUBLE(requireArea(area).current + 1.0); }

pObj __TBL_RecCount(pObj area) noexcept { return __INIT_DOUBLE(DmNumRecords(requireArea(area).db)); }

pObj __TBL_Fcount(pObj area) noexcept {
    return __INIT_DOUBLE(double(requireArea(area).def.fields.size()) - 1);
}

pObj __TBL_RecSize(pObj area) noexcept {
    AreaRecord &a = requireArea(area, ZQ_ERR_RUNTIME, 6);
    double sum = 0;
    for (const FieldDef &f : a.def.fields)
        sum += f.slot;
    return __INIT_DOUBLE(sum);
}
