// Catalogs made to order and databases read and changed the way programs do.
#include "storage_walk.h"

#include "storage/layout.h"

#include <cstring>

namespace zq::fuzz {

std::vector<uint8_t> catalogBytes(const std::vector<CatalogLine> &lines) {
    using namespace zq::storage;
    std::vector<uint8_t> bytes(kHeaderSize + kEntrySize * lines.size());
    DatabaseHeader h{};
    h.capacity = uint32_t(bytes.size());
    h.used = uint32_t(bytes.size());
    store(bytes.data(), h);
    for (size_t i = 0; i < lines.size(); ++i) {
        CatalogEntry e{};
        std::snprintf(e.name, sizeof e.name, "%s", lines[i].name.c_str());
        e.created = e.modified = SystemTime{2024, 5, 3, 17, 10, 30, 0, 0};
        e.type = lines[i].type;
        e.creator = lines[i].creator;
        store(bytes.data() + kHeaderSize + kEntrySize * i, e);
    }
    return bytes;
}

uint32_t readAllRecords(DmOpenRef db, const char *name) {
    uint32_t found = 0;
    volatile uint8_t sum = 0;
    for (uint32_t i = 0, n = DmNumRecords(db); i < n; ++i) {
        MemHandle h = DmQueryRecord(db, i);
        auto *p = static_cast<const uint8_t *>(MemHandleLock(h));
        if (p) {
            ++found;
            for (uint32_t b = 0, size = MemHandleSize(h); b < size; ++b)
                sum = uint8_t(sum + p[b]);
        }
        MemHandleUnlock(h);
    }
    uint8_t buffer[64];
    for (uint32_t i = 0; i < 3; ++i)
        ReadRecordBuffer(db, i, buffer, sizeof buffer);
    MemHandle appInfo = nullptr;
    LocalID id = DmFindDatabase(0, name);
    DmDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &appInfo, nullptr,
                   nullptr, nullptr);
    if (auto *p = static_cast<const uint8_t *>(MemHandleLock(appInfo))) {
        for (uint32_t b = 0, size = MemHandleSize(appInfo); b < size; ++b)
            sum = uint8_t(sum + p[b]);
        MemHandleUnlock(appInfo);
    }
    return found;
}

void changeRecords(DmOpenRef db, uint8_t steps) {
    static const char text[] = "fuzzed record text!";
    if (steps & 1) {
        uint32_t index = dmAppendPosition;
        MemHandle h = DmNewRecord(db, &index, sizeof text);
        if (void *p = MemHandleLock(h))
            DmWrite(p, 0, text, sizeof text);
        MemHandleUnlock(h);
        DmReleaseRecord(db, index, 1);
    }
    if ((steps & 2) && DmNumRecords(db) > 0) {
        MemHandle h = DmGetRecord(db, 0);
        if (h) {
            uint32_t size = MemHandleSize(h);
            DmResizeRecord(h, size + 24);
            if (void *p = MemHandleLock(h))
                DmWrite(p, size, text, sizeof text);
            MemHandleUnlock(h);
            DmReleaseRecord(db, 0, 1);
        }
    }
    if ((steps & 4) && DmNumRecords(db) > 0)
        DmRemoveRecord(db, 0);
    if (steps & 8) {
        uint32_t index = 0;
        MemHandle h = DmNewRecord(db, &index, 6);
        if (void *p = MemHandleLock(h))
            DmWrite(p, 0, "first", 6);
        MemHandleUnlock(h);
        DmReleaseRecord(db, index, 1);
    }
    if (steps & 16)
        DmCompactDatabase(db);
    if (steps & 32) {
        MemHandle h = DmNewHandle(db, 12);
        if (void *p = MemHandleLock(h))
            DmSet(p, 0, 12, 0x41);
        MemHandleUnlock(h);
    }
}

} // namespace zq::fuzz
