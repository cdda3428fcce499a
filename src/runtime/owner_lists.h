// The owner lists of arrays and variables, and the release of the records they hold.
#pragma once

#include "runtime/context.h"

namespace zq::runtime {

// Appends rec at the tail of the list.
void appendToList(OwnerList &list, pObj rec);
// Unlinks rec; returns the record that followed it, or null when it was the last.
pObj unlinkFromList(OwnerList &list, pObj rec);

// Releases a text buffer the record owns and marks it as having none (objLength -1).
void releaseText(pObj rec);

// Releases every array and variable still alive (end of the run).
void releaseAllOwnedRecords(RuntimeContext &ctx);

} // namespace zq::runtime
