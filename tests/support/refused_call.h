// Test support: calls that must end the run through the "Fatal Error" box, checked in a child.
#pragma once

#include "platform/process.h"
#include "support/unattended.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace zq::test {

// A call that must end the run through the "Fatal Error" box showing text.
struct RefusedCall {
    const char *name;
    void (*call)();
    const char *text;
};

inline void PrintTo(const RefusedCall &c, std::ostream *os) { *os << c.name; }

inline std::string refusedCallName(const ::testing::TestParamInfo<RefusedCall> &info) { return info.param.name; }

// Runs the call in a child process on a fresh runtime and checks the one box it showed. A
// call that returns makes the child end with status 3, which fails the test.
inline void expectRuntimeError(const RefusedCall &c) {
    UnattendedBoxes boxes;
    EXPECT_EXIT(
        {
            __RetGlob(1);
            c.call();
            std::fputs("returned\n", stderr);
            platform::exitProcess(3);
        },
        ::testing::ExitedWithCode(0), "");
    auto lines = boxes.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], std::string("Fatal Error\t16\t") + c.text);
}

} // namespace zq::test
