// The figures of the drawing tools on the surface: lines with a square pen,
// rectangles and ellipses given by two opposite corners (both inside the
// figure), outlined or filled. Pixels outside the surface are dropped.
#pragma once

#include <cstdint>

#include "editor/raster.h"

namespace korvex::editor {

// A pen of width w covers a w x w square around each point of the line
// (its top-left a half pen before the point, rounded down).
void draw_line(Raster& r, int x0, int y0, int x1, int y1, uint32_t colour, int pen = 1);
void draw_rectangle(Raster& r, int x0, int y0, int x1, int y1, uint32_t colour, bool filled, int pen = 1);
// The ellipse inscribed in the box of the two corners; a box one pixel wide
// or high is a line.
void draw_ellipse(Raster& r, int x0, int y0, int x1, int y1, uint32_t colour, bool filled);

}  // namespace korvex::editor
