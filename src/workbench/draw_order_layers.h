// The cells of the draw-order view: one cell an entry of the draw order, the
// polygon of its type or a placeholder when no polygon has it, each level
// starting a grid row of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "workbench/draw_order_model.h"

namespace korvex::workbench {

enum class LayerCellKind : uint8_t { polygon, placeholder, blank };

struct LayerCell {
    LayerCellKind kind = LayerCellKind::blank;
    int32_t row = -1;    // polygon row, -1 for a placeholder or a blank
    int32_t entry = -1;  // index into view_entries(), -1 for a blank
    std::string code;    // the entry's code ("" for a blank)
    int level = 0;       // the layer the cell stands in (blanks too)
};

// A layer: the first cell of its grid row and its level.
struct LayerStart {
    int cell = 0;
    int level = 0;
};

struct LayerLayout {
    std::vector<LayerCell> cells;
    std::vector<LayerStart> layers;
    int columns = 1;
};

// refresh_draworders: the layer cells for a grid of columns (at least 1).
// A level that differs from the one before starts a new grid row; the cells
// before it are padded with blanks to a multiple of the columns.
LayerLayout refresh_draworders(const model::Store& s, int columns);

}  // namespace korvex::workbench
