// Reading and writing memo texts in the memo companion.
//
// A reference equal to the record count (the last memo record) is not overwritten: the
// text goes to a new record and the old one stays behind. Kept as programs found it. A
// text longer than its record goes to a new record as well; a shorter one is written
// over the record, its zero byte ending it.
#include "tables/memo.h"

#include "tables/durability.h"

#include <cstring>

namespace zq::tables {
namespace {

// True when record index holds at least bytes: a longer text goes to a new record, since
// growing one changes its stored size apart from its bytes (and may move every memo
// record behind it), which a killed process could leave half done.
bool fitsRecord(DmOpenRef memo, uint32_t index, uint32_t bytes) {
    return bytes <= MemHandleSize(DmQueryRecord(memo, index));
}

} // namespace

std::string readMemo(AreaRecord &a, uint32_t reference) {
    if (reference == 0 || !a.memo)
        return std::string();
    countMemoOperation(a);
    MemHandle h = DmQueryRecord(a.memo, reference - 1);
    auto *p = static_cast<const char *>(h ? MemHandleLock(h) : nullptr);
    if (!p)
        return std::string();
    uint32_t size = MemHandleSize(h);
    const void *end = std::memchr(p, 0, size);
    std::string text(p, end ? static_cast<const char *>(end) - p : size);
    MemHandleUnlock(h);
    return text;
}

uint32_t writeMemo(AreaRecord &a, uint32_t reference, const std::string &text) {
    if (!a.memo)
        return reference;
    uint32_t bytes = uint32_t(text.size()) + 1;
    uint32_t count = DmNumRecords(a.memo);
    int32_t signedReference = int32_t(reference);
    MemHandle h = nullptr;
    uint32_t index = dmAppendPosition;
    if (signedReference > 0 && reference < count && fitsRecord(a.memo, reference - 1, bytes)) {
        index = reference - 1;
        h = DmGetRecord(a.memo, index);
        if (h)
            DmResizeRecord(h, bytes);
    }
    if (!h) {
        index = dmAppendPosition;
        h = DmNewRecord(a.memo, &index, bytes);
    }
    if (!h)
        return reference;
    void *p = MemHandleLock(h);
    DmWrite(p, 0, text.c_str(), bytes);
    MemHandleUnlock(h);
    DmReleaseRecord(a.memo, index, 0);
    settleWrite(a.memo);
    countMemoOperation(a);
    return index + 1;
}

} // namespace zq::tables
