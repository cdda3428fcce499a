// The system-neutral half of the file seam: owners' moves, the flush mode and the fault switch.
#include "platform/files.h"

namespace zq::platform {
namespace {

int countdown[static_cast<int>(Fault::Count)] = {};
FlushMode mode = FlushMode::Async;

} // namespace

void failNth(Fault kind, int n) { countdown[static_cast<int>(kind)] = n; }

bool faultHits(Fault kind) {
    int &left = countdown[static_cast<int>(kind)];
    if (left <= 0)
        return false;
    return --left == 0;
}

void setFlushMode(FlushMode m) { mode = m; }
FlushMode flushMode() { return mode; }

File &File::operator=(File &&other) noexcept {
    if (this != &other) {
        close();
        handle_ = other.handle_;
        other.handle_ = -1;
    }
    return *this;
}

Mapping::Mapping(Mapping &&other) noexcept : mapping_(other.mapping_), base_(other.base_), size_(other.size_) {
    other.mapping_ = -1;
    other.base_ = nullptr;
    other.size_ = 0;
}

Mapping &Mapping::operator=(Mapping &&other) noexcept {
    if (this != &other) {
        close();
        mapping_ = other.mapping_;
        base_ = other.base_;
        size_ = other.size_;
        other.mapping_ = -1;
        other.base_ = nullptr;
        other.size_ = 0;
    }
    return *this;
}

} // namespace zq::platform
