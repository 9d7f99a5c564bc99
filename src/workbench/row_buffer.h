// Rows of one table held apart from the store: every column of the table
// (for_each_column's list, so a column added there is held too), row by row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

class RowBuffer {
public:
    RowBuffer() = default;
    explicit RowBuffer(int table);

    int table() const { return table_; }
    size_t size() const { return rows_; }
    bool empty() const { return rows_ == 0; }

    // Appends a copy of store row `row` (a column too short gives its default).
    void append(const model::Store& s, int32_t row);
    // Appends row k of another buffer of the same table.
    void append(const RowBuffer& other, size_t k);
    // Is row k equal to store row `row` in every column?
    bool same(const model::Store& s, int32_t row, size_t k) const;
    // The polygon's levels (pg_drw) of row k; polygons only.
    void set_levels(size_t k, std::string levels);

    // The values of one value type, row after row: row k's value of the
    // column that is n-th of its type is values<T>()[k * stride<T>() + n].
    template <class T>
    const std::vector<T>& values() const;
    template <class T>
    size_t stride() const;

    // Bytes held, strings' buffers included.
    size_t bytes() const;

private:
    template <class T>
    std::vector<T>& own();

    int table_ = 0;
    size_t rows_ = 0;
    // Columns of each value type; values of row k start at k * count.
    size_t n_str_ = 0, n_i32_ = 0, n_i16_ = 0, n_u8_ = 0;
    std::vector<std::string> str_;
    std::vector<int32_t> i32_;
    std::vector<int16_t> i16_;
    std::vector<uint8_t> u8_;
};

}  // namespace korvex::workbench

#include "workbench/row_ops.h"

namespace korvex::workbench {

// Calls f(column, n) for every column of a table, n counting the columns of
// the column's value type (the index RowBuffer uses).
template <class F>
void for_each_typed_column(model::Store& s, int table, F&& f) {
    size_t n_str = 0, n_i32 = 0, n_i16 = 0, n_u8 = 0;
    for_each_column(s, table, [&](auto& col) {
        using T = typename std::remove_reference_t<decltype(col)>::value_type;
        if constexpr (std::is_same_v<T, std::string>) f(col, n_str++);
        else if constexpr (std::is_same_v<T, int32_t>) f(col, n_i32++);
        else if constexpr (std::is_same_v<T, int16_t>) f(col, n_i16++);
        else f(col, n_u8++);
    });
}

}  // namespace korvex::workbench
