#include "workbench/row_buffer.h"

#include <array>
#include <type_traits>

namespace korvex::workbench {

namespace {

// Strings up to this long live inside the string object.
constexpr size_t k_short_string = 15;

// Where pg_drw sits among the polygons' string columns.
size_t levels_column() {
    model::Store probe;
    probe.pg_drw.push_back("x");
    size_t n = 0, at = 0;
    for_each_column(probe, model::k_polygons, [&](auto& col) {
        using T = typename std::remove_reference_t<decltype(col)>::value_type;
        if constexpr (std::is_same_v<T, std::string>) {
            if (&col == &probe.pg_drw) at = n;
            ++n;
        }
    });
    return at;
}

// Columns of each value type in each table, counted once.
struct ColumnCounts {
    size_t str = 0, i32 = 0, i16 = 0, u8 = 0;
};

std::array<ColumnCounts, 3> count_columns() {
    std::array<ColumnCounts, 3> out{};
    model::Store empty;
    for (int table = 0; table < 3; ++table) {
        ColumnCounts& c = out[static_cast<size_t>(table)];
        for_each_column(empty, table, [&](auto& col) {
            using T = typename std::remove_reference_t<decltype(col)>::value_type;
            if constexpr (std::is_same_v<T, std::string>) ++c.str;
            else if constexpr (std::is_same_v<T, int32_t>) ++c.i32;
            else if constexpr (std::is_same_v<T, int16_t>) ++c.i16;
            else ++c.u8;
        });
    }
    return out;
}

}  // namespace

RowBuffer::RowBuffer(int table) : table_(table) {
    static const std::array<ColumnCounts, 3> counts = count_columns();
    if (table < 0 || table > 2) return;
    const ColumnCounts& c = counts[static_cast<size_t>(table)];
    n_str_ = c.str;
    n_i32_ = c.i32;
    n_i16_ = c.i16;
    n_u8_ = c.u8;
}

template <>
const std::vector<std::string>& RowBuffer::values<std::string>() const { return str_; }
template <>
const std::vector<int32_t>& RowBuffer::values<int32_t>() const { return i32_; }
template <>
const std::vector<int16_t>& RowBuffer::values<int16_t>() const { return i16_; }
template <>
const std::vector<uint8_t>& RowBuffer::values<uint8_t>() const { return u8_; }
template <>
std::vector<std::string>& RowBuffer::own<std::string>() { return str_; }
template <>
std::vector<int32_t>& RowBuffer::own<int32_t>() { return i32_; }
template <>
std::vector<int16_t>& RowBuffer::own<int16_t>() { return i16_; }
template <>
std::vector<uint8_t>& RowBuffer::own<uint8_t>() { return u8_; }
template <>
size_t RowBuffer::stride<std::string>() const { return n_str_; }
template <>
size_t RowBuffer::stride<int32_t>() const { return n_i32_; }
template <>
size_t RowBuffer::stride<int16_t>() const { return n_i16_; }
template <>
size_t RowBuffer::stride<uint8_t>() const { return n_u8_; }

void RowBuffer::append(const model::Store& s, int32_t row) {
    const auto r = static_cast<size_t>(row);
    for_each_column(const_cast<model::Store&>(s), table_, [&](const auto& col) {
        using T = typename std::remove_reference_t<decltype(col)>::value_type;
        own<T>().push_back(r < col.size() ? col[r] : T{});
    });
    ++rows_;
}

void RowBuffer::append(const RowBuffer& other, size_t k) {
    auto take = [&](auto& mine, const auto& theirs, size_t count) {
        mine.insert(mine.end(), theirs.begin() + static_cast<std::ptrdiff_t>(k * count),
                    theirs.begin() + static_cast<std::ptrdiff_t>((k + 1) * count));
    };
    take(str_, other.str_, n_str_);
    take(i32_, other.i32_, n_i32_);
    take(i16_, other.i16_, n_i16_);
    take(u8_, other.u8_, n_u8_);
    ++rows_;
}

bool RowBuffer::same(const model::Store& s, int32_t row, size_t k) const {
    const auto r = static_cast<size_t>(row);
    bool equal = true;
    for_each_typed_column(const_cast<model::Store&>(s), table_, [&](const auto& col, size_t n) {
        using T = typename std::remove_reference_t<decltype(col)>::value_type;
        if (!equal) return;
        const T& mine = values<T>()[k * stride<T>() + n];
        equal = r < col.size() ? col[r] == mine : mine == T{};
    });
    return equal;
}

void RowBuffer::set_levels(size_t k, std::string levels) {
    static const size_t column = levels_column();
    if (table_ == model::k_polygons && k < rows_) str_[k * n_str_ + column] = std::move(levels);
}

size_t RowBuffer::bytes() const {
    size_t n = sizeof(*this) + str_.capacity() * sizeof(std::string) + i32_.capacity() * sizeof(int32_t) +
               i16_.capacity() * sizeof(int16_t) + u8_.capacity();
    for (const std::string& v : str_)
        if (v.capacity() > k_short_string) n += v.capacity() + 1;
    return n;
}

}  // namespace korvex::workbench
