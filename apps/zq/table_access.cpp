// A table in a work area, through the runtime's built-ins.
#include "table_access.h"

#include "tables/work_areas.h"

namespace zq::tool {
namespace {

pObj yes() { return __INIT_BOOL(1); }
pObj number(double n) { return __INIT_DOUBLE(n); }
double numeric(pObj v) { return !v ? 0 : v->type == TYPE_LONG ? v->payload.l : v->payload.d; }

} // namespace

OpenTable::OpenTable(const std::string &name, const std::string &alias) : alias_(alias) {
    __DBUSEAREA(yes(), nullptr, __INIT_CHARPTR(name.c_str()), __INIT_CHARPTR(alias.c_str()));
}

pObj OpenTable::area() const { return __INIT_CHARPTR(alias_.c_str()); }

const tables::TableDef &OpenTable::definition() const { return tables::requireArea(area()).def; }

std::vector<tables::FieldDef> OpenTable::fields() const {
    const auto &all = definition().fields;
    return std::vector<tables::FieldDef>(all.begin(), all.end() - 1);
}

uint32_t OpenTable::recordCount() const { return uint32_t(numeric(__TBL_RecCount(area()))); }

void OpenTable::setOrder(int order) { __TBL_SetOrder(area(), number(order)); }
void OpenTable::top() { __TBL_GoTop(area()); }
void OpenTable::next() { __TBL_Skip(area(), number(1)); }
void OpenTable::go(uint32_t record) { __TBL_GoTo(area(), number(record + 1.0)); }
bool OpenTable::atEnd() const { return __TBL_Eof(area())->payload.l != 0; }
uint32_t OpenTable::record() const { return uint32_t(numeric(__TBL_RecNo(area()))) - 1; }
bool OpenTable::deleted() const { return __TBL_Deleted(area())->payload.l != 0; }

Cell OpenTable::read(size_t field) const {
    pObj v = __GetField(area(), number(field + 1.0), yes());
    Cell cell;
    switch (v ? v->type : uint32_t(TYPE_NIL)) {
    case TYPE_CHAR:
        cell.text = v->payload.c ? v->payload.c : "";
        break;
    case TYPE_NUMERIC:
    case TYPE_DATE:
        cell.number = v->payload.d;
        break;
    case TYPE_LONG:
        cell.number = v->payload.l;
        break;
    case TYPE_LOGICAL:
        cell.logical = v->payload.l != 0;
        break;
    default:
        break;
    }
    return cell;
}

void OpenTable::append() { __DBAPPEND(area()); }

void OpenTable::write(size_t field, const Cell &cell) {
    const tables::FieldDef &f = definition().fields[field];
    pObj value = nullptr;
    switch (f.type) {
    case tables::kNumeric:
        value = number(cell.number);
        break;
    case tables::kDate:
        value = __INIT_DATE(cell.number);
        break;
    case tables::kLogical:
        value = __INIT_BOOL(cell.logical);
        break;
    case tables::kCharacter:
    case tables::kMemo:
        value = __INIT_CHARPTR(cell.text.c_str());
        break;
    default:
        return; // reserved types hold nothing
    }
    __SetField(area(), number(field + 1.0), value);
}

void OpenTable::recall() { __TBL_Recall(area()); }
void OpenTable::remove() { __TBL_Delete(area()); }

void OpenTable::compact() {
    commit();
    DmCompactDatabase(tables::requireArea(area()).db);
}
void OpenTable::commit() { __Commit(area()); }
void OpenTable::reindex() { __Reindex(area()); }

} // namespace zq::tool
