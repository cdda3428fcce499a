// The character class table: which bytes are upper-case letters, lower-case letters and
// decimal digits. Only the ASCII letters are letters; bytes 128 to 255 belong to no class.
#pragma once

#include <array>
#include <cstdint>

namespace zq::library {

enum CharClass : uint8_t { kUpper = 1, kLower = 2, kDigit = 4 };

// The table itself, indexed by the byte taken as unsigned.
extern const std::array<uint8_t, 256> kCharClasses;

// The class flags of a byte.
inline uint8_t charClass(unsigned char c) { return kCharClasses[c]; }

} // namespace zq::library
