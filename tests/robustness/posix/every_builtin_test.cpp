// Every exported built-in called with every kind of value in each argument position,
// each call in a child process (child_calls.h): every call must end in a result or in a
// runtime error with its box, never in a crash, a hang or a sanitizer's report.
//
// The built-ins that take and return values only come from the public headers
// (cmake/builtin_table.cmake); those of other signatures are called by hand below. Each
// argument position runs through every value while the others hold each companion value,
// and two-argument built-ins also get every pair of type representatives.
// ZELQA_EVERY_VALUE_PRODUCT=1 calls every combination of values instead, for
// built-ins of up to three arguments (a long run, not part of the tests);
// ZELQA_EVERY_BUILTIN_ONLY=text makes only the calls whose names hold that text.
#include "child_calls.h"
#include "support/unattended.h"
#include "test_values.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <set>

using namespace zq::robustness;

namespace {

struct ValueBuiltin {
    const char *name;
    void *entry;
    int arity;
};

const ValueBuiltin kValueBuiltins[] = {
#define ZQ_VALUE_BUILTIN(name, arity) {#name, reinterpret_cast<void *>(&name), arity},
#include "builtin_table.inc"
#undef ZQ_VALUE_BUILTIN
};

const char *const kExported[] = {
#define ZQ_EXPORTED(name) #name,
#include "builtin_table.inc"
#undef ZQ_EXPORTED
};

using Args = std::vector<const TestValue *>;

// Reads a result as a caller would, so a record that is not what it says shows up here.
void useResult(pObj r) {
    if (!r)
        return;
    volatile size_t seen = 0;
    switch (r->type) {
    case TYPE_CHAR:
        if (r->payload.c)
            seen = std::strlen(r->payload.c);
        break;
    case TYPE_ARRAY:
        if (r->storageClass == CLASS_ARRAY && r->payload.a)
            for (pObj el = r->payload.a->first; el && seen < size_t(r->payload.a->count); el = el->next)
                seen = seen + 1;
        break;
    case TYPE_LONG: case TYPE_DATE: case TYPE_NUMERIC: case TYPE_LOGICAL: case TYPE_NIL: case TYPE_NUL:
    case TYPE_VOIDPTR: case TYPE_HANDLE:
        break;
    default:
        std::fprintf(stderr, "a result of unknown type %u\n", r->type);
        std::abort();
    }
}

pObj callValueBuiltin(const ValueBuiltin &b, pObj *a) {
    using F0 = pObj (*)();
    using F1 = pObj (*)(pObj);
    using F2 = pObj (*)(pObj, pObj);
    using F3 = pObj (*)(pObj, pObj, pObj);
    using F4 = pObj (*)(pObj, pObj, pObj, pObj);
    using F5 = pObj (*)(pObj, pObj, pObj, pObj, pObj);
    using F6 = pObj (*)(pObj, pObj, pObj, pObj, pObj, pObj);
    using F7 = pObj (*)(pObj, pObj, pObj, pObj, pObj, pObj, pObj);
    using F8 = pObj (*)(pObj, pObj, pObj, pObj, pObj, pObj, pObj, pObj);
    switch (b.arity) {
    case 0: return reinterpret_cast<F0>(b.entry)();
    case 1: return reinterpret_cast<F1>(b.entry)(a[0]);
    case 2: return reinterpret_cast<F2>(b.entry)(a[0], a[1]);
    case 3: return reinterpret_cast<F3>(b.entry)(a[0], a[1], a[2]);
    case 4: return reinterpret_cast<F4>(b.entry)(a[0], a[1], a[2], a[3]);
    case 5: return reinterpret_cast<F5>(b.entry)(a[0], a[1], a[2], a[3], a[4]);
    case 6: return reinterpret_cast<F6>(b.entry)(a[0], a[1], a[2], a[3], a[4], a[5]);
    case 7: return reinterpret_cast<F7>(b.entry)(a[0], a[1], a[2], a[3], a[4], a[5], a[6]);
    default: return reinterpret_cast<F8>(b.entry)(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7]);
    }
}
constexpr int kLargestArity = 8;

std::string callName(const char *name, const Args &args) {
    std::string text = std::string(name) + "(";
    for (size_t i = 0; i < args.size(); ++i)
        text += (i ? ", " : "") + std::string(args[i]->name);
    return text + ")";
}

