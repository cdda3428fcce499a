// The work-area slots: handing out area numbers, finding an argument's area, closing.
#include "tables/work_areas.h"

#include "runtime/failure.h"
#include "runtime/raise.h"
#include "tables/pending_entries.h"
#include "tables/row.h"
#include "tables/shared_databases.h"
#include "zelqa/tables.h"

namespace zq::tables {
namespace {

WorkAreas *areas = nullptr; // built on first use, never freed: it holds no open table then

void ensureSlots(WorkAreas &w) {
    if (w.slots)
        return;
    w.slots = std::make_unique<std::unique_ptr<AreaRecord>[]>(kAreaSlots);
    // From now on a runtime error and the end of the run close the tables.
    runtime::setTableCloser(closeAllAreas);
}

} // namespace

WorkAreas &workAreas() {
    if (!areas)
        areas = new WorkAreas();
    return *areas;
}

AreaRecord *areaAt(int area) {
    WorkAreas &w = workAreas();
    if (area < 0 || area >= w.handedOut || area >= kAreaSlots || !w.slots)
        return nullptr;
    return w.slots[area].get();
}

AreaRecord &requireArea(pObj area, int16_t &number, int code, int aux) {
    number = __GetAliasID(area);
    if (number < 0)
        runtime::raiseError(ZQ_ERR_ALIAS_MISSING, 11);
    AreaRecord *a = areaAt(number);
    if (!a)
        runtime::raiseError(code, aux);
    return *a;
}

AreaRecord &requireArea(pObj area, int code, int aux) {
    int16_t number;
    return requireArea(area, number, code, aux);
}

int16_t handOutArea() {
    WorkAreas &w = workAreas();
    if (w.handedOut >= kAreaSlots)
        return -1;
    ensureSlots(w);
    int16_t number = w.handedOut++;
    w.slots[number] = std::make_unique<AreaRecord>();
    return number;
}

int16_t reuseCurrentArea() {
    WorkAreas &w = workAreas();
    int16_t number = w.current;
    if (number < 0 || number >= kAreaSlots)
        return -1;
    ensureSlots(w);
    closeArea(number);
    if (w.handedOut <= number)
        w.handedOut = int16_t(number + 1);
    w.slots[number] = std::make_unique<AreaRecord>();
    return number;
}

void closeArea(int16_t area) {
    WorkAreas &w = workAreas();
    AreaRecord *a = areaAt(area);
    if (!a)
        return;
    writePending(*a);
    for (auto index = a->def.indexes.rbegin(); index != a->def.indexes.rend(); ++index)
        closeShared(index->db);
    closeShared(a->db);
    closeShared(a->memo);
    w.slots[area].reset();
    if (w.lastFound == area)
        w.lastFound = -1;
}

void closeAllAreas() {
    WorkAreas &w = workAreas();
    if (!w.slots)
        return;
    for (int16_t area = 0; area < w.handedOut && area < kAreaSlots; ++area)
        closeArea(area);
    w.slots.reset();
    w.handedOut = 0;
    w.current = 0;
    w.lastFound = -1;
    w.inUse = false;
}

void abandonAreas() {
    WorkAreas &w = workAreas();
    w.slots.reset();
    w.handedOut = 0;
    w.current = 0;
    w.lastFound = -1;
    w.inUse = false;
    forgetHolders();
    dropAllHeldEntries();
}

} // namespace zq::tables
