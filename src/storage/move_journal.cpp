// The undo journal of moves inside a database file.
//
// Layout (little-endian): "ZQJ1", the 20-byte header before the move, the offset (4 bytes),
// the length L (4 bytes), L saved bytes, and a 4-byte checksum of everything before it.
// The journal is written whole before the first byte moves and deleted once the move and
// its header are written, so at any kill the file is either untouched, undoable, or done.
#include "storage/move_journal.h"

#include "platform/files.h"
#include "runtime/raise.h"

#include <cstring>
#include <vector>

namespace zq::storage {
namespace {

constexpr char kMagic[4] = {'Z', 'Q', 'J', '1'};
constexpr uint32_t kFixedPart = 4 + kHeaderSize + 4 + 4;

std::string journalPath(const DmOpenDB *db) { return storagePath(std::string(db->name) + "_Jn"); }

uint32_t checksum(const uint8_t *bytes, size_t n) {
    uint32_t h = 2166136261u; // FNV-1a
    for (size_t i = 0; i < n; ++i)
        h = (h ^ bytes[i]) * 16777619u;
    return h;
}

} // namespace

void beginMove(DmOpenDB *db, uint32_t offset) {
    if (db->movesOpen++ > 0)
        return;
    FileView &v = *db->main;
    DatabaseHeader h = v.header();
    uint32_t length = h.used > offset ? h.used - offset : 0;
    std::vector<uint8_t> journal(kFixedPart + length + 4);
    std::memcpy(journal.data(), kMagic, 4);
    store(journal.data() + 4, h);
    store(journal.data() + 4 + kHeaderSize, offset);
    store(journal.data() + 8 + kHeaderSize, length);
    std::memcpy(journal.data() + kFixedPart, v.base() + offset, length);
    store(journal.data() + kFixedPart + length, checksum(journal.data(), kFixedPart + length));
    std::string path = journalPath(db);
    platform::deleteFile(path);
    platform::File file = platform::openFile(path, platform::FileOpen::CreateNew);
    if (!file.valid() || !platform::writeFileStart(file, journal.data(), uint32_t(journal.size()))) {
        platform::deleteFile(path);
        alertAfterError("falhou abertura do arquivo " + std::string(db->name) + "_Jn ");
        runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    }
}

void endMove(DmOpenDB *db) {
    if (db->movesOpen == 0 || --db->movesOpen > 0)
        return;
    platform::deleteFile(journalPath(db));
}

bool undoInterruptedMove(DmOpenDB *db) {
    std::string path = journalPath(db);
    platform::File file = platform::openFile(path, platform::FileOpen::Existing);
    if (!file.valid())
        return false;
    int64_t size = platform::fileSize(file);
    std::vector<uint8_t> journal(size > 0 && size < kMaxFileSize ? size_t(size) : 0);
    bool whole = journal.size() >= kFixedPart + 4 && platform::readFileStart(file, journal.data(), uint32_t(journal.size())) &&
                 std::memcmp(journal.data(), kMagic, 4) == 0;
    file.close();
    FileView &v = *db->main;
    if (whole) {
        DatabaseHeader h = load<DatabaseHeader>(journal.data() + 4);
        uint32_t offset = load<uint32_t>(journal.data() + 4 + kHeaderSize);
        uint32_t length = load<uint32_t>(journal.data() + 8 + kHeaderSize);
        whole = uint64_t(kFixedPart) + length + 4 == journal.size() &&
                load<uint32_t>(journal.data() + kFixedPart + length) == checksum(journal.data(), kFixedPart + length) &&
                uint64_t(offset) + length <= v.mapSize() && h.used <= v.mapSize();
        if (whole) {
            std::memcpy(v.base() + offset, journal.data() + kFixedPart, length);
            h.capacity = v.header().capacity;
            writeHeader(v, h);
            flushView(v);
            trace((std::string(db->name) + ": movimento interrompido desfeito").c_str());
        }
    }
    platform::deleteFile(path);
    return whole;
}

} // namespace zq::storage
