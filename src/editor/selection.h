// The selection rectangle of the canvas and its floating layer: a frame of
// whole pixels, a copy of what lies under it that can be dragged and then
// stamped back onto the surface.
#pragma once

#include "editor/raster.h"

namespace korvex::editor {

struct Rect {
    int x = 0, y = 0, w = 0, h = 0;
    bool empty() const { return w <= 0 || h <= 0; }
    bool contains(int px, int py) const { return px >= x && py >= y && px < x + w && py < y + h; }
    bool operator==(const Rect&) const = default;
};

// The frame dragged from the anchor (ax, ay) to the pointer (bx, by), both
// pixels inside it, clipped to a picture of width x height: a frame past the
// left or top starts at 0, and a frame is never smaller than one pixel.
Rect frame_between(int ax, int ay, int bx, int by, int width, int height);

// A piece of picture lifted off the surface, shown at (x, y).
struct FloatingLayer {
    Raster picture;
    int x = 0, y = 0;
    bool empty() const { return picture.empty(); }
};

FloatingLayer lift(const Raster& surface, const Rect& frame);
// Draws the layer onto the surface; parts past the edge are dropped.
void stamp(Raster& surface, const FloatingLayer& layer);
// The part of the surface under the frame, as a picture of its own.
Raster cut_out(const Raster& surface, const Rect& frame);
void fill_rect(Raster& surface, const Rect& frame, uint32_t colour);

}  // namespace korvex::editor
