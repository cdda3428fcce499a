// Fuzz target: "catalog.plm" and "catalog.bck" as storage start finds them, beside one
// database file; every entry is then looked up, described and opened, a database made
// and removed, and storage closed (which writes the backup).
//
// Input: the catalog, the backup and the file "PEOPLE" (harness.h's parts); an empty part
// is a missing file.
#include "harness.h"
#include "storage/catalog.h"
#include "storage/layout.h"
#include "storage/state.h"
#include "storage_walk.h"

#include <cstring>

using namespace zq::fuzz;

namespace {

void putIfAny(const char *name, Bytes bytes) {
    if (!bytes.empty())
        writeStorageFile(name, bytes);
}

// Every name the catalog lists, read as storage reads entries.
std::vector<std::string> listedNames() {
    using namespace zq::storage;
    std::vector<std::string> names;
    FileView &c = *state().catalog;
    for (uint32_t at = kHeaderSize; at < c.used() && at + kEntrySize <= c.mapSize(); at += kEntrySize) {
        CatalogEntry e = readEntry(at);
        if (e.name[0])
            names.emplace_back(e.name, strnlen(e.name, kNameSize));
    }
    return names;
}

void lookAtDatabase(const std::string &name) {
    LocalID id = DmFindDatabase(0, name.c_str());
    if (!id)
        return;
    char listed[32];
    uint32_t type = 0, creator = 0;
    DmDatabaseInfo(0, id, listed, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &type,
                   &creator);
    DmOpenRef db = DmOpenDatabase(0, id);
    if (!db)
        return;
    readAllRecords(db, name.c_str());
    DmCloseDatabase(db);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<Bytes> parts = splitParts(Bytes(data, size), 3);
    runInput([&] {
        putIfAny("catalog.plm", parts[0]);
        putIfAny("catalog.bck", parts[1]);
        putIfAny("PEOPLE", parts[2]);
        if (StorageStart() != dmErrNone)
            return;
        for (const std::string &name : listedNames())
            lookAtDatabase(name);
        lookAtDatabase("people");
        if (DmCreateDatabase(0, "NEWONE", kCreatorTables, kTypeData, 0) == dmErrNone)
            DmDeleteDatabase(0, DmFindDatabase(0, "NEWONE"));
        StorageClose();
    });
    return 0;
}
