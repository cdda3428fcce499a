// Staging an update: staged copies beside their targets and the install database listing them.
//
// Each staged file is its target's name plus "~", and each install record holds the
// staged path, one format byte and the version, as the installer reads them. A staging
// goes in this order, so that every failure leaves an earlier staging of the target
// exactly as it was:
// 1. the arguments are checked: the target must be a file inside the program directory;
// 2. the install database is opened (made when missing) and read: a damaged or unwritable
//    one stops the staging here, in record storage's runtime error, before any file is made;
// 3. the new file is copied under the staged name plus ".part" and checked against its
//    source; a failed or changed copy is removed, with a database made in step 2;
// 4. the new record is appended and the target's earlier records removed;
// 5. the copy is renamed over the staged name; if that fails, step 4 is taken back.
// Paths stay in the system's own bytes throughout (no conversion to wide names), so Latin-1
// names work on every system.
#include "installer/staged_copy.h"
#include "installer/staging_target.h"
#include "platform/files.h"
#include "platform/process.h"
#include "zelqa/staging.h"
#include "zelqa/storage.h"
#include "zelqa/values.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace zq;

constexpr char kInstallBase[] = "ZELQAINST";
constexpr char kInstallDatabase[] = "ZELQAINST.tLog";
constexpr char kLogKind = 'L';
constexpr char kStagedSuffix = '~';
constexpr char kRecordFormat = 1; // the byte the installer skips between path and version
constexpr uint32_t kRecordMax = 2 * (ZQ_STAGE_MAX_TEXT + 1) + 1;

struct StagedEntry {
    std::string staged, version;
};

std::vector<char> encodeRecord(const std::string &staged, const std::string &version) {
    std::vector<char> bytes(staged.begin(), staged.end());
    bytes.push_back('\0');
    bytes.push_back(kRecordFormat);
    bytes.insert(bytes.end(), version.begin(), version.end());
    bytes.push_back('\0');
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

// Record index, read once; false when it cannot be read.
bool readEntry(DmOpenRef db, uint32_t index, StagedEntry &entry) {
    char buffer[kRecordMax];
    uint32_t length = ReadRecordBuffer(db, index, buffer, sizeof buffer);
    if (length == 0)
        return false;
    entry = decodeRecord(buffer, length);
    return true;
}

// Every record once, in order. The walk ends at the first record that cannot be read, so
// a damaged count never drives it past the records that are there.
std::vector<StagedEntry> readEntries(DmOpenRef db) {
    std::vector<StagedEntry> entries;
    StagedEntry entry;
    for (uint32_t i = 0, n = DmNumRecords(db); i < n && readEntry(db, i, entry); ++i)
        entries.push_back(entry);
    return entries;
}

// Every staged entry, the install database read once; false when nothing is staged.
bool stagedEntries(std::vector<StagedEntry> &entries) {
    DmOpenRef db = openInstallDatabase(false);
    if (!db)
        return false;
    entries = readEntries(db);
    DmCloseDatabase(db);
    return true;
}

void appendEntry(DmOpenRef db, const std::string &staged, const std::string &version) {
    std::vector<char> record = encodeRecord(staged, version);
    uint32_t index = dmAppendPosition;
    WriteRecordBuffer(db, record.data(), static_cast<uint32_t>(record.size()), &index);
}

bool holdsControl(std::string_view text) {
    for (char c : text)
        if (static_cast<unsigned char>(c) < 32 || c == 127)
            return true;
    return false;
}

// A regular file with at least one byte: the installer takes an empty file for a missing one.
bool usableSource(const char *newFile) {
    if (!platform::fileExists(newFile))
        return false;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> in(std::fopen(newFile, "rb"), std::fclose);
    return in && std::fgetc(in.get()) != EOF;
}

// The staged path for a target, or the reason there is none.
int stagedPathFor(const char *target, const char *version, std::string &staged) {
    // A line break or tab would break the installer's log lines.
    if (holdsControl(target) || holdsControl(version))
        return ZQ_STAGE_BAD_TARGET;
    std::string file = installer::installableTarget(platform::fullPath(platform::programDirectory()), target);
    if (file.empty())
        return ZQ_STAGE_BAD_TARGET;
    staged = file + kStagedSuffix;
    if (staged.size() > ZQ_STAGE_MAX_TEXT || std::strlen(version) > ZQ_STAGE_MAX_TEXT)
        return ZQ_STAGE_TOO_LONG;
    return installer::namesNonFile(staged) ? ZQ_STAGE_BAD_TARGET : ZQ_STAGE_OK;
}

} // namespace

