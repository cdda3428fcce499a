// The installer shows nothing: its boxes are answered unseen and written into its log, and a
// runtime error ends the run in the log rather than on screen.
#pragma once

#include "installer/install_log.h"

namespace zq::installer {

// While it lives, every box is answered without being shown (OK; No or Cancel when the box
// offers them) and written into the log as "[caption] text". A runtime error, after its
// box, deletes the database under reading (see readingDatabase) and writes "\nInstall END\n";
// the process then ends with exit code 0, as after every runtime error.
class QuietRun {
public:
    explicit QuietRun(InstallLog &log);
    ~QuietRun();
    QuietRun(const QuietRun &) = delete;
    QuietRun &operator=(const QuietRun &) = delete;

    // Names the install database while it is open and read (null: none); the text must
    // outlive the reading. A runtime error in that time means it cannot be read; left in
    // place it would fail every later install the same way, so it is deleted.
    void readingDatabase(const char *name);
};

} // namespace zq::installer
