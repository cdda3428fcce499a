// Fuzz target: a database file with its offset index and move journal, opened, read
// record by record, changed, closed and opened again.
//
// Input parts (harness.h): control bytes (the first picks the database type: offset-
// indexed, fixed-stride or other; the second the changes of changeRecords), the database
// file, its offset index "_OS" and its journal "_Jn"; an empty part is a missing file.
#include "harness.h"
#include "storage_walk.h"

using namespace zq::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<Bytes> parts = splitParts(Bytes(data, size), 4);
    uint8_t pick = parts[0].size() > 0 ? parts[0][0] : 0;
    uint8_t steps = parts[0].size() > 1 ? parts[0][1] : 0;
    static const uint32_t types[] = {kTypeData, kTypeIndex, kTypeOther};
    runInput([&] {
        writeStorageFile("catalog.plm", catalogBytes({{"T", types[pick % 3], kCreatorTables}}));
        writeStorageFile("T", parts[1]);
        if (!parts[2].empty())
            writeStorageFile("T_OS", parts[2]);
        if (!parts[3].empty())
            writeStorageFile("T_Jn", parts[3]);
        DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, "T"));
        if (!db)
            return;
        readAllRecords(db, "T");
        changeRecords(db, steps);
        readAllRecords(db, "T");
        DmCloseDatabase(db);
        db = DmOpenDatabase(0, DmFindDatabase(0, "T"));
        if (db)
            readAllRecords(db, "T");
        StorageClose();
    });
    return 0;
}
