// The New flows of ElementOps, one a class: a number, the dialog, the
// element's first text, read by the class's reader, placed in type order.
#include <algorithm>
#include <cstdio>

#include "typ/curf_access.h"
#include "workbench/draworder_entries.h"
#include "workbench/element_ops.h"
#include "workbench/element_rows.h"
#include "workbench/sort_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

enum Msg : int {
    m_default_activities = 198,
    m_no_number = 219,
};

constexpr int32_t k_active_header = 174;
constexpr int32_t k_extra_header = 164;
constexpr int k_tile = 32;
constexpr int k_new_line_width = 3;
constexpr int k_new_line_border = 1;
constexpr const char* k_crlf = "\r\n";
constexpr const char* k_ruler = ";12345678901234567890123456789012";
// The default active lines: type and activities, in this order.
constexpr const char* k_default_type = "00100";
constexpr const char* k_default_activities[] = {"40", "50", "41", "51", "42", "52"};

// A settings colour (red in the low byte) as RRGGBB.
std::string rgb_text(int64_t v) {
    const auto c = static_cast<uint32_t>(v & 0xFFFFFF);
    char b[8];
    std::snprintf(b, sizeof b, "%02X%02X%02X", c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
    return b;
}

std::string label_lines(const std::string& text) {
    std::string out;
    if (!text.empty()) out += "String1=0x00," + text + k_crlf;
    out += std::string("ExtendedLabels=N") + k_crlf;
    return out;
}

std::string rows_of(char symbol, int width, int height) {
    std::string out;
    const std::string row = "\"" + std::string(static_cast<size_t>(width), symbol) + "\"" + k_crlf;
    for (int k = 0; k < height; ++k) out += row;
    return out;
}

std::string five(const std::string& digits) { return five_digits(type_code(digits)); }

}  // namespace

// The two default colours of new icons: background and foreground. Two equal
// settings (never set) give white and black.
std::string ElementOps::point_colours() const {
    std::string back = rgb_text(settings_.icon_colour1), fore = rgb_text(settings_.icon_colour2);
    if (back == fore) {
        back = "FFFFFF";
        fore = "000000";
    }
    return back + fore;
}

int32_t ElementOps::new_element(int cls) {
    if (blocked() || cls < 0 || cls > model::k_extra_points) return -1;
    host_.show_class(cls);
    s_.curclass = cls;
    switch (cls) {
    case model::k_polygons: return new_polygon();
    case model::k_lines:
    case model::k_active_lines: return new_line(cls);
    case model::k_points: return new_point();
    default: return new_extra_point();
    }
}

int32_t ElementOps::new_polygon() {
    const std::string t = nwtypnumber(s_, settings_.polygon_seed, model::k_polygons);
    if (t.empty()) {
        ui_.message(msg(m_no_number));
        return -1;
    }
    NewElementForm f;
    f.cls = model::k_polygons;
    f.type = t;
    f.level = standing_level_;
    if (!dialogs_.poisizes(f)) return -1;
    if (const auto refusals = check_form(s_, f, msgs_); !refusals.empty()) {
        for (const auto& m : refusals) ui_.message(m);
        return -1;
    }
    const int32_t code = type_code(f.type);
    bool can_have = true;
    drw_code(code, &can_have);
    // An entry of the type with no polygon holds its layer free.
    if (draworder_level(s_, code) > 0 &&
        !ui_.yes_no("An empty draworder exists for " + f.type + ". Continue?"))
        return -1;
    const int level = can_have ? f.level : 0;
    standing_level_ = f.level;
    const std::string colours = point_colours();
    std::string section = std::string("[_polygon]") + k_crlf + "Type=0x" + five(f.type) + k_crlf + label_lines(f.text);
    section += std::string("Xpm=\"32 32 2 1\"") + k_crlf;
    section += "\"0 c #" + colours.substr(0, 6) + "\"" + k_crlf + "\"1 c #" + colours.substr(6) + "\"" + k_crlf;
    section += rows_of('0', k_tile, k_tile) + "[end]" + k_crlf;
    const int32_t row = append_element(s_, ui_, model::k_polygons, section);
    s_.pg_drw[static_cast<size_t>(row)] = drw_entry(code, level);
    add_draworder(s_, code, level);
    return finish(model::k_polygons, row);
}

namespace {

std::string line_section(const std::string& digits, const std::string& activity, const std::string& text,
                         const std::string& colour) {
    std::string section = std::string("[_line]") + k_crlf + "Type=0x" + five(digits) + k_crlf;
    if (!activity.empty()) section += "Activity=" + activity_name(activity) + k_crlf;
    section += label_lines(text);
    section += "LineWidth=" + std::to_string(k_new_line_width) + k_crlf;
    section += "BorderWidth=" + std::to_string(k_new_line_border) + k_crlf;
    section += std::string("Xpm=\"0 0 2 0\"") + k_crlf;
    section += "\"0 c #" + colour + "\"" + k_crlf + "\"1 c #000000\"" + k_crlf + "[end]" + k_crlf;
    return section;
}

}  // namespace