void addProduct(std::vector<Args> &sets, const std::vector<TestValue> &values, int arity, Args prefix = {}) {
    if (int(prefix.size()) == arity) {
        sets.push_back(prefix);
        return;
    }
    for (const TestValue &v : values) {
        prefix.push_back(&v);
        addProduct(sets, values, arity, prefix);
        prefix.pop_back();
    }
}

std::vector<Args> argumentSets(int arity) {
    std::vector<Args> sets;
    if (std::getenv("ZELQA_EVERY_VALUE_PRODUCT") && arity <= 3) {
        addProduct(sets, testValues(), arity);
        return sets;
    }
    if (arity == 0)
        return {Args{}};
    for (int position = 0; position < arity; ++position)
        for (const TestValue &v : testValues())
            for (const TestValue &c : companions()) {
                Args args(size_t(arity), &c);
                args[size_t(position)] = &v;
                sets.push_back(args);
                if (arity == 1)
                    break;
            }
    if (arity == 2)
        addProduct(sets, typeRepresentatives(), 2);
    return sets;
}

// Builds the values of one call on the fresh context, in order.
std::vector<pObj> build(const Args &args) {
    std::vector<pObj> made;
    for (const TestValue *v : args)
        made.push_back(v->make());
    return made;
}

void addValueBuiltinCalls(std::vector<Call> &calls) {
    for (const ValueBuiltin &b : kValueBuiltins) {
        if (b.arity > kLargestArity)
            continue;
        for (const Args &args : argumentSets(b.arity)) {
            calls.push_back({callName(b.name, args), [&b, args] {
                                 std::vector<pObj> a = build(args);
                                 a.resize(kLargestArity);
                                 useResult(callValueBuiltin(b, a.data()));
                             }});
        }
    }
}

// ---- Built-ins of other signatures, called by hand --------------------------------

const int32_t kIndexes[] = {-1, 0, 1, 5, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()};
const uint32_t kDateParts[] = {0, 1, 2, 12, 13, 29, 31, 32, 1900, 9999, 10000, 0x7FFFFFFFu, 0xFFFFFFFFu};
const double kDays[] = {0, 1, -1, 45000.5, 1e12, -1e12, 1e300, std::numeric_limits<double>::quiet_NaN(),
                        std::numeric_limits<double>::infinity()};

// Adds run(v) for every value v, named name(v...).
void forEveryValue(std::vector<Call> &calls, const std::string &name, void (*run)(pObj)) {
    for (const TestValue &v : testValues())
        calls.push_back({name + "(" + v.name + ")", [run, &v] { run(v.make()); }});
}

void forEveryPair(std::vector<Call> &calls, const std::string &name, void (*run)(pObj, pObj)) {
    for (const Args &args : argumentSets(2))
        calls.push_back({callName(name.c_str(), args), [run, args] {
                             std::vector<pObj> a = build(args);
                             run(a[0], a[1]);
                         }});
}

const char *textOf(pObj v) { return v && v->type == TYPE_CHAR ? v->payload.c : nullptr; }

void addArrayCalls(std::vector<Call> &calls) {
    forEveryValue(calls, "__CreateArray", [](pObj v) { useResult(__CreateArray(v, __INIT_NUL())); });
    forEveryValue(calls, "__Array", [](pObj v) { useResult(__Array(v, __INIT_NUL())); });
    forEveryValue(calls, "__Array(2, v)", [](pObj v) { useResult(__Array(__INIT_DOUBLE(2), v, __INIT_NUL())); });
    forEveryPair(calls, "__ARRAY_EL", [](pObj a, pObj i) { useResult(__ARRAY_EL(a, i, __INIT_NUL())); });
    forEveryValue(calls, "__LockStack", [](pObj v) { __LockStack(v, __INIT_NUL()); });
    forEveryValue(calls, "__Array_Get_Amnt_Itens", [](pObj v) { __Array_Get_Amnt_Itens(v); });
    forEveryPair(calls, "__SwapElements", [](pObj x, pObj y) { __SwapElements(x, y); });
    forEveryPair(calls, "__Comp", [](pObj x, pObj y) { __Comp(x, y); });
    forEveryPair(calls, "__RegisterArray", [](pObj a, pObj n) { __RegisterArray(a, n); });
    forEveryPair(calls, "ExecDumpArray", [](pObj a, pObj n) { ExecDumpArray(a, n); });
    forEveryValue(calls, "__KillArrayEl", [](pObj v) {
        if (v && v->type == TYPE_ARRAY && v->storageClass == CLASS_ARRAY)
            __KillArrayEl(v->payload.a);
    });
    for (int32_t i : kIndexes) {
        std::string at = std::to_string(i);
        for (const TestValue &v : testValues()) {
            calls.push_back({"__GET_ARRAY_EL(" + std::string(v.name) + ", " + at + ")",
                             [&v, i] { useResult(__GET_ARRAY_EL(v.make(), i)); }});
            calls.push_back({"__SET_ARRAY_EL(" + std::string(v.name) + ", 3, " + at + ")",
                             [&v, i] { useResult(__SET_ARRAY_EL(v.make(), __INIT_DOUBLE(3), i)); }});
            calls.push_back({"__SET_ARRAY_EL(nested array, " + std::string(v.name) + ", " + at + ")",
                             [&v, i] {
                                 pObj a = testValue("nested array").make();
                                 useResult(__SET_ARRAY_EL(a, v.make(), i));
                             }});
        }
    }
}

