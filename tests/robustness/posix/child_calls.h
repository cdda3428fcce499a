// Runs calls into the runtime in child processes, so that a runtime error (which ends
// the process with code 0 after its box) ends one call, not the run of them.
//
// A child is forked from this process and makes calls one after another, each on a
// fresh runtime context that is torn down as part of the call, until one ends the child: a runtime error, seen through the box
// hook at the "Fatal Error" box, counts as that call's answer and the next child goes on
// with the next call. Anything else that ends a child (a signal, a sanitizer's report, an
// exit without the box) is a defect of the call it was making, as is a call that runs
// longer than the hang limit: its child is killed.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zq::robustness {

struct Call {
    std::string name;           // the built-in and its arguments, for the report
    std::function<void()> run;  // builds the arguments and makes the call
};

struct CallResults {
    uint64_t calls = 0;          // calls made
    uint64_t returned = 0;       // calls that returned
    uint64_t runtimeErrors = 0;  // calls that ended in a runtime error with its box
    std::vector<std::string> defects; // "call: what happened", one per defect
};

// Makes every call, in order, in children of this process, each child working in
// `directory` (its working and program directory).
CallResults runInChildren(const std::vector<Call> &calls, const std::string &directory, int hangMs = 2000);

} // namespace zq::robustness
