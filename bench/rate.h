// Benchmarks' measure of a call: how many times a second it runs.
#pragma once

#include <chrono>
#include <functional>

namespace zq::bench {

// Calls per second, measured over about a fifth of a second.
inline double rate(const std::function<void()> &call) {
    using Clock = std::chrono::steady_clock;
    long calls = 0;
    auto start = Clock::now();
    double seconds = 0;
    do {
        for (int i = 0; i < 32; ++i)
            call();
        calls += 32;
        seconds = std::chrono::duration<double>(Clock::now() - start).count();
    } while (seconds < 0.2);
    return calls / seconds;
}

} // namespace zq::bench
