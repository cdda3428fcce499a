// The hand-off: the fresh log, the installer's existence, the install database, the start.
#include "installer/hand_off.h"

#include "installer/command_line.h"
#include "installer/file_exists.h"
#include "installer/install_log.h"
#include "platform/process.h"
#include "platform/processes.h"
#include "zelqa/storage.h"

#include <string>

namespace zq::installer {

void handOffToInstaller() {
    std::string directory = platform::programDirectory() + platform::directorySeparator();
    InstallLog log = InstallLog::startFreshIn(directory);
    log.write("DIRAPP=%s\n", directory.c_str());
    std::string installer = directory + kInstallerProgram;
    std::string application = platform::programPath();
    // Paths the installer could not take are refused here, never cut: cut, they would name
    // another directory, and the installer's log and storage would land there.
    for (const std::string *path : {&installer, &application}) {
        if (path->size() > kMaxText) {
            log.write("Caminho longo demais: %s\n", path->c_str());
            return;
        }
    }
    log.write("Finding EXE=%s\n", installer.c_str());
    std::string tested = installer; // the existence test lowers what it is given
    if (!fileExists(tested))
        return;
    log.write("EXE=%s OK\n", installer.c_str());
    if (!DmFindDatabase(0, kInstallDatabase))
        return;
    log.write("CreateProcess Begin %s .\nParam=%s\n", installer.c_str(), kInstallDatabase);
    // The command line: this program's path (quoted on Windows when it holds blanks), a
    // blank, the database, a blank, the path again; the installer drops the first word.
    platform::StartedProcess started;
    bool ok = platform::startProgramWithArguments(installer.c_str(), {application, kInstallDatabase, application},
                                                  started);
    log.write("%s\n", ok ? "CreateProcess OK" : "CreateProcess NOK");
    log.write("LOGFILE=%s\n", kInstallDatabase);
}

} // namespace zq::installer
