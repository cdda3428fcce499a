// Restoring "catalog.plm" from "catalog.bck" and completing it from the database files.
//
// An intact database file is never lost because the catalog lost its entry: without the
// entry the next creation of that name would take the file for a leftover.
#include "storage/catalog_recovery.h"

#include "platform/files.h"
#include "storage/catalog.h"
#include "storage/state.h"

#include <string>
#include <string_view>

namespace zq::storage {
namespace {

constexpr uint32_t kTypeData = 0x44415441u, kTypeMemo = 0x4D454D4Fu, kTypeIndex = 0x494E4458u;
constexpr uint32_t kCreatorTables = 0x5A454C51u; // 'ZELQ'

// The whole file, or false when it cannot be read.
bool readWholeFile(const std::string &path, std::vector<uint8_t> &bytes) {
    platform::File file = platform::openFile(path, platform::FileOpen::Existing);
    if (!file.valid())
        return false;
    int64_t size = platform::fileSize(file);
    if (size < 0 || size >= kMaxFileSize)
        return false;
    bytes.resize(size_t(size));
    return size == 0 || platform::readFileStart(file, bytes.data(), uint32_t(size));
}

bool writeWholeFile(const std::string &path, const std::vector<uint8_t> &bytes) {
    platform::deleteFile(path);
    platform::File file = platform::openFile(path, platform::FileOpen::CreateNew);
    return file.valid() && platform::writeFileStart(file, bytes.data(), uint32_t(bytes.size()));
}

bool fitForFileName(const char *name) {
    size_t length = strnlen(name, kNameSize);
    if (length == 0 || length == kNameSize)
        return false;
    for (size_t i = 0; i < length; ++i) {
        auto c = static_cast<unsigned char>(name[i]);
        if (c < 0x20 || c == '/' || c == '\\' || c == ':')
            return false;
    }
    return true;
}

bool endsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// A database file made by creation, by its name and the header it begins with.
bool isDatabaseFile(const std::string &name, DatabaseHeader &h) {
    if (endsWith(name, "_OS") || endsWith(name, "_Temp") || endsWith(name, "_Jn") || !fitForFileName(name.c_str()))
        return false;
    platform::File file = platform::openFile(storagePath(name), platform::FileOpen::Existing);
    if (!file.valid() || platform::fileSize(file) < kHeaderSize || !platform::readFileStart(file, &h, kHeaderSize))
        return false;
    return h.format == 2 && h.zero == 0 && (h.kind == 'V' || h.kind == 'B' || h.kind == 'X');
}

uint32_t creatorOf(std::string_view name) {
    struct Suffix {
        const char *text;
        uint32_t creator;
    };
    static const Suffix suffixes[] = {
        {".tHst", 0x74487374u}, {".tIns", 0x74496E73u}, {".tPda", 0x74506461u}, {".tLog", 0x744C6F67u}};
    for (const Suffix &s : suffixes)
        if (endsWith(name, s.text))
            return s.creator;
    return kCreatorTables;
}

uint32_t typeOf(std::string_view name, uint8_t kind) {
    if (kind == 'B')
        return kTypeIndex;
    if (kind == 'V')
        return endsWith(name, "_M") ? kTypeMemo : kTypeData; // memo companions are "<table>_M"
    return 0;
}

bool anyDatabaseFile() {
    DatabaseHeader h;
    for (const std::string &name : platform::listFiles(state().directory))
        if (isDatabaseFile(name, h))
            return true;
    return false;
}

} // namespace

bool catalogIsSound(const std::vector<uint8_t> &bytes) {
    if (bytes.size() < kHeaderSize)
        return false;
    DatabaseHeader h = load<DatabaseHeader>(bytes.data());
    if (h.format != 0 || h.kind != 0 || h.zero != 0 || h.appInfoSize != 0)
        return false;
    if (h.used == 1)
        return true;
    if (h.used < kHeaderSize || h.used > bytes.size() || (h.used - kHeaderSize) % kEntrySize != 0)
        return false;
    for (uint32_t at = kHeaderSize; at < h.used; at += kEntrySize) {
        const char *name = reinterpret_cast<const char *>(bytes.data() + at);
        if (name[0] && !fitForFileName(name))
            return false;
    }
    return true;
}

bool restoreCatalogFile() {
    std::string catalog = storagePath(kCatalogName);
    std::vector<uint8_t> bytes, backup;
    bool present = readWholeFile(catalog, bytes);
    if (present && catalogIsSound(bytes))
        return false;
    bool backupSound = readWholeFile(storagePath(kBackupName), backup) && catalogIsSound(backup);
    if (!present && !backupSound && !anyDatabaseFile())
        return false;
    if (present) {
        std::string kept = catalog + ".damaged";
        platform::deleteFile(kept);
        platform::moveFile(catalog, kept);
        trace("catalog.plm danificado: guardado como catalog.plm.damaged");
    }
    if (backupSound && writeWholeFile(catalog, backup)) {
        trace("catalog.plm restaurado de catalog.bck");
    } else {
        platform::deleteFile(catalog);
        trace("catalog.plm refeito dos arquivos do DB");
    }
    return true;
}

void adoptDatabaseFiles(bool emptyOnesToo) {
    for (const std::string &name : platform::listFiles(state().directory)) {
        DatabaseHeader h;
        if (!isDatabaseFile(name, h) || (!emptyOnesToo && h.count == 0) || findEntry(name))
            continue;
        addEntry(makeEntry(name, typeOf(name, h.kind), creatorOf(name)));
        trace(("catalog.plm: " + name + " recuperado").c_str());
    }
}

} // namespace zq::storage
