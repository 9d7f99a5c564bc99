// The check of one colour value in a line of the element-text panel: a colour
// line of a picture, or a custom label colour.
#pragma once

#include <string>

namespace korvex::text {

struct ColourCheck {
    bool valid = false;
    std::string line;  // the line, a short value padded to six digits
};

// A line without "#" is valid as it stands. Otherwise the value behind "#"
// (quotes, blanks and an "alpha=" tail left out) must be hexadecimal; a value
// of fewer than six digits is padded with leading zeros in the line.
ColourCheck colour_check(const std::string& line);

}  // namespace korvex::text
