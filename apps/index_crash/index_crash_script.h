// The operations the index crash writer runs, and the rows they leave, for writer and test.
//
// Operation k depends only on k and the rows before it. Every key is unique (it carries
// the number of the operation that set it), so a seek names exactly one row.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

struct IndexCrashRow {
    std::string code; // C 6, the first index's key
    double number = 0; // N 8, with code the second index's key
    bool deleted = false;
    bool operator==(const IndexCrashRow &o) const {
        return code == o.code && number == o.number && deleted == o.deleted;
    }
};

enum class IndexCrashKind { Append, Edit, Delete, Recall, Pack };

struct IndexCrashOp {
    IndexCrashKind kind;
    uint32_t row;
    IndexCrashRow values;
};

inline IndexCrashOp indexCrashOp(uint32_t k, const std::vector<IndexCrashRow> &table) {
    uint32_t rows = uint32_t(table.size());
    IndexCrashOp op{IndexCrashKind::Append, rows, {}};
    char code[16];
    std::snprintf(code, sizeof code, "%c%05u", k % 3 == 0 ? 'K' : 'E', k % 100000);
    op.values.code = code;
    op.values.number = double((k * 7919u) % 1000);
    if (rows >= 4) {
        switch (k % 11) {
        case 1: case 2: case 5: op.kind = IndexCrashKind::Edit; break;
        case 3: case 7: op.kind = IndexCrashKind::Delete; break;
        case 4: op.kind = IndexCrashKind::Recall; break;
        case 9: op.kind = IndexCrashKind::Pack; break;
        default: break;
        }
        if (op.kind != IndexCrashKind::Append && op.kind != IndexCrashKind::Pack)
            op.row = ((k * 2654435761u) >> 7) % rows;
        if (op.kind == IndexCrashKind::Edit && table[op.row].deleted)
            op.kind = IndexCrashKind::Recall;
    }
    return op;
}

inline void applyIndexCrashOp(std::vector<IndexCrashRow> &rows, const IndexCrashOp &op) {
    switch (op.kind) {
    case IndexCrashKind::Append: rows.push_back(op.values); break;
    case IndexCrashKind::Edit: rows[op.row] = op.values; break;
    case IndexCrashKind::Delete: rows[op.row].deleted = true; break;
    case IndexCrashKind::Recall: rows[op.row].deleted = false; break;
    case IndexCrashKind::Pack:
        rows.erase(std::remove_if(rows.begin(), rows.end(), [](const IndexCrashRow &r) { return r.deleted; }),
                   rows.end());
        break;
    }
}

inline std::vector<IndexCrashRow> indexCrashRowsAfter(uint32_t n) {
    std::vector<IndexCrashRow> rows;
    for (uint32_t k = 0; k < n; ++k)
        applyIndexCrashOp(rows, indexCrashOp(k, rows));
    return rows;
}
