// Fixed-stride index databases: the in-place sort (OrdenarIndice) and DmFindSortPosition.
#include "storage/database.h"

#include <algorithm>
#include <vector>

using namespace zq::storage;

namespace {

// Byte address of entry i's header, or null when it does not lie within the data.
const uint8_t *entryAt(DmOpenDB *db, int64_t i, uint32_t stride) {
    DatabaseHeader h = headerOf(db);
    uint64_t offset = recordsStart(h) + uint64_t(i) * stride;
    if (i < 0 || offset + stride > h.used || offset + stride > db->main->mapSize())
        return nullptr;
    return db->main->base() + offset;
}

} // namespace

uint32_t DmFindSortPosition(DmOpenRef db, void *key, void *extra, DmComparF compar, int16_t flag) noexcept {
    if (!db || !db->main || !compar)
        return kAppend;
    DatabaseHeader h = headerOf(db);
    uint64_t start = recordsStart(h);
    if (start + kRecordHeaderSize > h.used)
        return kAppend;
    uint32_t stride = load<RecordHeader>(db->main->base() + start).size + kRecordHeaderSize;
    int64_t count = h.count, low = 0, high = count - 1, probe = 0;
    uint32_t found = 0;
    const uint8_t *at = entryAt(db, 0, stride);
    while (at && low <= high) {
        int16_t result = compar(key, const_cast<uint8_t *>(at) + kRecordHeaderSize, flag, extra, nullptr, nullptr);
        if (result != 0) {
            if (found)
                return found;
            if (result > 0)
                low = probe + 1;
            else
                high = probe - 1;
            probe = (low + high) / 2;
        } else {
            // After a hit the search walks forward to the last equal record.
            found = uint32_t(probe + 1);
            probe = probe + 1;
        }
        if (probe >= count)
            break;
        at = entryAt(db, probe, stride);
    }
    return found ? found : uint32_t(low);
}

int OrdenarIndice(DmOpenRef db) noexcept {
    if (!db || !db->main)
        return 0;
    FileView &v = *db->main;
    DatabaseHeader h = headerOf(db);
    uint32_t start = recordsStart(h);
    if (uint64_t(start) + kRecordHeaderSize > h.used)
        return 0;
    uint32_t size = load<RecordHeader>(v.base() + start).size;
    uint32_t stride = size + kRecordHeaderSize;
    uint64_t count = h.count ? h.count : (h.used - start) / stride;
    // Never sort past the data, whatever the header claims.
    count = std::min<uint64_t>(count, (std::min(h.used, v.mapSize()) - start) / stride);
    flushView(v);
    if (db->index)
        flushView(*db->index);
    std::vector<uint32_t> order(count);
    for (uint32_t i = 0; i < count; ++i)
        order[i] = start + i * stride;
    uint32_t keyBytes = size > 4 ? size - 4 : 0;
    const uint8_t *base = v.base();
    std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
        return std::memcmp(base + a + kRecordHeaderSize + 4, base + b + kRecordHeaderSize + 4, keyBytes) < 0;
    });
    std::vector<uint8_t> sorted(count * stride);
    for (uint32_t i = 0; i < count; ++i)
        std::memcpy(sorted.data() + uint64_t(i) * stride, base + order[i], stride);
    if (count)
        std::memcpy(v.base() + start, sorted.data(), sorted.size());
    flushView(v);
    return 0;
}
