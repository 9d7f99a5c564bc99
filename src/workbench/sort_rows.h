// Keeping the rows of a class in type order, as the grid shows them and the
// TYP index needs them.
#pragma once

#include <cstdint>

#include "model/store.h"

namespace korvex::workbench {

// sort_types: the rows of a class in rising key (type * 32 + subtype). The
// sort is stable: rows of equal key keep their order. Active lines and extra
// points keep theirs. Returns where row `follow` went (-1 stays -1).
int32_t sort_types(model::Store& s, int cls, int32_t follow = -1);

// swap_types: one row whose type changed moves to its place among rows in
// type order, the way repeated exchanges with a neighbour would move it: left
// past every greater key, else right past every smaller one; an equal key
// stops it. Active lines and extra points keep their place. Returns the
// row's new place.
int32_t swap_types(model::Store& s, int cls, int32_t row);

// sort_active: the active lines in rising activity code, stable. Returns
// where row `follow` went.
int32_t sort_active(model::Store& s, int32_t follow = -1);

}  // namespace korvex::workbench
