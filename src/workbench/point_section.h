// A point's day picture as text parts, taken from its row and written back
// through the point reader, so that a batch tool edits text and the row is
// again what reading that text gives.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// Head `w h n cpp Colormode=m` under key, the colour lines and the rows.
struct PointPicture {
    std::string key = "DayXpm=";             // in front of the head's quote
    int width = 0, height = 0, colours = 0;  // as the head states them
    int cpp = 1;                             // characters a pixel
    std::string mode = "0";                  // the Colormode digits
    std::vector<std::string> colour_lines;   // '"' key " c #RRGGBB" '"' [" alpha=" a], or "... c none"
    std::vector<std::string> rows;           // without quotes, cpp characters a pixel
    // The night part as it follows the day rows (its head, colour lines and
    // quoted rows, each line CR LF ended); "" for none.
    std::string night;
};

// The picture of point row r (pt_n + k for an extra point). A row without a
// picture gives width and height 0 and no rows.
PointPicture read_point_picture(const model::Store& s, int32_t r);

// The night picture of point row r as parts of its own (key "NightXpm=");
// width and height 0 when the point has none. picture_text of it is the
// day picture's night text.
PointPicture read_night_picture(const model::Store& s, int32_t r);

// Head, colour lines, quoted rows and the night part, each line CR LF ended.
std::string picture_text(const PointPicture& p);

// updpoicod: the point's section is rebuilt with picture p in place of its
// pictures and read into row r again; keys and labels stay.
void updpoicod(model::Store& s, platform::Prompt& ui, int32_t r, const PointPicture& p);

// The key of a colour line (the cpp characters behind its quote).
std::string colour_key(std::string_view line, int cpp);
bool is_none_colour(std::string_view line);
bool has_alpha(std::string_view line);
// Index of the first "none" colour line, -1 without.
int none_index(const PointPicture& p);

}  // namespace korvex::workbench
