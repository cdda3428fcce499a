// Tessarin: the installer program. Everything it does is the install driver's.
#include "installer/driver.h"
#include "platform/processes.h"

int main(int argc, char **argv) {
    return zq::installer::runInstaller(zq::platform::wholeCommandLine(argc, argv));
}
