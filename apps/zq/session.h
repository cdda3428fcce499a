// A command's run over a storage directory: the runtime started on it, its boxes and
// runtime errors turned into messages and exit statuses, and private copies for looking.
//
// Commands that only look (struct, show, export) open a private copy of the files they
// need, so that nothing the runtime repairs or records when it opens a table ever changes
// the directory looked at. Commands that change data (import, repair) start storage on
// the directory itself.
#pragma once

#include <string>
#include <vector>

namespace zq::tool {

enum ExitStatus { kExitOk = 0, kExitProblem = 1, kExitUsage = 2 };

// Prints "zq: " and the message on standard error.
void complain(const std::string &message);

// True when dir is a directory holding "catalog.plm"; otherwise complains, naming dir.
bool isStorageDirectory(const std::string &dir);

// Starts the runtime with storage in dir. Boxes print on standard error; a runtime error
// prints its text and ends the process with status 1 (removing any private copy first).
void startRuntime(const std::string &dir);
// Closes every table and storage, and removes a private copy.
void endRuntime();

// Copies "catalog.plm" and the files of the named databases (each name, and the names
// that begin with it and "_": offset index, journal) into a new private directory, and
// returns it; endRuntime or a runtime error removes it.
std::string privateCopy(const std::string &dir, const std::vector<std::string> &databases);

} // namespace zq::tool
