// The runtime context: the one process-wide record every part of the value runtime works in.
//
// Built by __BeginGlobal (or on first use by any built-in), it owns the three owner lists,
// the ring of temporaries, the context depth, the settings slots, the shared constants and
// the chain of debug frames that a runtime error lists.
#pragma once

#include "zelqa/base.h"

#include <array>
#include <cstdint>

namespace zq::runtime {

// Owner lists, indexed by the list number __fcpObj_CT takes.
enum OwnerListId { kArrayList = 0, kVariableList = 1, kElementList = 2 };

struct OwnerList {
    pObj head;               // first record, or null
    pObj tail;               // last record, or null
    int32_t count;           // records in the list
    int32_t recordSize;      // always 32: the size of a value record on the original target
    pObj (*constructor)(int);
};

struct DebugFrame {
    DebugFrame *next;        // the frame of the caller
    const char *name;        // function name, as compiled code gave it
    int line;                // line being run
    int16_t depth;           // context depth that pushed the frame
};

// Indexes of the shared constants.
enum SharedConstant {
    kFalse = 0, kTrue = 1, kZero = 5, kNoBufferText = 6, kOne = 7, kEmptyText = 8,
    kNil = 9, kNul = 10, kScanNotFound = 11, kNoField = 12, kSharedConstantCount = 13
};

// A native function the host registered for ExecBlock.
struct NativeFunction {
    char name[32];              // "U_" and the registered name, NUL-terminated
    pObj (*function)(pObj);     // called with ExecBlock's third value
    NativeFunction *next;       // the registration after this one
};

constexpr int kSettingCount = 13;
constexpr int kScratchSize = 1025;

struct RuntimeContext {
    std::array<OwnerList, 3> lists;
    pObj *temporaries;                 // N pointers into temporaryRecords
    Obj *temporaryRecords;             // the N slots themselves
    int32_t temporaryCount;            // N
    int32_t nextTemporary;             // where the next search for a free slot starts
    int32_t lockedTemporaries;         // slots with a lock count above 0
    int16_t depth;                     // current context depth, 1 at start-up
    char scratch[kScratchSize];        // scratch text for titles and printed numbers
    std::array<pObj, kSettingCount> settings; // language setting n lives in slot n - 1
    int shutdownRequested;             // set by SHUTDOWN, read by __EndGlobal
    DebugFrame *frames;                // innermost first
    pObj arrayRegistry;                // rows {array, base name} a runtime error saves; null until used
    NativeFunction *nativeFunctions;   // registered native functions, first registered first
    int32_t registrations;             // successful RegisterBlock calls
    std::array<Obj, kSharedConstantCount> constants;
};

// The context, built on first use.
RuntimeContext &context();
// The context if it exists, else null; never builds one.
RuntimeContext *existingContext();
// Builds a fresh context, tearing down the one before (__RetGlob(1)).
void *newContext();
// Releases every record the context owns and the context itself.
void destroyContext();

inline pObj sharedConstant(SharedConstant which) { return &context().constants[which]; }
inline pObj logical(bool value) { return sharedConstant(value ? kTrue : kFalse); }

} // namespace zq::runtime
