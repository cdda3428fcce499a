// The progress line: a bar and a count, redrawn in place with a carriage return.
#include "progress.h"

#include "platform/process.h"

#include <cstdio>

namespace zq::tool {
namespace {

constexpr uint64_t kWorthShowing = 2000; // rows or records below which no bar is drawn
constexpr int kBarWidth = 30;

} // namespace

Progress::Progress(std::string label, uint64_t total)
    : label_(std::move(label)), total_(total), shown_(total >= kWorthShowing && platform::standardErrorIsTerminal()) {}

Progress::~Progress() {
    if (shown_ && shownPercent_ >= 0)
        std::fprintf(stderr, "\r%*s\r", int(label_.size()) + kBarWidth + 32, "");
}

void Progress::advance(uint64_t done) {
    if (!shown_ || total_ == 0)
        return;
    int percent = int(done * 100 / total_);
    if (percent == shownPercent_)
        return;
    shownPercent_ = percent;
    int filled = percent * kBarWidth / 100;
    std::fprintf(stderr, "\r%s [%.*s%*s] %llu/%llu", label_.c_str(), filled, "##############################",
                 kBarWidth - filled, "", (unsigned long long)done, (unsigned long long)total_);
    std::fflush(stderr);
}

} // namespace zq::tool
