// The "#RRGGBB" of the colour lines in an element's colour column or text:
// a line that opens with a quote and holds " c #" and six hex digits.
// Other lines (keys, heads, "none", custom label colours) are not colour
// lines of a picture.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace korvex::workbench {

// Where the six digits of the line's colour start; npos for no colour line.
size_t colour_digits_at(std::string_view line);

// 0xRRGGBB of six hex digits (text order).
uint32_t hex_rgb(std::string_view six);
// Six upper-case digits of 0xRRGGBB.
std::string rgb_hex(uint32_t rgb);

// Calls f(rgb, line) for each colour line of text (CR LF or LF separated);
// rgb is 0xRRGGBB.
template <class F>
void for_each_colour_line(std::string_view text, F&& f) {
    size_t p = 0;
    while (p < text.size()) {
        size_t e = text.find('\n', p);
        if (e == std::string_view::npos) e = text.size();
        const std::string_view line = text.substr(p, e - p);
        const size_t at = colour_digits_at(line);
        if (at != std::string_view::npos) f(hex_rgb(line.substr(at, 6)), line);
        p = e + 1;
    }
}

// The text with each colour line's colour replaced by map(rgb) (0xRRGGBB
// in and out); everything else stays byte for byte. keep(line) false leaves
// a line alone.
template <class Map, class Keep>
std::string map_colour_lines(const std::string& text, Map&& map, Keep&& keep) {
    std::string out = text;
    size_t p = 0;
    while (p < out.size()) {
        size_t e = out.find('\n', p);
        if (e == std::string::npos) e = out.size();
        const std::string_view line(out.data() + p, e - p);
        const size_t at = colour_digits_at(line);
        if (at != std::string_view::npos && keep(line)) out.replace(p + at, 6, rgb_hex(map(hex_rgb(line.substr(at, 6)))));
        p = e + 1;
    }
    return out;
}

}  // namespace korvex::workbench
