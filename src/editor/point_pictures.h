// A point's two pictures in the editor: reading a picture (day or night)
// out of its colour lines and rows, the night picture of a point row
// (get_nght), and the swap of day and night on the canvas (cmd19). The
// picture on the canvas lives in the session's fields; the other one waits
// in `other`.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "model/store.h"

namespace korvex::editor {

// The colormode a head line states behind its quote (" Colormode=16"); -1
// when it states none.
int head_colormode(const std::string& xpm_line);

// The opacity level of an entry: 15 for the transparent entry, the colour
// line's alpha, 0 for a line without one.
int level_of(const Palette& p, int entry, uint32_t marker);

// A picture from its colour lines and rows (canonical symbols, cpp 1 or 2).
// A true-colour picture has one colour line a pixel, in row order. Lines
// with " alpha=" turn opacity on, and the levels fill the opacity plane.
// The colormode is the head's, or what the lines say when it states none.
PointPicture read_point_picture(const std::vector<std::string>& colour_lines, const std::string& rows, int cpp, int width,
                                int height, bool truecolour, int stated_colormode, uint32_t marker);

// get_nght: the night picture of a point row, from the lines behind
// "NightXpm=" in pt_col and the rows of pt_nbmp. False when the point has
// none. A night of no colours shows the day pixels: it comes back as a copy
// of `day` with shares_day set.
bool get_nght(const model::Store& s, int32_t row, int width, int height, uint32_t marker, const PointPicture& day,
              PointPicture& night, bool& shares_day);

// The picture on the canvas, and a picture put there (the history starts
// again, the selection of colours too).
PointPicture canvas_picture(const EditorSession& e);
void put_on_canvas(EditorSession& e, PointPicture p);

// The day and the night picture wherever they are (the night one is empty
// for a point without night).
PointPicture day_picture(const EditorSession& e);
PointPicture night_picture(const EditorSession& e);

// cmd19: day and night change places on the canvas (bmpmode 1 and 2). False
// for a point without a night picture.
bool cmd19(EditorSession& e);
// The day/night button's caption ("Edit Night BMP" while the day is shown,
// "Edit Day BMP" while the night is) and the label over the canvas.
std::string cmd19_caption(const EditorSession& e);
std::string variant_label(const EditorSession& e);

}  // namespace korvex::editor
