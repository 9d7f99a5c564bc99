#include "editor/point_pictures.h"

#include <algorithm>
#include <cctype>

#include "editor/ascii_case.h"
#include "editor/canvas.h"
#include "editor/element_open.h"

namespace korvex::editor {

namespace {

// The alpha of a colour line, k_no_alpha without one.
uint8_t alpha_of_line(const std::string& line) {
    const size_t a = lower(line).find("alpha=");
    if (a == std::string::npos) return k_no_alpha;
    return static_cast<uint8_t>(std::clamp(std::atoi(line.c_str() + a + 6), 0, 15));
}

void read_symbol_rows(PixelGrid& pixels, const std::string& column, int cpp, int ncols) {
    const std::vector<std::string> rows = split_rows(column);
    const int last = std::max(ncols - 1, 0);
    for (int y = 0; y < pixels.height() && static_cast<size_t>(y) < rows.size(); ++y) {
        const std::string& row = rows[static_cast<size_t>(y)];
        for (int x = 0; x < pixels.width(); ++x) {
            const size_t at = static_cast<size_t>(x) * static_cast<size_t>(cpp);
            if (at + static_cast<size_t>(cpp) > row.size()) break;
            const int v = cpp == 2 ? (static_cast<unsigned char>(row[at]) - 36) * 16 + (static_cast<unsigned char>(row[at + 1]) - 36)
                                   : static_cast<unsigned char>(row[at]) - 36;
            pixels.set(x, y, static_cast<uint8_t>(std::clamp(v, 0, last)));
        }
    }
}

void swap_into(EditorSession& e, PointPicture& p) {
    std::swap(e.palette, p.palette);
    std::swap(e.pixels, p.pixels);
    std::swap(e.opacity, p.opacity);
    std::swap(e.surface, p.surface);
    std::swap(e.truecolour, p.truecolour);
    std::swap(e.alpha, p.alpha);
    std::swap(e.colormode, p.colormode);
    std::swap(e.transp_entry, p.transp_entry);
    std::swap(e.transp_colour, p.transp_colour);
}

}  // namespace

int head_colormode(const std::string& xpm_line) {
    const size_t close = xpm_line.rfind('"');
    if (close == std::string::npos) return -1;
    const std::string tail = lower(xpm_line.substr(close + 1));
    const size_t m = tail.find("colormode=");
    if (m == std::string::npos) return -1;
    return std::atoi(tail.c_str() + m + 10);
}

int level_of(const Palette& p, int entry, uint32_t marker) {
    if (!p.valid(entry)) return 0;
    if (p.transparent(entry, marker)) return 15;
    const size_t i = static_cast<size_t>(entry - 1);
    return i < p.alpha.size() && p.alpha[i] != k_no_alpha ? p.alpha[i] : 0;
}

PointPicture read_point_picture(const std::vector<std::string>& colour_lines, const std::string& rows, int cpp, int width,
                                int height, bool truecolour, int stated_colormode, uint32_t marker) {
    PointPicture p;
    p.truecolour = truecolour;
    p.pixels = PixelGrid(width, height);
    p.opacity = PixelGrid(width, height);
    p.surface = Raster(width, height);
    for (const std::string& l : colour_lines) p.alpha = p.alpha || lower(l).find("alpha") != std::string::npos;
    if (truecolour) {
        // No palette: the colour lines are the pixels, in row order.
        for (size_t i = 0; i < colour_lines.size() && width > 0; ++i) {
            uint32_t c = 0;
            if (!colour_of_line(colour_lines[i], marker, c)) continue;
            const int x = static_cast<int>(i % static_cast<size_t>(width)), y = static_cast<int>(i / static_cast<size_t>(width));
            p.surface.set(x, y, c);
            const uint8_t a = alpha_of_line(colour_lines[i]);
            p.opacity.set(x, y, a == k_no_alpha ? (c == marker ? 15 : 0) : a);
        }
    } else {
        bool none = false;
        for (const std::string& l : colour_lines) {
            uint32_t c = 0;
            colour_of_line(l, marker, c);
            p.palette.colours.push_back(c);
            p.palette.alpha.push_back(alpha_of_line(l));
            none = none || c == marker;
        }
        if (!p.alpha) p.palette.alpha.clear();
        read_symbol_rows(p.pixels, rows, std::max(cpp, 1) > 1 || p.palette.ncols() >= model::cpp_limit ? 2 : 1, p.palette.ncols());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const int entry = p.pixels.at(x, y) + 1;
                p.surface.set(x, y, p.palette.colour(entry));
                if (p.alpha) p.opacity.set(x, y, static_cast<uint8_t>(level_of(p.palette, entry, marker)));
            }
        if (stated_colormode < 0) stated_colormode = p.alpha ? 32 : none ? 16 : 0;
    }
    if (stated_colormode < 0) stated_colormode = p.alpha ? 32 : 0;
    p.colormode = static_cast<uint8_t>(stated_colormode == 16 || stated_colormode == 32 ? stated_colormode : 0);
    return p;
}

