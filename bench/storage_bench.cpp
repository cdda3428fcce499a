// Record storage throughput: append, query, resize and remove N records, per flush mode.
#include "platform/files.h"
#include "platform/process.h"
#include "zelqa/storage.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

void report(const char *mode, const char *what, uint32_t n, Clock::time_point start) {
    double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    std::printf("%-6s %-8s n=%-7u %12.0f ops/s\n", mode, what, n, seconds > 0 ? n / seconds : 0.0);
}

// Typical row sizes of a table: 40 to 400 bytes.
uint32_t rowSize(uint32_t i) { return 40 + (i * 53) % 360; }

void run(const char *mode, uint32_t n) {
    std::string name = std::string("bench_") + mode;
    DmCreateDatabase(0, name.c_str(), 0x5A454C51u, 0x44415441u, 0);
    DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name.c_str()));
    std::vector<char> bytes(400, 'r');
    bytes[398] = '!';

    auto start = Clock::now();
    for (uint32_t i = 0; i < n; ++i) {
        uint32_t index = dmAppendPosition, size = rowSize(i);
        MemHandle h = DmNewRecord(db, &index, size);
        DmWrite(MemHandleLock(h), 0, bytes.data(), size);
        MemHandleUnlock(h);
        DmReleaseRecord(db, index, 1);
    }
    report(mode, "append", n, start);

    start = Clock::now();
    uint64_t sum = 0;
    for (uint32_t i = 0; i < n; ++i) {
        MemHandle h = DmQueryRecord(db, (i * 7919) % n);
        sum += static_cast<const uint8_t *>(MemHandleLock(h))[0];
        MemHandleUnlock(h);
    }
    report(mode, "query", n, start);

    uint32_t resized = n < 2000 ? n : 2000; // each growth moves the rest of the file
    start = Clock::now();
    for (uint32_t i = 0; i < resized; ++i) {
        uint32_t index = n - 1 - (i * 13) % (n / 10 + 1);
        MemHandle h = DmGetRecord(db, index);
        DmResizeRecord(h, MemHandleSize(h) + 8);
        DmReleaseRecord(db, index, 1);
    }
    report(mode, "resize", resized, start);

    uint32_t removed = n < 2000 ? n : 2000;
    start = Clock::now();
    for (uint32_t i = 0; i < removed; ++i)
        DmRemoveRecord(db, DmNumRecords(db) - 1 - (i * 17) % (n / 10 + 1) % DmNumRecords(db));
    report(mode, "remove", removed, start);
    if (sum == 1)
        std::puts("");
    DmCloseDatabase(db);
}

} // namespace

int main(int argc, char **argv) {
    std::vector<uint32_t> sizes = {1000, 10000, 100000};
    if (argc > 1)
        sizes = {uint32_t(std::atoi(argv[1]))};
    auto dir = std::filesystem::temp_directory_path() / "zq_storage_bench";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", dir.string().c_str());
    struct Mode {
        const char *name;
        zq::platform::FlushMode mode;
    };
    for (uint32_t n : sizes) {
        for (Mode m : {Mode{"none", zq::platform::FlushMode::None}, Mode{"async", zq::platform::FlushMode::Async},
                       Mode{"sync", zq::platform::FlushMode::Sync}}) {
            if (m.mode == zq::platform::FlushMode::Sync && n > 10000)
                continue; // a device write per commit: too slow to be worth the wait
            zq::platform::setFlushMode(m.mode);
            run(m.name, n);
        }
        StorageClose();
        std::filesystem::remove_all(dir / "DB");
    }
    std::filesystem::remove_all(dir);
    return 0;
}
