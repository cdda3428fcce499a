// The process-wide storage state: catalog view, open-database and handle tables, modes.
#pragma once

#include "storage/file_view.h"
#include "zelqa/storage.h"

#include <cstdio>
#include <memory>
#include <string>

namespace zq::storage {

// What a record handle stands for; a MemHandle is the address of the slot pointing here.
struct HandleRecord {
    uint32_t index = 0;      // record index, 0 for the app info block
    uint32_t size = 0;       // bytes in use
    uint32_t capacity = 0;   // bytes reserved
    uint32_t fileOffset = 0; // record header in the main file (the block itself for app info)
    bool isNew = false;      // inserted, not yet committed
    bool appInfo = false;    // the database's app info block
    bool bare = false;       // fileOffset is the data itself (app info, DmNewHandle blocks)
    bool dirty = false;      // written since the last commit
    bool locked = false;     // between MemHandleLock and unlock
    bool resized = false;    // grew since the last commit
    bool holdsMove = false;  // an insertion whose move ends with its commit
    DmOpenDB *owner = nullptr;
};

struct StorageState {
    bool started = false;
    bool bulk = false;                        // header flushes skipped while compacting
    std::unique_ptr<FileView> catalog;        // catalog.plm
    std::unique_ptr<DmOpenDB *[]> open;       // kOpenSlots + 1 spare slot
    std::unique_ptr<void *[]> handles;        // kHandleSlots, each null or a HandleRecord
    std::FILE *trace = nullptr;               // saida.txt
    std::string directory;                    // storage directory, no trailing separator
    std::string chosenDirectory;              // set by useDirectory: replaces "DB" beside the program
    platform::File lock;                      // catalog.lck, held while storage is open
};

StorageState &state();

// Starts storage when it has not been started; false when the catalog cannot be mapped.
bool ensureStarted();

// Makes the next storage start use this directory instead of "DB" beside the program (an
// empty text goes back to it). Tools that work on a storage directory named on their
// command line call it before anything starts storage.
void useDirectory(const std::string &directory);

// Lets go of the open databases, handles, catalog and lock without writing anything more,
// as the end of the process would: for a harness that ends a run inside the box hook and
// goes on in the same process (the fuzz targets). Storage starts afresh on its next use.
void abandonStorage();

void trace(const char *text);           // one line appended to saida.txt
void alert(const std::string &text);    // "Alert" box
void alertAfterError(const std::string &text); // the last system error, then the alert

} // namespace zq::storage

// An open database record; DmOpenRef points at one.
struct DmOpenDB {
    char name[zq::storage::kMaxFileName] = {};  // first, so that it compares as a string
    uint32_t catalogOffset = 0;                 // its entry in catalog.plm
    uint32_t appInfoHandle = 0;                 // handle slot + 1, 0 = none
    uint32_t sortInfo = 0;                      // stored for DmDatabaseInfo
    int32_t current = -1;                       // current record's handle slot, -1 = none
    std::unique_ptr<zq::storage::FileView> main;  // the database file
    std::unique_ptr<zq::storage::FileView> index; // "%s_OS", kind 'V' only
    bool appInfoLoaded = false;
    uint32_t movesOpen = 0;                     // moves begun and not ended; one journal holds them
    zq::platform::File journal;                 // "%s_Jn", open from the first move to the close
};
