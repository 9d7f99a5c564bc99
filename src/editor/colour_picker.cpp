#include "editor/colour_picker.h"

#include <cctype>
#include <string_view>

#include "editor/palette_map.h"
#include "editor/raster.h"

namespace korvex::editor {

const std::array<const char*, 24>& colour_swatches() {
    static const std::array<const char*, 24> swatches{
        "ffff00", "ff00ff", "0000ff", "ffffff", "e2202c", "e62565", "9b2fae", "673fb4",
        "4054b2", "587bf8", "1eaaf1", "1fbcd2", "159588", "2c992d", "8cc152", "cdda49",
        "fee94e", "fdc02f", "fd9727", "fc5830", "fc5830", "9e9e9e", "785549", "000000"};
    return swatches;
}

bool hex_box_accepts(char c) { return c != '\0' && std::string_view("01234567890ABCDEFabcdef").find(c) != std::string_view::npos; }

std::string hex_box_text(const std::string& typed) {
    std::string out;
    for (char c : typed)
        if (hex_box_accepts(c) && out.size() < 6) out += c;
    return out;
}

int box_maximum(ColourBox box) {
    switch (box) {
    case ColourBox::hue: return 360;
    case ColourBox::saturation:
    case ColourBox::value: return 100;
    default: return 255;
    }
}

int box_value(ColourBox box, const std::string& typed, std::string& warning) {
    warning.clear();
    long v = 0;
    for (char c : typed) {
        if (!std::isdigit(static_cast<unsigned char>(c))) continue;
        v = v * 10 + (c - '0');
        if (v > 100000) v = 100000;
    }
    const int top = box_maximum(box);
    if (v > top) {
        warning = "Maximum value:" + std::to_string(top);
        v = top;
    }
    return static_cast<int>(v);
}

ShadeBars shades(uint32_t colour) {
    ShadeBars b;
    const uint32_t ch[3] = {red_of(colour), green_of(colour), blue_of(colour)};
    for (uint32_t step = 0; step < 128; ++step) {
        uint32_t d[3], l[3];
        for (int k = 0; k < 3; ++k) {
            d[k] = ch[k] * step / 128;
            l[k] = ch[k] + (255 - ch[k]) * step / 128;
        }
        b.dark[step] = rgb(d[0], d[1], d[2]);
        b.light[step] = rgb(l[0], l[1], l[2]);
    }
    return b;
}

PointerSpots find_color(uint32_t colour) {
    const Hsv h = rgbtohsv(colour);
    return {h.h / 360.0, h.v / 50.0};
}

}  // namespace korvex::editor
