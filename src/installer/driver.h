// The install driver: the whole run of the installer program.
//
// 1. Claim to be the one installer (platform::claimInstance with kInstallerClass); when
//    another holds the claim or a window of that class, bring its window forward and end.
// 2. Open the log and wait, in passes of kWaitPassMs, at most kWaitPasses of them, until
//    no window of class kApplicationClass is left.
// 3. Find and open the install database, pause kRecordPauseMs, install every record.
// 4. Close and delete the database, close storage, pause kEndPauseMs.
// 5. When the last record that reached a decision was installed, start the program again.
#pragma once

#include <cstdint>
#include <string_view>

namespace zq::installer {

inline constexpr char kInstallerClass[] = "Tessarin";
inline constexpr char kApplicationClass[] = "OO_Window32";
inline constexpr int kWaitPasses = 40;
inline constexpr uint32_t kWaitPassMs = 200;
inline constexpr uint32_t kRecordPauseMs = 2000;
inline constexpr uint32_t kEndPauseMs = 500;

// Runs one install for the whole command line (program name first, which is skipped) and
// returns 0, whatever happened: the log tells the outcome.
int runInstaller(std::string_view commandLine);

} // namespace zq::installer
