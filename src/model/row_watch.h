// Told about every change to the rows of a table while it is watched: the
// project's history follows the rows a change inserts, erases and moves
// without a copy of the tables. Tables are 0 polygons, 1 lines (active
// lines behind them), 2 points (extra points behind them); rows are store
// rows.
#pragma once

#include <cstdint>
#include <vector>

#include "model/store.h"

namespace korvex::model {

class RowWatch {
public:
    virtual ~RowWatch() = default;
    // An empty row opened at `at`; the rows from there moved up by one.
    virtual void inserted(int table, int32_t at) = 0;
    // These rows (ascending) are about to leave; their contents are still there.
    virtual void erasing(int table, const std::vector<int32_t>& rows) = 0;
    // Rows first .. first + order.size() - 1 took the contents of rows order[k].
    virtual void permuted(int table, int32_t first, const std::vector<int32_t>& order) = 0;
    // The row at `from` moved to `to`; the rows between shifted by one.
    virtual void rotated(int table, int32_t from, int32_t to) = 0;
    virtual void swapped(int table, int32_t a, int32_t b) = 0;
    // The row is about to change where it stands.
    virtual void changing(int table, int32_t row) = 0;
};

// Tells the store's watch, if any, that a row is about to change in place.
inline void note_changing(Store& s, int table, int32_t row) {
    if (s.row_watch) s.row_watch->changing(table, row);
}

}  // namespace korvex::model
