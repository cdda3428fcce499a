// Tables reached through the runtime's own functions: opening one in a work area, moving
// over its rows and reading and writing their fields.
#pragma once

#include "cell.h"
#include "tables/definition.h"
#include "zelqa.h"

#include <string>
#include <vector>

namespace zq::tool {

// One table open in a work area under an alias of its own.
class OpenTable {
public:
    // Opens table name under alias; a table that cannot be opened ends the run through
    // the runtime's error (ALIAS DOES NOT EXISTS!, IDX NOT EXISTS!, ...).
    OpenTable(const std::string &name, const std::string &alias);

    const tables::TableDef &definition() const;
    // The fields a program sees: the deletion field left out.
    std::vector<tables::FieldDef> fields() const;
    uint32_t recordCount() const;

    // Moving: natural order unless an order is set (1-based, 0 = natural).
    void setOrder(int order);
    void top();
    void next();
    void go(uint32_t record); // 0-based record number
    bool atEnd() const;
    uint32_t record() const; // 0-based record number of the current row
    bool deleted() const;

    Cell read(size_t field) const; // 0-based field
    void append();
    void write(size_t field, const Cell &cell);
    void recall();
    void remove(); // marks the current row deleted
    void commit();
    void reindex();
    // Compacts the table's database through storage, which drops the rows marked deleted
    // (what pack does to the rows, without touching memo texts). Record numbers of the
    // rows kept close up; the indexes must be rebuilt after.
    void compact();

private:
    pObj area() const;
    std::string alias_;
};

} // namespace zq::tool
