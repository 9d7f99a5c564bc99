// Rows of the element tables as wholes: exchange, reorder, open and remove
// a row in every column of its table at once. A column added to the store
// must be added to for_each_column, and nowhere else.
#pragma once

#include <cstdint>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// The table of a class: 0 polygons, 1 lines (active lines too), 2 points
// (extra points too).
int table_of(int cls);

// Calls f(column) for every column of a table (a vector of any element type).
template <class F>
void for_each_column(model::Store& s, int table, F&& f) {
    switch (table) {
    case model::k_polygons:
        f(s.pg_typ); f(s.pg_bmp); f(s.pg_col); f(s.pg_txt); f(s.pg_drw); f(s.pg_lab); f(s.pg_dayc);
        f(s.pg_xpm); f(s.pg_len); f(s.pg_pos); f(s.pg_ncol); f(s.pg_mode);
        break;
    case model::k_lines:
        f(s.ln_bmp); f(s.ln_col); f(s.ln_txt); f(s.ln_lab); f(s.ln_dayc); f(s.ln_act); f(s.ln_xpm);
        f(s.ln_len); f(s.ln_pos); f(s.ln_code); f(s.ln_ncol); f(s.ln_wid); f(s.ln_bord); f(s.ln_mode);
        break;
    case model::k_points:
        f(s.pt_col); f(s.pt_bmp); f(s.pt_nbmp); f(s.pt_txt); f(s.pt_typ); f(s.pt_lab); f(s.pt_cc);
        f(s.pt_xpm); f(s.pt_len); f(s.pt_ncol); f(s.pt_nncol); f(s.pt_mode);
        break;
    default:
        break;
    }
}

// Live rows of a table: pg_n, ln_n + ln_nact, pt_n + pt_nx.
int32_t table_rows(const model::Store& s, int table);

// Every column of the table sized to its live rows (pg_drw one more).
void fit_columns(model::Store& s, int table);

// Swap: rows a and b exchange their contents in every column of the class.
void Swap(model::Store& s, int cls, int32_t a, int32_t b);

// Rows first .. first + order.size() - 1 take the contents of rows order[k]
// (a permutation of that range), in every column.
void permute_rows(model::Store& s, int cls, int32_t first, const std::vector<int32_t>& order);

// An empty row (every column at its default) opens at row `at`; the rows
// from there move up by one. Counters are the caller's.
void insert_row(model::Store& s, int cls, int32_t at);

// The rows (ascending, no repeats) leave every column; the rows behind them
// close up in one pass. Counters are the caller's.
void erase_rows(model::Store& s, int cls, const std::vector<int32_t>& rows);

}  // namespace korvex::workbench
