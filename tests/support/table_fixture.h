// A fixture for table tests: a storage directory of its own, a fresh runtime, and helpers
// that build structure arrays and read values.
#pragma once

#include "support/storage_fixture.h"
#include "zelqa.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace zq::table_test {

struct FieldSpec {
    const char *name;
    const char *type;
    double length;
    double decimals;
};

class TableTest : public storage_test::StorageTest {
protected:
    void SetUp() override;
    void TearDown() override;

public:
    // A structure array of the given fields.
    static pObj structure(std::initializer_list<FieldSpec> fields);
    // Creates the table and opens it in a new area under its own name.
    static void createAndUse(const char *name, std::initializer_list<FieldSpec> fields);
    static void use(const char *name, const char *alias = nullptr, bool newArea = true);
    // The entries of an index database's file after a commit of every area, in file
    // order: the record number and the first keyBytes bytes of the key area.
    std::vector<std::pair<uint32_t, std::string>> indexEntries(const char *index, uint32_t keyBytes) const;
};

pObj num(double n);
pObj text(const char *s);
pObj date(double dayNumber);
// A value's text, number or logical, for comparisons.
std::string textOf(pObj x);
double numberOf(pObj x);
bool isTrue(pObj x);

// A call that must end the run through the "Fatal Error" box with this error and detail.
struct TableRefusal {
    const char *name;
    void (*call)();
    int code;
    int aux; // -1 for none
};
inline void PrintTo(const TableRefusal &r, std::ostream *os) { *os << r.name; }
inline std::string refusalName(const ::testing::TestParamInfo<TableRefusal> &info) { return info.param.name; }

// A runtime error ends a child process: the box it showed is checked in the parent.
class TableDeathTest : public TableTest, public ::testing::WithParamInterface<TableRefusal> {
protected:
    void expectRefused(const TableRefusal &r);
};

} // namespace zq::table_test
