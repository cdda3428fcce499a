// Work areas: the numbered slots holding open tables, their lookup and their closing.
//
// Area numbers are handed out in order and not reused until every area is closed: the
// slot array has 128 entries and never grows, so a run opens at most 128 areas between
// two closes of all areas. An area's number stays valid after it closes; its slot is empty.
#pragma once

#include "tables/definition.h"
#include "zelqa/errors.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zq::tables {

constexpr int kAreaSlots = 128;

struct AreaRecord {
    std::string alias;               // uppercased; the table name when none was given
    const void *aliasObject = nullptr; // the value the alias came in (compared, never read)
    TableDef def;
    DmOpenRef db = nullptr;          // the table database
    DmOpenRef memo = nullptr;        // the memo companion, when the table has memo fields
    uint16_t order = kNoOrder;       // current index, kNoOrder for natural order
    std::vector<uint8_t> buffer;     // the edit buffer: one slot per field
    std::vector<uint8_t> keyBuffers[2]; // for the index code: longest key + 7 bytes each
    int32_t current = 0;             // 0-based record number of the row in the buffer
    int32_t indexPosition = -1;      // position in the current index, -1 for none
    bool eof = false;                // past the last row
    bool bof = false;                // before the first row
    bool found = false;              // last seek found its key
    bool pending = false;            // the buffer must be written
    bool appending = false;          // the buffer is a new row not yet stored
    uint32_t operations = 0;         // row reads and writes since the last flush
    int32_t rememberedField = 0;     // 1-based field of the last name lookup, 0 = none
};

struct WorkAreas {
    int16_t current = 0;       // current area, 0-based
    int16_t lastFound = -1;    // area of the last alias hit
    int16_t handedOut = 0;     // areas handed out since all were closed
    std::unique_ptr<std::unique_ptr<AreaRecord>[]> slots; // kAreaSlots, or null
    bool inUse = false;        // cleared by __DBUSEAREA on entry, set once the table is open
};

WorkAreas &workAreas();

// The open area with this number, or null when out of range or closed.
AreaRecord *areaAt(int area);

// The open area an argument names (nil = current). An alias not found is ALIAS DOES NOT
// EXISTS! 11; a number outside the handed-out areas, or a closed area, raises class with
// detail aux.
AreaRecord &requireArea(pObj area, int code = ZQ_ERR_ALIAS_MISSING, int aux = 13);
// As requireArea, also giving the area number.
AreaRecord &requireArea(pObj area, int16_t &number, int code = ZQ_ERR_ALIAS_MISSING, int aux = 13);

// A fresh area record in the next area number; -1 when all 128 have been handed out.
int16_t handOutArea();
// The current area, closed, for reuse; -1 when its number has no slot.
int16_t reuseCurrentArea();

// Writes a pending row, closes the indexes (last first), the table and its memo companion,
// and empties the slot. An empty slot is left alone.
void closeArea(int16_t area);
// Closes every area, frees the slot array and starts the numbering again.
void closeAllAreas();
// Forgets every area, held index entry and holder count without writing or closing
// anything: for a run whose record store is let go after a runtime error (the fuzz targets).
void abandonAreas();

} // namespace zq::tables
