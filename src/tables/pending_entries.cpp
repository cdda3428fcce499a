// Held index entries and their one-pass merge into the index file.
#include "tables/pending_entries.h"

#include "storage/database.h"
#include "storage/file_view.h"
#include "tables/durability.h"
#include "tables/index_files.h"
#include "tables/index_keys.h"

#include <algorithm>
#include <cstring>
#include <map>

namespace zq::tables {
namespace {

// A run this large is merged at once rather than grown further.
constexpr size_t kRunBytesLimit = size_t(64) << 20;

std::map<DmOpenRef, EntryRun> &runs() {
    static auto *held = new std::map<DmOpenRef, EntryRun>();
    return *held;
}

// The order of the run's entries by key; entries of equal keys keep the order they came in.
std::vector<uint32_t> sortedOrder(const EntryRun &run) {
    std::vector<uint32_t> order(run.count());
    for (uint32_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](uint32_t l, uint32_t r) {
        int c = compareKeys(run.at(l) + 4, run.at(r) + 4, run.keyLength);
        return c != 0 ? c < 0 : l < r;
    });
    return order;
}

// Merges in place, from the back: the file grows by the run's entries first, each file
// entry then moves up past the held entries that sort before it, and the count is
// written last. False, with the file untouched, when its entries are not laid out as
// this expects (another entry size, bytes behind the last entry): the caller then
// inserts one by one.
bool mergeInPlace(DmOpenRef index, const EntryRun &run, const std::vector<uint32_t> &order) {
    storage::FileView &view = *index->main;
    storage::DatabaseHeader h = storage::headerOf(index);
    uint32_t stride = run.entrySize + storage::kRecordHeaderSize;
    uint64_t start = storage::recordsStart(h);
    uint64_t end = start + uint64_t(h.count) * stride;
    if (h.kind == 'V' || run.entrySize > 0xFFFF || end != h.used)
        return false;
    if (h.count > 0 && storage::load<storage::RecordHeader>(view.base() + start).size != run.entrySize)
        return false;
    uint32_t held = uint32_t(order.size());
    storage::growView(view, int64_t(held) * stride);
    uint8_t *first = view.base() + start;
    int64_t file = int64_t(h.count) - 1, next = int64_t(held) - 1, to = int64_t(h.count) + held - 1;
    storage::RecordHeader header{uint16_t(run.entrySize), uint16_t(run.entrySize), 0, 0, storage::kCommitMarker};
    for (; next >= 0; --to) {
        const uint8_t *entry = run.at(order[size_t(next)]);
        uint8_t *slot = first + uint64_t(to) * stride;
        if (file >= 0 && compareKeys(first + uint64_t(file) * stride + storage::kRecordHeaderSize + 4, entry + 4,
                                     run.keyLength) > 0) {
            std::memmove(slot, first + uint64_t(file) * stride, stride);
            --file;
        } else {
            storage::store(slot, header);
            std::memcpy(slot + storage::kRecordHeaderSize, entry, run.entrySize);
            --next;
        }
    }
    uint32_t changed = uint32_t(start + uint64_t(file + 1) * stride);
    storage::flushRange(view, changed, uint32_t(start + (uint64_t(h.count) + held) * stride - changed));
    h = storage::headerOf(index);
    h.count += held;
    storage::setHeaderOf(index, h);
    return true;
}

} // namespace

void mergeRun(DmOpenRef index, const EntryRun &run) {
    if (run.count() == 0 || !index || !index->main)
        return;
    std::vector<uint32_t> order = sortedOrder(run);
    if (!mergeInPlace(index, run, order)) {
        for (uint32_t i : order) {
            std::vector<uint8_t> entry(run.at(i), run.at(i) + run.entrySize);
            insertEntry(index, sortPosition(index, entry, run.keyLength), entry);
        }
    }
    flushDatabase(index);
}

void holdEntry(DmOpenRef index, const std::vector<uint8_t> &entry, uint32_t keyLength) {
    if (!index)
        return;
    EntryRun *run = &runs()[index];
    if (run->entrySize != entry.size() || run->keyLength != keyLength) {
        settleEntries(index); // a run keeps one entry shape
        run = &runs()[index];
        run->entrySize = uint32_t(entry.size());
        run->keyLength = keyLength;
    }
    run->bytes.insert(run->bytes.end(), entry.begin(), entry.end());
    if (run->bytes.size() >= kRunBytesLimit)
        settleEntries(index);
}

void settleEntries(DmOpenRef index) {
    auto it = runs().find(index);
    if (it == runs().end())
        return;
    EntryRun run = std::move(it->second);
    runs().erase(it);
    mergeRun(index, run);
}

void dropHeldEntries(DmOpenRef index) { runs().erase(index); }

void dropAllHeldEntries() { runs().clear(); }

} // namespace zq::tables