int zq_stage_file(const char *newFile, const char *target, const char *version) noexcept {
    if (!newFile || !target || !*target || !version)
        return ZQ_STAGE_BAD_ARGUMENT;
    if (!usableSource(newFile))
        return ZQ_STAGE_NO_SOURCE;
    std::string staged;
    if (int refused = stagedPathFor(target, version, staged); refused != ZQ_STAGE_OK)
        return refused;
    bool existed = DmFindDatabase(0, kInstallDatabase) != 0;
    DmOpenRef db = openInstallDatabase(true);
    if (!db)
        return ZQ_STAGE_STORAGE_FAILED;
    std::vector<StagedEntry> entries = readEntries(db);
    auto dropNewDatabase = [&] {
        DmCloseDatabase(db);
        if (!existed)
            DeleteKindDatabase(0, __INIT_CHARPTR(kInstallBase), kLogKind);
    };
    std::string partial = staged + ".part";
    if (installer::CopyResult copied = installer::copyVerified(newFile, partial); copied != installer::CopyResult::Copied) {
        dropNewDatabase();
        return copied == installer::CopyResult::SourceChanged ? ZQ_STAGE_SOURCE_CHANGED : ZQ_STAGE_CANNOT_COPY;
    }
    appendEntry(db, staged, version);
    std::vector<StagedEntry> replaced; // staged again: the newer staging replaces the older
    for (uint32_t i = static_cast<uint32_t>(entries.size()); i-- > 0;) {
        if (entries[i].staged == staged) {
            DmRemoveRecord(db, i);
            replaced.insert(replaced.begin(), entries[i]);
        }
    }
    if (!platform::replaceFile(partial, staged)) {
        DmRemoveRecord(db, DmNumRecords(db) - 1);
        for (const StagedEntry &entry : replaced)
            appendEntry(db, entry.staged, entry.version);
        dropNewDatabase();
        platform::deleteFile(partial);
        return ZQ_STAGE_CANNOT_COPY;
    }
    DmCloseDatabase(db);
    return ZQ_STAGE_OK;
}

int zq_staged_count(void) noexcept {
    std::vector<StagedEntry> entries;
    return stagedEntries(entries) ? static_cast<int>(entries.size()) : 0;
}

int zq_staged_entry(int index, char *stagedPath, uint32_t pathSize, char *version,
                    uint32_t versionSize) noexcept {
    if (index < 0 || !stagedPath || !version || pathSize == 0 || versionSize == 0)
        return ZQ_STAGE_BAD_ARGUMENT;
    DmOpenRef db = openInstallDatabase(false);
    if (!db)
        return ZQ_STAGE_NOTHING_STAGED;
    StagedEntry entry;
    bool found = static_cast<uint32_t>(index) < DmNumRecords(db) && readEntry(db, static_cast<uint32_t>(index), entry);
    DmCloseDatabase(db);
    if (!found)
        return ZQ_STAGE_BAD_ARGUMENT;
    std::snprintf(stagedPath, pathSize, "%s", entry.staged.c_str());
    std::snprintf(version, versionSize, "%s", entry.version.c_str());
    return ZQ_STAGE_OK;
}

int zq_visit_staged(zq_staged_visitor visit, void *context) noexcept {
    std::vector<StagedEntry> entries;
    if (!visit)
        return ZQ_STAGE_BAD_ARGUMENT;
    if (!stagedEntries(entries))
        return ZQ_STAGE_NOTHING_STAGED;
    for (const StagedEntry &entry : entries)
        visit(entry.staged.c_str(), entry.version.c_str(), context);
    return ZQ_STAGE_OK;
}

int zq_cancel_staged(void) noexcept {
    std::vector<StagedEntry> entries;
    if (!stagedEntries(entries))
        return ZQ_STAGE_NOTHING_STAGED;
    for (const StagedEntry &entry : entries)
        platform::deleteFile(entry.staged);
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
    case ZQ_STAGE_BAD_TARGET:
        return "the target cannot be installed: it must name a file inside the application directory, "
               "and neither it nor the version may hold a control character (line break, tab, ...)";
    case ZQ_STAGE_SOURCE_CHANGED: return "the new file changed while it was copied; try again once it is complete";
    case ZQ_STAGE_STORAGE_FAILED: return "the install database could not be opened";
    default: return "unknown result";
    }
}
