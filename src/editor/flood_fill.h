// Flood fill of the drawing surface: every pixel connected to the start by
// its four neighbours and of the start's colour takes the new colour.
#pragma once

#include <cstdint>

#include "editor/raster.h"

namespace korvex::editor {

// Returns the number of pixels changed: 0 outside the surface or when the
// start already has the colour.
int flood_fill(Raster& r, int x, int y, uint32_t colour);

}  // namespace korvex::editor
