// A point's pictures as the commit writes them into its text: a head line
// under the picture's own key (DayXpm=, Xpm=, NightXpm=) with the colour
// count, characters a pixel and Colormode=, the colour lines (with " alpha="
// in opacity mode), and the quoted rows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"

namespace korvex::editor {

// The colormode a picture is written with: 32 in opacity mode, 16 with a
// transparent colour, else 0; a head that stated 32 keeps it while no level
// was changed away from it.
int colormode_to_write(const PointPicture& p, uint32_t marker);

// The colour lines of a palette picture. In opacity mode the levels of the
// pixels are folded into the colours first, a transparent colour is
// "#000000" with " alpha=15", and a table that carries no alpha at all gets
// it on every line (addalpha).
std::vector<std::string> point_colour_lines(const PointPicture& p, uint32_t marker);

// The picture's lines: the head (its key and what stands behind its quotes
// as in old_head, the colormode set), the colour lines and the rows. A
// true-colour picture has no colour lines: each pixel is "#RRGGBB" in its
// row, followed by "0" and the level's digit where its level is above 0.
std::vector<std::string> point_picture_lines(const PointPicture& p, const std::string& old_head, int width, int height,
                                             uint32_t marker);

}  // namespace korvex::editor
