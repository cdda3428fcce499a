// Fuzz target: a table (definition block, rows, memo companion, two index databases)
// opened into a work area, walked in natural order and in the order of each index, sought
// with a few keys and, when the control bytes ask, changed and walked again.
//
// Input parts (harness.h), six of them:
//   0 control: byte 0 the switches below, then up to four seek keys separated by zero bytes;
//   1 the table database "T" (its app info block is the definition);
//   2 its offset index "T_OS";
//   3 the memo companion "T_M";
//   4 and 5 the index databases "TA" and "TB".
// An empty part is a missing file. The catalog lists all five databases; the definition
// block decides which of the indexes the table uses.
// Switches: 1 soft seek, 2 deleted rows hidden, 4 byte-swapped rows, 8 append a row with a
// value in every field, 16 delete the top row and pack, 32 rebuild the indexes.
#include "harness.h"
#include "storage_walk.h"
#include "zelqa.h"

#include <algorithm>
#include <string>

using namespace zq::fuzz;

namespace {

constexpr uint32_t kTypeMemo = 0x4D454D4Fu; // 'MEMO'
constexpr int kMaxFields = 64;              // fields read per row
constexpr int kMaxOrders = 4;               // orders walked
constexpr int kMaxSeeks = 4;

pObj number(double n) { return __INIT_DOUBLE(n); }

std::string textOf(pObj x) { return x && x->type == TYPE_CHAR && x->payload.c ? x->payload.c : ""; }

// Every field of the current row and its deletion mark, read as a program reads them.
void readRow() {
    int fields = int(std::min<double>(__TBL_Fcount(nullptr)->payload.d, kMaxFields));
    for (int i = 1; i <= fields; ++i)
        __GetFieldByID(nullptr, number(i));
    __TBL_Deleted(nullptr);
    __TBL_RecNo(nullptr);
}

// Walks the current order from the top to the end and back up from the bottom. The walks
// stop after as many steps as there are records (and a few): a walk that does not end is
// a hang the time limit reports anyway, and the cap keeps a slow one from hiding a fault.
void walk() {
    double limit = __TBL_RecCount(nullptr)->payload.d + 4;
    int steps = 0;
    for (__TBL_GoTop(nullptr); !__TBL_Eof(nullptr)->payload.l && steps < limit; ++steps) {
        readRow();
        __TBL_Skip(nullptr, nullptr);
    }
    steps = 0;
    for (__TBL_GoBottom(nullptr); !__TBL_Bof(nullptr)->payload.l && !__TBL_Eof(nullptr)->payload.l && steps < limit;
         ++steps) {
        readRow();
        __TBL_Skip(nullptr, number(-1));
    }
}

void walkEveryOrder(const std::vector<std::string> &keys, bool soft) {
    __ClearIndex(nullptr);
    walk();
    int orders = 0;
    while (orders < kMaxOrders && !textOf(__IndexKey(nullptr, number(orders + 1))).empty())
        ++orders;
    for (int order = 1; order <= orders; ++order) {
        __TBL_SetOrder(nullptr, number(order));
        walk();
        for (const std::string &key : keys) {
            __Seek(nullptr, __INIT_CHARPTR(key.c_str()), __INIT_BOOL(soft));
            if (!__TBL_Eof(nullptr)->payload.l)
                readRow();
        }
    }
}

// A new row holding a value of its type in every field.
void appendRow() {
    __DBAPPEND(nullptr);
    int fields = int(std::min<double>(__TBL_Fcount(nullptr)->payload.d, kMaxFields));
    for (int i = 1; i <= fields; ++i) {
        char letter = textOf(__FieldType(nullptr, number(i)))[0]; // the terminator when empty
        pObj value = letter == 'N'   ? number(12.5)
                     : letter == 'D' ? __INIT_DATE(45000)
                     : letter == 'L' ? __INIT_BOOL(1)
                                     : __INIT_CHARPTR("FUZZED text of a new row");
        __SetField(nullptr, number(i), value);
    }
    __Commit(nullptr);
}

std::vector<std::string> seekKeys(Bytes control) {
    std::vector<std::string> keys;
    std::string key;
    for (size_t i = 1; i < control.size() && keys.size() < kMaxSeeks; ++i) {
        if (control[i] == 0) {
            keys.push_back(key);
            key.clear();
        } else {
            key += char(control[i]);
        }
    }
    if (!key.empty() && keys.size() < kMaxSeeks)
        keys.push_back(key);
    return keys;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<Bytes> parts = splitParts(Bytes(data, size), 6);
    uint8_t switches = parts[0].empty() ? 0 : parts[0][0];
    std::vector<std::string> keys = seekKeys(parts[0]);
    runInput([&] {
        writeStorageFile("catalog.plm", catalogBytes({{"T", kTypeData, kCreatorTables},
                                                      {"T_M", kTypeMemo, kCreatorTables},
                                                      {"TA", kTypeIndex, kCreatorTables},
                                                      {"TB", kTypeIndex, kCreatorTables}}));
        const char *names[] = {"T", "T_OS", "T_M", "TA", "TB"};
        for (size_t i = 0; i < 5; ++i)
            if (!parts[i + 1].empty())
                writeStorageFile(names[i], parts[i + 1]);
        __Set(number(11), __INIT_BOOL(switches & 2));
        __Set(number(9), __INIT_BOOL(switches & 4));
        __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("T"), nullptr);
        walkEveryOrder(keys, switches & 1);
        if (switches & 8)
            appendRow();
        if (switches & 16) {
            __ClearIndex(nullptr);
            __TBL_GoTop(nullptr);
            __TBL_Delete(nullptr);
            __dbPack(nullptr);
        }
        if (switches & 32)
            __Reindex(nullptr);
        if (switches & (8 | 16 | 32))
            walkEveryOrder(keys, switches & 1);
        __dbCloseAll();
        StorageClose();
    });
    return 0;
}
