// One open, mapped storage file: opening, growing, flushing and closing it.
//
// The header in the mapping is the only copy of a file's used size and capacity; callers
// keep offsets, never addresses, across anything that may grow the file, since growth
// maps the file again at another address.
#pragma once

#include "platform/files.h"
#include "storage/layout.h"

#include <memory>
#include <string>
#include <string_view>

namespace zq::storage {

struct FileView {
    platform::File file;      // the open file
    platform::Mapping map;    // the whole file, mapped
    uint32_t cursor = 0;      // where the bytes of the last growth begin
    uint32_t growCount = 0;   // enlargements so far
    std::string name;         // storage file name, under 128 characters

    uint8_t *base() const { return map.data(); }
    uint32_t mapSize() const { return map.size(); }
    DatabaseHeader header() const { return load<DatabaseHeader>(base()); }
    void setHeader(const DatabaseHeader &h) { store(base(), h); }
    uint32_t used() const { return header().used; }
};

// The full path of a storage file: storage directory, separator, name.
std::string storagePath(std::string_view name);

// Opens and maps a storage file, making it when missing. Bad names, unusable files and
// failed mappings show their alert and raise runtime error 5.
std::unique_ptr<FileView> openView(std::string_view name);

// Makes room for n more bytes behind the used size (n < 0 means kMapStep) and sets the
// cursor to where they begin. A failed re-map raises runtime error 5.
void growView(FileView &view, int64_t n);

// Maps the file again at exactly newSize bytes, setting the end of the file there.
void remapView(FileView &view, uint32_t newSize);

void writeHeader(FileView &view, const DatabaseHeader &h); // flushed unless in bulk mode
void flushRange(FileView &view, uint32_t offset, uint32_t length);
void flushView(FileView &view);

// Flushes, unmaps and closes; failures are shown and the close goes on.
void closeView(std::unique_ptr<FileView> &view);

} // namespace zq::storage
