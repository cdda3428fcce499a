// The copy behind a staging: made under a working name and checked against its source.
#pragma once

#include <cstdint>
#include <string>

namespace zq::installer {

enum class CopyResult {
    Copied,       // `to` holds exactly what `from` holds
    CannotCopy,   // `from` cannot be read or `to` cannot be written
    SourceChanged // `from` changed while it was copied
};

// Copies `from` into a new file `to` (an existing one is replaced), with `from`'s
// permissions, then reads both again:
// the size and checksum of the bytes copied, of the source as it is now and of the copy
// must all agree. On any result but Copied, `to` is removed.
CopyResult copyVerified(const std::string &from, const std::string &to);

// For tests: called after each piece of the copy is written, with the bytes written so far;
// null removes it. Lets a test change the source in the middle of a copy.
void setCopyObserver(void (*observer)(uint64_t copied));

} // namespace zq::installer
