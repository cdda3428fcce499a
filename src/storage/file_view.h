// One open, mapped storage file: opening, growing, flushing and closing it.
//
// The header in the mapping is the only copy of a file's used size and capacity; callers
// keep offsets, never addresses, across anything that may grow the file, since growth
// maps the file again at another address.
#pragma once

#include "platform/files.h"
#include "storage/layout.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

namespace zq::storage {

struct FileView {
    platform::File file;      // the open file
    platform::Mapping map;    // the whole file, mapped
    uint32_t cursor = 0;      // where the bytes of the last growth begin
    uint32_t growCount = 0;   // enlargements so far
    uint32_t extent = 0;      // bytes the file really held at open, or the whole mapping once grown
    std::string name;         // storage file name, under 128 characters

    uint8_t *base() const { return map.data(); }
    uint32_t mapSize() const { return map.size(); }
    DatabaseHeader header() const { return load<DatabaseHeader>(base()); }
    void setHeader(const DatabaseHeader &h) { store(base(), h); }
    uint32_t used() const { return header().used; }
    // How far a walk of the file may look for records: what the file held at open (a cut
    // file's lost tail is not there) or what has been written since.
    uint32_t walkLimit() const { return std::max(extent, used()); }
};

// The full path of a storage file: storage directory, separator, name.
std::string storagePath(std::string_view name);

// Opens and maps a storage file, making it when missing. The file's own size is its
// capacity, and the used size never reaches past what the file really holds, so a short
// file never turns its lost tail into zero-filled data. Bad names, unusable files (one
// that could not be mapped below the size limit) and failed mappings show their alert and
// raise runtime error 5.
std::unique_ptr<FileView> openView(std::string_view name);

// Makes room for n more bytes behind the used size (n < 0 means kMapStep) and sets the
// cursor to where they begin. A growth that would take the file to the size limit, and a
// failed re-map, raise runtime error 5 with the file unchanged.
void growView(FileView &view, int64_t n);

// Maps the file again at exactly newSize bytes, setting the end of the file there.
void remapView(FileView &view, uint32_t newSize);

void writeHeader(FileView &view, const DatabaseHeader &h); // flushed unless in bulk mode
void flushRange(FileView &view, uint32_t offset, uint32_t length);
void flushView(FileView &view);

// Flushes, unmaps and closes; failures are shown and the close goes on.
void closeView(std::unique_ptr<FileView> &view);

} // namespace zq::storage
