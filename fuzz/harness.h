// What every fuzz target shares: a private program directory, input split into files, and
// a run of one input that a runtime error ends without ending the fuzzer.
//
// A runtime error shows the "Fatal Error" box and ends the process with code 0: for a bad
// file that is a correct answer. The box hook jumps back out of the failure path to the
// end of the input's run; storage and the runtime context are then let go and built
// afresh, and the storage directory emptied, so every input starts from the same state.
// Anything else that ends the process (a crash, a sanitizer report, a hang, an allocation
// over the limit) is a defect that libFuzzer reports with its input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace zq::fuzz {

using Bytes = std::span<const uint8_t>;

// Makes the program directory, sets ZELQA_PROGRAM_DIR to it, works there (storage writes
// its trace file in the working directory) and installs the box hook. Every target's
// LLVMFuzzerInitialize (harness.cpp) calls it with its arguments: paths among them are
// made absolute first.
void setUp(int *argc, char ***argv);

// Splits an input into `count` parts: each but the last is a 4-byte little-endian length
// and that many bytes (cut at the input's end); the last part is the rest.
std::vector<Bytes> splitParts(Bytes input, size_t count);
// The reverse, for writing seeds.
std::vector<uint8_t> joinParts(const std::vector<std::vector<uint8_t>> &parts);

// Writes a file into the storage directory "DB" (made when missing).
void writeStorageFile(const std::string &name, Bytes bytes);

// Runs body on a fresh runtime context. A runtime error ends body at once. Afterwards
// storage is let go, the context dropped and the storage directory emptied.
// Returns true when body ran to its end, false when a runtime error ended it.
bool runInput(const std::function<void()> &body);

// Boxes other than "Fatal Error" shown during the last run.
int alertsShown();

} // namespace zq::fuzz
