// Saved arrays: the registry of arrays a runtime error writes out before the run ends.
#pragma once

namespace zq::runtime {

// Saves every registered array under its base name (the crash-time dump).
void dumpRegisteredArrays();

} // namespace zq::runtime
