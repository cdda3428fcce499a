// The byte layouts of storage files (docs/formats/) and the limits that go with them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zq::storage {

static_assert(std::endian::native == std::endian::little, "storage files are little-endian and read in place");

inline constexpr uint32_t kHeaderSize = 20;          // DatabaseHeader
inline constexpr uint32_t kEntrySize = 88;           // CatalogEntry
inline constexpr uint32_t kRecordHeaderSize = 8;     // RecordHeader
inline constexpr uint32_t kMapStep = 15360;          // smallest mapping and first growth step
inline constexpr uint32_t kMaxFileSize = 0x10000000; // a file this size or larger is refused
inline constexpr uint32_t kMaxBlock = 15360;         // largest record capacity or app info block
inline constexpr uint32_t kAppend = 0x0FFFFFFE;      // record index meaning "at the end"
inline constexpr uint32_t kNameSize = 32;            // catalog name field, NUL included
inline constexpr uint32_t kMaxFileName = 128;        // storage file names are shorter than this
inline constexpr uint32_t kOpenSlots = 5120;         // open-database table (plus one spare slot)
inline constexpr uint32_t kHandleSlots = 7168;       // handle table
inline constexpr uint32_t kSlackCheck = 128;         // bytes behind the used size that must be zero
inline constexpr uint32_t kMaxProgramDir = 128;      // longest program directory storage accepts
inline constexpr uint32_t kLockWaitMs = 3000;        // how long a start waits for another process's storage
inline constexpr uint32_t kLockPollMs = 50;

inline constexpr char kCatalogName[] = "catalog.plm";
inline constexpr char kBackupName[] = "catalog.bck";
inline constexpr char kLockName[] = "catalog.lck";      // held by the process that has storage open

inline constexpr uint8_t kAttrDeleted = 0x80;
inline constexpr uint8_t kAttrDirty = 0x40;
inline constexpr uint8_t kAttrBusy = 0x20;
inline constexpr uint16_t kCommitMarker = 0xFFFF;

// Front of every storage file; docs/formats/database.md.
struct DatabaseHeader {
    uint8_t format;       // 2 for made databases, 0 for the catalog and files made by opening
    uint8_t kind;         // 'V' offset-indexed, 'B' fixed-stride index entries, 'X' other, 0 catalog
    uint16_t zero;        // always 0
    uint32_t appInfoSize; // bytes of app info block after the header
    uint32_t count;       // number of records
    uint32_t capacity;    // bytes of file and mapping
    uint32_t used;        // offset past the last byte in use; 1 = fresh file
};
static_assert(sizeof(DatabaseHeader) == kHeaderSize);
static_assert(offsetof(DatabaseHeader, used) == 16);

// The system's local-time record.
struct SystemTime {
    uint16_t year, month, dayOfWeek, day, hour, minute, second, milliseconds;
};
static_assert(sizeof(SystemTime) == 16);

// One database in catalog.plm; docs/formats/catalog.md.
struct CatalogEntry {
    char name[kNameSize]; // NUL-terminated; first byte 0 = free entry
    uint16_t attributes;
    uint16_t version;
    SystemTime created;
    SystemTime modified;
    uint32_t backupDate; // stored, never interpreted
    uint32_t modNumber;  // stored, never interpreted
    uint32_t type;       // four characters as a little-endian word
    uint32_t creator;    // same form
    uint32_t reserved;   // not written at creation
};
static_assert(sizeof(CatalogEntry) == kEntrySize);
static_assert(offsetof(CatalogEntry, created) == 36 && offsetof(CatalogEntry, modified) == 52);
static_assert(offsetof(CatalogEntry, type) == 76 && offsetof(CatalogEntry, reserved) == 84);

// In front of each record's data; docs/formats/database.md.
struct RecordHeader {
    uint16_t size;      // bytes of data in use
    uint16_t capacity;  // bytes reserved; the next header follows after them
    uint8_t attributes; // kAttrDeleted | kAttrDirty | kAttrBusy
    uint8_t zero;
    uint16_t marker;    // kCommitMarker once committed, 0 before
};
static_assert(sizeof(RecordHeader) == kRecordHeaderSize);

template <class T> T load(const uint8_t *at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T> void store(uint8_t *at, const T &value) { std::memcpy(at, &value, sizeof value); }

// The mapping size for a capacity: the remainder of a division by kMapStep is added, not
// rounded up, so 16000 maps 16640 bytes. Files made that way keep opening the same. The
// remainder is left off where it would take the file to kMaxFileSize, which no open
// accepts.
inline uint32_t mappingSize(uint32_t capacity) {
    uint32_t rest = capacity % kMapStep;
    return rest && uint64_t(capacity) + rest < kMaxFileSize ? capacity + rest : capacity;
}

// The header kind byte for a database type code.
inline uint8_t kindForType(uint32_t type) {
    if (type == 0x44415441u || type == 0x4D454D4Fu) // 'DATA', 'MEMO'
        return 'V';
    if (type == 0x494E4458u) // 'INDX'
        return 'B';
    return 'X';
}

} // namespace zq::storage
