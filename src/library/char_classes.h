// The character class table: which bytes are upper-case letters, lower-case letters,
// decimal digits, punctuation and the blank. Only ASCII bytes have classes; bytes 128 to
// 255 belong to none.
#pragma once

#include <array>
#include <cstdint>

namespace zq::library {

enum CharClass : uint8_t { kUpper = 1, kLower = 2, kDigit = 4, kPunct = 16, kBlank = 128 };

// The table itself, indexed by the byte taken as unsigned.
extern const std::array<uint8_t, 256> kCharClasses;

// The class flags of a byte.
inline uint8_t charClass(unsigned char c) { return kCharClasses[c]; }

} // namespace zq::library
