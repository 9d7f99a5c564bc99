#include "editor/element_open.h"

#include <algorithm>
#include <cctype>

#include "editor/ascii_case.h"
#include "editor/canvas.h"
#include "editor/label_panel.h"
#include "editor/palette_file.h"
#include "editor/point_pictures.h"
#include "typ/draw_order.h"

namespace korvex::editor {

namespace {

std::string type_fields_code(const EditorSession& e) {
    std::string sub = e.subtype_field.empty() ? "00" : e.subtype_field;
    if (sub.size() < 2) sub.insert(0, "0");
    return e.type_field + sub;
}

// Rows of "0"/"1" into pixels.
void read_bit_rows(EditorSession& e, const std::string& column) {
    const std::vector<std::string> rows = split_rows(column);
    for (int y = 0; y < e.height && static_cast<size_t>(y) < rows.size(); ++y)
        for (int x = 0; x < e.width && static_cast<size_t>(x) < rows[static_cast<size_t>(y)].size(); ++x)
            e.pixels.set(x, y, rows[static_cast<size_t>(y)][static_cast<size_t>(x)] == '1' ? 1 : 0);
}

void fill_palette(Palette& p, const std::vector<std::string>& lines, size_t from, size_t count, uint32_t marker) {
    for (size_t i = from; i < lines.size() && i < from + count; ++i) {
        uint32_t c = 0;
        colour_of_line(lines[i], marker, c);
        p.colours.push_back(c);
    }
}

}  // namespace

std::vector<std::string> split_rows(const std::string& column) {
    std::vector<std::string> out;
    size_t p = 0;
    while (p < column.size()) {
        size_t e = column.find('\n', p);
        if (e == std::string::npos) e = column.size();
        std::string l = column.substr(p, e - p);
        if (!l.empty() && l.back() == '\r') l.pop_back();
        if (!l.empty()) out.push_back(std::move(l));
        p = e + 1;
    }
    return out;
}

std::vector<int> head_numbers(const std::string& xpm) {
    std::vector<int> out;
    const size_t q = xpm.find('"');
    if (q == std::string::npos) return out;
    const size_t e = xpm.find('"', q + 1);
    const std::string head = xpm.substr(q + 1, e == std::string::npos ? std::string::npos : e - q - 1);
    size_t p = 0;
    while (p < head.size() && out.size() < 4) {
        while (p < head.size() && head[p] == ' ') ++p;
        size_t s = p;
        while (p < head.size() && head[p] != ' ') ++p;
        if (p > s) out.push_back(std::atoi(head.substr(s, p - s).c_str()));
    }
    return out;
}

std::string fnchkbtns(const EditorSession& e) {
    return std::to_string(e.hasnight) + std::to_string(e.nightcols) + std::to_string(e.orient) + std::to_string(e.solid) +
           std::to_string(e.labels.extendedlabels) + std::to_string(e.labels.fontcolours) + std::to_string(e.labels.fontstyle_index);
}

bool colour_of_line(const std::string& line, uint32_t marker, uint32_t& colour) {
    const std::string low = lower(line);
    const size_t c = low.find(" c ");
    const size_t tab = low.find("\tc ");
    const size_t key = std::min(c, tab);
    const std::string value = key == std::string::npos ? low : low.substr(key + 3);
    if (value.find("none") != std::string::npos) {
        colour = marker;
        return true;
    }
    const size_t hash = value.find('#');
    if (hash == std::string::npos) return false;
    std::string digits;
    for (size_t i = hash + 1; i < value.size() && digits.size() < 6 && std::isxdigit(static_cast<unsigned char>(value[i])); ++i)
        digits += value[i];
    if (digits.size() < 6) digits.insert(0, 6 - digits.size(), '0');
    return from_hex(digits, colour);
}

std::vector<std::string> colour_lines(const std::string& column) {
    std::vector<std::string> out;
    size_t p = 0;
    while (p < column.size()) {
        size_t e = column.find('\n', p);
        if (e == std::string::npos) e = column.size();
        std::string l = column.substr(p, e - p);
        if (!l.empty() && l.back() == '\r') l.pop_back();
        if (l.empty() || l[0] != '"') break;  // a point's night part follows a blank line
        out.push_back(std::move(l));
        p = e + 1;
    }
    return out;
}

void split_type(std::string code, std::string& type, std::string& subtype) {
    if (code.size() > 1 && code[0] == '0' && (code[1] == 'x' || code[1] == 'X')) code.erase(0, 2);
    std::string digits;
    for (char c : code)
        if (std::isxdigit(static_cast<unsigned char>(c))) digits += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (digits.size() >= 4) {
        // The last two digits are the subtype: "2A07", "10F03".
        type = digits.substr(0, digits.size() - 2);
        subtype = digits.substr(digits.size() - 2);
    } else {
        type = digits.empty() ? "0" : digits;
        subtype = "00";
    }
    // Leading zeros of a three-digit type are kept as the text had them.
}

EditorSession open_element(const model::Store& s, const OpenRequest& r) {
    EditorSession e;
    e.transparentcolour = r.transparentcolour;
    e.curclass = r.curclass;
    e.row = r.row;
    std::vector<int32_t> group = r.group;
    std::sort(group.begin(), group.end());
    group.erase(std::unique(group.begin(), group.end()), group.end());
    if (group.size() > 1 && r.curclass < 2) {
        // A multi edit: the first in row order shows its values. A group of
        // one is that element alone.
        e.curclass = r.curclass == 0 ? k_polygon_group : k_line_group;
        e.group = group;
        e.row = group.front();
        e.sel1 = ",";
        for (int32_t g : group) e.sel1 += std::to_string(g) + ",";
    }
    const auto row = static_cast<size_t>(e.row);
    const int cls = e.store_class();
    std::string text, xpm, col, bmp, typ;
    if (cls == 0) {
        text = s.pg_txt[row];
        xpm = s.pg_xpm[row];
        col = s.pg_col[row];
        bmp = s.pg_bmp[row];
        typ = s.pg_typ[row];
    } else if (cls == 1 || cls == 3) {
        text = s.ln_txt[row];
        xpm = s.ln_xpm[row];
        col = s.ln_col[row];
        bmp = s.ln_bmp[row];
        typ = "0x" + (s.ln_lab[row].size() > 7 ? s.ln_lab[row].substr(2, 5) : std::string("00000"));
    } else {
        text = s.pt_txt[row];
        xpm = s.pt_xpm[row];
        col = s.pt_col[row];
        bmp = s.pt_bmp[row];
        typ = s.pt_typ[row];
    }
    // The type as the text names it, so that "0x13" stays "0x13" if untouched.
    split_type(typ, e.type_field, e.subtype_field);
    e.oldtype = type_fields_code(e);
    e.labels = read_labels(text);
    e.labels.labelcodepage = s.codepage;
    e.fontstyle = e.labels.fontstyle;

    const std::vector<int> head = head_numbers(xpm);
    const std::vector<std::string> lines = colour_lines(col);
    const int w = head.size() > 0 ? head[0] : 0, h = head.size() > 1 ? head[1] : 0;
    const int cpp = head.size() > 3 ? head[3] : 1;

    if (cls == 0 || cls == 1 || cls == 3) {
        e.solid = w == 0 || h == 0;
        const size_t day = lines.size() >= 2 ? 2 : lines.size();
        fill_palette(e.palette, lines, 0, day, e.transparentcolour);
        if (lines.size() > 2) fill_palette(e.nightpal, lines, 2, lines.size() - 2, e.transparentcolour);
        e.hasnight = cls == 0 ? (s.pg_mode[row] > 7 && lines.size() > 2) || (s.pg_mode[row] == 7) : lines.size() >= 3;
        if (cls == 0) e.nightcols = s.pg_mode[row];
        if (cls != 0) {
            e.nightcols = s.ln_mode[row];
            e.lwidth = s.ln_wid[row];
            e.border = s.ln_bord[row];
            e.orient = lower(text).find("useorientation=y") != std::string::npos ? 1 : 0;
        }
        if (cls == 0) {
            e.draworder = typ::polygon_level(s, e.row);
            e.olddraw = e.draworder;
        }
        if (e.solid) {
            resize_picture(e, 0, 0);
        } else {
            resize_picture(e, w, h);
            read_bit_rows(e, bmp);
        }
    } else {
        // The day picture goes on the canvas; a night picture waits beside it.
        const int count = head.size() > 2 ? head[2] : 0;
        e.width = std::max(w, 0);
        e.height = std::max(h, 0);
        PointPicture day = read_point_picture(lines, bmp, std::max(cpp, 1), e.width, e.height, count == 0 && w > 0 && h > 0,
                                              head_colormode(xpm), e.transparentcolour);
        bool shares = false;
        PointPicture night;
        e.has_night_bitmap = get_nght(s, e.row, e.width, e.height, e.transparentcolour, day, night, shares);
        e.night_shares_day = shares;
        e.bmpmode = e.has_night_bitmap ? 1 : 0;
        if (e.has_night_bitmap) e.other = std::move(night);
        put_on_canvas(e, std::move(day));
        e.width_box = w;
        e.height_box = h;
    }
    if (!e.truecolour) painticon(e);
    start_history(e);
    e.curcol = e.ncols() >= 1 ? 1 : -1;
    e.curcol2 = e.ncols() >= 2 ? 2 : e.curcol;
    e.pen_colour = 0;
    e.pen_colour2 = 0xFFFFFF;
    e.colourtext = col;
    e.flags_on_entry = fnchkbtns(e);
    return e;
}

}  // namespace korvex::editor
