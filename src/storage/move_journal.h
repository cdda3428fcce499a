// The undo journal "%s_Jn" of a move inside a database file, so that a move cut short by
// the end of the process is undone at the next open instead of leaving records torn.
#pragma once

#include "storage/database.h"

namespace zq::storage {

// Saves the bytes from offset to the used size, and the header, before they move. Once
// this returns the move may begin; a journal that cannot be written raises runtime error 5
// before anything has moved. Moves nest: inside a begun move nothing more is saved, and
// the outermost state is what an undo gives back.
void beginMove(DmOpenDB *db, uint32_t offset);

// The move is done and every header that describes the moved bytes is written: the
// outermost end marks the journal spent. Does nothing when no move was begun.
void endMove(DmOpenDB *db);

// At the database's close: the journal file is closed and, unless a move is still open
// (an insertion never released, which the next open then undoes), deleted.
void closeJournal(DmOpenDB *db);

// At open: a whole journal left by a move that never ended puts the saved bytes and the
// used size back (the walk of the file then settles the count and the offset index); a
// torn journal means the move never began. Either way the journal goes. True when bytes
// were put back.
bool undoInterruptedMove(DmOpenDB *db);

} // namespace zq::storage
