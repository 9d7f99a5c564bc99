// The pictures of an element's section text as the repairs rewrite them: a
// head line, its colour lines and its rows, found by the head's numbers.
#pragma once

#include <string>
#include <vector>

namespace korvex::workbench {

// A section split into its lines (CR LF or LF), without line ends.
std::vector<std::string> section_lines(const std::string& section);
// The lines joined by CR LF, with one after the last.
std::string joined_section(const std::vector<std::string>& lines);

struct PictureBlock {
    int head = -1;              // line index of the head, -1 when absent
    int width = 0, height = 0, colours = 0, cpp = 0;
    std::string key;            // "Xpm=", "DayXpm=", "NightXpm=" as written
    std::string behind;         // what follows the head's closing quote (" Colormode=16")
    int first_colour = 0;       // line index of the first colour line
    int colour_lines = 0;       // colour lines found (up to the head's count)
    int first_row = 0;          // line index of the first row
    int row_lines = 0;          // rows found (up to the head's height)
};

// The picture whose head line starts (any case, blanks ignored) with one of
// the keys, looked for from line index from. head -1 when none.
PictureBlock find_picture(const std::vector<std::string>& lines, const std::vector<std::string>& keys, int from = 0);

// Drops the width keys of a line section (LineWidth=, BorderWidth=, lwidth(=)
// and puts LineWidth=line and BorderWidth=border where the first of them, or
// the picture head at `head`, stood.
void set_line_widths(std::vector<std::string>& lines, int head, int line, int border);

// The head line of a picture.
std::string head_line(const std::string& key, int w, int h, int colours, int cpp, const std::string& behind);

// Key and value of a quoted colour line ("0 c #FF0000" gives "0", "#FF0000";
// "none" stays "none"); the value is "" for a line that is not one.
struct ColourLineParts {
    std::string key, value;
    bool alpha = false;  // an alpha= stands behind it
};
ColourLineParts colour_parts(const std::string& line, int cpp);

// The inside of a quoted row.
std::string unquoted(const std::string& line);

// The canonical symbol of colour index n in a table of count colours.
std::string canonical_symbol(int n, int count);

}  // namespace korvex::workbench
