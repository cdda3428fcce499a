// The undo journal of moves inside a database file.
//
// Layout (little-endian): "ZQJ1", the 20-byte header before the move, the offset (4 bytes),
// the length L (4 bytes) and L saved bytes. The body is written before the signature, the
// whole before the first byte moves, and the signature is cleared once the move and its
// headers are written, so at any kill the file is either untouched, undoable, or done. The file is kept open from the first move to the database's close,
// when it goes: a move costs two writes, not a file made and deleted.
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

} // namespace

void beginMove(DmOpenDB *db, uint32_t offset) {
    if (db->movesOpen++ > 0)
        return;
    FileView &v = *db->main;
    DatabaseHeader h = v.header();
    uint32_t length = h.used > offset ? h.used - offset : 0;
    std::vector<uint8_t> journal(kFixedPart);
    store(journal.data() + 4, h);
    store(journal.data() + 4 + kHeaderSize, offset);
    store(journal.data() + 8 + kHeaderSize, length);
    journal.insert(journal.end(), v.base() + offset, v.base() + offset + length);
    std::string path = journalPath(db);
    if (!db->journal.valid())
        db->journal = platform::openFile(path, platform::FileOpen::CreateNew);
    if (!db->journal.valid())
        db->journal = platform::openFile(path, platform::FileOpen::Existing);
    // The body first, its signature after: a journal cut short by a kill has none.
    bool written = db->journal.valid() && platform::writeFileStart(db->journal, journal.data(), uint32_t(journal.size())) &&
                   platform::writeFileStart(db->journal, kMagic, sizeof kMagic);
    if (!written) {
        db->movesOpen = 0;
        alertAfterError("falhou abertura do arquivo " + std::string(db->name) + "_Jn ");
        runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    }
}

// The file stays open between moves; a cleared signature is what marks it as spent.
void endMove(DmOpenDB *db) {
    if (db->movesOpen == 0 || --db->movesOpen > 0)
        return;
    static const uint8_t spent[4] = {};
    platform::writeFileStart(db->journal, spent, sizeof spent);
}

void closeJournal(DmOpenDB *db) {
    if (!db->journal.valid())
        return;
    db->journal.close();
    if (db->movesOpen == 0)
        platform::deleteFile(journalPath(db));
}

bool undoInterruptedMove(DmOpenDB *db) {
    std::string path = journalPath(db);
    platform::File file = platform::openFile(path, platform::FileOpen::Existing);
    if (!file.valid())
        return false;
    int64_t size = platform::fileSize(file);
    std::vector<uint8_t> journal(size > 0 && size < kMaxFileSize ? size_t(size) : 0);
    bool whole = journal.size() >= kFixedPart && platform::readFileStart(file, journal.data(), uint32_t(journal.size())) &&
                 std::memcmp(journal.data(), kMagic, 4) == 0;
    file.close();
    FileView &v = *db->main;
    if (whole && journal.size() >= kFixedPart) {
        DatabaseHeader h = load<DatabaseHeader>(journal.data() + 4);
        uint32_t offset = load<uint32_t>(journal.data() + 4 + kHeaderSize);
        uint32_t length = load<uint32_t>(journal.data() + 8 + kHeaderSize);
        whole = uint64_t(kFixedPart) + length <= journal.size() && uint64_t(offset) + length <= v.mapSize() &&
                h.used <= v.mapSize();
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
