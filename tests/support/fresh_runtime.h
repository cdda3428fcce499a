// Test support: a fixture that gives each test a fresh runtime context and ends the run after it.
#pragma once

#include "zelqa.h"

#include <gtest/gtest.h>

namespace zq::test {

class FreshRuntime : public ::testing::Test {
protected:
    void SetUp() override { __RetGlob(1); }
    void TearDown() override { __EndGlobal(); }
};

} // namespace zq::test
