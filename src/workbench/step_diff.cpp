#include "workbench/step_diff.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace korvex::workbench {

namespace {

struct Match {
    int32_t old_row, new_row;
};

// The longest run of rows that kept their order (a longest increasing
// subsequence of old rows), in rising order. Already increasing (the usual
// case: rows inserted or erased, none moved past another) costs one pass.
std::vector<Match> kept_order(std::vector<Match> candidates) {
    const bool increasing = std::adjacent_find(candidates.begin(), candidates.end(), [](const Match& a, const Match& b) {
                                return a.old_row >= b.old_row;
                            }) == candidates.end();
    if (increasing) return candidates;
    std::vector<size_t> tails;                       // index of the smallest tail of each length
    std::vector<ptrdiff_t> back(candidates.size(), -1);
    for (size_t i = 0; i < candidates.size(); ++i) {
        const auto at = std::lower_bound(tails.begin(), tails.end(), candidates[i].old_row,
                                         [&](size_t k, int32_t v) { return candidates[k].old_row < v; });
        if (at != tails.begin()) back[i] = static_cast<ptrdiff_t>(*std::prev(at));
        if (at == tails.end())
            tails.push_back(i);
        else
            *at = i;
    }
    std::vector<Match> out;
    for (ptrdiff_t i = tails.empty() ? -1 : static_cast<ptrdiff_t>(tails.back()); i >= 0; i = back[static_cast<size_t>(i)])
        out.push_back(candidates[static_cast<size_t>(i)]);
    std::reverse(out.begin(), out.end());
    return out;
}

}  // namespace

size_t TableChange::bytes() const {
    size_t n = sizeof(*this) + hunks.capacity() * sizeof(Hunk);
    for (const Hunk& h : hunks) n += h.before.bytes() + h.after.bytes() - 2 * sizeof(RowBuffer);
    return n;
}

TableChange diff_followed(const model::Store& s, int table, RowJournal::Table& followed,
                          const std::vector<std::string>* levels) {
    TableChange c;
    c.table = table;
    c.old_rows = followed.start_rows;
    c.new_rows = std::max(0, table_rows(s, table));
    const auto n_new = static_cast<size_t>(c.new_rows);
    const auto n_old = static_cast<size_t>(c.old_rows);
    std::vector<int32_t> origin;
    if (followed.moved) {
        origin = std::move(followed.origin);
    } else {
        origin.resize(std::min(n_new, n_old));
        for (size_t j = 0; j < origin.size(); ++j) origin[j] = static_cast<int32_t>(j);
    }
    origin.resize(n_new, -1);
    if (table != model::k_polygons) levels = nullptr;
    auto level_was = [&](int32_t o) -> const std::string& {
        static const std::string none;
        return static_cast<size_t>(o) < levels->size() ? (*levels)[static_cast<size_t>(o)] : none;
    };
    auto level_now = [&](size_t j) -> const std::string& {
        static const std::string none;
        return j < s.pg_drw.size() ? s.pg_drw[j] : none;
    };
    // Rows copied during the change hold the levels of that moment: the
    // levels as the part began are the ones to keep.
    if (levels)
        for (const auto& [o, k] : followed.kept) followed.before.set_levels(k, level_was(o));

    std::vector<int32_t> where(n_old, -1);  // old row -> new row
    for (size_t j = 0; j < n_new; ++j)
        if (origin[j] >= 0 && static_cast<size_t>(origin[j]) < n_old) where[static_cast<size_t>(origin[j])] = static_cast<int32_t>(j);
        else origin[j] = -1;
    std::vector<char> changed(n_new, 0);
    for (const auto& [o, k] : followed.kept) {
        const int32_t j = static_cast<size_t>(o) < n_old ? where[static_cast<size_t>(o)] : -1;
        if (j >= 0 && !followed.before.same(s, j, k)) changed[static_cast<size_t>(j)] = 1;
    }
    if (levels)
        for (size_t j = 0; j < n_new; ++j)
            if (origin[j] >= 0 && level_now(j) != level_was(origin[j])) changed[j] = 1;

    std::vector<Match> candidates;
    candidates.reserve(n_new);
    for (size_t j = 0; j < n_new; ++j)
        if (origin[j] >= 0 && !changed[j]) candidates.push_back({origin[j], static_cast<int32_t>(j)});
    std::vector<Match> matches = kept_order(std::move(candidates));
    matches.push_back({c.old_rows, c.new_rows});

    Match prev{-1, -1};
    for (const Match& m : matches) {
        if (m.old_row - prev.old_row > 1 || m.new_row - prev.new_row > 1) {
            Hunk h{prev.old_row + 1, prev.new_row + 1, RowBuffer(table), RowBuffer(table)};
            for (int32_t o = prev.old_row + 1; o < m.old_row; ++o) {
                const auto it = followed.kept.find(o);
                if (it != followed.kept.end()) {
                    h.before.append(followed.before, it->second);
                    continue;
                }
                // Not copied: it did not change where it stands, so it is
                // as it was wherever it went (a row lost without a word
                // comes back empty).
                h.before.append(s, where[static_cast<size_t>(o)] >= 0 ? where[static_cast<size_t>(o)] : c.new_rows);
                if (levels) h.before.set_levels(h.before.size() - 1, level_was(o));
            }
            for (int32_t j = prev.new_row + 1; j < m.new_row; ++j) h.after.append(s, j);
            c.hunks.push_back(std::move(h));
        }
        prev = m;
    }
    return c;
}

