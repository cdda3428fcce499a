// Operators in tight loops: comparisons and sums of numbers and texts, in operations per second.
#include "zelqa.h"

#include <chrono>
#include <cstdio>

namespace {

constexpr int kRounds = 20'000'000;

// Runs body kRounds times and prints how many calls per second it managed.
template <typename Body>
void measure(const char *name, Body body) {
    auto start = std::chrono::steady_clock::now();
    int hits = 0;
    for (int i = 0; i < kRounds; ++i)
        hits += body(i);
    std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("%-28s %12.0f ops/s  (%d)\n", name, kRounds / took.count(), hits);
}

} // namespace

int main() {
    __BeginGlobal();
    pObj yes = __INIT_BOOL(1);
    pObj a = __SET_OBJECT(nullptr, __INIT_DOUBLE(1.5));
    pObj b = __SET_OBJECT(nullptr, __INIT_DOUBLE(2.5));
    pObj s = __SET_OBJECT(nullptr, __INIT_CHARPTR("CUSTOMER-000123"));
    pObj t = __SET_OBJECT(nullptr, __INIT_CHARPTR("CUSTOMER-000124"));
    pObj d = __SET_OBJECT(nullptr, __INIT_DATE(__EncodeDate(2006, 11, 23)));
    pObj one = __SET_OBJECT(nullptr, __INIT_DOUBLE(1));

    measure("__LS numeric", [&](int) { return __LS(a, b) == yes; });
    measure("__LS text", [&](int) { return __LS(s, t) == yes; });
    measure("__EQ text (prefix)", [&](int) { return __EQ(s, t) == yes; });
    measure("__EEQ text", [&](int) { return __EEQ(s, t) == yes; });
    measure("__SUM numeric", [&](int) { return __SUM(a, b)->payload.d > 3; });
    measure("__SUM numeric accumulate", [&](int) {
        pObj next = __SUM(a, one);
        a->payload.d = next->payload.d;
        return 1;
    });
    measure("__SUM text", [&](int) { return __SUM(s, t)->objLength == 31; });
    measure("__SUB date - date", [&](int) { return __SUB(d, d)->payload.d == 0; });
    measure("__SUM date + number", [&](int) { return __SUM(d, one)->type == TYPE_DATE; });
    __EndGlobal();
    return 0;
}
