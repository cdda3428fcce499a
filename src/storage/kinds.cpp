// Databases named by a base name and a kind letter, and whole-record buffers.
#include "storage/database.h"
#include "zelqa/storage.h"

#include <cstdio>
#include <cstring>
#include <string>

using namespace zq::storage;

namespace {

constexpr uint32_t fourChars(const char (&s)[5]) {
    return uint32_t(uint8_t(s[0])) << 24 | uint32_t(uint8_t(s[1])) << 16 | uint32_t(uint8_t(s[2])) << 8 |
           uint32_t(uint8_t(s[3]));
}

constexpr uint32_t kTypeData = fourChars("DATA");

// The base name in capitals: ASCII letters only, other bytes as they are.
std::string upperName(pObj value) {
    if (!value || value->type != TYPE_CHAR || !value->payload.c)
        return std::string();
    std::string name(value->payload.c);
    for (char &c : name)
        if (c >= 'a' && c <= 'z')
            c = char(c - 32);
    return name;
}

} // namespace

void KindDatabaseName(pObj baseName, char *name, uint32_t *creator, char kind) noexcept {
    std::string full = upperName(baseName);
    uint32_t code = 0;
    switch (kind) {
    case 'H': full += ".tHst", code = fourChars("tHst"); break;
    case 'I': full += ".tIns", code = fourChars("tIns"); break;
    case 'P': full += ".tPda", code = fourChars("tPda"); break;
    case 'Z': break;
    default: full += ".tLog", code = fourChars("tLog"); break;
    }
    if (name)
        std::snprintf(name, kMaxFileName, "%s", full.c_str());
    if (creator)
        *creator = code;
}

DmOpenRef OpenKindDatabase(uint16_t card, pObj baseName, int recreate, char kind) noexcept {
    char name[kMaxFileName];
    uint32_t creator = 0;
    KindDatabaseName(baseName, name, &creator, kind);
    LocalID id = DmFindDatabase(card, name);
    if (id && recreate) {
        DmDeleteDatabase(card, id);
        id = 0;
    }
    if (!id && DmCreateDatabase(card, name, creator, kTypeData, 0) == dmErrNone)
        id = DmFindDatabase(card, name);
    return id ? DmOpenDatabase(card, id) : nullptr;
}

int DeleteKindDatabase(uint16_t card, pObj baseName, char kind) noexcept {
    char name[kMaxFileName];
    KindDatabaseName(baseName, name, nullptr, kind);
    LocalID id = DmFindDatabase(card, name);
    if (!id)
        return 0;
    DmDeleteDatabase(card, id);
    return 1;
}

uint32_t ReadRecordBuffer(DmOpenRef db, uint32_t index, void *buf, uint32_t max) noexcept {
    if (index >= DmNumRecords(db))
        return 0;
    MemHandle h = DmQueryRecord(db, index);
    void *data = MemHandleLock(h);
    if (!data) {
        MemHandleUnlock(h);
        return 0;
    }
    if (!buf)
        return 0; // the handle stays locked until the database's next record request
    uint32_t size = MemHandleSize(h);
    uint32_t length = max && max <= size ? max : size;
    std::memcpy(buf, data, length);
    MemHandleUnlock(h);
    return length;
}

void WriteRecordBuffer(DmOpenRef db, const void *src, uint32_t length, uint32_t *index) noexcept {
    if (!db || !src)
        return;
    uint32_t at = index ? *index : kAppend;
    MemHandle h;
    if (at == kAppend) {
        h = DmNewRecord(db, &at, length);
        if (index)
            *index = at;
    } else {
        h = DmQueryRecord(db, at);
        if (!h)
            return;
        // The record becomes exactly the caller's bytes: never more is read from the buffer.
        if (MemHandleSize(h) != length)
            DmResizeRecord(h, length);
    }
    void *data = MemHandleLock(h);
    if (!data)
        return;
    DmWrite(data, 0, src, length);
    MemHandleUnlock(h);
    DmReleaseRecord(db, at, 0);
}
