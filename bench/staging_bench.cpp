// Staging throughput: stage N files, then list them once and read each entry alone. Both
// listings read each record once, so their time per entry stays flat as N grows.
#include "platform/process.h"
#include "zelqa.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

void countEntry(const char *, const char *, void *count) { ++*static_cast<int *>(count); }

void run(const std::filesystem::path &dir, int n) {
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", dir.string().c_str());
    std::string source = (dir / "new.bin").string();
    if (std::FILE *f = std::fopen(source.c_str(), "wb")) {
        std::fputs("new content", f);
        std::fclose(f);
    }
    __BeginGlobal();
    Clock::time_point start = Clock::now();
    for (int i = 0; i < n; ++i)
        zq_stage_file(source.c_str(), ("file" + std::to_string(i) + ".bin").c_str(), "1.0");
    double staging = secondsSince(start);
    start = Clock::now();
    int listed = 0;
    zq_visit_staged(countEntry, &listed);
    double listing = secondsSince(start);
    start = Clock::now();
    char staged[ZQ_STAGE_MAX_TEXT + 1], version[ZQ_STAGE_MAX_TEXT + 1];
    for (int i = 0; i < n; ++i)
        zq_staged_entry(i, staged, sizeof staged, version, sizeof version);
    double entries = secondsSince(start);
    zq_cancel_staged();
    __EndGlobal();
    std::printf("n=%-6d stage %8.1f us/file  list %6.2f us/entry  entry by entry %6.2f us/entry  (listed %d)\n", n,
                staging / n * 1e6, listing / n * 1e6, entries / n * 1e6, listed);
}

} // namespace

int main() {
    std::filesystem::path dir = std::filesystem::temp_directory_path() / "zelqa-staging-bench";
    for (int n : {250, 1000, 4000})
        run(dir, n);
    std::filesystem::remove_all(dir);
    return 0;
}
