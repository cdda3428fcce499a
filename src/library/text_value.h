// The reading of a text as a number that __Val and NOROUND share.
#pragma once

#include <string_view>

namespace zq::library {

// The number __Val reads from these bytes (see __Val).
double valueOfText(std::string_view bytes);

} // namespace zq::library
