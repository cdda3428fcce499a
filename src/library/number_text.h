// Numbers as text: the fixed-point printer and the decimal formatter behind __Str,
// __StrZero, NOROUND and the "@E" pictures.
#pragma once

#include <cstdint>
#include <string>

namespace zq::library {

// Bytes printDouble may write for any double: "%f" of the largest one and its NUL.
inline constexpr int kPrintDoubleSize = 320;

// x with `decimals` decimals and the decimal character dc (none when decimals is 0).
// With round set, x first moves half a unit of the last decimal away from zero; the
// decimals are then the last digits of the scaled value, with no further rounding.
// More decimals than kMaxDecimals raise "LOW MEMORY!": no text could hold them.
std::string formatDecimal(double x, int32_t decimals, bool round, char dc);

inline constexpr int32_t kMaxDecimals = 32766;

// x rounded to `decimals` places: up when the fraction reaches 0.49999999999999, with the
// sign of x.
double roundTo(double x, int32_t decimals);

} // namespace zq::library
