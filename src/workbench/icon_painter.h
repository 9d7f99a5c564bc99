// Paints one element's icon from its columns into RGBA pixels, so that the
// grid, previews and tests share one painter and need no screen.
#pragma once

#include <cstdint>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// How a picture fills a grid cell.
enum class IconFit : uint8_t {
    none,     // nothing to show
    tile,     // polygon pattern (or solid fill): repeated over the whole cell
    rows,     // line rows: drawn across the cell's width, centred vertically
    picture,  // point icon: centred
};

// Pixels in rows from the top, 0xAARRGGBB. Transparent picture pixels take
// the background colour given to the painter, as the grid shows them.
struct Raster {
    int w = 0, h = 0;
    std::vector<uint32_t> px;
    uint32_t at(int x, int y) const { return px[static_cast<size_t>(y) * w + x]; }

    IconFit fit = IconFit::none;
    // A point whose head is readable but that has no picture: the grid shows
    // "?" and the type instead (w and h are 0).
    bool question = false;
    bool empty() const { return w <= 0 || h <= 0; }
};

// Each returns the element's picture at one pixel a picture pixel (the view
// scales it without smoothing); an element with bad colour data returns an
// empty raster and notes it in the load report. night takes the night colours
// or night picture where the element has them.
//
// Sizes: a polygon is a 32 x 32 tile (a solid one too, filled with its
// colour); a line is 32 wide and as high as its rows, or 2 x border + width
// rows without a bitmap; a point is as its Xpm head says.
Raster paintpgn(model::Store& s, int32_t row, uint32_t background, bool night = false);
Raster paintline(model::Store& s, int32_t row, uint32_t background, bool night = false);
Raster paintpoi(model::Store& s, int32_t row, uint32_t background, bool night = false);

// A point's night picture, for the cell behind its day cell.
inline Raster paintbmpn(model::Store& s, int32_t row, uint32_t background) {
    return paintpoi(s, row, background, true);
}

// The painter of the class: 0 polygons, 1 and 3 lines (row already offset
// for active lines), 2 and 4 points.
Raster paint_element(model::Store& s, int cls, int32_t row, uint32_t background, bool night = false);

// True when the element has a night form that the painters would show with
// night set: polygons and lines with night colours, points with a night
// picture.
bool has_night(const model::Store& s, int cls, int32_t row);

// The icon as a grid cell of side x side pixels shows it: a tile repeated
// from the top left at the largest whole scale that keeps a tile within the
// cell (at least 1); line rows at that scale repeated across the width and
// centred vertically (cut when higher than the cell); a point centred at the
// largest whole scale that fits, or shrunk to fit by dropping pixels when it
// is larger than the cell. Pixels the icon does not cover, and every pixel
// of an empty icon, take the background.
Raster fit_cell(const Raster& icon, int side, uint32_t background);

// paint_element then fit_cell.
Raster paint_cell(model::Store& s, int cls, int32_t row, int side, uint32_t background, bool night = false);

}  // namespace korvex::workbench