void addValueCalls(std::vector<Call> &calls) {
    for (int32_t n : kIndexes) {
        calls.push_back({"__ALLOC_CHARPTR(" + std::to_string(n) + ")", [n] { useResult(__ALLOC_CHARPTR(n)); }});
        calls.push_back({"__fcpObj_CT(" + std::to_string(n) + ")", [n] { useResult(__fcpObj_CT(n)); }});
        calls.push_back({"__SetMaxStackElements(" + std::to_string(n) + ")", [n] {
                             __SetMaxStackElements(n);
                             __RetGlob(1); // the ring is built at the next start
                             __SetMaxStackElements(0);
                         }});
    }
    calls.push_back({"__INIT_CHARPTR(null)", [] { useResult(__INIT_CHARPTR(nullptr)); }});
    calls.push_back({"__INIT_CHARCONST(null)", [] { useResult(__INIT_CHARCONST(nullptr)); }});
    for (uint32_t type : {0u, 5u, 10u, 11u, 12u, 13u, 15u, 21u, 22u, 23u, 24u, 99u}) {
        calls.push_back({"__InitObjNode(own record, " + std::to_string(type) + ")", [type] {
                             Obj record{};
                             useResult(__InitObjNode(&record, type));
                         }});
    }
    forEveryValue(calls, "__ByRef", [](pObj v) {
        pObj slot = v;
        useResult(__ByRef(&slot));
    });
    forEveryValue(calls, "__end_context", [](pObj v) {
        __begin_context();
        useResult(__end_context(v));
    });
    forEveryValue(calls, "__If(1, v, v)", [](pObj v) { useResult(__If(1, v, v)); });
    forEveryPair(calls, "__If(0, ...)", [](pObj a, pObj b) { useResult(__If(0, a, b)); });
    forEveryPair(calls, "__If(1, ...)", [](pObj a, pObj b) { useResult(__If(1, a, b)); });
    calls.push_back({"ShowFreeMem()", [] { ShowFreeMem(); }});
    calls.push_back({"__ReleaseStack2()", [] { __ReleaseStack2(); }});
    calls.push_back({"__KillContext()", [] { __KillContext(); }});
    for (int code : {-1, 0, 15, 16, 1000})
        calls.push_back({"zq_runtime_error_text(" + std::to_string(code) + ")",
                         [code] { zq_runtime_error_text(code); }});
}

void addDateCalls(std::vector<Call> &calls) {
    forEveryPair(calls, "__IsValidDate", [](pObj t, pObj f) { __IsValidDate(t, f); });
    forEveryValue(calls, "__Set_DateFormat", [](pObj f) {
        __Set_DateFormat(f);
        useResult(__Dtoc(__INIT_DATE(45000), nullptr));
    });
    forEveryValue(calls, "__SetEpoch", [](pObj v) { __SetEpoch(v); });
    for (uint32_t y : kDateParts) {
        calls.push_back({"__IsLeapYear(" + std::to_string(y) + ")", [y] { __IsLeapYear(y); }});
        for (uint32_t m : kDateParts)
            for (uint32_t d : kDateParts)
                calls.push_back({"__EncodeDate(" + std::to_string(y) + ", " + std::to_string(m) + ", " +
                                     std::to_string(d) + ")",
                                 [y, m, d] {
                                     double out = 0;
                                     __EncodeDate(y, m, d);
                                     __DoEncodeDate(y, m, d, &out, std::numeric_limits<int32_t>::max());
                                     __DoEncodeDate(y, m, d, &out, -1);
                                 }});
    }
    for (double day : kDays)
        calls.push_back({"__DecodeDate(" + std::to_string(day) + ")", [day] {
                             uint32_t y, m, d;
                             __DecodeDate(day, &y, &m, &d);
                             TimeStamp stamp;
                             __DateTimeToTimeStamp(&stamp, day);
                         }});
}

