// The text the "Fatal Error" window shows for a runtime error.
#pragma once

#include <string>

namespace zq::runtime {

// The text of the "Fatal Error" window for a runtime error code and auxiliary code.
std::string composeFatalText(int code, int aux);

// The routine that closes every table (the table engine sets it when it first opens one);
// a runtime error and the end of the run call it so that no pending row is lost.
void setTableCloser(void (*closeAll)());
// Runs the table closer once it is set; nothing otherwise.
void closeTables();
// For a harness that ends a run inside the box hook and goes on in the same process (the
// fuzz targets): the failure path takes the next runtime error as a first one again.
void resumeAfterRuntimeError();

} // namespace zq::runtime
