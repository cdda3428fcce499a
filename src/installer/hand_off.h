// The application's hand-off to the installer at the end of a run that called SHUTDOWN.
#pragma once

namespace zq::installer {

inline constexpr char kInstallerProgram[] = "Tessarin.exe";
inline constexpr char kInstallDatabase[] = "ZELQAINST.tLog";

// Writes a fresh "inst.txt" beside the program and, when "Tessarin.exe" lies there and the
// install database exists, starts the installer with the install database and this
// program's path. An installer path or program path longer than the installer takes
// (kMaxText) is refused with a log line, and nothing is started. Record storage is left
// open for the caller to close.
void handOffToInstaller();

} // namespace zq::installer
