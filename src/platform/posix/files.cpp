// Files, mappings and directories on POSIX: open, ftruncate, mmap and msync.
//
// A write to a shared mapping lands in the page cache at once, so it survives the end of
// the process however it ends; msync only decides when it reaches the device.
#include "platform/files.h"

#include <cerrno>
#include <climits>
#include <string>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace zq::platform {
namespace {

int fd(const File &file) { return static_cast<int>(file.native()); }

bool failInjected(Fault kind) {
    if (!faultHits(kind))
        return false;
    errno = EIO;
    return true;
}

} // namespace

bool File::close() {
    if (handle_ == -1)
        return true;
    int rc = ::close(static_cast<int>(handle_));
    handle_ = -1;
    return rc == 0;
}

File openFile(const std::string &path, FileOpen how) {
    if (failInjected(Fault::Open))
        return File();
    int flags = O_RDWR | O_CLOEXEC;
    if (how == FileOpen::CreateNew)
        flags |= O_CREAT | O_EXCL;
    int d = ::open(path.c_str(), flags, 0666);
    return d < 0 ? File() : File(d);
}

int64_t fileSize(const File &file) {
    struct stat st {};
    if (fstat(fd(file), &st) != 0)
        return -1;
    return static_cast<int64_t>(st.st_size);
}

bool readFileStart(const File &file, void *buffer, uint32_t bytes) {
    return pread(fd(file), buffer, bytes, 0) == static_cast<ssize_t>(bytes);
}

bool writeFileStart(const File &file, const void *bytes, uint32_t count) {
    if (failInjected(Fault::Write))
        return false;
    return pwrite(fd(file), bytes, count, 0) == static_cast<ssize_t>(count);
}

bool setFileSize(const File &file, uint32_t size) {
    if (failInjected(Fault::Resize))
        return false;
    return ftruncate(fd(file), static_cast<off_t>(size)) == 0;
}

Mapping mapFile(const File &file, uint32_t size, MapStatus &status) {
    status = MapStatus::MappingFailed;
    if (failInjected(Fault::Map))
        return Mapping();
    int64_t current = fileSize(file);
    if (current < 0 || (static_cast<uint64_t>(current) < size && ftruncate(fd(file), size) != 0))
        return Mapping();
    status = MapStatus::ViewFailed;
    void *base = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd(file), 0);
    if (base == MAP_FAILED)
        return Mapping();
    status = MapStatus::Ok;
    return Mapping(-1, static_cast<uint8_t *>(base), size);
}

bool Mapping::flush(uint32_t offset, uint32_t length) const {
    if (!base_ || flushMode() == FlushMode::None)
        return true;
#ifdef __linux__
    // Linux tracks the dirty pages of shared mappings and writes them back by itself:
    // msync(MS_ASYNC) does nothing there but cost a system call.
    if (flushMode() == FlushMode::Async)
        return true;
#endif
    // msync wants a page-aligned start.
    long page = sysconf(_SC_PAGESIZE);
    uint32_t start = offset - offset % static_cast<uint32_t>(page);
    if (start >= size_)
        return true;
    uint32_t end = offset + length > size_ ? size_ : offset + length;
    int how = flushMode() == FlushMode::Sync ? MS_SYNC : MS_ASYNC;
    return msync(base_ + start, end - start, how) == 0;
}

bool syncFile(const File &file) { return fdatasync(fd(file)) == 0; }

int Mapping::close() {
    if (!base_)
        return 0;
    int rc = munmap(base_, size_) == 0 ? 0 : 1;
    base_ = nullptr;
    size_ = 0;
    mapping_ = -1;
    return rc;
}

File openExclusive(const std::string &path) {
    int d = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (d < 0)
        return File();
    File file(d);
    // flock, not fcntl: a lock that closing another descriptor of the file cannot drop.
    if (flock(d, LOCK_EX | LOCK_NB) != 0)
        return File();
    return file;
}

std::vector<std::string> listFiles(const std::string &directory) {
    std::vector<std::string> names;
    DIR *dir = opendir(directory.c_str());
    if (!dir)
        return names;
    while (const dirent *entry = readdir(dir)) {
        std::string name = entry->d_name;
        if (fileExists(directory + '/' + name))
            names.push_back(name);
    }
    closedir(dir);
    return names;
}

bool fileExists(const std::string &path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool deleteFile(const std::string &path) { return unlink(path.c_str()) == 0; }

bool moveFile(const std::string &from, const std::string &to) {
    if (fileExists(to)) {
        errno = EEXIST;
        return false;
    }
    return rename(from.c_str(), to.c_str()) == 0;
}

bool replaceFile(const std::string &from, const std::string &to) { return rename(from.c_str(), to.c_str()) == 0; }

std::string fullPath(const std::string &path) {
    if (!path.empty() && path[0] == '/')
        return path;
    std::string dir(PATH_MAX, '\0');
    while (!getcwd(dir.data(), dir.size())) {
        if (errno != ERANGE)
            return std::string();
        dir.resize(dir.size() * 2);
    }
    dir.resize(std::char_traits<char>::length(dir.c_str()));
    return path.empty() ? dir : dir + "/" + path;
}

bool copyPermissions(const std::string &from, const std::string &to) {
    struct stat st {};
    return stat(from.c_str(), &st) == 0 && chmod(to.c_str(), st.st_mode & 07777) == 0;
}

bool createDirectory(const std::string &path) { return mkdir(path.c_str(), 0777) == 0 || errno == EEXIST; }

LocalTime localTime() {
    struct timeval now {};
    gettimeofday(&now, nullptr);
    struct tm t {};
    time_t seconds = now.tv_sec;
    localtime_r(&seconds, &t);
    return LocalTime{static_cast<uint16_t>(t.tm_year + 1900), static_cast<uint16_t>(t.tm_mon + 1),
                     static_cast<uint16_t>(t.tm_wday), static_cast<uint16_t>(t.tm_mday),
                     static_cast<uint16_t>(t.tm_hour), static_cast<uint16_t>(t.tm_min),
                     static_cast<uint16_t>(t.tm_sec), static_cast<uint16_t>(now.tv_usec / 1000)};
}

} // namespace zq::platform
