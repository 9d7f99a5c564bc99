// Paints one element's icon from its columns into RGBA pixels, so that the
// grid, previews and tests share one painter and need no screen.
#pragma once

#include <cstdint>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// Pixels in rows from the top, 0xAARRGGBB. Transparent picture pixels take
// the background colour given to the painter, as the grid shows them.
struct Raster {
    int w = 0, h = 0;
    std::vector<uint32_t> px;
    uint32_t at(int x, int y) const { return px[static_cast<size_t>(y) * w + x]; }
};

// Each returns the element's picture at one pixel a picture pixel (the view
// scales it without smoothing); an element with bad colour data returns an
// empty raster and notes it in the load report. night takes the night colours
// or night picture where the element has them.
Raster paintpgn(model::Store& s, int32_t row, uint32_t background, bool night = false);
Raster paintline(model::Store& s, int32_t row, uint32_t background, bool night = false);
Raster paintpoi(model::Store& s, int32_t row, uint32_t background, bool night = false);

// The painter of the class: 0 polygons, 1 and 3 lines (row already offset
// for active lines), 2 and 4 points.
Raster paint_element(model::Store& s, int cls, int32_t row, uint32_t background, bool night = false);

}  // namespace korvex::workbench
