// The decimal text-to-integer conversion every date and time built-in uses.
#pragma once

#include <cstdint>
#include <string_view>

namespace zq::library {

// Leading blanks skipped, an optional sign, then digits up to the first non-digit; no
// digits give 0. A value beyond the 32-bit range is held at its nearer end.
int32_t integerOfText(std::string_view text);

} // namespace zq::library
