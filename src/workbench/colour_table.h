// The colour lines of an element's column as the painters read them: one
// entry a line, the XPM key and the colour, "none" and alpha kept apart.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace korvex::workbench {

struct ColourEntry {
    char key = 0;        // first character of the line's key ('0'..'3' on polygons and lines)
    bool bare = false;   // a key-less "#RRGGBB" line: one pixel of a picture without palette
    bool none = false;   // transparent: shows the background
    int alpha = -1;      // "alpha=" value, 0 to 15; -1 without
    uint32_t rgb = 0;    // 0xRRGGBB
};

struct ColourTable {
    std::vector<ColourEntry> entries;
    bool bad = false;  // a line that holds neither "#" and six hex digits nor "none"
    // Where the text behind a picture head line ("NightXpm=...") starts, or
    // npos when the table ran to the end.
    size_t next = std::string_view::npos;
};

// Reads CR LF (or LF) separated colour lines up to a line holding "xpm="
// (any case), which ends the table. Lines that are empty or start with ";"
// are skipped. key_chars is the length of the key in front of the colour.
ColourTable read_colour_table(std::string_view text, int key_chars);

// One colour line; false when it holds no readable colour.
bool read_colour_line(std::string_view line, int key_chars, ColourEntry& out);

// The colour the canvas shows: the background for "none" and for alpha 15
// (fully transparent), else the colour, opaque.
inline uint32_t shown(const ColourEntry& e, uint32_t background) {
    if (e.none || e.alpha == 15) return background;
    return 0xFF000000u | e.rgb;
}

}  // namespace korvex::workbench
