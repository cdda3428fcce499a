// Files, mappings and directories: the calls record storage makes to the operating system.
//
// Plain types only: no system handle leaves this seam. File and Mapping are move-only
// owners; a failed call returns an invalid owner or false and leaves the reason in the
// last system error (platform/system_error.h).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zq::platform {

// An open file, read-write, shared for reading and writing, with write-through.
class File {
public:
    File() = default;
    explicit File(intptr_t handle) : handle_(handle) {}
    File(File &&other) noexcept : handle_(other.handle_) { other.handle_ = -1; }
    File &operator=(File &&other) noexcept;
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    ~File() { close(); }

    bool valid() const { return handle_ != -1; }
    intptr_t native() const { return handle_; }
    bool close(); // false when the system refused; the owner is empty afterwards

private:
    intptr_t handle_ = -1; // system handle or descriptor; -1 = none
};

enum class FileOpen {
    Existing,  // open an existing file only
    CreateNew, // create a new file; fail when it exists
};

File openFile(const std::string &path, FileOpen how);
int64_t fileSize(const File &file);                              // -1 on failure
bool readFileStart(const File &file, void *buffer, uint32_t bytes); // from offset 0
bool writeFileStart(const File &file, const void *bytes, uint32_t count);
bool setFileSize(const File &file, uint32_t size); // moves the end of the file

enum class MapStatus { Ok, MappingFailed, ViewFailed };

// A whole-file, read-write shared mapping.
class Mapping {
public:
    Mapping() = default;
    Mapping(intptr_t mapping, uint8_t *base, uint32_t size) : mapping_(mapping), base_(base), size_(size) {}
    Mapping(Mapping &&other) noexcept;
    Mapping &operator=(Mapping &&other) noexcept;
    Mapping(const Mapping &) = delete;
    Mapping &operator=(const Mapping &) = delete;
    ~Mapping() { close(); }

    bool valid() const { return base_ != nullptr; }
    uint8_t *data() const { return base_; }
    uint32_t size() const { return size_; }
    // Hands the range to the system for writing back; see flushMode().
    bool flush(uint32_t offset, uint32_t length) const;
    // 0 when done, else bit 1: the view could not be unmapped, bit 2: the mapping handle
    // could not be closed. The owner is empty afterwards in every case.
    int close();

private:
    intptr_t mapping_ = -1; // mapping object (Windows); unused on POSIX
    uint8_t *base_ = nullptr;
    uint32_t size_ = 0;
};

// Maps the first size bytes of the file, extending the file to that size when shorter.
Mapping mapFile(const File &file, uint32_t size, MapStatus &status);

// Opens, making it when missing, a file that only one process at a time can hold: invalid
// while another process holds it. Held until the owner closes it or the process ends,
// however it ends.
File openExclusive(const std::string &path);

// The names of the regular files in a directory, in no particular order; empty when the
// directory cannot be read.
std::vector<std::string> listFiles(const std::string &directory);

bool fileExists(const std::string &path);
bool deleteFile(const std::string &path);
bool moveFile(const std::string &from, const std::string &to); // fails when `to` exists
// Moves `from` over `to` in one step: `to` names the old file or the new one, never nothing.
bool replaceFile(const std::string &from, const std::string &to);
bool createDirectory(const std::string &path); // an existing one is fine
// Gives `to` the permissions of `from` (on POSIX its mode, so a program stays runnable;
// nothing to do on Windows). False when they cannot be read or set.
bool copyPermissions(const std::string &from, const std::string &to);
// The path made absolute against the current directory, its bytes otherwise as given
// (GetFullPathNameA on Windows, which also settles "." and ".."); empty on failure.
std::string fullPath(const std::string &path);

// The local clock as the system's time record: 16-bit fields in this order.
struct LocalTime {
    uint16_t year, month, dayOfWeek, day, hour, minute, second, milliseconds;
};
LocalTime localTime();

// How Mapping::flush writes back on POSIX. Windows always uses FlushViewOfFile.
enum class FlushMode {
    Async, // msync(MS_ASYNC): schedule the write-back (default)
    Sync,  // msync(MS_SYNC): wait until the bytes are on the device
    None,  // leave it to the page cache
};
void setFlushMode(FlushMode mode);
FlushMode flushMode();

// Waits until the file's written bytes, those written through its mappings included, are
// on the device (fdatasync / FlushFileBuffers). False when the system refused.
bool syncFile(const File &file);

// Test-only fault switch: makes the nth following call of one kind fail, as the system
// would. n = 0 switches the kind off.
enum class Fault { Open, Map, Write, Resize, Count };
void failNth(Fault kind, int n);
bool faultHits(Fault kind); // called by the backends: true when this call is to fail

} // namespace zq::platform
