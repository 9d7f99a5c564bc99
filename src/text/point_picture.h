// The pictures of a point section: heads, colour tables and rows, as the
// point reader takes them apart.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/point_reader.h"
#include "model/crlf.h"

namespace korvex::text::point_text {

std::string_view trim_view(std::string_view t);
bool holds(std::string_view text, std::string_view word);
bool is_hex(char c);

// The four numbers of a picture head: width, height, colours, characters a
// pixel; -1 for a number that is missing.
struct Head {
    std::string key;   // up to and including "="
    int field[4] = {-1, -1, -1, -1};
    std::string mode;  // the digits of a stated Colormode=, "" without
    bool has_blank = false;
};

Head read_head(std::string_view line);
std::string head_text(const Head& h, int w, int height, int colours, int cpp, const std::string& mode);

// A picture as the section states it. Colour lines and rows are views of
// the section, or of lines the reader had to change and keeps.
struct Picture {
    std::string head_line;
    Head head;
    int cpp = 1;                           // characters a pixel of the text
    std::vector<std::string_view> colours; // colour lines as written
    std::vector<std::string_view> rows;    // rows without quotes
};

// The colour table of a picture in canonical lines; symbols get the table's
// own symbols. mode: 2 alpha, 1 a transparent colour, 0 opaque. A table
// stated as Colormode=16 without a "none" colour has its transparent colour
// behind the others, as the record stores it; the line is added.
std::string canonical_table(const Picture& p, PointSymbols& symbols, int& mode, int& none_at, int& count);

// Colour lines of an old-style picture: every "#RRGGBB" of its lines is the
// colour of one pixel; "#RRGGBBxA" carries alpha A.
std::string old_style_table(const std::vector<std::string_view>& rows, int& mode);

// A night picture written as "#RRGGBB" a pixel (true colour, as mkgmap
// reads it; a record holds night pictures only with a palette) turned into
// a palette: colour lines in canonical symbols, in order of first
// appearance, and rows of those symbols. "#RRGGBBxA" carries alpha A as in
// old-style lines. A record holds at most 255 colours; a pixel beyond them
// takes the nearest colour already in the table.
struct PalettePicture {
    std::vector<std::string> colours;  // '"' symbol " c #RRGGBB" '"' [" alpha=" a]
    std::vector<std::string> rows;     // without quotes
    int cpp = 1;
    bool alpha = false;
};
PalettePicture palette_from_true_colour(const std::vector<std::string_view>& rows);

// True when a line of the rows holds a "#" colour: a picture whose pixels
// are colours, not symbols.
bool true_colour_rows(const std::vector<std::string_view>& rows);

// Symbols of rows that no colour of the table names, each once.
std::vector<std::string> unknown_symbols(const std::vector<std::string_view>& rows, const PointSymbols& symbols);

// Rows in the picture's own symbols to canonical rows, as convert_txtbmp
// does with the rows joined.
std::string convert_rows(const std::vector<std::string_view>& rows, const PointSymbols& symbols, int colours);

}  // namespace korvex::text::point_text
