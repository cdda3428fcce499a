// The table of open serial lines: only lines we opened are ever read, written or closed.
//
// A handle value is a plain number in the program's hands; checking it here keeps a wrong
// or stale one from reaching a descriptor that belongs to something else.
#include "devices/open_lines.h"

#include <algorithm>
#include <vector>

namespace zq::devices {
namespace {

std::vector<platform::SerialLine> &lines() {
    static std::vector<platform::SerialLine> open; // closed at process end if still held
    return open;
}

auto find(intptr_t handle) {
    auto &open = lines();
    return std::find_if(open.begin(), open.end(),
                        [handle](const platform::SerialLine &l) { return l.native() == handle; });
}

} // namespace

intptr_t keepLine(platform::SerialLine line) {
    intptr_t handle = line.native();
    if (!line.valid() || handle == 0)
        return 0;
    lines().push_back(std::move(line));
    return handle;
}

bool isOpenLine(intptr_t handle) { return handle != 0 && handle != -1 && find(handle) != lines().end(); }

bool closeLine(intptr_t handle) {
    if (!isOpenLine(handle))
        return false;
    auto it = find(handle);
    bool closed = it->close();
    lines().erase(it);
    return closed;
}

} // namespace zq::devices
