// A table's definition in memory: its fields, its indexes and the edit-buffer layout.
//
// The stored form is the app info block (docs/formats/table.md); see definition_block.h.
#pragma once

#include "zelqa/storage.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zq::tables {

// Field type codes as stored; the letters are what programs see.
enum FieldType : uint32_t {
    kNumeric = 0,   // "N": an 8-byte double
    kDate = 1,      // "D": an 8-byte day number
    kCharacter = 2, // "C": trimmed text and a zero byte
    kLogical = 3,   // "L": one byte
    kMemo = 4,      // "M": a 4-byte reference into the memo companion
    kInteger = 5,   // "I": reserved, holds nothing
    kBinary = 6,    // "B": reserved, holds nothing
};

constexpr std::string_view kDeletionField = "D_E_L_E_T_";
constexpr size_t kFieldNameMax = 23; // characters of a field name
constexpr size_t kTableNameMax = 31; // characters of a table name
constexpr uint32_t kCreatorZelq = 0x5A454C51u; // 'ZELQ'
constexpr uint32_t kTypeData = 0x44415441u;    // 'DATA'
constexpr uint32_t kTypeMemo = 0x4D454D4Fu;    // 'MEMO'
constexpr uint32_t kTypeIndex = 0x494E4458u;   // 'INDX'
constexpr uint16_t kNoOrder = 65535;

struct FieldDef {
    std::string name;     // uppercased, at most 23 characters
    uint32_t type = 0;    // FieldType code
    int32_t length = 0;   // characters or bytes of the stored form
    int32_t decimals = 0;
    uint32_t hash = 0;    // fieldHash(name)
    uint32_t slot = 0;    // offset of the field's slot in the edit buffer
};

// An index attached to the table; the index code fills in how keys are built and kept.
struct IndexDef {
    std::string name;               // the index database's name
    DmOpenRef db = nullptr;         // open while the table is open
    uint32_t attribute = 0;         // the further number of the index block: the key length
    std::vector<int32_t> keyFields; // 1-based field number of each key part (0-based when stored)
    bool keyChanged = false;        // a key field changed since the row was read
    bool detached = false;          // the row being stored has lost its entry for a new one
};

struct TableDef {
    std::string name;               // uppercased table name
    std::vector<FieldDef> fields;   // in table order, the deletion field last
    std::vector<IndexDef> indexes;
    bool hasMemo = false;
    uint32_t bufferSize = 0;        // edit buffer bytes: the slots + 4
};

// Sum of (1-based position x character code), codes taken as signed bytes.
uint32_t fieldHash(std::string_view name);
// The code a type letter stands for (lower case as upper); letters outside the table are
// character fields.
uint32_t typeCodeOfLetter(char letter);
// The letter programs see for a type code.
char letterOfTypeCode(uint32_t code);
// The stored length forced by the type (D 8, M 4), else the given one.
int32_t storedLength(uint32_t code, int32_t given);
// Bytes of a field's edit-buffer slot: N, D 8; L 1; M 4; every other type length + 2.
uint32_t slotBytes(const FieldDef &f);
// Assigns the slot offsets in field order and the buffer size.
void layoutBuffer(TableDef &def);
// The deletion field every table ends with.
FieldDef deletionField();

} // namespace zq::tables
