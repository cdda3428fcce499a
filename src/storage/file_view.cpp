// Opening, growing and closing mapped storage files.
#include "storage/file_view.h"

#include "platform/process.h"
#include "runtime/raise.h"
#include "storage/state.h"
#include "zelqa/boxes.h"

#include <algorithm>
#include <cstdio>

namespace zq::storage {
namespace {

// Growth steps: two of 15360, two of 61440, then 92160 bytes.
uint32_t growthStep(uint32_t growCount) {
    if (growCount <= 2)
        return kMapStep;
    if (growCount <= 4)
        return 61440;
    return 92160;
}

[[noreturn]] void failFile(const char *what, const std::string &name) {
    alertAfterError(std::string("falhou ") + what + " do arquivo " + name + " ");
    runtime::raiseError(ZQ_ERR_LOW_MEMORY);
}

[[noreturn]] void failMapping(platform::MapStatus status, const std::string &name, uint32_t size) {
    const char *what = status == platform::MapStatus::ViewFailed ? "MapViewOfFile" : "CreateFileMapping";
    alertAfterError(std::string("falhou ") + what + " do arquivo " + name + " sz=" + std::to_string(size) + " ");
    runtime::raiseError(ZQ_ERR_LOW_MEMORY);
}

// Reads the header of a file that may not exist; false when there is none.
bool readHeader(const std::string &path, const std::string &name, int64_t &size, DatabaseHeader &h) {
    h = {};
    size = 0;
    platform::File file = platform::openFile(path, platform::FileOpen::Existing);
    if (!file.valid())
        return false;
    size = platform::fileSize(file);
    if (size < 0 || size >= kMaxFileSize)
        failFile("GetFileSize", name);
    if (size >= kHeaderSize && !platform::readFileStart(file, &h, kHeaderSize))
        failFile("ReadFile", name);
    return true;
}

void mapAt(FileView &view, const std::string &path, uint32_t size) {
    view.file = platform::openFile(path, platform::FileOpen::Existing);
    if (!view.file.valid())
        view.file = platform::openFile(path, platform::FileOpen::CreateNew);
    if (!view.file.valid())
        failFile("abertura", view.name);
    platform::MapStatus status;
    view.map = platform::mapFile(view.file, size, status);
    if (!view.map.valid())
        failMapping(status, view.name, size);
}

} // namespace

std::string storagePath(std::string_view name) {
    std::string path = state().directory;
    path += platform::directorySeparator();
    path += name;
    return path;
}

std::unique_ptr<FileView> openView(std::string_view name) {
    if (name.size() >= kMaxFileName) {
        alert("Nome muito grande");
        runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    }
    auto view = std::make_unique<FileView>();
    view->name = name;
    std::string path = storagePath(name);
    int64_t fileSize = 0;
    DatabaseHeader h{};
    readHeader(path, view->name, fileSize, h);
    uint32_t real = uint32_t(fileSize);
    // The file's size is its capacity: the header's figure is only believed when it says
    // the same, so a damaged one can neither map a huge file nor hide the file's tail.
    uint32_t capacity = std::max(real, kMapStep);
    uint32_t used = 1;
    if (real > 0) {
        used = h.used ? h.used : kHeaderSize;
        // A record is only what the file really holds: a cut file keeps no invented tail.
        if (used != 1)
            used = std::clamp(used, kHeaderSize, std::max(real, kHeaderSize));
    }
    bool rewrite = real == 0 || h.capacity != capacity || h.used != used;
    uint32_t size = mappingSize(capacity);
    mapAt(*view, path, size);
    view->extent = real;
    DatabaseHeader mapped = real >= kHeaderSize ? view->header() : DatabaseHeader{};
    mapped.capacity = size;
    view->setHeader(mapped);
    view->map.flush(0, kHeaderSize);
    if (rewrite || size != capacity) {
        mapped.used = used;
        view->setHeader(mapped);
        view->map.flush(0, kHeaderSize);
    }
    return view;
}

void remapView(FileView &view, uint32_t newSize) {
    view.map.flush(0, view.mapSize());
    view.map.close();
    view.file.close();
    std::string path = storagePath(view.name);
    {
        platform::File file = platform::openFile(path, platform::FileOpen::Existing);
        if (!file.valid())
            failFile("abertura", view.name);
        if (!platform::setFileSize(file, newSize))
            failMapping(platform::MapStatus::MappingFailed, view.name, newSize);
    }
    mapAt(view, path, newSize);
}

void growView(FileView &view, int64_t n) {
    if (n < 0)
        n = kMapStep;
    DatabaseHeader h = view.header();
    uint32_t oldUsed = h.used == 1 ? 0 : h.used;
    uint64_t wanted = uint64_t(oldUsed) + uint64_t(n);
    view.cursor = oldUsed;
    if (h.capacity > wanted) {
        h.used = uint32_t(wanted);
        writeHeader(view, h);
        return;
    }
    uint64_t capacity = uint64_t(h.capacity) + growthStep(view.growCount + 1);
    if (wanted > capacity)
        capacity = wanted + kMapStep;
    if (capacity >= kMaxFileSize)
        capacity = wanted + 1; // the last room below the limit, without a spare step
    if (capacity >= kMaxFileSize)
        failMapping(platform::MapStatus::MappingFailed, view.name, uint32_t(std::min<uint64_t>(wanted, UINT32_MAX)));
    capacity = mappingSize(uint32_t(capacity));
    view.map.flush(0, view.mapSize());
    ++view.growCount;
    remapView(view, uint32_t(capacity));
    view.extent = uint32_t(capacity);
    h = view.header();
    h.capacity = uint32_t(capacity);
    h.used = uint32_t(wanted);
    view.setHeader(h);
    view.map.flush(0, kHeaderSize);
}

void writeHeader(FileView &view, const DatabaseHeader &h) {
    view.setHeader(h);
    if (!state().bulk)
        view.map.flush(0, kHeaderSize);
}

void flushRange(FileView &view, uint32_t offset, uint32_t length) {
    if (!state().bulk)
        view.map.flush(offset, length);
}

void flushView(FileView &view) { view.map.flush(0, view.mapSize()); }

void closeView(std::unique_ptr<FileView> &view) {
    if (!view)
        return;
    flushView(*view);
    int rc = view->map.close();
    if (rc & 1) {
        alert("erro unmap 1");
        MostraErro();
    }
    if (rc & 2) {
        alert("erro unmap 2");
        MostraErro();
    }
    view->file.close();
    view.reset();
}

} // namespace zq::storage
