// __ASORT: sorting part of an array by exchanging payloads only.
//
// The order of exchanges is fixed: passes over the range until one makes no exchange; at
// each position p whose key is out of order against the next, the exchange partner is
// the last of the run of following positions that are all out of order against p. Type
// tags and objLength stay where they are. Equal keys make the outcome depend on that
// order, so it is followed exactly; when every key is distinct the sorted arrangement is
// the only possible outcome and a general sort reaches it faster.
#include "runtime/arrays.h"

#include "runtime/context.h"
#include "runtime/raise.h"
#include "zelqa/arrays.h"
#include "zelqa/values.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

using namespace zq::runtime;

namespace {

struct SortRange {
    std::vector<pObj> records; // the element records of the sorted positions, in order
    int32_t column;            // 0-based key column of rows
    bool ascending;
};

bool outOfOrder(const SortRange &r, pObj x, pObj y) {
    pObj kx = columnKey(x, r.column), ky = columnKey(y, r.column);
    int c = __Comp(kx, ky);
    if (kx->type == TYPE_LOGICAL)
        return false; // logicals are not ordered: nothing to exchange
    return r.ascending ? c > 0 : c < 0;
}

void exchange(pObj x, pObj y) {
    // A row and a scalar never trade payloads: the tags stay, so the record would lie.
    requireArgument((x->type == TYPE_ARRAY) == (y->type == TYPE_ARRAY));
    __SwapElements(x, y);
}

void sortByPasses(SortRange &r) {
    const size_t m = r.records.size();
    for (bool exchanged = true; exchanged;) {
        exchanged = false;
        for (size_t p = 0; p + 1 < m; ++p) {
            pObj x = r.records[p];
            if (!outOfOrder(r, x, r.records[p + 1]))
                continue;
            size_t q = p + 1;
            while (q + 1 < m && outOfOrder(r, x, r.records[q + 1]))
                ++q;
            exchange(x, r.records[q]);
            exchanged = true;
        }
    }
}

// True when the keys are all of one ordered type, none NaN, and the records all rows or
// all scalars: then a general sort is safe and, with distinct keys, gives the same result.
bool keysAreUniform(const SortRange &r, std::vector<pObj> &keys) {
    for (pObj el : r.records)
        keys.push_back(columnKey(el, r.column));
    const uint32_t type = keys.front()->type, recordType = r.records.front()->type;
    if (type != TYPE_CHAR && type != TYPE_DATE && type != TYPE_NUMERIC)
        return false;
    for (size_t i = 0; i < keys.size(); ++i) {
        if (keys[i]->type != type || r.records[i]->type != recordType)
            return false;
        if (type != TYPE_CHAR && std::isnan(keys[i]->payload.d))
            return false;
    }
    return true;
}

// Sorts by a general algorithm; false (nothing changed) when two keys are equal.
bool sortDistinctKeys(SortRange &r) {
    std::vector<pObj> keys;
    if (!keysAreUniform(r, keys))
        return false;
    std::vector<size_t> order(keys.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](size_t x, size_t y) {
        int c = __Comp(keys[x], keys[y]);
        return r.ascending ? c < 0 : c > 0;
    });
    for (size_t i = 0; i + 1 < order.size(); ++i) {
        if (__Comp(keys[order[i]], keys[order[i + 1]]) == 0)
            return false;
    }
    // Payloads move, tags stay; a text's length moves with its buffer.
    std::vector<std::pair<decltype(Obj::payload), int16_t>> values;
    values.reserve(order.size());
    for (size_t i : order)
        values.emplace_back(r.records[i]->payload, r.records[i]->objLength);
    for (size_t i = 0; i < order.size(); ++i)
        std::tie(r.records[i]->payload, r.records[i]->objLength) = values[i];
    return true;
}

} // namespace

pObj __ASORT(pObj a, pObj nStart, pObj nCount, pObj lAscending, pObj nColumn) noexcept {
    ArrayHeader &header = requireArray(a);
    int32_t first = 1, end = header.count, column = 2;
    integerArgument(nStart, first);
    int32_t start = first < 1 ? 0 : first - 1; // 0-based; a start below 1 is 1
    int32_t last = 0;
    if (integerArgument(nCount, last) && last >= 1 && last <= header.count)
        end = last; // nCount is the last position sorted
    integerArgument(nColumn, column);
    column = column < 1 ? -1 : column - 1; // 0-based; below 1 no row has the column
    SortRange range{{}, column, !(lAscending && lAscending->type == TYPE_LOGICAL && !lAscending->payload.l)};
    if (end < 2)
        return a;
    if (start + 1 >= end)
        return a;
    range.records.reserve(static_cast<size_t>(end - start));
    pObj el = elementAt(header, start);
    for (int32_t p = start; p < end; ++p, el = el->next)
        range.records.push_back(el);
    if (!sortDistinctKeys(range))
        sortByPasses(range);
    return a;
}
