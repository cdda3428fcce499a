// Encoding, parsing and storing the definition blocks of tables and indexes.
#include "tables/definition_block.h"

#include "runtime/raise.h"
#include "storage/database.h"
#include "storage/layout.h"

#include <bit>
#include <charconv>
#include <cstring>
#include <string>

namespace zq::tables {
namespace {

static_assert(std::endian::native == std::endian::little, "blocks are written little-endian");

// The largest length, decimals or recorded key length a block may give: what one record
// holds. Creation never stores more; a larger number would only size buffers for nothing.
bool withinRecord(long long n) { return n >= 0 && n <= storage::kMaxBlock; }

// The descriptor copy at the head of a table block; references are written as 0.
struct DescriptorHead {
    uint8_t zero[8];      // an 8-byte value, zero
    char name[32];        // table name, NUL-terminated
    uint32_t database;    // open-database reference: 0 in the file
    uint32_t card;        // always 0
    uint32_t type;        // 'DATA' as a little-endian word
    uint32_t mode;        // 3, read-write
    uint16_t fieldCount;  // deletion field included
    uint16_t indexCount;
    uint32_t fields;      // reference: 0 in the file
    uint32_t indexes;     // reference: 0 in the file
    uint32_t padding;     // 0
};
static_assert(sizeof(DescriptorHead) == kHeadSize);

void put(std::vector<uint8_t> &out, std::string_view text) {
    out.insert(out.end(), text.begin(), text.end());
    out.push_back(0);
}

void putNumber(std::vector<uint8_t> &out, long long n) { put(out, std::to_string(n)); }

// Reads NUL-terminated pieces; any piece without its terminator fails the reader.
class PieceReader {
public:
    explicit PieceReader(std::span<const uint8_t> bytes) : bytes_(bytes), at_(kHeadSize) {}
    bool ok() const { return ok_; }
    std::string text() {
        if (!ok_ || at_ > bytes_.size())
            return fail();
        const void *end = std::memchr(bytes_.data() + at_, 0, bytes_.size() - at_);
        if (!end)
            return fail();
        size_t n = static_cast<const uint8_t *>(end) - (bytes_.data() + at_);
        std::string piece(reinterpret_cast<const char *>(bytes_.data() + at_), n);
        at_ += n + 1;
        return piece;
    }
    long long number() {
        std::string piece = text();
        long long n = 0;
        auto [end, ec] = std::from_chars(piece.data(), piece.data() + piece.size(), n);
        if (!ok_ || piece.empty() || ec != std::errc() || end != piece.data() + piece.size())
            ok_ = false;
        return n;
    }

private:
    std::string fail() {
        ok_ = false;
        return std::string();
    }
    std::span<const uint8_t> bytes_;
    size_t at_;
    bool ok_ = true;
};

// Attaches bytes as the app info block of db (found by name), resized to their size.
// Returns 0 on success, else the step that failed: 32, 33, 34 or 35.
int storeBlock(const std::string &name, DmOpenRef db, const std::vector<uint8_t> &bytes) {
    LocalID id = DmFindDatabase(0, name.c_str());
    if (!id || !db)
        return 32;
    uint32_t type = 0;
    if (DmDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       &type, nullptr) != dmErrNone)
        return 33;
    uint32_t size = uint32_t(bytes.size());
    if (storage::headerOf(db).appInfoSize == 0) {
        MemHandle fresh = DmNewHandle(db, size);
        if (!fresh || DmSetDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &fresh,
                                        nullptr, nullptr, nullptr) != dmErrNone)
            return 34;
    }
    MemHandle h = nullptr;
    DmDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &h, nullptr, nullptr, nullptr);
    if (!h)
        return 34;
    DmResizeRecord(h, size);
    void *p = MemHandleLock(h);
    if (!p)
        return 35;
    DmWrite(p, 0, bytes.data(), size);
    MemPtrUnlock(p); // commits the block
    return 0;
}

} // namespace

