// Appends records to "crash.db" until killed, logging each record whose commit returned.
//
// Usage: storage_crash <progress file>. Record k holds crashPayload(k); after its release
// returns, k is appended to the progress file as 4 bytes, so the file lists committed records.
#include "crash_payload.h"
#include "zelqa/storage.h"

#include <cstdio>
#include <string>

int main(int argc, char **argv) {
    if (argc < 2)
        return 2;
    std::FILE *progress = std::fopen(argv[1], "ab");
    if (!progress)
        return 3;
    if (!DmFindDatabase(0, "crash.db"))
        DmCreateDatabase(0, "crash.db", 0x5A454C51u, 0x44415441u, 0);
    DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, "crash.db"));
    if (!db)
        return 4;
    for (uint32_t k = DmNumRecords(db); k < 10000000; ++k) {
        std::string bytes = crashPayload(k);
        uint32_t index = dmAppendPosition;
        MemHandle h = DmNewRecord(db, &index, uint32_t(bytes.size()));
        DmWrite(MemHandleLock(h), 0, bytes.data(), uint32_t(bytes.size()));
        MemHandleUnlock(h);
        if (DmReleaseRecord(db, index, 1) != dmErrNone || index != k)
            return 5;
        std::fwrite(&k, 4, 1, progress);
        std::fflush(progress);
    }
    return 0;
}
