// Every kind of value a built-in may be handed, built afresh for each call.
#pragma once

#include "zelqa/base.h"

#include <string>
#include <vector>

namespace zq::robustness {

struct TestValue {
    const char *name;  // for the report
    pObj (*make)();    // builds the value on the current runtime context
};

// Absent, NIL, NUL, logicals, numbers (zero, NaN, infinities, huge, tiny, longs), dates
// (empty, huge and negative day numbers, NaN), texts (empty, very long, bytes above 127,
// numbers, dates and pictures as text), arrays (empty, nested, holding itself), handles,
// void pointers (null and not), and variables.
const std::vector<TestValue> &testValues();

// The value of this name in testValues().
const TestValue &testValue(const char *name);

// A few values of each type, for products of two arguments.
const std::vector<TestValue> &typeRepresentatives();

// What the other arguments hold while one runs through every value: absent, a small
// number, a short text and a nested array.
const std::vector<TestValue> &companions();

} // namespace zq::robustness
