#include "workbench/sort_rows.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "model/row_watch.h"

#include "workbench/row_ops.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

// A type not set yet (no digits) sorts first and is never moved by swap_types.
constexpr int32_t k_unset = -1;

int32_t key_of(const model::Store& s, int cls, int32_t row) {
    const int32_t code = row_type_code(s, cls, row);
    return code < 0 ? k_unset : type_key(code);
}

// Rows first .. last - 1 take a rotation: the row at `from` moves to `to`
// and those between shift by one, in every column.
void move_row(model::Store& s, int cls, int32_t from, int32_t to) {
    if (from == to) return;
    const int table = table_of(cls);
    if (s.row_watch) s.row_watch->rotated(table, from, to);
    for_each_column(s, table, [&](auto& col) {
        if (static_cast<size_t>(std::max(from, to)) >= col.size()) col.resize(static_cast<size_t>(std::max(from, to)) + 1);
        auto b = col.begin();
        if (from > to)
            std::rotate(b + to, b + from, b + from + 1);
        else
            std::rotate(b + from, b + from + 1, b + to + 1);
    });
}

int32_t reorder(model::Store& s, int cls, int32_t first, const std::vector<int32_t>& keys, int32_t follow) {
    const auto n = static_cast<int32_t>(keys.size());
    // Most calls find one row out of place at the end (a new element): a
    // single move places it where a stable sort would.
    int32_t bad = -1;
    for (int32_t k = 1; k < n; ++k) {
        if (keys[static_cast<size_t>(k)] < keys[static_cast<size_t>(k - 1)]) {
            bad = k;
            break;
        }
    }
    if (bad < 0) return follow;
    if (bad == n - 1) {
        const int32_t key = keys.back();
        const auto at = static_cast<int32_t>(std::upper_bound(keys.begin(), keys.end() - 1, key) - keys.begin());
        move_row(s, cls, first + n - 1, first + at);
        if (follow == first + n - 1) return first + at;
        if (follow >= first + at && follow < first + n - 1) return follow + 1;
        return follow;
    }
    std::vector<int32_t> order(static_cast<size_t>(n));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int32_t a, int32_t b) { return keys[static_cast<size_t>(a)] < keys[static_cast<size_t>(b)]; });
    int32_t moved = follow;
    for (int32_t k = 0; k < n; ++k) {
        if (first + order[static_cast<size_t>(k)] == follow) moved = first + k;
        order[static_cast<size_t>(k)] += first;
    }
    permute_rows(s, cls, first, order);
    return moved;
}

}  // namespace

int32_t sort_types(model::Store& s, int cls, int32_t follow) {
    if (cls != model::k_polygons && cls != model::k_lines && cls != model::k_points) return follow;
    const int32_t first = first_row(s, cls), end = end_row(s, cls);
    std::vector<int32_t> keys;
    keys.reserve(static_cast<size_t>(std::max(0, end - first)));
    for (int32_t r = first; r < end; ++r) keys.push_back(key_of(s, cls, r));
    return reorder(s, cls, first, keys, follow);
}

int32_t swap_types(model::Store& s, int cls, int32_t row) {
    // Active lines stand in activity order, extra points in their own.
    if (cls != model::k_polygons && cls != model::k_lines && cls != model::k_points) return row;
    const int32_t first = first_row(s, cls), end = end_row(s, cls);
    if (row < first || row >= end || end - first < 2) return row;
    const int32_t key = key_of(s, cls, row);
    if (key == k_unset) return row;
    auto comparable = [&](int32_t r) { return key_of(s, cls, r) != k_unset; };
    int32_t to = row;
    while (to > first && comparable(to - 1) && key_of(s, cls, to - 1) > key) --to;
    if (to == row)
        while (to + 1 < end && comparable(to + 1) && key_of(s, cls, to + 1) < key) ++to;
    move_row(s, cls, row, to);
    return to;
}

int32_t sort_active(model::Store& s, int32_t follow) {
    const int32_t first = s.ln_n, end = s.ln_n + s.ln_nact;
    std::vector<int32_t> keys;
    for (int32_t r = first; r < end; ++r) {
        const auto i = static_cast<size_t>(r);
        keys.push_back(i < s.ln_act.size() ? std::atoi(s.ln_act[i].c_str()) : 0);
    }
    return reorder(s, model::k_active_lines, first, keys, follow);
}

}  // namespace korvex::workbench
