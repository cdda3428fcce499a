// Reading an install record and moving its staged file into place.
#include "installer/install_record.h"

#include <algorithm>

#include "installer/file_exists.h"
#include "platform/files.h"
#include "platform/process.h"

namespace zq::installer {

namespace {

// The NUL-ended text at `from`, bounded by the record's end.
std::string textAt(std::span<const std::byte> bytes, size_t from) {
    if (from >= bytes.size())
        return {};
    auto *begin = reinterpret_cast<const char *>(bytes.data()) + from;
    auto *end = reinterpret_cast<const char *>(bytes.data()) + bytes.size();
    return std::string(begin, std::find(begin, end, '\0'));
}

// The existence test on a copy, so the caller's text keeps its case.
bool existsUnlowered(std::string path) { return fileExists(path); }

// With nothing staged, no file at the target and its backup there, an earlier run stopped
// between setting the old file aside and moving the new one in, and the staged file has
// gone since: the backup is the only copy left, so it goes back in place.
void restoreInterrupted(const InstallRecord &record, const std::string &target, InstallLog &log) {
    if (record.backup == record.target || existsUnlowered(record.target) || !existsUnlowered(record.backup))
        return;
    if (platform::moveFile(record.backup, record.target))
        log.write("Restaurado backup do arquivo %s\n", target.c_str());
    else
        log.write("Falhou restaura\347\343o do arquivo %s\n", target.c_str());
}

} // namespace

std::string backupPath(const std::string &target) {
    size_t cut = target.rfind(platform::directorySeparator());
    if (cut == std::string::npos)
        return target;
    return target.substr(0, cut + 1) + "_" + target.substr(cut + 1);
}

InstallRecord readInstallRecord(std::span<const std::byte> bytes) {
    InstallRecord record;
    std::string staged = textAt(bytes, 0);
    // The version starts two bytes after the staged text: past its NUL and the skipped byte.
    record.version = textAt(bytes, staged.size() + 2);
    record.staged = staged;
    record.target = record.staged.substr(0, record.staged.empty() ? 0 : record.staged.size() - 1);
    record.backup = backupPath(record.target);
    return record;
}

Outcome installRecord(const InstallRecord &record, InstallLog &log) {
    // The working texts are lowered by the existence tests; files are moved through the
    // record's own texts, so they keep the case the record gives.
    std::string staged = record.staged, target = record.target, backup = record.backup;
    log.write("INSTALANDO %s\n", staged.c_str());
    if (!fileExists(staged)) {
        restoreInterrupted(record, target, log);
        return Outcome::Undecided;
    }
    log.write("RENOMEANDO %s para %s\n", target.c_str(), backup.c_str());
    bool oldFileThere = existsUnlowered(record.target);
    if (fileExists(backup)) {
        // Without the old file the backup is the only copy of the version before: an
        // earlier run stopped after setting it aside. Keep it and finish that run's work.
        if (oldFileThere)
            platform::deleteFile(record.backup); // a failure shows in the move below
        else
            log.write("Mantido backup do arquivo %s\n", target.c_str());
    }
    if (fileExists(target)) {
        if (!platform::moveFile(record.target, record.backup)) {
            log.write("Falhou exclus\343o do arquivo %s\n", target.c_str());
            return Outcome::Undecided;
        }
        log.write("Criado backup do arquivo %s\n", target.c_str());
    }
    log.write("COPIANDO %s para %s\n", staged.c_str(), target.c_str());
    if (!platform::moveFile(record.staged, record.target)) {
        log.write("Falhou Instala\347\343o do arquivo %s vers\343o %s\n", target.c_str(), record.version.c_str());
        return Outcome::Failed;
    }
    log.write("Instalado o arquivo %s vers\343o %s\n", target.c_str(), record.version.c_str());
    return Outcome::Installed;
}

} // namespace zq::installer
