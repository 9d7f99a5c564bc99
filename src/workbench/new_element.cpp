// The New flows of ElementOps, one a class: a number, the dialog, the
// element's first text, read by the class's reader, placed in type order.
#include <algorithm>

#include "text/string_lines.h"
#include "typ/curf_access.h"
#include "workbench/draworder_entries.h"
#include "workbench/element_ops.h"
#include "workbench/step_names.h"
#include "workbench/element_rows.h"
#include "workbench/message_ids.h"
#include "workbench/new_sections.h"
#include "workbench/sort_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

constexpr int32_t k_type_without_levels = 0x100;

constexpr int32_t k_active_header = 174;
constexpr int32_t k_extra_header = 164;
// The default active lines: type and activities, in this order.
constexpr const char* k_default_type = "00100";
constexpr const char* k_default_activities[] = {"40", "50", "41", "51", "42", "52"};

}  // namespace

// The dialogs give labels as UTF-8; the readers take them as the project keeps them.
std::string ElementOps::as_project(const std::string& section) const { return text::strings_to_pages(s_, section); }

int32_t ElementOps::new_element(int cls) {
    if (blocked() || cls < 0 || cls > model::k_extra_points) return -1;
    const auto step = open_step(history_, step_name("New", 1, cls), Scope::rows_of(cls, {}));
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
    // Beside the layers the user names the type: no number is proposed.
    const bool layers = host_.draworder_view();
    const std::string t = layers ? std::string() : nwtypnumber(s_, settings_.polygon_seed, model::k_polygons);
    if (t.empty() && !layers) {
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
    // An entry of the type with no polygon holds its layer free: the new
    // polygon takes that layer.
    const int held = draworder_level(s_, code);
    if (held > 0 && !ui_.yes_no("An empty draworder exists for " + f.type + ". Continue?")) return -1;
    standing_level_ = f.level;
    if (held > 0 && can_have) f.level = held;
    // Type 0x100 is drawn without a level: the level is dropped, not refused.
    if ((code >> 8) == k_type_without_levels && f.level > 0) {
        ui_.message(msg(m_no_level_at_0x100));
        f.level = 0;
    }
    const int32_t row = addpolygon(s_, ui_, as_project(new_polygon_section(f.type, f.text, icon_colours(settings_))),
                                   can_have ? f.level : 0);
    return finish(model::k_polygons, row);
}

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
    const std::string section =
        new_line_section(f.type, active ? activity_of_index(f.activity) : std::string(), f.text, icon_colours(settings_));
    return finish(cls, create_newline(s_, ui_, as_project(section), active));
}

bool ElementOps::default_activities() {
    if (blocked()) return false;
    const auto step = open_step(history_, "Default Activities", Scope::rows_of(model::k_active_lines, {}));
    if (s_.hdr_len < k_active_header) {
        s_.hdr_len = k_active_header;
        s_.hdr_caption = " AE";
        ui_.message("Header reset to &AE");
    }
    const int32_t first = s_.ln_n + s_.ln_nact;
    const IconColours colours = icon_colours(settings_);
    for (const char* act : k_default_activities)
        create_newline(s_, ui_, new_line_section(k_default_type, act, "", colours), true);
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
    const std::string section =
        new_point_section(f.type, f.text, f.width, f.height, f.night, icon_colours(settings_));
    return finish(model::k_points, new_poi(s_, ui_, as_project(section)));
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
    const std::string section =
        new_point_section(five_digits(value), f.text, k_tile, k_tile, false, icon_colours(settings_));
    const int32_t row = new_extrapoi(s_, ui_, as_project(section));
    host_.tables_changed(row);
    return row;
}

}  // namespace korvex::workbench
