// The watch of one part of a step: for each table, where every row now
// came from (its row when the part began, -1 for a new row), and a copy of
// each row as it was before it changed in place or left.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "model/row_watch.h"
#include "workbench/row_buffer.h"

namespace korvex::workbench {

class RowJournal : public model::RowWatch {
public:
    struct Table {
        int32_t start_rows = 0;        // live rows when the part began
        bool moved = false;            // origin is kept (else every row is where it was)
        std::vector<int32_t> origin;   // now row -> start row, -1 new
        RowBuffer before;              // rows as they were, by start row ...
        std::unordered_map<int32_t, size_t> kept;  // ... start row -> row of before
    };

    explicit RowJournal(const model::Store& s);

    // Copies the row (a store row now) unless it is new or copied already.
    void keep(int table, int32_t row);

    void inserted(int table, int32_t at) override;
    void erasing(int table, const std::vector<int32_t>& rows) override;
    void permuted(int table, int32_t first, const std::vector<int32_t>& order) override;
    void rotated(int table, int32_t from, int32_t to) override;
    void swapped(int table, int32_t a, int32_t b) override;
    void changing(int table, int32_t row) override { keep(table, row); }

    Table& table(int t) { return tables_[static_cast<size_t>(t)]; }

private:
    Table* of(int table);
    // The origin of each row, made explicit before the first move.
    std::vector<int32_t>& origin(Table& t);
    int32_t start_row(const Table& t, int32_t row) const;

    const model::Store& s_;
    std::array<Table, 3> tables_;
};

}  // namespace korvex::workbench
