// The operations the table crash writer runs, and what they leave, for writer and test.
//
// Operation k depends only on k and the state before it (rows and saved array), so the
// test replays the same script to know what every operation that returned left. Every key
// is unique (it carries the number of the operation that set it), so a seek names one row.
#pragma once

#include "zelqa.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace zq::table_crash {

// A row of table "CRASH": CODE C 8 (index "CRCODE"), NUMBER N 8 (with CODE the key of "CRNUMBER",
// "STR(NUMBER)+CODE"), NOTE memo, FLAG L 1, DAY D 8.
struct CrashRow {
    std::string code;
    double number = 0;
    std::string note;
    bool flag = false;
    double day = 0;
    bool deleted = false;
    // Every field but the memo text, which is stored apart from the row.
    bool sameRow(const CrashRow &o) const {
        return code == o.code && number == o.number && flag == o.flag && day == o.day && deleted == o.deleted;
    }
};

// One element of the saved array: itself an array {number, text, logical, date}.
struct SavedItem {
    double number = 0;
    std::string text;
    bool flag = false;
    double day = 0;
    bool operator==(const SavedItem &) const = default;
};
using SavedArray = std::vector<SavedItem>; // empty: nothing saved

enum class CrashKind { Append, Edit, Delete, Recall, Pack, Save };

struct CrashOp {
    CrashKind kind;
    uint32_t row;    // 0-based row an edit, delete or recall changes; an append's new row
    CrashRow values; // the fields an append or an edit stores
};

// A text of `length` bytes that varies with k, with Latin-1 letters among ASCII ones and
// blanks, never ending in a blank (the store keeps texts as given, but a reader trims).
inline std::string crashText(uint32_t k, uint32_t length) {
    static const char letters[] = "abcdefghijklmnopqrstuvwxyz \301\311\315\323\332\341\347\343\365\377\252\337";
    std::string s(length, 'z');
    for (uint32_t j = 0; j + 1 < length; ++j)
        s[j] = letters[(k * 7 + j * 13 + j / 5) % (sizeof letters - 1)];
    return s;
}

// Memo texts: some empty, some long (several kilobytes), most short.
inline std::string crashNote(uint32_t k) {
    if (k % 7 == 0)
        return std::string();
    return crashText(k * 3 + 1, k % 5 == 0 ? 1000 + (k * 37) % 3000 : 1 + (k * 37) % 200);
}

// The array operation k saves: 1 to 6 elements, the first with a long text.
inline SavedArray crashSaved(uint32_t k) {
    SavedArray saved;
    for (uint32_t j = 0; j <= k % 6; ++j)
        saved.push_back({double(k) * 10 + j, crashText(k + j, j == 0 ? 300 + k % 400 : 1 + (k + j) % 40),
                         (k + j) % 2 == 1, 2451545.0 + (k * 31 + j) % 20000});
    return saved;
}

// The table stays near kMostRows rows: past it appends turn into deletions, which the
// next pack clears.
inline constexpr uint32_t kMostRows = 60;

inline CrashOp crashOp(uint32_t k, const std::vector<CrashRow> &table) {
    uint32_t rows = uint32_t(table.size());
    CrashOp op{CrashKind::Append, rows, {}};
    char code[16];
    std::snprintf(code, sizeof code, "%c%07u", k % 3 == 0 ? 'K' : 'E', k % 10000000);
    op.values = {code, double((k * 7919u) % 1000), crashNote(k), k % 2 == 1, 2451545.0 + (k * 37) % 20000, false};
    if (rows < 4)
        return op;
    switch (k % 13) {
    case 1: case 2: case 5: case 8: op.kind = CrashKind::Edit; break;
    case 3: case 7: op.kind = CrashKind::Delete; break;
    case 4: op.kind = CrashKind::Recall; break;
    case 6: case 11: op.kind = CrashKind::Save; break;
    case 9: op.kind = CrashKind::Pack; break;
    default: op.kind = rows >= kMostRows ? CrashKind::Delete : CrashKind::Append; break;
    }
    if (op.kind == CrashKind::Edit || op.kind == CrashKind::Delete || op.kind == CrashKind::Recall)
        op.row = ((k * 2654435761u) >> 7) % rows;
    // A deleted row keeps its fields until recalled (only its mark is stored), so the
    // script edits live rows only: an edit that picks a deleted row recalls it instead.
    if (op.kind == CrashKind::Edit && table[op.row].deleted)
        op.kind = CrashKind::Recall;
    return op;
}

// The rows and the saved array after operations 0..done-1.
struct CrashState {
    uint32_t done = 0;
    std::vector<CrashRow> rows;
    SavedArray saved;

    CrashOp next() const { return crashOp(done, rows); }

    void apply(const CrashOp &op) {
        switch (op.kind) {
        case CrashKind::Append: rows.push_back(op.values); break;
        case CrashKind::Edit: rows[op.row] = op.values; break;
        case CrashKind::Delete: rows[op.row].deleted = true; break;
        case CrashKind::Recall: rows[op.row].deleted = false; break;
        case CrashKind::Save: saved = crashSaved(done); break;
        case CrashKind::Pack: // a pack also empties the memo companion
            std::erase_if(rows, [](const CrashRow &r) { return r.deleted; });
            for (CrashRow &r : rows)
                r.note.clear();
            break;
        }
        ++done;
    }

    void advanceTo(uint32_t n) {
        while (done < n)
            apply(next());
    }
};

// Makes table "CRASH" and its two indexes, leaving every area closed.
inline void createCrashTable() {
    auto field = [](const char *name, const char *type, double length) {
        return __CreateArray(__INIT_CHARPTR(name), __INIT_CHARPTR(type), __INIT_DOUBLE(length), __INIT_DOUBLE(0),
                             __INIT_NUL());
    };
    __DBCREATE(__INIT_CHARPTR("CRASH"),
               __CreateArray(field("CODE", "C", 8), field("NUMBER", "N", 8), field("NOTE", "M", 4),
                             field("FLAG", "L", 1), field("DAY", "D", 8), __INIT_NUL()),
               nullptr);
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("CRASH"), nullptr);
    __DBCREATEINDEX(__INIT_CHARPTR("CRCODE"), __INIT_CHARPTR("CODE"), __INIT_NUL());
    __DBCREATEINDEX(__INIT_CHARPTR("CRNUMBER"), __INIT_CHARPTR("STR(NUMBER)+CODE"), __INIT_NUL());
    __dbCloseAll();
}

} // namespace zq::table_crash
