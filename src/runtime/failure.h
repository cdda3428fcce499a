// The text the "Fatal Error" window shows for a runtime error.
#pragma once

#include <string>

namespace zq::runtime {

// The text of the "Fatal Error" window for a runtime error code and auxiliary code.
std::string composeFatalText(int code, int aux);

} // namespace zq::runtime
