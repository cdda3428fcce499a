// Fuzz target: an index database (fixed-stride entries), read entry by entry, searched
// for a key, sorted in place, searched again and changed.
//
// Input parts (harness.h): control bytes (the first the changes of changeRecords, the
// rest the key searched for) and the database file.
#include "harness.h"
#include "storage_walk.h"

#include <algorithm>
#include <cstring>

using namespace zq::fuzz;

namespace {

Bytes searchedKey;

// Compares the key with an entry's key bytes, which follow its 4-byte record number, as
// the index code does; extra holds the entry size, which every entry shares.
int16_t compareKey(void *key, void *rec, int16_t, void *extra, void *, void *) {
    auto entrySize = *static_cast<uint32_t *>(extra);
    size_t n = std::min<size_t>(searchedKey.size(), entrySize > 4 ? entrySize - 4 : 0);
    int c = std::memcmp(key, static_cast<uint8_t *>(rec) + 4, n);
    return int16_t(c < 0 ? -1 : c > 0);
}

void search(DmOpenRef db) {
    MemHandle first = DmQueryRecord(db, 0);
    uint32_t entrySize = first ? MemHandleSize(first) : 0;
    std::vector<uint8_t> key(searchedKey.begin(), searchedKey.end());
    key.push_back(0); // never an empty buffer
    DmFindSortPosition(db, key.data(), &entrySize, compareKey, 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<Bytes> parts = splitParts(Bytes(data, size), 2);
    uint8_t steps = parts[0].empty() ? 0 : parts[0][0];
    searchedKey = parts[0].empty() ? Bytes() : parts[0].subspan(1);
    runInput([&] {
        writeStorageFile("catalog.plm", catalogBytes({{"IDX", kTypeIndex, kCreatorTables}}));
        writeStorageFile("IDX", parts[1]);
        DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, "IDX"));
        if (!db)
            return;
        readAllRecords(db, "IDX");
        search(db);
        OrdenarIndice(db);
        search(db);
        changeRecords(db, steps);
        readAllRecords(db, "IDX");
        StorageClose();
    });
    return 0;
}
