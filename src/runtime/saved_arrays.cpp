// Saved arrays: __RegisterArray, ExecDumpArray and __RestoreArray over the kind-named
// databases of kind 'L'. The record layout is described in docs/formats/saved-array.md;
// a save replaces the previous one whole or not at all.
//
// Records run in pre-order: record 0 holds the outer count; every nested array is a count
// record followed by its elements; a scalar is the 32-byte value record of the original
// 32-bit target, little-endian, pointers as 0, then for text its bytes with the NUL.
#include "runtime/saved_arrays.h"

#include "runtime/arrays.h"
#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/raise.h"
#include "storage/compaction.h"
#include "zelqa/arrays.h"
#include "zelqa/storage.h"
#include "zelqa/values.h"

#include <cstring>
#include <string>

using namespace zq::runtime;

namespace {

constexpr char kSavedKind = 'L';
constexpr uint32_t kValueRecordSize = 32;            // the value record on the 32-bit target
constexpr uint32_t kLargestRecord = kValueRecordSize + 32768; // a value record and the longest text
constexpr int kDeepestNesting = 256;                 // deeper count records are not followed

// Offsets inside the 32-byte value record.
enum : uint32_t { kClassAt = 4, kTypeAt = 8, kLengthAt = 12, kPayloadAt = 16, kLockAt = 24, kDepthAt = 26 };

void putLE(uint8_t *at, uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        at[i] = static_cast<uint8_t>(value >> (8 * i));
}

uint64_t getLE(const uint8_t *at, int bytes) {
    uint64_t value = 0;
    for (int i = 0; i < bytes; ++i)
        value |= uint64_t(at[i]) << (8 * i);
    return value;
}

bool isSavedScalar(uint32_t type) {
    return type == TYPE_LONG || type == TYPE_CHAR || type == TYPE_DATE || type == TYPE_NUMERIC ||
           type == TYPE_LOGICAL || type == TYPE_NIL;
}

void append(DmOpenRef db, const void *bytes, uint32_t length) {
    uint32_t index = dmAppendPosition;
    WriteRecordBuffer(db, bytes, length, &index);
}

void writeCount(DmOpenRef db, int32_t count) {
    uint8_t record[4];
    putLE(record, static_cast<uint32_t>(count), 4);
    append(db, record, 4);
}

void writeValue(DmOpenRef db, pObj el) {
    std::string record(kValueRecordSize, '\0');
    auto *bytes = reinterpret_cast<uint8_t *>(record.data());
    putLE(bytes + kClassAt, el->storageClass, 4);
    putLE(bytes + kTypeAt, el->type, 4);
    putLE(bytes + kLengthAt, static_cast<uint16_t>(el->objLength), 2);
    if (el->type == TYPE_NUMERIC || el->type == TYPE_DATE) {
        uint64_t bits;
        std::memcpy(&bits, &el->payload.d, 8);
        putLE(bytes + kPayloadAt, bits, 8);
    } else if (el->type == TYPE_LONG || el->type == TYPE_LOGICAL) {
        putLE(bytes + kPayloadAt, static_cast<uint32_t>(el->payload.l), 4);
    }
    putLE(bytes + kLockAt, static_cast<uint16_t>(el->lockCount), 2);
    putLE(bytes + kDepthAt, static_cast<uint16_t>(el->depth), 2);
    if (el->type == TYPE_CHAR && el->payload.c)
        record.append(el->payload.c, std::strlen(el->payload.c) + 1);
    else if (el->type == TYPE_CHAR)
        record.push_back('\0');
    append(db, record.data(), static_cast<uint32_t>(record.size()));
}

// Writes a nested array: its count, then its elements; false once an element that is
// neither an array nor a saved scalar, or an array nested deeper than a reader follows
// (as any array holding itself is), stops the writing.
bool writeNested(DmOpenRef db, pObj a, int nesting) {
    if (nesting >= kDeepestNesting)
        return false;
    writeCount(db, a->payload.a->count);
    for (pObj el = a->payload.a->first; el; el = el->next) {
        if (el->type == TYPE_ARRAY) {
            if (!writeNested(db, el->payload.o, nesting + 1))
                return false;
        } else if (isSavedScalar(el->type)) {
            writeValue(db, el);
        } else {
            return false;
        }
    }
    return true;
}

struct Reader {
    DmOpenRef db;
    uint32_t next;   // the record to read next
    uint8_t *buffer; // kLargestRecord bytes
};

pObj readScalar(const uint8_t *bytes, uint32_t length) {
    switch (static_cast<uint32_t>(getLE(bytes + kTypeAt, 4))) {
    case TYPE_CHAR: {
        const char *text = reinterpret_cast<const char *>(bytes + kValueRecordSize);
        return __INIT_CHARPTR(std::string(text, strnlen(text, length - kValueRecordSize)).c_str());
    }
    case TYPE_NUMERIC:
    case TYPE_DATE: {
        uint64_t bits = getLE(bytes + kPayloadAt, 8);
        double d;
        std::memcpy(&d, &bits, 8);
        return getLE(bytes + kTypeAt, 4) == TYPE_DATE ? __INIT_DATE(d) : __INIT_DOUBLE(d);
    }
    case TYPE_LONG:
        return __INIT_LONG(static_cast<int32_t>(getLE(bytes + kPayloadAt, 4)));
    case TYPE_LOGICAL:
        return __INIT_BOOL(static_cast<int32_t>(getLE(bytes + kPayloadAt, 4)) != 0);
    default:
        return sharedConstant(kNil); // NIL, and types a saved array cannot hold
    }
}

// Reads one item into container; false at the end of the records.
bool readItem(Reader &r, pObj container, int nesting) {
    uint32_t length = ReadRecordBuffer(r.db, r.next, r.buffer, kLargestRecord);
    if (length < 4)
        return false;
    ++r.next;
    if (length >= kValueRecordSize) {
        __NewArrayElement(container, readScalar(r.buffer, length));
        return true;
    }
    if (nesting >= kDeepestNesting)
        return false;
    int32_t count = static_cast<int32_t>(getLE(r.buffer, 4));
    pObj sub = __fcpObj_CT(kArrayList);
    __NewArrayElement(container, sub);
    for (int32_t i = 0; i < count; ++i) {
        if (!readItem(r, sub, nesting + 1))
            break;
    }
    return true;
}

} // namespace

