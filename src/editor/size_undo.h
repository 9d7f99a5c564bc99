// The undo of a change of size: the picture as it stood before the change
// (slot 0) and after it (slot 1), so that one step back and one forward are
// possible whatever the size. The ordinary history holds pictures of one
// size only and starts again after a resize.
#pragma once

#include <array>

#include "editor/palette.h"
#include "editor/pixel_grid.h"
#include "editor/point_picture.h"
#include "editor/raster.h"

namespace korvex::editor {

struct SizeSnapshot {
    bool valid = false;
    int width = 0, height = 0;
    bool truecolour = false;
    Palette palette;
    PixelGrid pixels, opacity;
    Raster surface;  // the data of a true-colour icon
    PointPicture other;  // a point's picture off the canvas (its night or day)
    uint8_t bmpmode = 0;
    bool has_night_bitmap = false;
};

struct SizeUndo {
    std::array<SizeSnapshot, 2> slot;
};

}  // namespace korvex::editor
