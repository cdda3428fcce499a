// The main sequence of the installer.
//
// While it runs the installer holds the claim of the one running program of class
// "Tessarin" and a hidden window of that class, which a second start brings forward.
// Nothing is shown: boxes go into the log (quiet_run.h). Every failure ends in a log line
// and the orderly end: database deleted when it was opened, storage closed, relaunch only
// when the last decided record was installed.
#include "installer/driver.h"

#include <span>
#include <string>

#include "installer/command_line.h"
#include "installer/install_log.h"
#include "installer/install_record.h"
#include "installer/quiet_run.h"
#include "installer/relaunch.h"
#include "platform/process.h"
#include "platform/windows.h"
#include "zelqa/storage.h"

namespace zq::installer {

namespace {

// Pauses answer messages to the installer's own window, so a second start never waits on it.
void pause(uint32_t ms) { platform::serveWindows(ms); }

// Waits for the application's window to go; false when it stays through every pass.
bool waitForApplication(InstallLog &log) {
    for (int left = kWaitPasses;;) {
        if (left == 0) {
            log.write("Falhou libera\347\343o de mem\363ria!\n");
            return false;
        }
        log.write("Aguardando libera\347\343o de mem\363ria!\n");
        pause(kWaitPassMs);
        --left;
        if (!platform::windowExists(kApplicationClass))
            break;
    }
    log.write("Mem\363ria liberada\n!");
    return true;
}

// Installs the records in order; the outcome of the last one that decided, if any.
Outcome installRecords(DmOpenRef db, InstallLog &log) {
    Outcome outcome = Outcome::Undecided;
    uint32_t count = DmNumRecords(db);
    pause(kRecordPauseMs);
    for (uint32_t index = 0; index < count; ++index) {
        MemHandle handle = DmQueryRecord(db, index);
        if (!handle) {
            log.write("INSTALANDO Falhou Registro %d\n", static_cast<int>(index));
            return Outcome::Failed;
        }
        auto *data = static_cast<const std::byte *>(MemHandleLock(handle));
        if (!data) {
            log.write("INSTALANDO Falhou  MemHandleLock Registro %d\n", static_cast<int>(index));
            return Outcome::Failed;
        }
        InstallRecord record = readInstallRecord(std::span(data, MemHandleSize(handle)));
        MemHandleUnlock(handle); // the record is copied out; moving files may take a while
        if (!acceptableText(record.staged) || !acceptableText(record.version)) {
            // Cut, it would name another file; printed, it would break the log's lines.
            log.write("INSTALANDO Recusado Registro %d\n", static_cast<int>(index));
            outcome = Outcome::Failed;
            continue;
        }
        if (Outcome decided = installRecord(record, log); decided != Outcome::Undecided)
            outcome = decided;
    }
    return outcome;
}

// Finds, opens, installs and deletes the install database.
Outcome installDatabase(const std::string &name, InstallLog &log, QuietRun &quiet) {
    if (name.empty() || name.size() > kMaxText) {
        log.write("Nome %s inv\341lido!\n", name.c_str());
        return Outcome::Failed;
    }
    log.write("Procurando %s!\n", name.c_str());
    LocalID id = DmFindDatabase(0, name.c_str());
    if (!id) {
        log.write("N\343o encontrou %s!\n", name.c_str());
        return Outcome::Failed;
    }
    log.write("ENCONTROU %s\n", name.c_str());
    quiet.readingDatabase(name.c_str());
    DmOpenRef db = DmOpenDatabase(0, id);
    if (!db) {
        log.write("N\343o abriu %s!\n", name.c_str());
        quiet.readingDatabase(nullptr);
        return Outcome::Failed;
    }
    Outcome outcome = installRecords(db, log);
    DmCloseDatabase(db);
    if (LocalID again = DmFindDatabase(0, name.c_str()))
        DmDeleteDatabase(0, again);
    quiet.readingDatabase(nullptr);
    return outcome;
}

// A path that does not fit the installer's texts is refused, never cut: cut, it would name
// another directory or program. False when the directory itself does not fit: then nothing
// is installed. A program to start that does not fit is only never started.
bool pathsFit(const std::string &directory, const Parameters &params, InstallLog &log, bool &programFits) {
    programFits = params.program.size() <= kMaxText;
    if ((directory + kLogName).size() > kMaxText) {
        log.write("Caminho longo demais: %s\n", directory.c_str());
        return false;
    }
    if (!programFits)
        log.write("Caminho longo demais: %s\n", params.program.c_str());
    return true;
}

} // namespace

int runInstaller(std::string_view commandLine) {
    // Claiming is the single-instance test, one atomic step: of installers started at once,
    // one runs. An installer holding the window without a claim is found by its window.
    platform::InstanceClaim claim;
    bool claimed = platform::claimInstance(kInstallerClass, claim);
    if (platform::bringWindowForward(kInstallerClass) || !claimed)
        return 0;
    platform::Window self = platform::createWindow(kInstallerClass, kInstallerClass);
    Parameters params = splitCommandLine(argumentsAfterProgramName(commandLine));
    std::string directory = platform::programDirectory() + platform::directorySeparator();
    InstallLog log = InstallLog::openIn(directory);
    QuietRun quiet(log);
    Outcome outcome = Outcome::Failed;
    bool programFits = false;
    if (log.isOpen()) {
        log.write("Install BEGIN\n");
        log.write("PARAM1=%s\nPARAM2=%s\n", params.database.c_str(), params.program.c_str());
        if (pathsFit(directory, params, log, programFits) && waitForApplication(log))
            outcome = installDatabase(params.database, log, quiet);
    }
    StorageClose();
    pause(kEndPauseMs);
    if (!log.isOpen())
        return 0;
    if (outcome == Outcome::Installed && programFits && !params.program.empty())
        relaunch(params.program, log);
    log.write("\nInstall END\n");
    log.close();
    pause(kEndPauseMs);
    return 0;
}

} // namespace zq::installer
