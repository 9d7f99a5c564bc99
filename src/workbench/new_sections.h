// The first text of a new element of each class: what New, the style import
// and Create 6 default activities give the readers.
#pragma once

#include <cstdint>
#include <string>

#include "workbench/settings_file.h"

namespace korvex::workbench {

// The side of a new polygon's pattern and a new point's picture.
constexpr int k_tile = 32;

// The two default colours of new icons from the settings, background then
// foreground, RRGGBB each. Two equal settings (never set) give white and black.
struct IconColours {
    std::string back, fore;
};
IconColours icon_colours(const AppSettings& settings);

// A polygon: 32 by 32 of the background colour, foreground second.
std::string new_polygon_section(const std::string& digits, const std::string& text, const IconColours& c);

// A solid line of the foreground colour with a black border; an activity
// code ("40") makes it an active line.
std::string new_line_section(const std::string& digits, const std::string& activity, const std::string& text,
                             const IconColours& c);

// A point of width x height pixels of the background colour; night adds a
// night picture of the same.
std::string new_point_section(const std::string& digits, const std::string& text, int width, int height, bool night,
                              const IconColours& c);

}  // namespace korvex::workbench
