#include "workbench/cell_label.h"

#include "typ/curf_access.h"
#include "typ/extended_sections.h"
#include "workbench/browser.h"
#include "workbench/label_tools.h"

namespace korvex::workbench {

namespace {

const std::string k_empty;
constexpr uint32_t k_grey = 0x808080;

const std::string& column_at(const std::vector<std::string>& col, int32_t row) {
    return row >= 0 && static_cast<size_t>(row) < col.size() ? col[static_cast<size_t>(row)] : k_empty;
}

// A point's label column: night flag, mode, dimensions, CR LF, type, "#", label.
std::string_view point_label_tail(const std::string& lab) {
    const size_t lf = lab.find('\n');
    const size_t hash = lab.find('#', lf == std::string::npos ? 0 : lf + 1);
    return hash == std::string::npos ? std::string_view() : std::string_view(lab).substr(hash + 1);
}

std::string_view after_hash(const std::string& lab) {
    const size_t hash = lab.find('#');
    return hash == std::string::npos ? std::string_view() : std::string_view(lab).substr(hash + 1);
}

bool is_line_class(int cls) { return cls == model::k_lines || cls == model::k_active_lines; }

}  // namespace

std::string polygon_level(const model::Store& s, int32_t row) {
    const std::string& drw = column_at(s.pg_drw, row);
    const size_t end = drw.find_first_of("\r\n");
    const std::string_view first = std::string_view(drw).substr(0, end);
    const size_t comma = first.find(',');
    return comma == std::string_view::npos ? std::string() : std::string(first.substr(comma + 1));
}

std::string type_text(const model::Store& s, int cls, int32_t row) {
    if (cls == model::k_polygons) {
        std::string t = typ::lower(column_at(s.pg_typ, row));
        const std::string level = polygon_level(s, row);
        if (!level.empty()) t += "," + level;
        return t;
    }
    if (is_line_class(cls)) {
        const std::string& lab = column_at(s.ln_lab, row);
        return typ::lower(std::string_view(lab).substr(0, lab.find('#')));
    }
    // Extra points too: the hex setting governs search and the new-point
    // dialog, not the grid.
    return "0x" + typ::lower(column_at(s.pt_typ, row));
}

std::string label_text(const model::Store& s, int cls, int32_t row) {
    if (cls == model::k_polygons) return std::string(after_hash(column_at(s.pg_lab, row)));
    if (is_line_class(cls)) return std::string(after_hash(column_at(s.ln_lab, row)));
    return std::string(point_label_tail(column_at(s.pt_lab, row)));
}

const std::string& section_text(const model::Store& s, int cls, int32_t row) {
    if (cls == model::k_polygons) return column_at(s.pg_txt, row);
    if (is_line_class(cls)) return column_at(s.ln_txt, row);
    return column_at(s.pt_txt, row);
}

bool day_colour(const model::Store& s, int cls, int32_t row, uint32_t& rgb) {
    const std::string& c = cls == model::k_polygons ? column_at(s.pg_dayc, row)
                           : is_line_class(cls)    ? column_at(s.ln_dayc, row)
                                                   : column_at(s.pt_cc, row);
    if (c.size() < 6 || c == "0") return false;
    // The column holds the colour in canvas order, blue first.
    const auto bgr = static_cast<uint32_t>(typ::hex_value(std::string_view(c).substr(0, 6)));
    rgb = ((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF);
    return true;
}

CellLabel Browser::label(const model::Store& s, int cell) const {
    CellLabel out;
    const int32_t row = row_of(cell);
    if (row < 0 || night_cell(cell)) return out;
    const std::string type = type_text(s, cls_, row);
    const std::string text = label_text(s, cls_, row);
    switch (opt.label_option) {
        case 1: out.text = text.empty() ? type : text; break;
        case 2: out.text = type; break;
        default: out.text = text.empty() ? type : type + " " + text; break;
    }
    if (opt.show_font_colours) day_colour(s, cls_, row, out.colour);
    if (opt.nolabel_grey && chk_nolabel(s, cls_, row)) {
        out.grey = true;
        out.colour = k_grey;
    }
    return out;
}

std::string Browser::tooltip(const model::Store& s, int cell) const {
    const int32_t row = row_of(cell);
    if (row < 0) return {};
    if (cls_ == model::k_active_lines) {
        const std::string& code = column_at(s.ln_act, row);
        std::string name = typ::chkactivity(code);
        if (name.empty()) name = code;
        return "Dbl Click to Edit  (" + name + ") ";
    }
    return " Dbl Click to edit ";
}

bool Browser::not_in_style(const model::Store& s, int cell) const {
    const int32_t row = row_of(cell);
    return opt.show_not_in_style && row >= 0 && !night_cell(cell) &&
           typ::contains_caseless(section_text(s, cls_, row), "not in style");
}

std::string Browser::layer_text(const model::Store& s, int cell) const {
    const int32_t row = row_of(cell);
    return cls_ == model::k_polygons && row >= 0 ? polygon_level(s, row) : std::string();
}

}  // namespace korvex::workbench
