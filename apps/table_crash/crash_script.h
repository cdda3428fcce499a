// The operations the table crash writer runs, and the rows they leave, for writer and test.
//
// Operation k depends only on k and the rows before it, so the test replays the same
// script to know what every committed operation left.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct CrashRow {
    double id = 0;
    std::string name; // character field of 20
    std::string note; // memo field
    bool flag = false;
    bool deleted = false;
};

enum class CrashOpKind { Append, Edit, Delete, Recall };

struct CrashOp {
    CrashOpKind kind;
    uint32_t row;      // 0-based row the operation changes
    CrashRow values;   // the fields an append or an edit stores
};

// A text of 1 to 20 letters (names) or 1 to 300 (notes) that varies with k, so edits both
// lengthen and shorten rows and memo texts.
inline std::string crashText(uint32_t k, uint32_t longest) {
    std::string s(1 + (k * 37) % longest, ' ');
    for (size_t j = 0; j < s.size(); ++j)
        s[j] = char('a' + (k * 7 + j) % 26);
    return s;
}

// A deleted row keeps its fields until recalled (only its mark is stored), so the script
// edits live rows only: an edit that picks a deleted row recalls it instead.
inline CrashOp crashOp(uint32_t k, const std::vector<CrashRow> &table) {
    uint32_t rows = uint32_t(table.size());
    uint32_t pick = (k * 2654435761u) >> 7;
    CrashOp op{CrashOpKind::Append, rows, {}};
    if (rows >= 4) {
        switch (k % 5) {
        case 1: case 2: op.kind = CrashOpKind::Edit; break;
        case 3: op.kind = CrashOpKind::Delete; break;
        case 4: op.kind = CrashOpKind::Recall; break;
        default: break;
        }
        if (op.kind != CrashOpKind::Append)
            op.row = pick % rows;
        if (op.kind == CrashOpKind::Edit && table[op.row].deleted)
            op.kind = CrashOpKind::Recall;
    }
    op.values.id = k;
    op.values.name = crashText(k, 20);
    op.values.note = crashText(k * 3 + 1, 300);
    op.values.flag = k % 2 == 1;
    return op;
}

inline void applyCrashOp(std::vector<CrashRow> &rows, const CrashOp &op) {
    switch (op.kind) {
    case CrashOpKind::Append: rows.push_back(op.values); break;
    case CrashOpKind::Edit: rows[op.row] = op.values; break;
    case CrashOpKind::Delete: rows[op.row].deleted = true; break;
    case CrashOpKind::Recall: rows[op.row].deleted = false; break;
    }
}

// The rows after operations 0..n-1.
inline std::vector<CrashRow> crashRowsAfter(uint32_t n) {
    std::vector<CrashRow> rows;
    for (uint32_t k = 0; k < n; ++k)
        applyCrashOp(rows, crashOp(k, rows));
    return rows;
}
