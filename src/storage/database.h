// Open database records: lookup by id, header access and release.
#pragma once

#include "storage/state.h"

namespace zq::storage {

DmOpenDB *databaseOfId(LocalID id); // null for 0, out of range or an empty slot
void freeDatabase(DmOpenDB *db);     // closes its views and frees its handles

inline DatabaseHeader headerOf(const DmOpenDB *db) { return db->main->header(); }
inline void setHeaderOf(DmOpenDB *db, const DatabaseHeader &h) { writeHeader(*db->main, h); }
inline bool isVariable(const DmOpenDB *db) { return db->main && db->main->header().kind == 'V'; }
inline uint32_t recordsStart(const DatabaseHeader &h) { return kHeaderSize + h.appInfoSize; }

} // namespace zq::storage
