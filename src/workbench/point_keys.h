// Keys of a point picture: replacing them in rows, and the key a new colour
// takes.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "workbench/point_section.h"

namespace korvex::workbench {

using KeyMap = std::unordered_map<std::string, std::string>;

// re_bmp: every key of cpp characters in the rows that the map names becomes
// its value (the values may be of another width); other keys stay.
void re_bmp(std::vector<std::string>& rows, const KeyMap& map, int cpp);

// The two-character key of colour i: characters 36 + (i / 16) and 36 + (i mod 16).
std::string wide_key(int i);

// Rewrites a one-character picture with two characters a pixel: colour i
// takes wide_key(i), in the colour lines and the rows together; the head's
// last field becomes 2.
void widen_keys(PointPicture& p);

// Adds a colour line for value ("#RRGGBB" or "none") and returns its key.
// Below 32 colours the key is a free single character; a picture that
// reaches exactly 32 colours is widened first, and from there a colour takes
// its wide key (or any free two characters).
std::string add_colour(PointPicture& p, std::string_view value);

}  // namespace korvex::workbench
