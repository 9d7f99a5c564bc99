#include "workbench/row_ops.h"

#include <algorithm>
#include <utility>

#include "model/row_watch.h"

namespace korvex::workbench {

int table_of(int cls) {
    switch (cls) {
    case model::k_active_lines: return model::k_lines;
    case model::k_extra_points: return model::k_points;
    default: return cls;
    }
}

int32_t table_rows(const model::Store& s, int table) {
    switch (table) {
    case model::k_polygons: return s.pg_n;
    case model::k_lines: return s.ln_n + s.ln_nact;
    case model::k_points: return s.pt_n + s.pt_nx;
    default: return 0;
    }
}

void fit_columns(model::Store& s, int table) {
    const auto n = static_cast<size_t>(std::max(0, table_rows(s, table)));
    for_each_column(s, table, [&](auto& col) { col.resize(n); });
    if (table == model::k_polygons) s.pg_drw.resize(n + 1);
}

namespace {

// Columns shorter than the live rows (a table filled by a path that sizes
// only some of them) are grown first, so that every index is in range.
void ensure_rows(model::Store& s, int table, int32_t rows) {
    const auto n = static_cast<size_t>(std::max(0, rows));
    for_each_column(s, table, [&](auto& col) {
        if (col.size() < n) col.resize(n);
    });
}

}  // namespace

void Swap(model::Store& s, int cls, int32_t a, int32_t b) {
    if (a == b || a < 0 || b < 0) return;
    const int table = table_of(cls);
    if (s.row_watch) s.row_watch->swapped(table, a, b);
    ensure_rows(s, table, std::max(a, b) + 1);
    for_each_column(s, table, [&](auto& col) {
        using std::swap;
        swap(col[static_cast<size_t>(a)], col[static_cast<size_t>(b)]);
    });
}

void permute_rows(model::Store& s, int cls, int32_t first, const std::vector<int32_t>& order) {
    if (order.empty()) return;
    const int table = table_of(cls);
    if (s.row_watch) s.row_watch->permuted(table, first, order);
    ensure_rows(s, table, first + static_cast<int32_t>(order.size()));
    for_each_column(s, table, [&](auto& col) {
        using Col = std::remove_reference_t<decltype(col)>;
        Col moved;
        moved.reserve(order.size());
        for (const int32_t from : order) moved.push_back(std::move(col[static_cast<size_t>(from)]));
        std::move(moved.begin(), moved.end(), col.begin() + first);
    });
}

void insert_row(model::Store& s, int cls, int32_t at) {
    const int table = table_of(cls);
    if (s.row_watch) s.row_watch->inserted(table, at);
    ensure_rows(s, table, table_rows(s, table));
    for_each_column(s, table, [&](auto& col) {
        const size_t pos = std::min(col.size(), static_cast<size_t>(std::max(0, at)));
        col.insert(col.begin() + static_cast<std::ptrdiff_t>(pos), typename std::remove_reference_t<decltype(col)>::value_type{});
    });
}

void erase_rows(model::Store& s, int cls, const std::vector<int32_t>& rows) {
    if (rows.empty()) return;
    const int table = table_of(cls);
    if (s.row_watch) s.row_watch->erasing(table, rows);
    for_each_column(s, table, [&](auto& col) {
        size_t write = static_cast<size_t>(std::max(0, rows.front()));
        size_t next = 0;
        for (size_t r = write; r < col.size(); ++r) {
            if (next < rows.size() && static_cast<size_t>(rows[next]) == r) {
                ++next;
                continue;
            }
            if (write != r) col[write] = std::move(col[r]);
            ++write;
        }
        col.resize(write);
    });
}

}  // namespace korvex::workbench
