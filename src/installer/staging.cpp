// Staging an update: staged copies beside their targets and the install database listing them.
//
// Each staged file is its target's name plus "~", and each install record holds the
// staged path, one format byte and the version, as the installer reads them. The copy is
// made before the record is written and removed again if anything fails, so a staging
// either happens whole or leaves nothing new behind.
#include "platform/process.h"
#include "zelqa/staging.h"
#include "zelqa/storage.h"
#include "zelqa/values.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr char kInstallBase[] = "ZELQAINST";
constexpr char kInstallDatabase[] = "ZELQAINST.tLog";
constexpr char kLogKind = 'L';
constexpr char kStagedSuffix = '~';
constexpr char kRecordFormat = 1; // the byte the installer skips between path and version
constexpr uint32_t kRecordMax = 2 * (ZQ_STAGE_MAX_TEXT + 1) + 1;

struct StagedEntry {
    std::string staged, version;
};

std::string stagedPathFor(const char *target) {
    fs::path path(target);
    if (path.is_relative())
        path = fs::path(zq::platform::programDirectory()) / path;
    return path.lexically_normal().make_preferred().string() + kStagedSuffix;
}

std::vector<char> encodeRecord(const std::string &staged, const char *version) {
    std::vector<char> bytes(staged.begin(), staged.end());
    bytes.push_back('\0');
    bytes.push_back(kRecordFormat);
    bytes.insert(bytes.end(), version, version + std::strlen(version) + 1);
    return bytes;
}

StagedEntry decodeRecord(const char *bytes, uint32_t length) {
    StagedEntry entry;
    size_t pathLength = strnlen(bytes, length);
    entry.staged.assign(bytes, pathLength);
    if (pathLength + 2 < length)
        entry.version.assign(bytes + pathLength + 2, strnlen(bytes + pathLength + 2, length - pathLength - 2));
    return entry;
}

// The install database opened, or null when there is none and create is false.
DmOpenRef openInstallDatabase(bool create) {
    if (!create && !DmFindDatabase(0, kInstallDatabase))
        return nullptr;
    return OpenKindDatabase(0, __INIT_CHARPTR(kInstallBase), 0, kLogKind);
}

std::vector<StagedEntry> readEntries(DmOpenRef db) {
    std::vector<StagedEntry> entries;
    char buffer[kRecordMax];
    for (uint32_t i = 0, n = DmNumRecords(db); i < n; ++i) {
        uint32_t length = ReadRecordBuffer(db, i, buffer, sizeof buffer);
        entries.push_back(decodeRecord(buffer, length));
    }
    return entries;
}

bool usableSource(const char *newFile) {
    std::error_code ec;
    return fs::is_regular_file(newFile, ec) && fs::file_size(newFile, ec) > 0 && !ec;
}

} // namespace

int zq_stage_file(const char *newFile, const char *target, const char *version) noexcept {
    if (!newFile || !target || !*target || !version)
        return ZQ_STAGE_BAD_ARGUMENT;
    if (!usableSource(newFile))
        return ZQ_STAGE_NO_SOURCE;
    std::string staged = stagedPathFor(target);
    if (staged.size() > ZQ_STAGE_MAX_TEXT || std::strlen(version) > ZQ_STAGE_MAX_TEXT)
        return ZQ_STAGE_TOO_LONG;
    // Copied under a working name first, so an earlier staging of the target stays whole
    // until the new copy is complete.
    std::string partial = staged + ".part";
    std::error_code ec;
    fs::copy_file(newFile, partial, fs::copy_options::overwrite_existing, ec);
    if (!ec && fs::file_size(partial, ec) == fs::file_size(newFile, ec) && !ec)
        fs::rename(partial, staged, ec);
    if (ec) {
        fs::remove(partial, ec);
        return ZQ_STAGE_CANNOT_COPY;
    }
    DmOpenRef db = openInstallDatabase(true);
    std::vector<StagedEntry> entries = readEntries(db);
    for (uint32_t i = static_cast<uint32_t>(entries.size()); i-- > 0;)
        if (entries[i].staged == staged)
            DmRemoveRecord(db, i); // staged again: the newer staging replaces the older
    std::vector<char> record = encodeRecord(staged, version);
    uint32_t index = dmAppendPosition;
    WriteRecordBuffer(db, record.data(), static_cast<uint32_t>(record.size()), &index);
    DmCloseDatabase(db);
    return ZQ_STAGE_OK;
}

int zq_staged_count(void) noexcept {
    DmOpenRef db = openInstallDatabase(false);
    if (!db)
        return 0;
    int count = static_cast<int>(DmNumRecords(db));
    DmCloseDatabase(db);
    return count;
}

int zq_staged_entry(int index, char *stagedPath, uint32_t pathSize, char *version,
                    uint32_t versionSize) noexcept {
    DmOpenRef db = openInstallDatabase(false);
    if (!db)
        return ZQ_STAGE_NOTHING_STAGED;
    std::vector<StagedEntry> entries = readEntries(db);
    DmCloseDatabase(db);
    if (index < 0 || static_cast<size_t>(index) >= entries.size() || !stagedPath || !version ||
        pathSize == 0 || versionSize == 0)
        return ZQ_STAGE_BAD_ARGUMENT;
    std::snprintf(stagedPath, pathSize, "%s", entries[index].staged.c_str());
    std::snprintf(version, versionSize, "%s", entries[index].version.c_str());
    return ZQ_STAGE_OK;
}

int zq_cancel_staged(void) noexcept {
    DmOpenRef db = openInstallDatabase(false);
    if (!db)
        return ZQ_STAGE_NOTHING_STAGED;
    std::vector<StagedEntry> entries = readEntries(db);
    DmCloseDatabase(db);
    std::error_code ec;
    for (const StagedEntry &entry : entries)
        fs::remove(entry.staged, ec);
    DeleteKindDatabase(0, __INIT_CHARPTR(kInstallBase), kLogKind);
    return ZQ_STAGE_OK;
}

const char *zq_stage_result_text(int result) noexcept {
    switch (result) {
    case ZQ_STAGE_OK: return "done";
    case ZQ_STAGE_NO_SOURCE: return "the new file is missing, is not a regular file, or is empty";
    case ZQ_STAGE_TOO_LONG: return "the staged path or the version is longer than 255 bytes";
    case ZQ_STAGE_CANNOT_COPY: return "the new file could not be copied beside its target";
    case ZQ_STAGE_BAD_ARGUMENT: return "an argument is missing or out of range";
    case ZQ_STAGE_NOTHING_STAGED: return "nothing is staged";
    default: return "unknown result";
    }
}