bool get_nght(const model::Store& s, int32_t row, int width, int height, uint32_t marker, const PointPicture& day,
              PointPicture& night, bool& shares_day) {
    shares_day = false;
    if (row < 0 || static_cast<size_t>(row) >= s.pt_col.size()) return false;
    const std::string& col = s.pt_col[static_cast<size_t>(row)];
    const size_t at = lower(col).find("nightxpm");
    if (at == std::string::npos) return false;
    size_t line_end = col.find('\n', at);
    const std::string head = col.substr(at, line_end == std::string::npos ? std::string::npos : line_end - at);
    std::vector<std::string> lines;
    if (line_end != std::string::npos) {
        for (const std::string& l : split_rows(col.substr(line_end + 1))) {
            // A line of the two-character symbol "$$" is no colour of its own.
            if (l.find(" c ") == std::string::npos && l.find("\tc ") == std::string::npos) continue;
            lines.push_back(l);
        }
    }
    const std::vector<int> numbers = head_numbers(head);
    const int cpp = numbers.size() > 3 ? numbers[3] : 1;
    if (lines.empty()) {
        // No colours of its own: the record shows the day pixels.
        night = day;
        shares_day = true;
        return true;
    }
    night = read_point_picture(lines, s.pt_nbmp[static_cast<size_t>(row)], cpp, width, height, false, head_colormode(head), marker);
    return true;
}

PointPicture canvas_picture(const EditorSession& e) {
    PointPicture p;
    p.palette = e.palette;
    p.pixels = e.pixels;
    p.opacity = e.opacity;
    p.surface = e.surface;
    p.truecolour = e.truecolour;
    p.alpha = e.alpha;
    p.colormode = e.colormode;
    p.transp_entry = e.transp_entry;
    p.transp_colour = e.transp_colour;
    return p;
}

void put_on_canvas(EditorSession& e, PointPicture p) {
    swap_into(e, p);
    if (e.pixels.width() != e.width || e.pixels.height() != e.height) e.pixels = PixelGrid(e.width, e.height);
    if (e.opacity.width() != e.width || e.opacity.height() != e.height) e.opacity = PixelGrid(e.width, e.height);
    if (!e.truecolour) painticon(e);
    start_history(e);
    e.lastpalok = false;
    e.curcol = e.ncols() >= 1 ? 1 : -1;
    e.curcol2 = e.ncols() >= 2 ? 2 : e.curcol;
}

PointPicture day_picture(const EditorSession& e) { return e.bmpmode == 2 ? e.other : canvas_picture(e); }

PointPicture night_picture(const EditorSession& e) {
    if (e.bmpmode == 0) return {};
    return e.bmpmode == 2 ? canvas_picture(e) : e.other;
}

bool cmd19(EditorSession& e) {
    if (e.bmpmode == 0) return false;
    PointPicture shown = canvas_picture(e);
    put_on_canvas(e, std::move(e.other));
    e.other = std::move(shown);
    e.bmpmode = e.bmpmode == 2 ? 1 : 2;
    return true;
}

std::string cmd19_caption(const EditorSession& e) { return e.bmpmode == 2 ? "Edit Day BMP" : "Edit Night BMP"; }

std::string variant_label(const EditorSession& e) { return e.bmpmode == 2 ? "Night" : "Day"; }

}  // namespace korvex::editor
