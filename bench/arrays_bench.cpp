// Arrays: building, scanning, sorting, cloning and releasing arrays of 10^5 elements.
#include "zelqa.h"

#include <chrono>
#include <cstdio>
#include <random>

namespace {

constexpr int kCount = 100000;

template <typename F> double millis(F f) {
    auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void report(const char *what, double ms) {
    std::printf("%-52s %10.1f ms\n", what, ms);
    std::fflush(stdout);
}

} // namespace

int main() {
    __BeginGlobal();
    std::mt19937 rng(42);
    __begin_context();
    pObj values = __CreateArray(__INIT_NUL());
    report("build: __AAdd of 10^5 numbers", millis([&] {
               for (int i = 0; i < kCount; ++i)
                   __AAdd(values, __INIT_DOUBLE(rng() / 7.0 + i * 1e-3));
           }));
    pObj rows = __CreateArray(__INIT_NUL());
    report("build: 10^5 rows {number, text}", millis([&] {
               char text[16];
               for (int i = 0; i < kCount; ++i) {
                   std::snprintf(text, sizeof text, "k%07u", static_cast<unsigned>(i * 7919u % 10000000u)); // distinct
                   __AAdd(rows, __CreateArray(__INIT_DOUBLE(i), __INIT_CHARPTR(text), __INIT_NUL()));
               }
           }));
    report("build: __Array(10^5)", millis([&] { __Array(__INIT_DOUBLE(kCount), __INIT_NUL()); }));
    report("scan: 100 x __AScan of a missing number", millis([&] {
               for (int i = 0; i < 100; ++i)
                   __AScan(values, __INIT_DOUBLE(-1), nullptr, nullptr, nullptr);
           }));
    report("scan: 100 x __AScan of rows by second column", millis([&] {
               for (int i = 0; i < 100; ++i)
                   __AScan(rows, __INIT_CHARPTR("absent"), nullptr, nullptr, nullptr);
           }));
    report("sort: __ASORT of 10^5 distinct numbers", millis([&] { __ASORT(values, nullptr, nullptr, nullptr, nullptr); }));
    report("sort: __ASORT of 10^5 rows by text (descending)",
           millis([&] { __ASORT(rows, nullptr, nullptr, __INIT_BOOL(0), nullptr); }));
    pObj ties = __CreateArray(__INIT_NUL());
    for (int i = 0; i < 2000; ++i)
        __AAdd(ties, __INIT_DOUBLE(static_cast<double>(rng() % 100)));
    report("sort: __ASORT of 2000 numbers with repeats (passes)",
           millis([&] { __ASORT(ties, nullptr, nullptr, nullptr, nullptr); }));
    report("copy: __AClone of 10^5 rows", millis([&] { __AClone(rows); }));
    report("copy: __CopyArray of 10^5 numbers", millis([&] { __CopyArray(values); }));
    report("release: end of the context holding all of it", millis([&] { __end_context(nullptr); }));
    __EndGlobal();
    return 0;
}