namespace zq::runtime {

void dumpRegisteredArrays() {
    RuntimeContext *ctx = existingContext();
    if (!ctx || !ctx->arrayRegistry)
        return;
    for (pObj row = ctx->arrayRegistry->payload.a->first; row; row = row->next) {
        ArrayHeader &entry = *row->payload.o->payload.a;
        ExecDumpArray(entry.first->payload.o, entry.last);
    }
}

} // namespace zq::runtime

void __RegisterArray(pObj array, pObj baseName) noexcept {
    requireArray(array);
    requireArgument(baseName && baseName->type == TYPE_CHAR && baseName->payload.c);
    RuntimeContext &ctx = context();
    if (!ctx.arrayRegistry) {
        ctx.arrayRegistry = __fcpObj_CT(kArrayList);
        ctx.arrayRegistry->depth = -1; // permanent: no context releases the registry
        ctx.arrayRegistry->lockCount = -1;
    }
    int32_t i = 0;
    for (pObj row = ctx.arrayRegistry->payload.a->first; row; row = row->next, ++i) {
        pObj entry = row->payload.o;
        if (std::strcmp(entry->payload.a->last->payload.c, baseName->payload.c) == 0) {
            __SET_ARRAY_EL(entry, array, 0); // the name saves this array from now on
            return;
        }
    }
    __AAdd(ctx.arrayRegistry, __CreateArray(array, baseName, __INIT_NUL()));
}

void ExecDumpArray(pObj array, pObj baseName) noexcept {
    ArrayHeader &header = requireArray(array);
    DmOpenRef db = OpenKindDatabase(0, baseName, 0, kSavedKind);
    if (!db)
        return;
    // The new records go behind the previous save, which a reader still takes until the
    // previous records are dropped in one step: a save cut short leaves the previous one.
    // A first save goes behind a one-byte record, which reads as nothing saved.
    uint32_t previous = DmNumRecords(db);
    if (previous == 0 && header.count > 0) {
        append(db, "", 1);
        previous = 1;
    }
    if (header.count > 0) {
        writeCount(db, header.count);
        // Only nested arrays are saved from the outer level; its scalars are left out.
        for (pObj el = header.first; el; el = el->next) {
            if (el->type == TYPE_ARRAY && !writeNested(db, el->payload.o, 0))
                break;
        }
    }
    zq::storage::keepRecordsFrom(db, previous);
    DmCloseDatabase(db);
}

pObj __RestoreArray(pObj baseName) noexcept {
    DmOpenRef db = OpenKindDatabase(0, baseName, 0, kSavedKind);
    if (!db)
        return sharedConstant(kNil);
    Reader r{db, 1, static_cast<uint8_t *>(allocate(kLargestRecord))};
    pObj restored = sharedConstant(kNil);
    if (ReadRecordBuffer(db, 0, r.buffer, 128) >= 4) {
        int32_t count = static_cast<int32_t>(getLE(r.buffer, 4));
        restored = __fcpObj_CT(kArrayList);
        for (int32_t i = 0; i < count; ++i) {
            if (!readItem(r, restored, 0))
                break;
        }
    }
    release(r.buffer);
    DmCloseDatabase(db);
    DeleteKindDatabase(0, baseName, kSavedKind);
    return restored;
}
