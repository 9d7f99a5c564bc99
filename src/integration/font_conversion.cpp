#include "integration/font_conversion.h"

#include <algorithm>
#include <cctype>

#include "typ/curf_access.h"

namespace korvex::integration {

namespace {

constexpr int m_select_hint = 274;
constexpr int k_string_slots = 47;
constexpr const char* k_night_default = "FFFF00";  // the system's colour 14, yellow

std::string six_hex(const std::string& v) {
    std::string d;
    for (char c : v)
        if (std::isxdigit(static_cast<unsigned char>(c))) d += c;
    if (d.size() > 6) d = d.substr(d.size() - 6);
    return typ::upper(std::string(6 - d.size(), '0') + d);
}

// "RRGGBB" to the column's byte order (blue, green, red).
std::string file_order(const std::string& rgb) { return rgb.substr(4, 2) + rgb.substr(2, 2) + rgb.substr(0, 2); }

const std::string* section_at(const model::Store& s, int table, int32_t row) {
    const auto r = static_cast<size_t>(row);
    switch (table) {
    case model::k_polygons: return row >= 0 && row < s.pg_n && r < s.pg_txt.size() ? &s.pg_txt[r] : nullptr;
    case model::k_lines: return row >= 0 && row < s.ln_n + s.ln_nact && r < s.ln_txt.size() ? &s.ln_txt[r] : nullptr;
    case model::k_points: return row >= 0 && row < s.pt_n && r < s.pt_txt.size() ? &s.pt_txt[r] : nullptr;
    default: return nullptr;
    }
}

std::string* section_of(model::Store& s, int table, int32_t row) {
    return const_cast<std::string*>(section_at(s, table, row));
}

// The custom colour column follows the new colour lines.
void set_colour_column(model::Store& s, int table, int32_t row, const FontRequest& r) {
    const auto i = static_cast<size_t>(row);
    const std::string day = file_order(six_hex(r.day));
    if (table == model::k_polygons && i < s.pg_dayc.size()) s.pg_dayc[i] = day;
    if (table == model::k_lines && i < s.ln_dayc.size()) s.ln_dayc[i] = day;
    if (table == model::k_points && i < s.pt_cc.size()) s.pt_cc[i] = day + file_order(six_hex(r.night));
}

int32_t table_rows(const model::Store& s, int table) {
    return table == model::k_polygons ? s.pg_n : table == model::k_lines ? s.ln_n + s.ln_nact : s.pt_n;
}

int table_of(int cls) {
    if (cls == model::k_active_lines) return model::k_lines;
    return cls;
}

// A row's type as the grid shows it ("0x0100", "0x00100", "0x02a00"), so that
// a font list line leads the user to its element.
std::string font_list_type(const model::Store& s, int table, int32_t row) {
    const auto r = static_cast<size_t>(row);
    switch (table) {
    case model::k_polygons: return r < s.pg_typ.size() ? typ::lower(s.pg_typ[r]) : std::string();
    case model::k_lines:
        return r < s.ln_lab.size() ? typ::lower(s.ln_lab[r].substr(0, s.ln_lab[r].find('#'))) : std::string();
    default: return r < s.pt_typ.size() ? "0x" + typ::lower(s.pt_typ[r]) : std::string();
    }
}

}  // namespace

const std::vector<std::string>& font_styles() {
    static const std::vector<std::string> k{"Default", "Nolabel", "SmallFont", "Normal", "Large"};
    return k;
}

std::vector<std::string> font_option_captions(int mode) {
    if (mode == k_fonts_colours) return {"Add current Font colours to ALL", "Add current Font colours if none exist"};
    return {"Remove Existing Fonts", "Add Font if no Font exists", "Add Font", "Replace Existing Fonts Only"};
}

std::string font_day_colour(const std::string& saved) { return saved.size() < 2 ? "000000" : six_hex(saved); }

std::string font_night_colour(const std::string& saved) { return saved.size() < 2 ? k_night_default : six_hex(saved); }

FontCounts convert_rows(model::Store& s, int table, const std::vector<int32_t>& rows, const FontRequest& r) {
    FontCounts c;
    const bool colours = r.mode == k_fonts_colours;
    for (int32_t row : rows) {
        std::string* section = section_of(s, table, row);
        if (!section || section->empty()) continue;
        ++c.visited;
        const SectionChange ch = colours ? convert_colours(*section, r.option, r.day, r.night)
                                         : convert_font(*section, r.option, r.style);
        if (ch.had) ++c.had;
        if (!ch.changed) continue;
        if (colours) set_colour_column(s, table, row, r);
        (table == model::k_polygons ? c.polygons : table == model::k_lines ? c.lines : c.points) += 1;
    }
    return c;
}

std::string font_report(const FontCounts& c, const FontRequest& r) {
    std::string out = "Changes made:\r\n\r\nPolygons: " + std::to_string(c.polygons) + "\r\nLines: " +
                      std::to_string(c.lines) + "\r\nPoints: " + std::to_string(c.points);
    if (r.mode == k_fonts_colours || c.visited == 0) return out;
    if (r.option == k_font_replace_only && c.had == c.visited)
        out += "\r\n\r\nAll selected elements already have Fonts\r\nSelect Add Font if no Font exists.";
    // Nothing to remove or replace where no element has a style.
    if ((r.option == k_font_remove || r.option == k_font_replace_only) && c.had == 0)
        out += "\r\n\r\nCannot find Font information.";
    return out;
}

bool fontconv(model::Store& s, platform::Prompt& ui, const Messages& m, const FontRequest& r, int curclass,
              const std::vector<int32_t>& selected, FontCounts* counts) {
    if (!r.select_all && selected.empty()) {
        ui.message("Tick Select All" + m.get_msg(m_select_hint));
        return false;
    }
    if (r.mode != k_fonts_colours && r.style.empty()) {
        ui.message("No Font selected");
        return false;
    }
    const int view_table = table_of(curclass);
    bool ticked[3] = {r.polygons, r.lines, r.points};
    if (r.mode == k_fonts_selection) {
        ticked[0] = ticked[1] = ticked[2] = false;
        if (view_table >= 0 && view_table <= 2) ticked[view_table] = true;
    }
    FontCounts total;
    for (int table = model::k_polygons; table <= model::k_points; ++table) {
        if (!ticked[table]) continue;
        std::vector<int32_t> rows;
        if (r.select_all) {
            const int32_t n = table_rows(s, table);
            rows.reserve(static_cast<size_t>(std::max(0, n)));
            for (int32_t k = 0; k < n; ++k) rows.push_back(k);
        } else if (table == view_table) {
            rows = selected;
        }
        const FontCounts c = convert_rows(s, table, rows, r);
        total.polygons += c.polygons;
        total.lines += c.lines;
        total.points += c.points;
        total.visited += c.visited;
        total.had += c.had;
    }
    if (total.total() > 0) s.dirty = true;
    ui.message(font_report(total, r));
    if (counts) *counts = total;
    return true;
}

std::string font_list(const model::Store& s, int cls) {
    static const char* const k_names[3] = {"Polygons", "Lines", "Points"};
    const int table = table_of(cls);
    if (table < 0 || table > 2) return {};
    std::string out = std::string("FONTLIST for ") + k_names[table] + "\r\n\r\n";
    int32_t first = 0, count = table_rows(s, table);
    if (cls == model::k_lines) count = s.ln_n;
    if (cls == model::k_active_lines) {
        first = s.ln_n;
        count = s.ln_nact;
    }
    for (int32_t k = 0; k < count; ++k) {
        const std::string* section = section_at(s, table, first + k);
        const std::string style = section ? font_style_of(*section) : std::string();
        out += font_list_type(s, table, first + k) + "," + (style.empty() ? " - " : style) + "\r\n";
    }
    return out;
}

StringInsertion mads(const std::string& text, size_t from, size_t to, int language) {
    from = std::min(from, text.size());
    to = std::clamp(to, from, text.size());
    const std::string low = typ::lower(text);
    int n = 1;
    while (n <= k_string_slots && low.find("string" + std::to_string(n) + "=") != std::string::npos) ++n;
    const std::string line = "String" + std::to_string(n) + "=0x" + typ::hex2(typ::hex(language & 0xff)) + "," +
                             text.substr(from, to - from);
    StringInsertion out;
    out.text = text.substr(0, from) + line + text.substr(to);
    out.caret = from + line.size();
    return out;
}

}  // namespace korvex::integration
