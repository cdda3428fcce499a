// Headers, record walks and offset indexes, judged from the files' bytes.
#include "check_files.h"

#include "storage/records.h"
#include "text.h"

#include <algorithm>
#include <filesystem>

namespace zq::tool {
namespace {

using storage::kHeaderSize;

// The used size a file's header gives, reading 1 (made and not written yet) as storage does:
// nothing past the header.
uint32_t usedSize(const storage::DatabaseHeader &h) { return h.used == 1 ? kHeaderSize : h.used; }

void add(std::vector<Problem> &problems, const std::string &db, const std::string &table, const std::string &place,
         const std::string &what, Mend mend, bool note = false) {
    Problem p;
    p.database = db;
    p.table = table;
    p.place = place;
    p.what = what;
    p.mend = mend;
    p.note = note;
    problems.push_back(p);
}

std::string n(uint64_t v) { return std::to_string(v); }

// Records of an offset-indexed database, walked as storage walks them.
void walkVariable(DatabaseScan &scan, uint32_t start, uint32_t used) {
    uint64_t at = start;
    while (storage::plausibleRecord(scan.file.data(), at, used, true)) {
        scan.records.push_back(uint32_t(at));
        auto rh = storage::load<storage::RecordHeader>(scan.file.data() + at);
        at += storage::kRecordHeaderSize + rh.capacity;
    }
}

// Entries of an index database: records of one stride, as many as the header counts.
void walkFixed(DatabaseScan &scan, uint32_t start, uint32_t used) {
    if (scan.header.count == 0 || uint64_t(start) + storage::kRecordHeaderSize > used)
        return;
    auto first = storage::load<storage::RecordHeader>(scan.file.data() + start);
    uint64_t stride = uint64_t(first.size) + storage::kRecordHeaderSize;
    for (uint64_t i = 0; i < scan.header.count && start + (i + 1) * stride <= used; ++i)
        scan.records.push_back(uint32_t(start + i * stride));
}

void checkOffsetIndex(const std::string &dir, const CatalogItem &item, const std::string &table,
                      const DatabaseScan &scan, std::vector<Problem> &problems) {
    std::string name = item.name + "_OS";
    auto index = readWholeFile(pathIn(dir, name));
    if (!index) {
        if (!scan.records.empty())
            add(problems, name, table, "file", "the offset index is missing", Mend::Open);
        return;
    }
    auto h = headerOf(*index);
    if (!h) {
        add(problems, name, table, "header", "the offset index is shorter than its header", Mend::Open);
        return;
    }
    uint64_t want = kHeaderSize + 4ull * scan.records.size();
    if (index->size() < want) {
        add(problems, name, table, "size",
            "cut short: holds " + n((index->size() - kHeaderSize) / 4) + " of " + n(scan.records.size()) + " entries",
            Mend::Open);
        return;
    }
    if (h->count != scan.records.size() || usedSize(*h) != want)
        add(problems, name, table, "header",
            "counts " + n(h->count) + " entries (used size " + n(h->used) + ") for " + n(scan.records.size()) +
                " records",
            Mend::Open);
    for (size_t i = 0; i < scan.records.size(); ++i) {
        uint32_t entry = storage::load<uint32_t>(index->data() + kHeaderSize + 4 * i);
        if (entry != scan.records[i]) {
            add(problems, name, table, "entry " + n(i + 1),
                "points at offset " + n(entry) + "; record " + n(i + 1) + " is at " + n(scan.records[i]), Mend::Open);
            return; // the entries behind it are off the same way
        }
    }
}

} // namespace

const uint8_t *recordData(const DatabaseScan &scan, size_t i, uint32_t &size) {
    auto rh = storage::load<storage::RecordHeader>(scan.file.data() + scan.records[i]);
    size = std::min(rh.size, rh.capacity);
    return scan.file.data() + scan.records[i] + storage::kRecordHeaderSize;
}

std::optional<DatabaseScan> scanDatabase(const std::string &dir, const CatalogItem &item, const std::string &table,
                                         std::vector<Problem> &problems, Mend missing) {
    const std::string &db = item.name;
    const std::string work = db + "_Temp";
    bool ownTable = !table.empty() && sameCaseless(table, db);
    auto bytes = readWholeFile(pathIn(dir, db));
    if (bytes && std::filesystem::exists(pathIn(dir, work)))
        add(problems, work, ownTable ? table : "", "file",
            "a compaction work file left behind by an interrupted compaction",
            ownTable ? Mend::Compact : Mend::DropWork);
    if (!bytes && (bytes = readWholeFile(pathIn(dir, work))))
        add(problems, db, table, "file",
            "missing; " + work + ", the complete copy an interrupted compaction made, takes its place", Mend::Open);
    if (!bytes) {
        add(problems, db, missing == Mend::DropEntry ? "" : table, "file",
            "the catalog lists it but its file is missing", missing);
        return std::nullopt;
    }
    DatabaseScan scan;
    scan.file = std::move(*bytes);
    auto h = headerOf(scan.file);
    if (!h) {
        add(problems, db, table, "header", "the file is shorter than its 20-byte header", Mend::None);
        return std::nullopt;
    }
    scan.header = *h;
    uint8_t kind = storage::kindForType(item.entry.type);
    bool fileKind = h->kind == 'V' || h->kind == 'B';
    if (kind == 'X' && fileKind) {
        Problem p{db, "catalog entry", "type " + fourChars(item.entry.type) + " is no type of a '" + char(h->kind) +
                                             "' database", Mend::EntryType, "", 0, h->kind, item.offset};
        problems.push_back(p);
        kind = h->kind;
    } else if (h->kind != kind)
        add(problems, db, table, "header",
            std::string("kind byte '") + char(h->kind ? h->kind : '0') + "', its type " +
                fourChars(item.entry.type) + " wants '" + char(kind) + "'",
            Mend::Open);
    if (h->capacity != scan.file.size())
        add(problems, db, table, "header",
            "capacity " + n(h->capacity) + ", the file has " + n(scan.file.size()) + " bytes", Mend::Open);
    uint32_t used = usedSize(*h);
    if (used < kHeaderSize || used > scan.file.size()) {
        add(problems, db, table, "header",
            "used size " + n(h->used) + " lies outside the file's " + n(scan.file.size()) + " bytes", Mend::Open);
        used = uint32_t(std::clamp<uint64_t>(used, kHeaderSize, scan.file.size()));
    }
    uint64_t start = uint64_t(kHeaderSize) + h->appInfoSize;
    if (start > used) {
        add(problems, db, table, "header", "the app info block runs past the used size", Mend::None);
        return scan;
    }
    if (kind == 'V')
        walkVariable(scan, uint32_t(start), used);
    else if (kind == 'B')
        walkFixed(scan, uint32_t(start), used);
    if (kind != 'X' && scan.records.size() != h->count)
        add(problems, db, table, "header",
            "counts " + n(h->count) + " records, the file holds " + n(scan.records.size()), Mend::Open);
    uint64_t end = start;
    if (!scan.records.empty()) {
        auto last = storage::load<storage::RecordHeader>(scan.file.data() + scan.records.back());
        end = scan.records.back() + storage::kRecordHeaderSize + (kind == 'V' ? last.capacity : last.size);
    }
    if (kind != 'X' && end != used)
        add(problems, db, table, "records",
            n(used - std::min<uint64_t>(end, used)) + " bytes between the last record and the used size are not a record",
            Mend::Open);
    uint64_t slackEnd = std::min<uint64_t>(uint64_t(used) + storage::kSlackCheck, scan.file.size());
    if (std::any_of(scan.file.begin() + used, scan.file.begin() + slackEnd, [](uint8_t b) { return b != 0; }))
        add(problems, db, table, "slack", "bytes behind the used size are not zero", Mend::Open);
    if (kind == 'V')
        checkOffsetIndex(dir, item, table, scan, problems);
    uint64_t unused = scan.file.size() - std::min<uint64_t>(used, scan.file.size());
    if (ownTable && unused > kCompactionSlack)
        add(problems, db, table, "size",
            n(unused) + " of the file's " + n(scan.file.size()) + " bytes are unused (a compaction drops them)",
            Mend::Compact, true);
    return scan;
}

} // namespace zq::tool
