// "Reduce Colours...": a picture brought down to a chosen number of colours
// by median cut, for a user who wants fewer colours than the reduction of
// an import leaves, or a smoother one. The colours are split into boxes,
// always the box of the widest channel range, at the median pixel of that
// channel; each box gives the mean colour of its pixels.
#pragma once

#include <cstdint>
#include <vector>

#include "editor/colour_reduction.h"
#include "platform/prompt.h"

namespace korvex::editor {

// At most target colours for the opaque pixels of the picture (the
// transparent marker is left out), in the order of the boxes' first pixel.
std::vector<uint32_t> median_cut_palette(const Raster& picture, uint32_t marker, int target);

// The same, the transparent marker added as a colour of its own when the
// picture shows it, target counting it.
std::vector<uint32_t> median_cut_with_marker(const Raster& picture, uint32_t marker, int target);

// The picture on the surface takes a palette of at most target colours
// (1 to 254; polygons and lines keep two), the transparent marker kept as
// an entry of its own, and every pixel its nearest entry. A palette icon's
// palette and picture are kept for Ctrl+Z; the history starts again.
ReduceOutcome reduce_colours(EditorSession& e, int target);

}  // namespace korvex::editor
