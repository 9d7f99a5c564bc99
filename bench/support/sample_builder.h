// Builds element tables from a short description, in the column forms the
// decoder and the text readers produce, so that the encoder can turn them
// into a TYP file: the large benchmark file, and the tests' file of every form.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"

namespace korvex::samples {

struct Label {
    int lang = 4;  // language byte
    std::string text;
};

struct Font {
    std::string style;   // "SmallFont", "Normal", ... or "" for none
    std::string custom;  // "Day", "Night", "DayAndNight" or ""
    std::string day;     // "#RRGGBB"
    std::string night;
};

struct PolygonSpec {
    int type = 0x01;
    int subtype = 0;
    int scheme = 6;                   // 6, 7, 8, 9, 11, 13, 14, 15
    std::vector<std::string> colours; // palette slots 0..3: "#RRGGBB" or "none"
    std::vector<Label> labels;
    Font font;
};

struct LineSpec {
    int type = 0x01;
    int subtype = 0;
    std::vector<std::string> colours;  // slots 0..3: "#RRGGBB" or "none"
    int rows = 0;                      // bitmap rows; 0 for a solid line
    int width = 3;
    int border = 0;
    bool orientation = true;
    std::vector<Label> labels;
    Font font;
    std::string activity;  // "" or "40".."52" for an active line
};

struct PointSpec {
    int type = 0x2f;
    int subtype = 0;
    int width = 16;
    int height = 16;
    int colours = 4;   // opaque colours of the day picture
    int mode = 0;      // 0 opaque, 16 one transparent colour, 32 opacity
    int night_colours = 0;  // 0: no night picture
    std::vector<Label> labels;
    Font font;
    unsigned seed = 1;  // pixels and colours are drawn from it
};

void add_polygon(model::Store& s, const PolygonSpec& p);
void add_line(model::Store& s, const LineSpec& l);
void add_point(model::Store& s, const PointSpec& p, bool extra = false);

// Adds a draw order token for a polygon type at a level.
void add_level(model::Store& s, int type, int subtype, int level);

// Empties the store for a new file of code page 1252 with the family id and a
// zero-filled header of hdr_len bytes, as the encoder expects it.
void new_project(model::Store& s, const std::string& fid, int hdr_len);

// A large file for the benchmarks: about target_bytes when encoded.
void build_large(model::Store& s, int64_t target_bytes);

}  // namespace korvex::samples
