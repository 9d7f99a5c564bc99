// One of a point's two pictures (day or night), apart from the session
// that edits it.
#pragma once

#include <cstdint>

#include "editor/palette.h"
#include "editor/pixel_grid.h"
#include "editor/raster.h"

namespace korvex::editor {

// One of a point's two pictures with what belongs to it alone. The picture
// on the canvas lives in the session's own fields; the other one (the night
// picture while the day is edited, the day picture while the night is)
// waits here until cmd19 swaps them.
struct PointPicture {
    Palette palette;
    PixelGrid pixels;               // [x][y] palette index from 0
    PixelGrid opacity;              // [x][y] opacity level 0..15, opacity mode only
    Raster surface;                 // the colours; the data of a true-colour picture
    bool truecolour = false;
    bool alpha = false;             // opacity mode (colormode 32): levels per pixel and colour
    uint8_t colormode = 0;          // 0, 16 or 32 as the head states it
    int transp_entry = 0;           // the entry last made transparent by the tick, 0 for none
    uint32_t transp_colour = 0;     // its colour before, for the way back to solid

    bool empty() const { return pixels.empty() && surface.empty(); }
};

}  // namespace korvex::editor
