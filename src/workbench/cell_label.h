// The texts under and over a grid cell, worked out from an element's label
// column and section text when the view asks for them.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"

namespace korvex::workbench {

// The element's type as the label shows it: "0x" and lower-case hex digits
// ("0x0100", "0x00100", "0x02f00"); a polygon with a draw order adds ","
// and its level ("0x0300,2"); an extra point its number ("0x11b01").
std::string type_text(const model::Store& s, int cls, int32_t row);

// The element's label text as the label column holds it (quoted, "" when it
// has none).
std::string label_text(const model::Store& s, int cls, int32_t row);

// The draw-order level of a polygon row: the first line of its entry, after
// the first ","; "" without one.
std::string polygon_level(const model::Store& s, int32_t row);

// The section text of a row of a class (active lines and extra points are
// rows of the line and point columns).
const std::string& section_text(const model::Store& s, int cls, int32_t row);

// The day custom colour of a row as 0xRRGGBB; false when it has none.
bool day_colour(const model::Store& s, int cls, int32_t row, uint32_t& rgb);

}  // namespace korvex::workbench