TableChange diff_whole(const model::Store& s, int table, const RowBuffer& was) {
    TableChange c;
    c.table = table;
    c.old_rows = static_cast<int32_t>(was.size());
    c.new_rows = std::max(0, table_rows(s, table));
    int32_t front = 0;
    const int32_t shorter = std::min(c.old_rows, c.new_rows);
    while (front < shorter && was.same(s, front, static_cast<size_t>(front))) ++front;
    int32_t back = 0;
    while (back < shorter - front &&
           was.same(s, c.new_rows - 1 - back, static_cast<size_t>(c.old_rows - 1 - back)))
        ++back;
    if (front == c.old_rows && front == c.new_rows) return c;
    Hunk h{front, front, RowBuffer(table), RowBuffer(table)};
    for (int32_t o = front; o < c.old_rows - back; ++o) h.before.append(was, static_cast<size_t>(o));
    for (int32_t j = front; j < c.new_rows - back; ++j) h.after.append(s, j);
    c.hunks.push_back(std::move(h));
    return c;
}

void apply_change(model::Store& s, const TableChange& c, bool forward) {
    if (c.hunks.empty()) return;
    const auto from_rows = static_cast<size_t>(forward ? c.old_rows : c.new_rows);
    for_each_typed_column(s, c.table, [&](auto& col, size_t n) {
        using Col = std::remove_reference_t<decltype(col)>;
        using T = typename Col::value_type;
        if (col.size() < from_rows) col.resize(from_rows);
        Col out;
        out.reserve(col.size() + static_cast<size_t>(std::abs(c.new_rows - c.old_rows)));
        size_t pos = 0;
        for (const Hunk& h : c.hunks) {
            const auto at = static_cast<size_t>(forward ? h.old_at : h.new_at);
            const RowBuffer& gone = forward ? h.before : h.after;
            const RowBuffer& put = forward ? h.after : h.before;
            std::move(col.begin() + static_cast<std::ptrdiff_t>(pos), col.begin() + static_cast<std::ptrdiff_t>(at),
                      std::back_inserter(out));
            const std::vector<T>& vals = put.template values<T>();
            const size_t stride = put.template stride<T>();
            for (size_t k = 0; k < put.size(); ++k) out.push_back(vals[k * stride + n]);
            pos = at + gone.size();
        }
        std::move(col.begin() + static_cast<std::ptrdiff_t>(std::min(pos, col.size())), col.end(), std::back_inserter(out));
        col = std::move(out);
    });
}

}  // namespace korvex::workbench
