// The app info block: the bytes right behind the header, before the first record.
#pragma once

#include "storage/state.h"

namespace zq::storage {

// Makes the app info handle when the database has a block and no handle yet.
void loadAppInfo(DmOpenDB *db);
// Writes a new or dirty block to offset 20, moving the records up when it grew, and
// frees its handle.
void commitAppInfo(HandleRecord &r);

} // namespace zq::storage
