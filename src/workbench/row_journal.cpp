#include "workbench/row_journal.h"

#include <algorithm>
#include <numeric>

namespace korvex::workbench {

RowJournal::RowJournal(const model::Store& s) : s_(s) {
    for (int t = 0; t < 3; ++t) {
        Table& tb = tables_[static_cast<size_t>(t)];
        tb.start_rows = std::max(0, table_rows(s, t));
        tb.before = RowBuffer(t);
    }
}

RowJournal::Table* RowJournal::of(int table) {
    return table >= 0 && table < 3 ? &tables_[static_cast<size_t>(table)] : nullptr;
}

std::vector<int32_t>& RowJournal::origin(Table& t) {
    if (!t.moved) {
        t.origin.resize(static_cast<size_t>(t.start_rows));
        std::iota(t.origin.begin(), t.origin.end(), 0);
        t.moved = true;
    }
    return t.origin;
}

int32_t RowJournal::start_row(const Table& t, int32_t row) const {
    if (row < 0) return -1;
    if (!t.moved) return row < t.start_rows ? row : -1;
    return static_cast<size_t>(row) < t.origin.size() ? t.origin[static_cast<size_t>(row)] : -1;
}

void RowJournal::keep(int table, int32_t row) {
    Table* t = of(table);
    if (!t) return;
    const int32_t start = start_row(*t, row);
    if (start < 0 || t->kept.count(start)) return;
    t->kept.emplace(start, t->before.size());
    t->before.append(s_, row);
}

void RowJournal::inserted(int table, int32_t at) {
    Table* t = of(table);
    if (!t) return;
    std::vector<int32_t>& o = origin(*t);
    const auto pos = std::min(o.size(), static_cast<size_t>(std::max(0, at)));
    o.insert(o.begin() + static_cast<std::ptrdiff_t>(pos), -1);
}

void RowJournal::erasing(int table, const std::vector<int32_t>& rows) {
    Table* t = of(table);
    if (!t) return;
    for (const int32_t r : rows) keep(table, r);
    std::vector<int32_t>& o = origin(*t);
    size_t write = 0, next = 0;
    for (size_t r = 0; r < o.size(); ++r) {
        if (next < rows.size() && static_cast<size_t>(rows[next]) == r) {
            ++next;
            continue;
        }
        o[write++] = o[r];
    }
    o.resize(write);
}

void RowJournal::permuted(int table, int32_t first, const std::vector<int32_t>& order) {
    Table* t = of(table);
    if (!t || first < 0) return;
    std::vector<int32_t>& o = origin(*t);
    if (o.size() < static_cast<size_t>(first) + order.size()) o.resize(static_cast<size_t>(first) + order.size(), -1);
    std::vector<int32_t> taken;
    taken.reserve(order.size());
    for (const int32_t from : order) taken.push_back(from >= 0 && static_cast<size_t>(from) < o.size() ? o[static_cast<size_t>(from)] : -1);
    std::copy(taken.begin(), taken.end(), o.begin() + first);
}

void RowJournal::rotated(int table, int32_t from, int32_t to) {
    Table* t = of(table);
    if (!t || from == to || from < 0 || to < 0) return;
    std::vector<int32_t>& o = origin(*t);
    if (o.size() <= static_cast<size_t>(std::max(from, to))) o.resize(static_cast<size_t>(std::max(from, to)) + 1, -1);
    auto b = o.begin();
    if (from > to)
        std::rotate(b + to, b + from, b + from + 1);
    else
        std::rotate(b + from, b + from + 1, b + to + 1);
}

void RowJournal::swapped(int table, int32_t a, int32_t b) {
    Table* t = of(table);
    if (!t || a == b || a < 0 || b < 0) return;
    std::vector<int32_t>& o = origin(*t);
    if (o.size() <= static_cast<size_t>(std::max(a, b))) o.resize(static_cast<size_t>(std::max(a, b)) + 1, -1);
    std::swap(o[static_cast<size_t>(a)], o[static_cast<size_t>(b)]);
}

}  // namespace korvex::workbench
