// __Seek: finding a key in the current order, exact, by prefix or soft.
#include "runtime/context.h"
#include "runtime/raise.h"
#include "tables/arguments.h"
#include "tables/index_files.h"
#include "tables/index_keys.h"
#include "tables/positioning.h"
#include "tables/row.h"
#include "zelqa/tables.h"
#include "zelqa/values.h"

#include <algorithm>
#include <cstring>

namespace zq::tables {
namespace {

bool notFound(AreaRecord &a) {
    a.eof = true;
    a.bof = a.found = false;
    a.indexPosition = -1;
    a.current = int32_t(DmNumRecords(a.db));
    blankBuffer(a);
    return false;
}

// Loads the entry at position, passing over deleted rows forward while entries still
// match (match: whether the walk is bound to the key). False when none is left.
bool loadFrom(AreaRecord &a, IndexDef &index, uint32_t position, const std::vector<uint8_t> &key,
              uint32_t length, bool match) {
    uint32_t count = entryCount(index.db);
    for (; position < count; ++position) {
        std::vector<uint8_t> entry = readEntry(index.db, position);
        if (entry.size() < 4 || (match && compareKeys(entry.data() + 4, key.data() + 4, length) != 0))
            return false;
        uint32_t record = 0;
        std::memcpy(&record, entry.data(), 4);
        if (!readRow(a, record))
            return false;
        a.indexPosition = int32_t(position);
        if (deletionMark(a) != '*' || !deletedRowsHidden())
            return true;
    }
    return false;
}

} // namespace
} // namespace zq::tables

using namespace zq::tables;
using zq::runtime::logical;
using zq::runtime::raiseError;

pObj __Seek(pObj area, pObj cKey, pObj lSoft) noexcept {
    AreaRecord &a = requireArea(area, ZQ_ERR_RUNTIME, 2);
    if (a.order == kNoOrder || a.order >= a.def.indexes.size())
        raiseError(ZQ_ERR_IDX_NOT_EXISTS, 4);
    if (isMissing(cKey))
        raiseError(ZQ_ERR_RUNTIME, 2);
    if (cKey->type != TYPE_CHAR)
        raiseError(ZQ_ERR_RUNTIME, 3);
    IndexDef &index = a.def.indexes[a.order];
    if (!index.db)
        raiseError(ZQ_ERR_RUNTIME, 5);
    bool soft = lSoft && lSoft->type == TYPE_LOGICAL && lSoft->payload.l;
    writePending(a);
    uint32_t count = DmNumRecords(a.db);
    if (count == 0) {
        a.eof = a.bof = true;
        a.found = false;
        a.indexPosition = -1;
        blankBuffer(a);
        return logical(false);
    }
    std::string text = requireText(cKey);
    uint32_t length = std::min<uint32_t>(uint32_t(text.size()), index.attribute);
    std::vector<uint8_t> key(4 + std::max<size_t>(text.size(), index.attribute), 0);
    std::memcpy(key.data() + 4, text.data(), text.size());
    uint32_t entries = entryCount(index.db);
    uint32_t p = entries ? std::min(sortPosition(index.db, key, length), entries) : 0;
    int64_t at = p == 0 ? 0 : int64_t(p) - 1;
    std::vector<uint8_t> entry = readEntry(index.db, uint32_t(at));
    if (!entry.empty() && compareKeys(entry.data() + 4, key.data() + 4, length) == 0) {
        while (at > 0) {
            std::vector<uint8_t> previous = readEntry(index.db, uint32_t(at - 1));
            if (compareKeys(previous.data() + 4, key.data() + 4, length) != 0)
                break;
            --at;
        }
        if (loadFrom(a, index, uint32_t(at), key, length, true)) {
            a.found = true;
            a.eof = a.bof = false;
            return logical(true);
        }
        return logical(notFound(a));
    }
    if (soft && p < count && loadFrom(a, index, p, key, length, false)) {
        a.found = a.eof = false;
        return logical(false);
    }
    return logical(notFound(a));
}
