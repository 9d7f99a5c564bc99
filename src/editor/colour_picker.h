// The colour dialog's rules: which characters its boxes take, the largest
// value of each box, the 24 fixed swatches, the two shade bars of a colour
// and where the hue and value pointers stand for it.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace korvex::editor {

// The swatches in their order, six hex digits each (text order).
const std::array<const char*, 24>& colour_swatches();

// The hex box takes only the characters of "01234567890ABCDEFabcdef".
bool hex_box_accepts(char c);
// Keeps the characters the hex box takes, at most six.
std::string hex_box_text(const std::string& typed);

// The number boxes: red, green, blue, hue, saturation, value.
enum class ColourBox { red, green, blue, hue, saturation, value };
int box_maximum(ColourBox box);
// A number box's text: digits only (others are dropped); over the box's
// maximum, warning is "Maximum value:" and the maximum, and the value is
// cut to it. The value of the text.
int box_value(ColourBox box, const std::string& typed, std::string& warning);

// shades: 128 steps from the colour towards black (channel x step / 128) and
// 128 towards white (channel + (255 - channel) x step / 128), step 0 to 127.
struct ShadeBars {
    std::array<uint32_t, 128> dark{}, light{};
};
ShadeBars shades(uint32_t colour);

// find_color: the hue pointer at hue / 360 of the hue bar; the value pointer
// value / 50 of the half bar (value in percent, so 100 reaches its end).
struct PointerSpots {
    double hue = 0;    // 0 .. 1 of the hue bar
    double value = 0;  // 0 .. 2 half bars
};
PointerSpots find_color(uint32_t colour);

}  // namespace korvex::editor
