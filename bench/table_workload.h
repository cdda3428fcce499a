// The table workload shared by our table bench and its SQLite comparison: the same keys
// and rows, the same phases and the same output (PHASE MILLISECONDS ROWS, sums on stderr).
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace table_workload {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kRows = 100000;       // phases a and c
constexpr uint32_t kDurableRows = 10000; // phase g

struct Row {
    std::string code;  // 10 letters
    std::string name;  // "NAME " + code
    double value;      // (i mod 1000) x 1.25
    int dayOffset;     // days after 1 January 2024: i mod 365
    bool flag;         // i even
};

// Row i (1-based) of the workload, keys drawn from x = x * 48271 mod (2^31 - 1), seed 12345.
inline std::vector<Row> makeRows(uint32_t n) {
    uint64_t x = 12345;
    std::vector<Row> rows(n);
    for (uint32_t i = 1; i <= n; ++i) {
        Row &r = rows[i - 1];
        for (int c = 0; c < 10; ++c) {
            x = x * 48271 % 2147483647;
            r.code += char('A' + x % 26);
        }
        r.name = "NAME " + r.code;
        r.value = (i % 1000) * 1.25;
        r.dayOffset = int(i % 365);
        r.flag = i % 2 == 0;
    }
    return rows;
}

class Phase {
public:
    explicit Phase(const char *name) : name_(name), start_(Clock::now()) {}
    void done(uint32_t rows) const {
        double ms = std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
        std::printf("%s %.1f %u\n", name_, ms, rows);
        std::fflush(stdout);
    }

private:
    const char *name_;
    Clock::time_point start_;
};

inline void checkSum(const char *name, double sum) { std::fprintf(stderr, "check %s %.2f\n", name, sum); }

// The data directory from the command line (--dir DIR), default "table_bench_data".
inline std::string dataDirectory(int argc, char **argv, const char *usage) {
    std::string dir = "table_bench_data";
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::printf("%s", usage);
            std::exit(0);
        }
        if (arg == "--dir" && i + 1 < argc)
            dir = argv[++i];
    }
    return dir;
}

} // namespace table_workload