std::vector<uint8_t> encodeTableBlock(const TableDef &def, std::optional<uint16_t> indexCount) {
    DescriptorHead head{};
    std::strncpy(head.name, def.name.c_str(), sizeof head.name - 1);
    head.type = kTypeData;
    head.mode = 3;
    head.fieldCount = uint16_t(def.fields.size());
    head.indexCount = indexCount ? *indexCount : uint16_t(def.indexes.size());
    std::vector<uint8_t> out(kHeadSize);
    std::memcpy(out.data(), &head, kHeadSize);
    put(out, def.name);
    putNumber(out, def.fields.size());
    putNumber(out, head.indexCount);
    for (const FieldDef &f : def.fields) {
        put(out, f.name);
        put(out, std::string(1, char('0' + f.type)));
        putNumber(out, f.length);
        putNumber(out, f.decimals);
    }
    for (const IndexDef &index : def.indexes)
        put(out, index.name);
    return out;
}

std::optional<TableDef> parseTableBlock(std::span<const uint8_t> block) {
    PieceReader in(block);
    TableDef def;
    def.name = in.text();
    long long fieldCount = in.number();
    long long indexCount = in.number();
    if (!in.ok() || fieldCount < 1 || fieldCount > 65535 || indexCount < 0 || indexCount > 65535)
        return std::nullopt;
    for (long long i = 0; i < fieldCount && in.ok(); ++i) {
        FieldDef f;
        f.name = in.text();
        std::string digit = in.text();
        long long length = in.number();
        long long decimals = in.number();
        if (digit.size() != 1 || digit[0] < '0' || digit[0] > '9' || !withinRecord(length) || !withinRecord(decimals))
            return std::nullopt;
        f.length = int32_t(length);
        f.decimals = int32_t(decimals);
        f.type = uint32_t(digit[0] - '0');
        f.hash = fieldHash(f.name);
        def.hasMemo = def.hasMemo || f.type == kMemo;
        def.fields.push_back(std::move(f));
    }
    if (indexCount == 65535)
        indexCount = 0; // what dropping an index from a table with none stores
    for (long long i = 0; i < indexCount && in.ok(); ++i) {
        IndexDef index;
        index.name = in.text();
        def.indexes.push_back(std::move(index));
    }
    if (!in.ok())
        return std::nullopt;
    layoutBuffer(def);
    return def;
}

std::vector<uint8_t> encodeIndexBlock(const IndexDef &index) {
    std::vector<uint8_t> out(kHeadSize, 0);
    put(out, index.name);
    putNumber(out, index.keyFields.size());
    putNumber(out, index.attribute);
    for (int32_t field : index.keyFields)
        putNumber(out, field - 1); // stored 0-based
    return out;
}

std::optional<IndexDef> parseIndexBlock(std::span<const uint8_t> block) {
    PieceReader in(block);
    IndexDef index;
    index.name = in.text();
    long long parts = in.number();
    long long keyLength = in.number();
    if (!in.ok() || parts < 0 || parts > 255 || !withinRecord(keyLength))
        return std::nullopt;
    index.attribute = uint32_t(keyLength);
    for (long long i = 0; i < parts && in.ok(); ++i)
        index.keyFields.push_back(int32_t(in.number()) + 1);
    if (!in.ok())
        return std::nullopt;
    return index;
}

void writeTableBlock(const TableDef &def, DmOpenRef db, std::optional<uint16_t> indexCount) {
    if (int failed = storeBlock(def.name, db, encodeTableBlock(def, indexCount)))
        runtime::raiseError(ZQ_ERR_RUNTIME, failed);
}

bool writeIndexBlock(const IndexDef &index, DmOpenRef db) {
    return storeBlock(index.name, db, encodeIndexBlock(index)) == 0;
}

std::optional<std::vector<uint8_t>> readBlock(DmOpenRef db) {
    if (!db || storage::headerOf(db).appInfoSize == 0)
        return std::nullopt;
    LocalID id = DmFindDatabase(0, db->name);
    MemHandle h = nullptr;
    DmDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &h, nullptr, nullptr, nullptr);
    auto *p = static_cast<const uint8_t *>(h ? MemHandleLock(h) : nullptr);
    if (!p)
        return std::nullopt;
    std::vector<uint8_t> bytes(p, p + MemHandleSize(h));
    MemHandleUnlock(h);
    return bytes;
}

} // namespace zq::tables
