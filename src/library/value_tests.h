// The emptiness test that __Empty and __Transform share.
#pragma once

#include "zelqa/base.h"

namespace zq::library {

// True for an array without elements, a text of spaces only or without buffer, a zero
// date or number, a logical other than true, and every other type (NIL included).
bool isEmptyValue(pObj v);

} // namespace zq::library
