// Colours > Make Transparent (make_transp): the selected elements of the
// class in view stop hiding what lies below them. A polygon becomes a
// 32 x 32 bitmap of its transparent colour, a line a one-row bitmap of its
// transparent colour with no width or border of its own, and a point's
// first colour becomes transparent.
#pragma once

#include <string>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/browser.h"
#include "workbench/point_section.h"

namespace korvex::workbench {

// The colour a transparent polygon or line keeps for its visible slot.
inline constexpr const char* k_transparent_fill = "#CFF6F6";

// The section text of the transparent form of a polygon or line row (keys
// kept, picture replaced), ready for its reader.
std::string transparent_polygon_section(const model::Store& s, int32_t row);
std::string transparent_line_section(const model::Store& s, int32_t row);
// A point picture's first colour made transparent: " c none" (mode 16), or
// in opacity mode "alpha=15". False when it already was.
bool transparent_first_colour(PointPicture& p);

// The no-undo prompts, then the selection of the class in view ("No data.",
// "Please CTRL/SHIFT or CTRL A select."); each selected element is rewritten
// through its reader. Returns the number of elements changed (dirty set
// when above 0).
int make_transp(model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m, bool all);

}  // namespace korvex::workbench
