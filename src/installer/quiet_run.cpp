// Boxes answered into the installer's log, and the end of a run cut short by a runtime error.
#include "installer/quiet_run.h"

#include <utility>

#include "zelqa/boxes.h"
#include "zelqa/errors.h"
#include "zelqa/storage.h"

namespace zq::installer {

namespace {

// The installer runs on one thread, one run per process: one log at a time.
InstallLog *runLog = nullptr;
const char *databaseUnderReading = nullptr;

constexpr unsigned kButtonsMask = 0xF;
constexpr unsigned kOkOnly = 0, kYesNo = 4;
constexpr int kCancel = 2;

int answerQuietly(const char *caption, const char *text, unsigned style) {
    if (runLog)
        runLog->write("[%s] %s\n", caption ? caption : "", text ? text : "");
    unsigned buttons = style & kButtonsMask;
    if (buttons == kOkOnly)
        return ZQ_BUTTON_OK;
    return buttons == kYesNo ? ZQ_BUTTON_NO : kCancel;
}

// Runs inside __RuntimeError, after the box. Deleting may raise a second runtime error,
// which ends the process at once: it is tried only for a database the catalog knew a
// moment ago.
void endAfterRuntimeError() {
    if (!runLog)
        return;
    if (const char *name = std::exchange(databaseUnderReading, nullptr)) {
        if (LocalID id = DmFindDatabase(0, name); id && DmDeleteDatabase(0, id) == 0)
            runLog->write("Exclu\355do %s ap\363s erro fatal!\n", name);
    }
    runLog->write("\nInstall END\n");
    runLog->close();
}

} // namespace

QuietRun::QuietRun(InstallLog &log) {
    runLog = &log;
    zq_set_box_hook(answerQuietly);
    __RegisterExit(endAfterRuntimeError);
}

QuietRun::~QuietRun() {
    __RegisterExit(nullptr);
    zq_set_box_hook(nullptr);
    databaseUnderReading = nullptr;
    runLog = nullptr;
}

void QuietRun::readingDatabase(const char *name) { databaseUnderReading = name; }

} // namespace zq::installer
