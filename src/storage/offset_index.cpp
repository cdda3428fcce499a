// The offset index "%s_OS": lookup, insertion and removal of entries, check and rebuild.
//
// Entry i sits at 20 + 4i. The index is derived data: whenever it disagrees with the
// main file it is rebuilt by walking the records, which lie back to back.
#include "storage/offset_index.h"

#include "runtime/raise.h"
#include "storage/records.h"

#include <algorithm>
#include <vector>

namespace zq::storage {
namespace {

FileView &indexView(DmOpenDB *db) { return *db->index; }

uint32_t entryCount(const FileView &v) { return v.used() <= kHeaderSize ? 0 : (v.used() - kHeaderSize) / 4; }

uint32_t *entries(FileView &v) { return reinterpret_cast<uint32_t *>(v.base() + kHeaderSize); }

// An index made by opening a missing file says used size 1; give it its header first.
void startIndex(FileView &v) {
    if (v.used() < kHeaderSize)
        growView(v, kHeaderSize - (v.used() == 1 ? 0 : v.used()));
}

void setIndexCount(DmOpenDB *db) {
    FileView &v = indexView(db);
    DatabaseHeader h = v.header();
    h.count = headerOf(db).count;
    writeHeader(v, h);
}

// True when every entry points at a plausible record and each follows the one before.
// Only reads: what an entry points at is not known to be a record, so nothing there is
// repaired; a disagreement is settled by the walk of the main file.
bool indexAgrees(DmOpenDB *db, uint32_t count) {
    FileView &v = indexView(db);
    const uint8_t *base = db->main->base();
    uint64_t expected = recordsStart(headerOf(db));
    uint32_t used = db->main->used();
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t offset = load<uint32_t>(v.base() + kHeaderSize + 4 * i);
        if (offset != expected || !plausibleRecord(base, offset, used))
            return false;
        expected = offset + kRecordHeaderSize + load<RecordHeader>(base + offset).capacity;
    }
    return expected == used;
}

bool slackIsDirty(const FileView &v) {
    uint32_t used = v.used();
    if (v.mapSize() <= used || v.mapSize() - used <= kSlackCheck)
        return false;
    const uint8_t *p = v.base() + used;
    return std::any_of(p, p + kSlackCheck, [](uint8_t b) { return b != 0; });
}

} // namespace

uint32_t indexEntry(DmOpenDB *db, uint32_t i) {
    if (!db->index || uint64_t(db->index->used()) < 4ull * i + 24)
        runtime::raiseError(ZQ_ERR_ARGUMENT);
    return entries(*db->index)[i];
}

void insertIndexEntry(DmOpenDB *db, uint32_t i, uint32_t offset) {
    FileView &v = indexView(db);
    startIndex(v);
    uint32_t n = entryCount(v);
    i = std::min(i, n);
    growView(v, 4);
    uint32_t *e = entries(v);
    std::memmove(e + i + 1, e + i, 4ull * (n - i));
    e[i] = offset;
    setIndexCount(db);
    flushRange(v, kHeaderSize + 4 * i, 4 * (n - i + 1));
}

void removeIndexEntry(DmOpenDB *db, uint32_t i) {
    FileView &v = indexView(db);
    uint32_t n = entryCount(v);
    if (i >= n)
        return;
    uint32_t *e = entries(v);
    std::memmove(e + i, e + i + 1, 4ull * (n - i - 1));
    e[n - 1] = 0;
    DatabaseHeader h = v.header();
    h.used -= 4;
    h.count = headerOf(db).count;
    writeHeader(v, h);
    flushRange(v, kHeaderSize + 4 * i, 4 * (n - i));
}

void shiftIndexEntries(DmOpenDB *db, uint32_t from, int64_t delta) {
    FileView &v = indexView(db);
    uint32_t n = entryCount(v);
    uint32_t *e = entries(v);
    uint32_t first = n;
    for (uint32_t i = 0; i < n; ++i) {
        if (e[i] < from)
            continue;
        e[i] = uint32_t(e[i] + delta);
        first = std::min(first, i);
    }
    if (first < n)
        flushRange(v, kHeaderSize + 4 * first, 4 * (n - first));
}

void rebuildIndex(DmOpenDB *db) {
    FileView &main = *db->main;
    DatabaseHeader h = main.header();
    const uint8_t *base = main.base();
    uint64_t limit = main.walkLimit();
    uint64_t at = recordsStart(h);
    // A data area that begins with an uncommitted-looking header may start 8 bytes on.
    if (!plausibleRecord(base, at, limit, true) && plausibleRecord(base, at + kRecordHeaderSize, limit, true))
        at += kRecordHeaderSize;
    std::vector<uint32_t> found;
    for (; plausibleRecord(base, at, limit, true); at += kRecordHeaderSize + load<RecordHeader>(base + at).capacity)
        found.push_back(uint32_t(at));
    FileView &v = indexView(db);
    startIndex(v);
    uint32_t oldUsed = v.used();
    DatabaseHeader ih = v.header();
    ih.used = kHeaderSize;
    writeHeader(v, ih);
    growView(v, 4ull * found.size());
    if (!found.empty())
        std::memcpy(entries(v), found.data(), 4 * found.size());
    if (oldUsed > v.used())
        std::memset(v.base() + v.used(), 0, oldUsed - v.used());
    ih = v.header();
    ih.count = uint32_t(found.size());
    writeHeader(v, ih);
    flushView(v);

    h = main.header();
    h.count = uint32_t(found.size());
    h.used = found.empty() ? recordsStart(h) : uint32_t(at);
    uint32_t clear = std::min<uint32_t>(kSlackCheck, main.mapSize() - h.used);
    std::memset(main.base() + h.used, 0, clear);
    writeHeader(main, h);
    flushView(main);
}

void checkIndexAtOpen(DmOpenDB *db) {
    FileView &main = *db->main;
    FileView &v = indexView(db);
    DatabaseHeader h = main.header();
    if (h.count == 0 && entryCount(v) == 0) {
        // Bytes behind an empty database's data are an append that never committed,
        // or one that committed without its count: the walk tells which. An index made
        // just now stays as every new view is until its first entry.
        if (h.used > recordsStart(h))
            rebuildIndex(db);
        return;
    }
    // Every record takes at least its header: a count the data cannot hold is damage.
    bool countFits = uint64_t(h.count) * kRecordHeaderSize <= main.used() - uint64_t(recordsStart(h));
    bool rebuild = !countFits || slackIsDirty(main) || v.used() != kHeaderSize + 4ull * h.count;
    if (!rebuild && h.count) {
        uint32_t last = entries(v)[h.count - 1];
        if (last > h.used) {
            std::string line = v.name + " offset > hFile->szmap";
            trace(line.c_str());
        }
        rebuild = !indexAgrees(db, h.count);
    }
    if (rebuild)
        rebuildIndex(db);
}

void resetIndex(DmOpenDB *db) {
    FileView &v = indexView(db);
    startIndex(v);
    std::memset(v.base() + kHeaderSize, 0, v.used() - kHeaderSize);
    DatabaseHeader h = v.header();
    h.used = kHeaderSize;
    h.count = 0;
    writeHeader(v, h);
    flushView(v);
}

} // namespace zq::storage
