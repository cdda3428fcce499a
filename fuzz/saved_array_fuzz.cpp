// Fuzz target: a saved array restored, saved again and restored once more; the second
// restore must give back what the first one gave (less the outer level's scalars, which
// saving leaves out).
//
// Input parts (harness.h): the database "ARR.tLog" and its offset index; an empty index
// part is a missing file.
#include "harness.h"
#include "storage_walk.h"
#include "zelqa.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace zq::fuzz;

namespace {

bool sameValue(pObj a, pObj b);

bool sameArray(pObj a, pObj b, bool outer) {
    pObj y = b->payload.a->first;
    for (pObj x = a->payload.a->first; x; x = x->next) {
        if (outer && x->type != TYPE_ARRAY)
            continue; // the outer level saves nested arrays only
        if (!y || !sameValue(x, y))
            return false;
        y = y->next;
    }
    return y == nullptr;
}

bool sameValue(pObj a, pObj b) {
    if (a->type != b->type)
        return false;
    switch (a->type) {
    case TYPE_ARRAY: return sameArray(a->payload.o, b->payload.o, false);
    case TYPE_CHAR: return std::strcmp(a->payload.c, b->payload.c) == 0;
    case TYPE_NUMERIC:
    case TYPE_DATE: return std::memcmp(&a->payload.d, &b->payload.d, sizeof(double)) == 0;
    case TYPE_LONG:
    case TYPE_LOGICAL: return a->payload.l == b->payload.l;
    default: return true;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<Bytes> parts = splitParts(Bytes(data, size), 2);
    runInput([&] {
        writeStorageFile("catalog.plm", catalogBytes({{"ARR.tLog", kTypeData, kCreatorLog}}));
        writeStorageFile("ARR.tLog", parts[0]);
        if (!parts[1].empty())
            writeStorageFile("ARR.tLog_OS", parts[1]);
        pObj first = __RestoreArray(__INIT_CHARPTR("ARR"));
        if (first->type != TYPE_ARRAY)
            return;
        ExecDumpArray(first, __INIT_CHARPTR("AGAIN"));
        pObj second = __RestoreArray(__INIT_CHARPTR("AGAIN"));
        bool savedNothing = second->type == TYPE_NIL; // an array of no nested arrays writes no records
        if (!savedNothing && (second->type != TYPE_ARRAY || !sameArray(first, second, true))) {
            std::fprintf(stderr, "fuzz: a restored array saved and restored again came back different\n");
            std::abort();
        }
        StorageClose();
    });
    return 0;
}
