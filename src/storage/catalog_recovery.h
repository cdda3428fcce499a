// Bringing back a lost or damaged catalog from its backup and from the database files.
#pragma once

#include <cstdint>
#include <vector>

namespace zq::storage {

// True when these bytes can be a catalog: a header whose used size ends on a whole entry
// (or marks a file with no content yet) inside the file, and entries that are free or
// carry a NUL-terminated name fit for a file name.
bool catalogIsSound(const std::vector<uint8_t> &bytes);

// Run before the catalog is opened. A missing or damaged "catalog.plm" (a damaged one is
// kept as "catalog.plm.damaged") is replaced by "catalog.bck" when that is sound, else
// left to be made anew; each step is traced in "saida.txt". True when the catalog was
// replaced so, and must be completed from the files (adoptDatabaseFiles) once open. A new
// storage directory, with no catalog and no databases, is no loss and gives false.
bool restoreCatalogFile();

// Adds a catalog entry for every intact database file the open catalog does not know:
// type from the file's kind, creator from the kind-named suffix (else 'ZELQ'), each
// traced. Unless emptyOnesToo, only files holding records are taken: a bare header is
// what a creation cut short leaves, and the next creation of its name replaces it.
void adoptDatabaseFiles(bool emptyOnesToo);

} // namespace zq::storage
