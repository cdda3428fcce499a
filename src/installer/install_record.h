// One record of the install database: a staged file, its version, and putting it in place.
//
// A record holds the staged path as NUL-ended text, one byte the installer skips, and the
// version as NUL-ended text. A staged file is named as its final file plus one character.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "installer/install_log.h"

namespace zq::installer {

struct InstallRecord {
    std::string staged;  // path of the staged file
    std::string version; // only written into the log
    std::string target;  // staged path less its last character
    std::string backup;  // target with '_' put after its last separator; target if none
};

// Reads a record's bytes. Texts stop at their NUL or at the record's end, whatever their
// length; a record too short for a version gives an empty one.
InstallRecord readInstallRecord(std::span<const std::byte> bytes);

// The backup name of a target path.
std::string backupPath(const std::string &target);

enum class Outcome {
    Undecided, // nothing staged, or the old file could not be set aside
    Installed,
    Failed     // the staged file could not be moved into place
};

// Moves the staged file into place, the replaced file kept under the backup name, and
// logs each step. Log lines show the paths as the existence tests have lowered them.
//
// The only copy of a version is never deleted. A backup is replaced only while the old
// file is there to take its place. A run that finds the state an interrupted run leaves
// (old file set aside, new one not yet moved in) finishes from the files: with the staged
// file there it keeps the backup ("Mantido backup do arquivo") and moves the new file in;
// with the staged file gone it puts the backup back ("Restaurado backup do arquivo").
Outcome installRecord(const InstallRecord &record, InstallLog &log);

} // namespace zq::installer
