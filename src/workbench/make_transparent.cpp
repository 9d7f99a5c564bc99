#include "workbench/make_transparent.h"

#include "model/crlf.h"
#include "typ/curf_access.h"
#include "workbench/batch_frame.h"
#include "workbench/element_rows.h"
#include "workbench/point_keys.h"

namespace korvex::workbench {

namespace {

constexpr int k_bitmap_width = 32;
constexpr int k_polygon_rows = 32;

// The lines of an element's own text in front of its picture head, without
// the keys that size a line without a bitmap when drop_widths is set.
std::string keys_before_picture(const std::string& txt, bool drop_widths) {
    std::string out;
    size_t pos = 0;
    while (pos < txt.size()) {
        size_t nl = txt.find('\n', pos);
        if (nl == std::string::npos) nl = txt.size();
        std::string_view line(txt.data() + pos, nl - pos);
        pos = nl + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty()) continue;
        if (typ::contains_caseless(line, "xpm=")) break;
        if (drop_widths && (typ::contains_caseless(line, "linewidth=") || typ::contains_caseless(line, "borderwidth=") ||
                            typ::contains_caseless(line, "lwidth(=")))
            continue;
        out += line;
        out += k_crlf;
    }
    return out;
}

// Head, the fill colour and the transparent colour, then rows of the
// transparent key.
std::string transparent_picture(int rows) {
    std::string out = "Xpm=\"32 " + std::to_string(rows) + " 2 1\"" + k_crlf;
    out += std::string("\"$ c ") + k_transparent_fill + "\"" + k_crlf;
    out += std::string("\"% c none\"") + k_crlf;
    const std::string row = '"' + std::string(k_bitmap_width, '%') + '"' + k_crlf;
    for (int k = 0; k < rows; ++k) out += row;
    out += "[end]";
    out += k_crlf;
    return out;
}

}  // namespace

std::string transparent_polygon_section(const model::Store& s, int32_t row) {
    return keys_before_picture(s.pg_txt[static_cast<size_t>(row)], false) + transparent_picture(k_polygon_rows);
}

std::string transparent_line_section(const model::Store& s, int32_t row) {
    return keys_before_picture(s.ln_txt[static_cast<size_t>(row)], true) + transparent_picture(1);
}

bool transparent_first_colour(PointPicture& p) {
    if (p.colour_lines.empty()) return false;
    std::string& first = p.colour_lines.front();
    const std::string key = colour_key(first, p.cpp);
    if (p.mode == "32" || has_alpha(first)) {
        const std::string clear = "\"" + key + " c #000000\" alpha=15";
        if (first == clear) return false;
        first = clear;
        return true;
    }
    const int none_at = none_index(p);
    if (none_at > 0) {
        // One transparent colour is enough: the first colour's pixels take
        // the key of the one there is.
        re_bmp(p.rows, {{key, colour_key(p.colour_lines[static_cast<size_t>(none_at)], p.cpp)}}, p.cpp);
        p.colour_lines.erase(p.colour_lines.begin());
        p.colours = static_cast<int>(p.colour_lines.size());
        p.mode = "16";
        return true;
    }
    const std::string clear = "\"" + key + " c none\"";
    if (first == clear && p.mode == "16") return false;
    first = clear;
    p.mode = "16";
    return true;
}

int make_transp(model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m, bool all) {
    if (class_count(s, b.cls()) <= 0) {
        std::vector<int32_t> none;
        batch_selection(s, b, ui, m, all, none);  // says "No data."
        return 0;
    }
    if (!confirm_no_undo(s, ui, m)) return 0;
    std::vector<int32_t> rows;
    if (!batch_selection(s, b, ui, m, all, rows)) return 0;
    int count = 0;
    for (size_t k = 0; k < rows.size(); ++k) {
        const int32_t r = rows[k];
        switch (b.cls()) {
        case model::k_polygons:
            parse_into(s, ui, model::k_polygons, r, transparent_polygon_section(s, r));
            ++count;
            break;
        case model::k_lines:
        case model::k_active_lines:
            parse_into(s, ui, b.cls(), r, transparent_line_section(s, r));
            ++count;
            break;
        default: {
            PointPicture p = read_point_picture(s, r);
            if (transparent_first_colour(p)) {
                updpoicod(s, ui, r, p);
                ++count;
            }
        }
        }
        ui.progress(static_cast<int>((k + 1) * 100 / rows.size()));
    }
    ui.progress(0);  // the window's bar shows only while a tool runs
    if (count > 0) s.dirty = true;
    return count;
}

}  // namespace korvex::workbench
