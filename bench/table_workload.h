// The table workload shared by our table bench and its SQLite comparison: the same keys,
// rows and seek targets, the same phases and the same output (PHASE MILLISECONDS ROWS,
// check sums on stderr).
//
// Table: CODE C 10, NAME C 20 ("NAME " + CODE), VALUE N 10.2 ((i mod 1000) x 1.25), DAY D
// (1 January 2024 + i mod 365 days), FLAG L (i even); one index on CODE. Phases, N rows
// (100 000 unless told):
//   a_append         create table and index, append N rows, one commit at the end
//   b_seek           N seeks of the targets, reading VALUE of each row found (b_sum)
//   c_scan_natural   record order, summing VALUE (c_scan_natural_sum)
//   d_scan_index     CODE order, summing VALUE (d_scan_index_sum)
//   e_delete_pack    delete records 10, 20, 30, ..., then pack; rows left
//   f_reindex        rebuild the index
//   g_append_commit  10 000 rows into a new table with its index, each committed durably
// With N = 100 000 the sums are 62319087.50, 62437500.00 and 62437500.00.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace table_workload {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kRows = 100000;       // phases a to f
constexpr uint32_t kDurableRows = 10000; // phase g

struct Row {
    std::string code;  // 10 letters
    std::string name;  // "NAME " + code
    double value;      // (i mod 1000) x 1.25
    int dayOffset;     // days after 1 January 2024: i mod 365
    bool flag;         // i even
};

struct Data {
    std::vector<Row> rows;
    std::vector<std::string> targets; // seek targets, each a code of rows
};

// The minimal standard generator, seed 12345.
class Random {
public:
    uint64_t next() { return x_ = x_ * 48271 % 2147483647; }

private:
    uint64_t x_ = 12345;
};

// Rows 1..n of the workload, then n seek targets drawn after the keys (none when
// withTargets is false).
inline Data makeData(uint32_t n, bool withTargets) {
    Random random;
    Data data;
    data.rows.resize(n);
    for (uint32_t i = 1; i <= n; ++i) {
        Row &r = data.rows[i - 1];
        for (int c = 0; c < 10; ++c)
            r.code += char('A' + random.next() % 26);
        r.name = "NAME " + r.code;
        r.value = (i % 1000) * 1.25;
        r.dayOffset = int(i % 365);
        r.flag = i % 2 == 0;
    }
    if (withTargets)
        for (uint32_t i = 0; i < n; ++i)
            data.targets.push_back(data.rows[random.next() % n].code);
    return data;
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

// The command line: --dir DIR (default "table_bench_data"), --rows N (default 100 000:
// the rows of phases a to f), --append-only (phase a alone, for the scaling run).
struct Options {
    std::string dir = "table_bench_data";
    uint32_t rows = kRows;
    bool appendOnly = false;
};

inline Options readOptions(int argc, char **argv, const char *usage) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::printf("%s", usage);
            std::exit(0);
        } else if (arg == "--dir" && i + 1 < argc) {
            o.dir = argv[++i];
        } else if (arg == "--rows" && i + 1 < argc) {
            long n = std::strtol(argv[++i], nullptr, 10);
            if (n < 10 || n > 10000000) {
                std::fprintf(stderr, "--rows takes a number from 10 to 10000000\n");
                std::exit(2);
            }
            o.rows = uint32_t(n);
        } else if (arg == "--append-only") {
            o.appendOnly = true;
        } else {
            std::fprintf(stderr, "unknown argument %s\n%s", arg.c_str(), usage);
            std::exit(2);
        }
    }
    return o;
}

// The shared part of both programs' usage text.
#define TABLE_WORKLOAD_USAGE_TAIL                                                                              \
    "  --dir DIR       data directory, emptied first; keep it off tmpfs (default table_bench_data)\n"           \
    "  --rows N        rows of phases a to f (default 100000); phase g appends 10000\n"                          \
    "  --append-only   run phase a alone\n"                                                                      \
    "Prints PHASE MILLISECONDS ROWS per phase and the check sums on standard error.\n"

} // namespace table_workload
