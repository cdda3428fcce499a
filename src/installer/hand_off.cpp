// The hand-off: the fresh log, the installer's existence, the install database, the start.
#include "installer/hand_off.h"

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
    log.write("Finding EXE=%s\n", installer.c_str());
    std::string tested = installer; // the existence test lowers what it is given
    if (!fileExists(tested))
        return;
    log.write("EXE=%s OK\n", installer.c_str());
    if (!DmFindDatabase(0, kInstallDatabase))
        return;
    std::string application = platform::programPath();
    std::string commandLine = application + " " + kInstallDatabase + " " + application;
    log.write("CreateProcess Begin %s .\nParam=%s\n", installer.c_str(), kInstallDatabase);
    platform::StartedProcess started;
    bool ok = platform::startProgram(installer.c_str(), commandLine.c_str(), started);
    log.write("%s\n", ok ? "CreateProcess OK" : "CreateProcess NOK");
    log.write("LOGFILE=%s\n", kInstallDatabase);
}

} // namespace zq::installer
