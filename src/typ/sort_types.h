// Index tables hold records in rising code order: by type, then subtype.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"

namespace korvex::typ {

using model::Store;

// Index code of type digits (no "0x"): with three or more digits the last two
// are the subtype, type * 32 + subtype; shorter digits are type * 32.
int32_t index_code(const std::string& digits);

// Digits of a type text: what follows "0x" (or the whole text).
std::string type_digits(const std::string& type_text);

// Rows first..last-1 of a class in index order; stable, so equal codes keep
// their row order. cls 0 polygons (pg_typ), 1 lines (ln_code), 2 points (pt_typ).
std::vector<int32_t> sort_types(const Store& s, int cls, int32_t first, int32_t last);

// Index code of a row.
int32_t row_code(const Store& s, int cls, int32_t row);

}  // namespace korvex::typ