void addTextCalls(std::vector<Call> &calls) {
    forEveryValue(calls, "__GetMaskType", [](pObj v) { __GetMaskType(textOf(v)); });
    forEveryPair(calls, "__gMessageBox", [](pObj c, pObj t) {
        if (textOf(c) && textOf(t))
            __gMessageBox(textOf(c), textOf(t));
    });
    forEveryValue(calls, "__DspMsg", [](pObj v) { __DspMsg(textOf(v), -1, 100000); });
    for (double x : kDays)
        for (char dc : {'.', ','})
            calls.push_back({"printDouble(" + std::to_string(x) + ", '" + dc + "')", [x, dc] {
                                 char buffer[320];
                                 printDouble(x, buffer, dc);
                             }});
    for (double x : {1e308, -1e308, 123456789012345678.9})
        calls.push_back({"printDouble(" + std::to_string(x) + ")", [x] {
                             char buffer[320];
                             printDouble(x, buffer, '.');
                         }});
}

pObj echoBlock(pObj x) { return x; }

void addDeviceCalls(std::vector<Call> &calls) {
    for (int on : {-1, 0, 1})
        calls.push_back({"zq_readcom_returns(" + std::to_string(on) + ")", [on] { zq_readcom_returns(on); }});
    forEveryValue(calls, "RegisterBlock", [](pObj name) {
        RegisterBlock(textOf(name), echoBlock);
        useResult(ExecBlock(name, __INIT_DOUBLE(1), nullptr, nullptr, nullptr));
    });
}

void addStorageNameCalls(std::vector<Call> &calls) {
    for (char kind : {'H', 'I', 'P', 'Z', 'L'}) {
        for (const TestValue &v : testValues()) {
            std::string suffix = std::string(v.name) + ", '" + kind + "')";
            calls.push_back({"KindDatabaseName(" + suffix, [&v, kind] {
                                 char name[128];
                                 uint32_t creator = 0;
                                 KindDatabaseName(v.make(), name, &creator, kind);
                             }});
            calls.push_back({"OpenKindDatabase(" + suffix, [&v, kind] {
                                 if (DmOpenRef db = OpenKindDatabase(0, v.make(), 1, kind))
                                     DmCloseDatabase(db);
                                 DeleteKindDatabase(0, v.make(), kind);
                             }});
        }
    }
}

// A table "T" (a character field, an index "TI" on it, two rows) open in area 0, as the
// table built-ins below meet it; its index database opened for the entry lookups.
void openTable() {
    __dbCloseAll();
    if (!__File(__INIT_CHARPTR("T"))->payload.l) {
        __DBCREATE(__INIT_CHARPTR("T"),
                   __CreateArray(__CreateArray(__INIT_CHARPTR("NAME"), __INIT_CHARPTR("C"), __INIT_DOUBLE(10),
                                               __INIT_DOUBLE(0), __INIT_NUL()),
                                 __INIT_NUL()),
                   nullptr);
        __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("T"), nullptr);
        __DBCREATEINDEX(__INIT_CHARPTR("TI"), __INIT_CHARPTR("NAME"), __INIT_NUL());
        for (const char *name : {"b", "a"}) {
            __DBAPPEND(nullptr);
            __SetField(nullptr, __INIT_DOUBLE(1), __INIT_CHARPTR(name));
        }
        __Commit(nullptr);
        return;
    }
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("T"), nullptr);
}

DmOpenRef openDatabase(const char *name) {
    LocalID id = DmFindDatabase(0, name);
    return id ? DmOpenDatabase(0, id) : nullptr;
}

