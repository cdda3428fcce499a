// Works on "crash.db" step by step until killed, logging each step that returned.
//
// Usage: storage_crash <progress file>. The progress file lists, as 4-byte numbers, the
// steps done so far; the writer goes on with the step after the last one listed, doing
// what crashStep names (crash_steps.h), and lists it once its last storage call returned.
#include "crash_steps.h"
#include "zelqa/storage.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

uint32_t nextStep(const char *progressPath) {
    std::FILE *in = std::fopen(progressPath, "rb");
    if (!in)
        return 0;
    uint32_t step = 0, last = 0;
    bool any = false;
    while (std::fread(&step, 4, 1, in) == 1)
        last = step, any = true;
    std::fclose(in);
    return any ? last + 1 : 0;
}

// Writes bytes at offset into record index through its handle, resized to size first.
bool writeRecord(DmOpenRef db, uint32_t index, MemHandle h, uint32_t size, uint32_t offset, const std::string &bytes) {
    if (!h)
        return false;
    if (size != MemHandleSize(h))
        DmResizeRecord(h, size);
    DmWrite(MemHandleLock(h), offset, bytes.data(), uint32_t(bytes.size()));
    MemHandleUnlock(h);
    return DmReleaseRecord(db, index, 1) == dmErrNone;
}

bool doStep(DmOpenRef db, uint32_t step) {
    uint32_t count = DmNumRecords(db), target = crashTarget(step, count);
    switch (crashStep(step)) {
    case CrashStep::Append: {
        std::string bytes = crashPayload(step);
        uint32_t index = dmAppendPosition;
        MemHandle h = DmNewRecord(db, &index, uint32_t(bytes.size()));
        return writeRecord(db, index, h, uint32_t(bytes.size()), 0, bytes);
    }
    case CrashStep::Grow: {
        if (!count)
            return true;
        MemHandle h = DmGetRecord(db, target);
        uint32_t size = MemHandleSize(h);
        std::string tail = crashTail(step);
        return writeRecord(db, target, h, size + uint32_t(tail.size()), size, tail);
    }
    case CrashStep::Mark: {
        if (!count)
            return true;
        MemHandle h = DmGetRecord(db, target);
        return writeRecord(db, target, h, MemHandleSize(h), MemHandleSize(h) - 2, "*");
    }
    case CrashStep::Remove: return !count || DmRemoveRecord(db, target) == dmErrNone;
    case CrashStep::Compact: DmCompactDatabase(db); return true;
    case CrashStep::Zap: __InternalZap(db); return true;
    }
    return false;
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2)
        return 2;
    uint32_t step = nextStep(argv[1]);
    std::FILE *progress = std::fopen(argv[1], "ab");
    if (!progress)
        return 3;
    if (!DmFindDatabase(0, "crash.db"))
        DmCreateDatabase(0, "crash.db", 0x5A454C51u, 0x44415441u, 0);
    DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, "crash.db"));
    if (!db)
        return 4;
    for (;; ++step) {
        if (!doStep(db, step))
            return 5;
        std::fwrite(&step, 4, 1, progress);
        std::fflush(progress);
    }
}