int32_t ElementOps::new_line(int cls) {
    const bool active = cls == model::k_active_lines;
    if (active && s_.ln_nact == 0 && ui_.yes_no(msg(m_default_activities))) {
        default_activities();
        return s_.ln_nact > 0 ? s_.ln_n : -1;
    }
    const std::string t = nwtypnumber(s_, settings_.line_seed, cls);
    if (t.empty()) {
        ui_.message(msg(m_no_number));
        return -1;
    }
    NewElementForm f;
    f.cls = cls;
    f.type = t;
    if (active) {
        f.activity = 0;
        for (int n = 0; n < 6; ++n)
            f.activities.push_back(n < static_cast<int>(msgs_.activities().size()) ? msgs_.activities()[static_cast<size_t>(n)]
                                                                                  : activity_name(activity_of_index(n)));
        for (int32_t r = 0; r < s_.ln_n; ++r) f.line_types.push_back(s_.ln_lab[static_cast<size_t>(r)]);
    }
    if (!dialogs_.new_line(f)) return -1;
    if (const auto refusals = check_form(s_, f, msgs_); !refusals.empty()) {
        for (const auto& m : refusals) ui_.message(m);
        return -1;
    }
    if (active && s_.hdr_len < k_active_header) {
        s_.hdr_len = k_active_header;
        s_.hdr_caption = " AE";
        ui_.message("Header reset to &AE");
    }
    const std::string section = line_section(f.type, active ? activity_of_index(f.activity) : std::string(), f.text,
                                             point_colours().substr(6));
    return finish(cls, append_element(s_, ui_, cls, section));
}

bool ElementOps::default_activities() {
    if (blocked()) return false;
    if (s_.hdr_len < k_active_header) {
        s_.hdr_len = k_active_header;
        s_.hdr_caption = " AE";
        ui_.message("Header reset to &AE");
    }
    const int32_t first = s_.ln_n + s_.ln_nact;
    const std::string colour = point_colours().substr(6);
    for (const char* act : k_default_activities)
        append_element(s_, ui_, model::k_active_lines, line_section(k_default_type, act, "", colour));
    host_.tables_changed(first);
    return true;
}

int32_t ElementOps::new_point() {
    const std::string t = next_point_type(s_, settings_.point_seed);
    if (t.empty()) {
        ui_.message(msg(m_no_number));
        return -1;
    }
    NewElementForm f;
    f.cls = model::k_points;
    f.type = t;
    const int side = std::clamp(settings_.default_point_size, 1, 128);
    f.width = f.height = side;
    if (!dialogs_.poisizes(f)) return -1;
    if (const auto refusals = check_form(s_, f, msgs_); !refusals.empty()) {
        for (const auto& m : refusals) ui_.message(m);
        return -1;
    }
    const std::string colours = point_colours();
    const std::string head = "\"" + std::to_string(f.width) + " " + std::to_string(f.height) + " 2 1\" Colormode=0";
    const std::string table = "\"$ c #" + colours.substr(0, 6) + "\"" + k_crlf + "\"% c #" + colours.substr(6) + "\"" + k_crlf;
    std::string section = std::string("[_point]") + k_crlf + "Type=0x" + five(f.type) + k_crlf + label_lines(f.text);
    section += (f.night ? "DayXpm=" : "Xpm=") + head + k_crlf + table + rows_of('$', f.width, f.height) + k_ruler + k_crlf;
    if (f.night) section += "NightXpm=" + head + k_crlf + table + rows_of('$', f.width, f.height);
    section += std::string("[end]") + k_crlf;
    return finish(model::k_points, append_element(s_, ui_, model::k_points, section));
}

int32_t ElementOps::new_extra_point() {
    int32_t next = 1;
    for (int32_t r = s_.pt_n; r < s_.pt_n + s_.pt_nx; ++r)
        next = std::max(next, row_type_code(s_, model::k_extra_points, r) + 1);
    NewElementForm f;
    f.cls = model::k_extra_points;
    f.hex = settings_.extra_hex != 0;
    f.type = f.hex ? typ::upper(typ::hex(next)) : std::to_string(next);
    f.width = f.height = k_tile;
    if (!dialogs_.poisizes(f)) return -1;
    if (const auto refusals = check_form(s_, f, msgs_); !refusals.empty()) {
        for (const auto& m : refusals) ui_.message(m);
        return -1;
    }
    std::string id = f.type;
    if (id.size() > 1 && id[0] == '0' && (id[1] == 'x' || id[1] == 'X')) id.erase(0, 2);
    const int32_t value = f.hex ? static_cast<int32_t>(typ::hex_value(id)) : std::stoi(id);
    // Extra points are kept from this header length on.
    if (s_.hdr_len < k_extra_header) {
        s_.hdr_len = k_extra_header;
        s_.hdr_caption = " A4";
    }
    const std::string colours = point_colours();
    std::string section = std::string("[_point]") + k_crlf + "Type=0x" + five_digits(value) + k_crlf + label_lines(f.text);
    section += std::string("Xpm=\"32 32 2 1\" Colormode=0") + k_crlf;
    section += "\"$ c #" + colours.substr(0, 6) + "\"" + k_crlf + "\"% c #" + colours.substr(6) + "\"" + k_crlf;
    section += rows_of('$', k_tile, k_tile) + "[end]" + k_crlf;
    const int32_t row = append_element(s_, ui_, model::k_extra_points, section);
    host_.tables_changed(row);
    return row;
}

}  // namespace korvex::workbench