void addTableCalls(std::vector<Call> &calls) {
    const int16_t areas[] = {-1, 0, 1, 254, 255, 256, std::numeric_limits<int16_t>::min(),
                             std::numeric_limits<int16_t>::max()};
    for (int16_t area : areas)
        for (int flag : {0, 1, -1})
            calls.push_back({"__CloseTBL(" + std::to_string(area) + ", " + std::to_string(flag) + ")", [area, flag] {
                                 openTable();
                                 __CloseTBL(area, flag);
                                 openTable(); // the table opens again after any close
                             }});
    forEveryValue(calls, "__GetAliasID", [](pObj v) {
        openTable();
        __GetAliasID(v);
    });
    forEveryValue(calls, "__DBCREATEINDEX(v, NAME)", [](pObj name) {
        openTable();
        useResult(__DBCREATEINDEX(name, __INIT_CHARPTR("NAME"), __INIT_NUL()));
        useResult(__Seek(nullptr, __INIT_CHARPTR("a"), nullptr));
    });
    forEveryValue(calls, "__DBCREATEINDEX(TX, v)", [](pObj key) {
        openTable();
        useResult(__DBCREATEINDEX(__INIT_CHARPTR("TX"), key, __INIT_NUL()));
        useResult(__Seek(nullptr, __INIT_CHARPTR("a"), nullptr));
    });
    forEveryValue(calls, "__TBL_DeleteDatabase", [](pObj v) {
        openTable();
        __TBL_DeleteDatabase(v);
    });
    // An entry is a record number and a key of keyLength bytes; the buffer always holds them.
    for (uint32_t recno : {0u, 1u, 2u, 3u, 0xFFFFFFFFu})
        for (uint32_t keyLength : {0u, 1u, 10u, 11u, 300u})
            for (uint8_t fill : {uint8_t(0), uint8_t(' '), uint8_t('a'), uint8_t(0xFF)}) {
                calls.push_back({"FindKeyInIndexFile(TI, " + std::to_string(recno) + ", " + std::to_string(fill) +
                                     " x " + std::to_string(keyLength) + ")",
                                 [recno, keyLength, fill] {
                                     openTable();
                                     std::vector<uint8_t> entry(4 + 300, fill);
                                     std::memcpy(entry.data(), &recno, 4);
                                     int32_t position = -7;
                                     FindKeyInIndexFile(openDatabase("TI"), entry.data(), keyLength, &position);
                                     FindKeyInIndexFile(nullptr, entry.data(), keyLength, &position);
                                 }});
            }
    for (uint32_t recno : {0u, 1u, 2u, 3u, 0x80000000u, 0xFFFFFFFFu})
        calls.push_back({"FindRecnoInIndexFile(TI, " + std::to_string(recno) + ")", [recno] {
                             openTable();
                             int32_t position = -7;
                             FindRecnoInIndexFile(openDatabase("TI"), recno, &position);
                             FindRecnoInIndexFile(openDatabase("TI"), recno, nullptr);
                             FindRecnoInIndexFile(nullptr, recno, &position);
                         }});
    for (const char *name : {"T", "TI", "missing"})
        calls.push_back({"CleanTbl(" + std::string(name) + ")", [name] {
                             openTable();
                             CleanTbl(openDatabase(name));
                             useResult(__TBL_GoTop(nullptr));
                         }});
    calls.push_back({"CleanTbl(null)", [] { CleanTbl(nullptr); }});
    for (int on : {-1, 0, 1, 2})
        calls.push_back({"zq_set_durable_commit(" + std::to_string(on) + ")", [on] {
                             zq_set_durable_commit(on);
                             openTable();
                             __DBAPPEND(nullptr);
                             __Commit(nullptr);
                             zq_durable_commit();
                             zq_set_durable_commit(0);
                         }});
}

// Called by hand above.
const std::set<std::string> kCalledByHand = {
    "__CreateArray", "__Array", "__ARRAY_EL", "__LockStack", "__Array_Get_Amnt_Itens", "__SwapElements",
    "__Comp", "__RegisterArray", "ExecDumpArray", "__KillArrayEl", "__GET_ARRAY_EL", "__SET_ARRAY_EL",
    "__ALLOC_CHARPTR", "__fcpObj_CT", "__SetMaxStackElements", "__INIT_CHARPTR", "__INIT_CHARCONST",
    "__InitObjNode", "__ByRef", "__end_context", "__begin_context", "__If", "ShowFreeMem", "__ReleaseStack2",
    "__KillContext", "zq_runtime_error_text", "__IsValidDate", "__Set_DateFormat", "__SetEpoch", "__IsLeapYear",
    "__EncodeDate", "__DoEncodeDate", "__DecodeDate", "__DateTimeToTimeStamp", "__GetMaskType", "__gMessageBox",
    "__DspMsg", "printDouble", "KindDatabaseName", "OpenKindDatabase", "DeleteKindDatabase", "__RetGlob",
    "zq_readcom_returns", "RegisterBlock", "__CloseTBL", "__GetAliasID", "__DBCREATEINDEX", "FindKeyInIndexFile",
    "FindRecnoInIndexFile", "CleanTbl", "__TBL_DeleteDatabase", "zq_set_durable_commit", "zq_durable_commit",
    // The value constructors build every test value.
    "__INIT_LONG", "__INIT_DOUBLE", "__INIT_DATE", "__INIT_HANDLE", "__INIT_VOIDPTR", "__INIT_BOOL",
};

