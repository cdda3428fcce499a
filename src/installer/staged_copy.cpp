// Copying a new file beside its target and checking the copy against the source.
//
// The source may be written by someone else while it is copied. What was copied is
// summed on the way; afterwards the source and the copy are summed again. Only when the
// three agree does the copy hold one whole version of the source.
#include "installer/staged_copy.h"

#include <cstdio>
#include <memory>

#include "platform/files.h"

namespace zq::installer {

namespace {

constexpr size_t kPiece = 64 * 1024;
void (*copyObserver)(uint64_t) = nullptr;

struct Closer {
    void operator()(std::FILE *f) const { std::fclose(f); }
};
using Stream = std::unique_ptr<std::FILE, Closer>;

// Size and 64-bit FNV-1a checksum of a run of bytes.
struct Summary {
    uint64_t size = 0;
    uint64_t sum = 14695981039346656037ull;

    void add(const unsigned char *bytes, size_t n) {
        for (size_t i = 0; i < n; ++i)
            sum = (sum ^ bytes[i]) * 1099511628211ull;
        size += n;
    }
    bool operator==(const Summary &) const = default;
};

// The summary of a whole file; false when it cannot be read.
bool summarize(const std::string &path, Summary &summary) {
    Stream in(std::fopen(path.c_str(), "rb"));
    if (!in)
        return false;
    auto piece = std::make_unique<unsigned char[]>(kPiece);
    for (size_t n; (n = std::fread(piece.get(), 1, kPiece, in.get())) > 0;)
        summary.add(piece.get(), n);
    return !std::ferror(in.get());
}

// Copies and sums what was copied; false when reading or writing failed.
bool copySummarized(const std::string &from, const std::string &to, Summary &copied) {
    Stream in(std::fopen(from.c_str(), "rb"));
    if (!in)
        return false;
    Stream out(std::fopen(to.c_str(), "wb"));
    if (!out)
        return false;
    auto piece = std::make_unique<unsigned char[]>(kPiece);
    for (size_t n; (n = std::fread(piece.get(), 1, kPiece, in.get())) > 0;) {
        if (std::fwrite(piece.get(), 1, n, out.get()) != n || std::fflush(out.get()) != 0)
            return false;
        copied.add(piece.get(), n);
        if (copyObserver)
            copyObserver(copied.size);
    }
    if (std::ferror(in.get()) || std::fclose(out.release()) != 0)
        return false;
    return platform::copyPermissions(from, to); // a staged program must stay runnable
}

} // namespace

CopyResult copyVerified(const std::string &from, const std::string &to) {
    Summary copied, source, copy;
    CopyResult result = CopyResult::CannotCopy;
    if (copySummarized(from, to, copied) && summarize(from, source) && summarize(to, copy) && copied == copy)
        result = copied == source ? CopyResult::Copied : CopyResult::SourceChanged;
    if (result != CopyResult::Copied)
        platform::deleteFile(to);
    return result;
}

void setCopyObserver(void (*observer)(uint64_t)) { copyObserver = observer; }

} // namespace zq::installer
