// Fuzz target: the install database "ZELQAINST.tLog" walked as the installer walks it,
// each record read by the installer's record reader, and listed as the staging calls
// list it. No file is moved: the paths come from the input.
//
// Input parts (harness.h): the database and its offset index; an empty index part is a
// missing file.
#include "harness.h"
#include "installer/install_record.h"
#include "storage_walk.h"
#include "zelqa.h"

#include <span>

using namespace zq::fuzz;

namespace {

constexpr char kInstallDatabase[] = "ZELQAINST.tLog";

void walkAsInstaller() {
    LocalID id = DmFindDatabase(0, kInstallDatabase);
    DmOpenRef db = id ? DmOpenDatabase(0, id) : nullptr;
    if (!db)
        return;
    for (uint32_t index = 0, count = DmNumRecords(db); index < count; ++index) {
        MemHandle handle = DmQueryRecord(db, index);
        auto *bytes = static_cast<const std::byte *>(MemHandleLock(handle));
        if (!bytes)
            break; // the installer ends its run at a record it cannot read
        zq::installer::InstallRecord record = zq::installer::readInstallRecord(std::span(bytes, MemHandleSize(handle)));
        MemHandleUnlock(handle);
        zq::installer::backupPath(record.target);
    }
    DmCloseDatabase(db);
}

void listAsStaging() {
    char path[300], version[300];
    for (int i = 0, n = zq_staged_count(); i < n; ++i)
        zq_staged_entry(i, path, sizeof path, version, sizeof version);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<Bytes> parts = splitParts(Bytes(data, size), 2);
    runInput([&] {
        writeStorageFile("catalog.plm", catalogBytes({{kInstallDatabase, kTypeData, kCreatorLog}}));
        writeStorageFile(kInstallDatabase, parts[0]);
        if (!parts[1].empty())
            writeStorageFile(std::string(kInstallDatabase) + "_OS", parts[1]);
        walkAsInstaller();
        listAsStaging();
        if (LocalID id = DmFindDatabase(0, kInstallDatabase))
            DmDeleteDatabase(0, id); // as the installer does once it is done
        StorageClose();
    });
    return 0;
}