std::vector<Call> everyCall() {
    std::vector<Call> calls;
    addValueBuiltinCalls(calls);
    addArrayCalls(calls);
    addValueCalls(calls);
    addDateCalls(calls);
    addTextCalls(calls);
    addStorageNameCalls(calls);
    addDeviceCalls(calls);
    addTableCalls(calls);
    if (const char *only = std::getenv("ZELQA_EVERY_BUILTIN_ONLY"))
        std::erase_if(calls, [only](const Call &c) { return c.name.find(only) == std::string::npos; });
    return calls;
}

// Prints the exported functions no call reaches: those left out for the reason given,
// and any new one in none of the lists, to be added.
void listWhatIsLeftOut() {
    static const std::set<std::string> leftOut = {
        // They end the run or hand it over by design.
        "__RuntimeError", "SHUTDOWN", "__EndGlobal", "__BeginGlobal",
        // Hooks and registrations the driver itself relies on.
        "zq_set_box_hook", "zq_set_info_hook", "__RegisterExit", "zq_enter_function",
        // Windows and the window flags (the user-interface tests cover them).
        "zq_window_create", "zq_window_destroy", "zq_window_exists", "__ActivateWin", "__CloseDialog",
        "zq_box_open", "zq_take_swallowed_key", "MostraErro",
        // Storage records and staging take storage handles and paths, not values: the fuzz
        // targets call them over damaged files.
        "StorageStart", "StorageClose", "DmFindDatabase", "DmCreateDatabase", "DmDeleteDatabase",
        "DmOpenDatabase", "DmCloseDatabase", "DmDatabaseInfo", "DmSetDatabaseInfo", "DmNumRecords",
        "DmQueryRecord", "DmGetRecord", "DmNewRecord", "DmNewHandle", "DmResizeRecord", "DmReleaseRecord",
        "DmRemoveRecord", "MemHandleLock", "MemHandleUnlock", "MemHandleSize", "MemPtrUnlock", "DmWrite", "DmSet",
        "DmFindSortPosition", "__InternalZap", "OrdenarIndice", "DmCompactDatabase", "ReadRecordBuffer",
        "WriteRecordBuffer", "zq_stage_file", "zq_staged_count", "zq_staged_entry", "zq_cancel_staged",
        "zq_stage_result_text", "zq_visit_staged", "zq_program_directory",
    };
    std::set<std::string> valueBuiltins;
    for (const ValueBuiltin &b : kValueBuiltins)
        valueBuiltins.insert(b.name);
    std::vector<std::string> unknown;
    for (const char *name : kExported)
        if (!valueBuiltins.count(name) && !kCalledByHand.count(name) && !leftOut.count(name))
            unknown.push_back(name);
    std::printf("every built-in: %zu take values only, %zu called by hand, %zu left out, %zu not yet placed\n",
                valueBuiltins.size(), kCalledByHand.size(), leftOut.size(), unknown.size());
    for (const std::string &name : unknown)
        std::printf("  not called: %s\n", name.c_str());
}

} // namespace

TEST(EveryBuiltin, EndsInAResultOrARuntimeError) {
    zq::test::UnattendedBoxes boxes;
    std::filesystem::path dir = zq::test::freshDirectory("every_builtin");
    std::filesystem::path before = std::filesystem::current_path();
    std::vector<Call> calls = everyCall();
    CallResults results = runInChildren(calls, dir.string());
    std::filesystem::current_path(before);
    std::printf("every built-in: %llu calls, %llu returned, %llu ended in a runtime error, %zu defects\n",
                (unsigned long long)results.calls, (unsigned long long)results.returned,
                (unsigned long long)results.runtimeErrors, results.defects.size());
    EXPECT_EQ(results.returned + results.runtimeErrors + results.defects.size(), results.calls);
    for (size_t i = 0; i < results.defects.size() && i < 100; ++i)
        ADD_FAILURE() << results.defects[i];
    listWhatIsLeftOut();
}

