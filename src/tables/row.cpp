// Encoding and decoding stored rows, and reading and writing the current row.
//
// Writing keeps a crash from leaving half a row behind: the fields go first and the
// deletion mark last, so a record cut short by a killed process has no mark and is not
// taken for a row when its database is next opened; an edit in place rewrites the fields
// in one copy while the old mark stays. New records are as long as the longest row.
#include "tables/row.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "storage/layout.h"
#include "storage/records.h"
#include "tables/durability.h"
#include "tables/index_hooks.h"
#include "tables/positioning.h"

#include <algorithm>
#include <cstring>

namespace zq::tables {
namespace {

bool settingOn(int n) {
    pObj s = runtime::context().settings[n - 1];
    return s && s->type == TYPE_LOGICAL && s->payload.l;
}

// Copies n bytes, reversed when the byte-swap setting is on.
void copyNumber(uint8_t *to, const uint8_t *from, uint32_t n, bool swap) {
    if (!swap) {
        std::memcpy(to, from, n);
        return;
    }
    for (uint32_t i = 0; i < n; ++i)
        to[i] = from[n - 1 - i];
}

// Length of the text in a character slot, at most the declared length.
uint32_t slotTextLength(const uint8_t *slot, int32_t length) {
    uint32_t limit = uint32_t(std::max(length, 0));
    const void *end = std::memchr(slot, 0, limit);
    return end ? uint32_t(static_cast<const uint8_t *>(end) - slot) : limit;
}

// Turns the trailing blanks of a character slot into zeros.
void trimSlot(uint8_t *slot, int32_t length) {
    uint32_t n = slotTextLength(slot, length);
    while (n > 0 && slot[n - 1] == ' ')
        slot[--n] = 0;
}

// The longest row the table can store: every text at its declared length. A new record
// is made that long, so that no later edit changes its size: growing a record would move
// the records behind it, and even growth within its capacity rewrites its size apart from
// its bytes; a process killed between the two would leave half a row.
uint32_t longestRow(const TableDef &def) {
    uint64_t bytes = 2;
    for (size_t i = 0; i + 1 < def.fields.size(); ++i) {
        const FieldDef &f = def.fields[i];
        bytes += f.type == kCharacter ? uint64_t(std::max(f.length, 0)) + 1 : slotBytes(f);
    }
    return uint32_t(std::min<uint64_t>(bytes, storage::kMaxBlock));
}

} // namespace

bool deletedRowsHidden() { return settingOn(11); }
bool byteSwapped() { return settingOn(9); }

// One memset: a buffer of many long fields is cleared at every row read.
void blankBuffer(AreaRecord &a) { std::memset(a.buffer.data(), 0, a.buffer.size()); }

std::vector<uint8_t> encodeRow(AreaRecord &a) {
    bool swap = byteSwapped();
    std::vector<uint8_t> row;
    row.reserve(a.buffer.size());
    size_t last = a.def.fields.size() - 1; // the deletion field
    for (size_t i = 0; i < last; ++i) {
        const FieldDef &f = a.def.fields[i];
        uint8_t *slot = a.buffer.data() + f.slot;
        size_t at = row.size();
        switch (f.type) {
        case kNumeric:
        case kDate:
        case kMemo: {
            uint32_t n = f.type == kMemo ? 4 : 8;
            row.resize(at + n);
            copyNumber(row.data() + at, slot, n, swap);
            break;
        }
        case kLogical:
            row.push_back(slot[0]);
            break;
        case kCharacter: {
            trimSlot(slot, f.length);
            uint32_t n = slotTextLength(slot, f.length);
            row.insert(row.end(), slot, slot + n);
            row.push_back(0);
            break;
        }
        default:
            runtime::raiseError(ZQ_ERR_RUNTIME, 8);
        }
    }
    row.push_back(deletionMark(a) == '*' ? '*' : '!');
    row.push_back(0);
    return row;
}

void decodeRow(AreaRecord &a, const uint8_t *record, uint32_t size) {
    bool swap = byteSwapped();
    blankBuffer(a);
    uint32_t at = 0;
    size_t last = a.def.fields.size() - 1;
    for (size_t i = 0; i < last; ++i) {
        const FieldDef &f = a.def.fields[i];
        uint8_t *slot = a.buffer.data() + f.slot;
        switch (f.type) {
        case kNumeric:
        case kDate:
        case kMemo: {
            uint32_t n = f.type == kMemo ? 4 : 8;
            if (at + n <= size)
                copyNumber(slot, record + at, n, swap);
            at += n;
            break;
        }
        case kLogical:
            if (at < size)
                slot[0] = record[at];
            at += 1;
            break;
        case kCharacter: {
            uint32_t room = at < size ? size - at : 0;
            uint32_t n = slotTextLength(record + std::min(at, size), int32_t(std::min<uint32_t>(room, f.length)));
            std::memcpy(slot, record + std::min(at, size), n);
            at += n + 1;
            break;
        }
        default:
            runtime::raiseError(ZQ_ERR_RUNTIME, 7);
        }
    }
    if (size >= 2)
        deletionMark(a) = record[size - 2];
}

bool readRow(AreaRecord &a, int64_t n) {
    if (n < 0 || n >= int64_t(DmNumRecords(a.db))) {
        goTop(a);
        return false;
    }
    countRowRead(a);
    uint32_t size = 0; // read in place: a walk takes no record handle per row
    if (const uint8_t *p = storage::peekRecord(a.db, uint32_t(n), size))
        decodeRow(a, p, size);
    else
        blankBuffer(a);
    a.current = int32_t(n);
    a.eof = a.bof = false;
    return true;
}

void writeRow(AreaRecord &a) {
    bool appending = a.appending;
    a.pending = a.appending = false; // a fault below must not make the close write it again
    std::vector<uint8_t> row = encodeRow(a);
    uint32_t length = uint32_t(row.size());
    bool deleted = row[length - 2] == '*';
    uint32_t index = appending ? dmAppendPosition : uint32_t(a.current);
    if (!appending && !deleted)
        prepareIndexesForWrite(a);
    MemHandle h = appending ? DmNewRecord(a.db, &index, std::max(length, longestRow(a.def)))
                            : DmGetRecord(a.db, index);
    if (!h) {
        if (appending)
            runtime::raiseError(ZQ_ERR_LOW_MEMORY);
        return; // the row has gone from under the area: nothing to overwrite
    }
    uint32_t size = MemHandleSize(h);
    if (size < length) { // a record made shorter elsewhere
        DmResizeRecord(h, length);
        size = length;
    }
    void *p = MemHandleLock(h);
    if (deleted && !appending) {
        DmWrite(p, size - 2, "*", 2);
        MemHandleUnlock(h);
        DmReleaseRecord(a.db, index, 0); // the dirty attribute goes off
    } else {
        uint8_t mark = row[length - 2];
        row.resize(size, 0);
        row[length - 2] = row[length - 1] = 0; // a longer record keeps zeros up to its mark
        row[size - 2] = mark;
        DmWrite(p, 0, row.data(), size - 2);
        DmWrite(p, size - 2, row.data() + size - 2, 2); // the mark last
        MemHandleUnlock(h);
        DmReleaseRecord(a.db, index, !deleted);
    }
    settleWrite(a.db);
    a.current = int32_t(index);
    countRowWrite(a);
    if (!deleted || appending)
        keepIndexesCurrent(a, appending);
}

void writePending(AreaRecord &a) {
    if (a.pending)
        writeRow(a);
}

} // namespace zq::tables
