// Files, mappings and directories on Windows: CreateFileA, CreateFileMappingA, MapViewOfFile.
#include "platform/files.h"

#include <windows.h>

#include <string>

namespace zq::platform {
namespace {

HANDLE handleOf(intptr_t h) { return reinterpret_cast<HANDLE>(h); }
HANDLE handleOf(const File &file) { return handleOf(file.native()); }

bool failInjected(Fault kind) {
    if (!faultHits(kind))
        return false;
    SetLastError(ERROR_WRITE_FAULT);
    return true;
}

} // namespace

bool File::close() {
    if (handle_ == -1)
        return true;
    BOOL ok = CloseHandle(handleOf(handle_));
    handle_ = -1;
    return ok != 0;
}

File openFile(const std::string &path, FileOpen how) {
    if (failInjected(Fault::Open))
        return File();
    DWORD disposition = how == FileOpen::CreateNew ? CREATE_NEW : OPEN_EXISTING;
    HANDLE h = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           nullptr, disposition, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr);
    return h == INVALID_HANDLE_VALUE ? File() : File(reinterpret_cast<intptr_t>(h));
}

int64_t fileSize(const File &file) {
    DWORD high = 0;
    DWORD low = GetFileSize(handleOf(file), &high);
    if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR)
        return -1;
    return (static_cast<int64_t>(high) << 32) | low;
}

bool readFileStart(const File &file, void *buffer, uint32_t bytes) {
    DWORD done = 0;
    if (SetFilePointer(handleOf(file), 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER)
        return false;
    return ReadFile(handleOf(file), buffer, bytes, &done, nullptr) && done == bytes;
}

bool writeFileStart(const File &file, const void *bytes, uint32_t count) {
    if (failInjected(Fault::Write))
        return false;
    DWORD done = 0;
    if (SetFilePointer(handleOf(file), 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER)
        return false;
    return WriteFile(handleOf(file), bytes, count, &done, nullptr) && done == count;
}

bool setFileSize(const File &file, uint32_t size) {
    if (failInjected(Fault::Resize))
        return false;
    if (SetFilePointer(handleOf(file), static_cast<LONG>(size), nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER &&
        GetLastError() != NO_ERROR)
        return false;
    return SetEndOfFile(handleOf(file)) != 0;
}

Mapping mapFile(const File &file, uint32_t size, MapStatus &status) {
    status = MapStatus::MappingFailed;
    if (failInjected(Fault::Map))
        return Mapping();
    HANDLE mapping = CreateFileMappingA(handleOf(file), nullptr, PAGE_READWRITE, 0, size, nullptr);
    if (!mapping)
        return Mapping();
    void *base = MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, size);
    if (!base) {
        status = MapStatus::ViewFailed;
        DWORD error = GetLastError();
        CloseHandle(mapping);
        SetLastError(error);
        return Mapping();
    }
    status = MapStatus::Ok;
    return Mapping(reinterpret_cast<intptr_t>(mapping), static_cast<uint8_t *>(base), size);
}

bool Mapping::flush(uint32_t offset, uint32_t length) const {
    if (!base_ || offset >= size_)
        return true;
    if (offset + length > size_)
        length = size_ - offset;
    return FlushViewOfFile(base_ + offset, length) != 0;
}

bool syncFile(const File &file) { return FlushFileBuffers(handleOf(file)) != 0; }

int Mapping::close() {
    if (!base_)
        return 0;
    int rc = 0;
    if (!UnmapViewOfFile(base_))
        rc |= 1;
    if (!CloseHandle(handleOf(mapping_)))
        rc |= 2;
    base_ = nullptr;
    size_ = 0;
    mapping_ = -1;
    return rc;
}

File openExclusive(const std::string &path) {
    // No sharing at all: a second open fails until this handle is closed.
    HANDLE h = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    return h == INVALID_HANDLE_VALUE ? File() : File(reinterpret_cast<intptr_t>(h));
}

std::vector<std::string> listFiles(const std::string &directory) {
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA((directory + "\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return names;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            names.push_back(found.cFileName);
    } while (FindNextFileA(search, &found));
    FindClose(search);
    return names;
}

bool fileExists(const std::string &path) {
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    FindClose(search);
    return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool deleteFile(const std::string &path) { return DeleteFileA(path.c_str()) != 0; }

bool moveFile(const std::string &from, const std::string &to) { return MoveFileA(from.c_str(), to.c_str()) != 0; }

bool replaceFile(const std::string &from, const std::string &to) {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

std::string fullPath(const std::string &path) {
    DWORD size = GetFullPathNameA(path.c_str(), 0, nullptr, nullptr);
    if (size == 0)
        return std::string();
    std::string full(size, '\0');
    DWORD n = GetFullPathNameA(path.c_str(), size, full.data(), nullptr);
    if (n == 0 || n >= size)
        return std::string();
    full.resize(n);
    return full;
}

bool copyPermissions(const std::string &, const std::string &) { return true; }

bool createDirectory(const std::string &path) {
    return CreateDirectoryA(path.c_str(), nullptr) != 0 || GetLastError() == ERROR_ALREADY_EXISTS;
}

LocalTime localTime() {
    SYSTEMTIME t;
    GetLocalTime(&t);
    return LocalTime{t.wYear, t.wMonth, t.wDayOfWeek, t.wDay, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds};
}

} // namespace zq::platform
