// A progress line on standard error for long work, shown only when it is a terminal.
#pragma once

#include <cstdint>
#include <string>

namespace zq::tool {

class Progress {
public:
    Progress(std::string label, uint64_t total);
    ~Progress(); // clears the line
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void advance(uint64_t done); // redrawn when a whole percent more is done

private:
    std::string label_;
    uint64_t total_;
    int shownPercent_ = -1;
    bool shown_;
};

} // namespace zq::tool
