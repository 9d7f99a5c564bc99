// Point pictures a map maker should hear of before shipping a style: more
// colours than a record holds, bigger than the Max Size setting, true colour
// (some viewers skip such points), and pictures the older units that show
// at most 254 colours cannot show.
#pragma once

#include "model/store.h"
#include "workbench/finding.h"

namespace korvex::workbench {

inline constexpr const char* k_check_colours_over_255 = "colours-over-255";
inline constexpr const char* k_check_over_max_size = "over-max-size";
inline constexpr const char* k_check_true_colour = "true-colour";
inline constexpr const char* k_check_old_units = "old-units-colours";

// The colour count of a record is one byte, and the batch tools stop here.
inline constexpr int k_max_point_colours = 255;
// Older units index at most 254 colours besides the transparent one.
inline constexpr int k_old_unit_colours = 254;

// Every day and night picture of the points and extra points, each fact
// once a picture:
// - colours-over-255: more than 255 colours that are not "none";
// - over-max-size: width or height above max_size;
// - true-colour: no palette, a colour of its own a pixel ("#RRGGBB" colour
//   lines without a symbol); colours with opacity (Colormode=32) still have
//   a palette and are not true colour;
// - old-units-colours: 255 colours or more and a transparent "none" beside
//   them, so the transparent pixel takes the value 255.
Findings chk_point_limits(const model::Store& s, int max_size);

}  // namespace korvex::workbench
