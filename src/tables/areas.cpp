// The work-area built-ins: opening into an area, alias lookup, selection and closing.
#include "runtime/context.h"
#include "runtime/raise.h"
#include "tables/arguments.h"
#include "tables/opening.h"
#include "tables/work_areas.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

#include <cstring>

namespace zq::tables {
namespace {

bool holdsText(const AreaRecord *a, const std::string &text, pObj object) {
    return a && a->aliasObject == object && a->alias == text;
}

int16_t findByText(pObj xArea) {
    WorkAreas &w = workAreas();
    std::string text = xArea->payload.c && xArea->objLength > 0 ? xArea->payload.c : "";
    // The very value that named the current or the last found area names it again.
    if (holdsText(areaAt(w.current), text, xArea))
        return w.current;
    if (holdsText(areaAt(w.lastFound), text, xArea))
        return w.lastFound;
    for (int16_t area = 0; area < w.handedOut; ++area)
        if (AreaRecord *a = areaAt(area); a && a->alias == text) {
            w.lastFound = area;
            return area;
        }
    for (int16_t area = 0; area < w.handedOut; ++area)
        if (AreaRecord *a = areaAt(area); a && a->def.name == text)
            return area;
    return -1;
}

// Closes the area already holding this alias; with no alias, area 0.
void closeAliasHolder(const std::string &alias) {
    WorkAreas &w = workAreas();
    if (alias.empty()) {
        if (w.handedOut > 0)
            closeArea(0);
        return;
    }
    for (int16_t area = 0; area < w.handedOut; ++area)
        if (AreaRecord *a = areaAt(area); a && a->alias == alias)
            closeArea(area);
}

} // namespace
} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::logical;
using zq::runtime::raiseError;

int16_t __GetAliasID(pObj xArea) noexcept {
    if (isMissing(xArea))
        return workAreas().current;
    if (isNumber(xArea)) {
        int64_t n = requireWhole(xArea);
        return n < 1 || n > 32767 ? int16_t(-1) : int16_t(n - 1);
    }
    if (xArea->type != TYPE_CHAR)
        raiseError(ZQ_ERR_ALIAS_MISSING, 11);
    return findByText(xArea);
}

pObj __TBL_Select(pObj xArea) noexcept {
    int16_t area = __GetAliasID(xArea);
    if (area < 0)
        return __INIT_DOUBLE(0);
    workAreas().current = area;
    return __INIT_DOUBLE(area + 1);
}

pObj __Select(pObj xArea) noexcept { return __INIT_DOUBLE(__GetAliasID(xArea) + 1); }

pObj __Alias(pObj area) noexcept {
    int16_t number = __GetAliasID(area);
    if (number < 0)
        raiseError(ZQ_ERR_ALIAS_MISSING, 11);
    AreaRecord *a = areaAt(number);
    return __INIT_CHARPTR(a ? a->alias.c_str() : "");
}

pObj __Used(void) noexcept { return logical(workAreas().inUse); }

pObj __File(pObj cName) noexcept {
    std::string name = upperText(requireText(cName));
    return logical(!name.empty() && DmFindDatabase(0, name.c_str()) != 0);
}

pObj __DBUSEAREA(pObj lNewArea, pObj, pObj cName, pObj cAlias) noexcept {
    WorkAreas &w = workAreas();
    w.inUse = false;
    if (!cName)
        raiseError(ZQ_ERR_RUNTIME, 53);
    OpenRequest request;
    request.name = upperText(requireText(cName));
    request.alias = isMissing(cAlias) ? std::string() : upperText(requireText(cAlias));
    request.aliasObject = isMissing(cAlias) ? nullptr : cAlias;
    request.newArea = lNewArea && lNewArea->type == TYPE_LOGICAL && lNewArea->payload.l;
    closeAliasHolder(request.alias);
    if (openTable(request) < 0)
        raiseError(ZQ_ERR_ALIAS_MISSING, 53);
    w.inUse = true;
    return logical(true);
}

void __CloseTBL(int16_t area, int) noexcept {
    if (area < 0 || area >= workAreas().handedOut)
        raiseError(ZQ_ERR_RUNTIME, 56);
    closeArea(area);
}

pObj __DB_CloseArea(pObj alias) noexcept {
    int16_t area = __GetAliasID(alias);
    if (area < 0 && !isMissing(alias) && !isNumber(alias))
        raiseError(ZQ_ERR_ALIAS_MISSING, 11);
    if (area < 0 || area >= workAreas().handedOut)
        raiseError(ZQ_ERR_RUNTIME, 14);
    closeArea(area);
    return __INIT_NIL();
}

pObj __dbCloseAll(void) noexcept {
    closeAllAreas();
    return __INIT_NIL();
}
