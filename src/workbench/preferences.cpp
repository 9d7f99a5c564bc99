// The checks of the preferences dialog's Apply.
#include "workbench/preferences.h"

#include <algorithm>
#include <utility>

#include "platform/files.h"
#include "workbench/browser.h"

namespace korvex::workbench {
namespace {

constexpr int32_t k_magenta = 0xFF11FF;
constexpr int32_t k_light_grey = 0xF0F0F0;  // rgb(240,240,240)

// The dialog shows a polygon or line seed as its type digits: "00100" is
// "001"; the subtype digits come back when the seed is used.
std::string shown_seed(const std::string& seed) {
    if (seed.size() >= 5 && seed.compare(seed.size() - 2, 2, "00") == 0) return seed.substr(0, seed.size() - 2);
    return seed;
}

std::string typed_seed(std::string seed) {
    seed.erase(0, seed.find_first_not_of(' '));
    while (!seed.empty() && seed.back() == ' ') seed.pop_back();
    if (seed.rfind("00", 0) == 0) seed.erase(0, 2);
    return seed;
}

}  // namespace

Preferences pref_from(const AppSettings& st) {
    Preferences p;
    p.langsel = st.langsel;
    p.langname = st.langname;
    p.lang_default = st.lang_default != 0;
    p.label_options = st.label_options;
    p.label_font = st.label_font;
    p.label_font_size = st.label_font_size;
    p.editor_text_font = st.editor_text_font;
    p.editor_text_size = st.editor_text_size;
    p.lock_font = st.lock_font != 0;

    p.background = st.background;
    p.custom_icon_scroll = st.custom_icon_size - k_custom_scroll_offset;
    p.magenta_transparency = st.magenta_transparency;
    p.palette16 = st.palette16;
    p.show_font_colors = st.show_font_colors;
    p.nolabel_grey = st.nolabel_grey;
    p.click_shades = st.click_shades;
    p.filter_selected_colour = st.filter_selected_colour;
    p.icon_colour1 = st.icon_colour1;
    p.icon_colour2 = st.icon_colour2;

    p.point_seed = st.point_seed;
    p.polygon_seed = shown_seed(st.polygon_seed);
    p.line_seed = shown_seed(st.line_seed);
    p.max_canvas_poi = st.max_canvas_poi;
    p.default_point_size = st.default_point_size;
    p.show_garmin_types = st.show_garmin_types;
    p.show_offsets = st.show_offsets;
    p.extra_hex = st.extra_hex != 0;
    p.trim_poi_colours = st.trim_poi_colours != 0;
    p.half_day_night = st.half_day_night != 0;
    p.auto_check_duplicates = st.no_duplicate_check == 0;

    p.scroll_sensitivity = st.scroll_sensitivity;
    p.mouse_scroll = st.mouse_scroll != 0;
    p.region = st.region;
    p.logs_on = st.logs_on;
    p.daily_log = st.daily_log;
    p.check_updates = st.check_updates;
    p.unused_colour_check = st.unused_colour_check != 0;
    p.dblclick_edit_text = st.dblclick_edit_text != 0;
    p.show_errors = st.show_errors != 0;
    p.ask_reload_undo = st.ask_reload_undo;
    p.history_limit = st.history_limit;
    p.create_copy_topo = st.create_copy_topo != 0;
    p.remember_window = st.remember_window;
    p.show_not_in_style = st.show_not_in_style != 0;

    p.auto_load_path = st.auto_load_path;
    p.use_as_current_typ = st.use_as_current_typ != 0;
    p.style_editor_path = st.style_editor_path;
    p.viewer_path = st.viewer_path;
    p.mossbit_path = st.mossbit_path;
    p.theme_editor_path = st.theme_editor_path;
    p.dictionary_path = st.dictionary_path;
    return p;
}

PrefOutcome pref_apply(Preferences& p, AppSettings& st, platform::Prompt& ui) {
    PrefOutcome out;
    if (p.label_font_size <= 5 || p.label_font_size >= 30) {
        ui.message("Font >5 & <30");
        return out;
    }
    if (p.editor_text_size < 8 || p.editor_text_size > 16) {
        ui.message("Editor Text Size between 8-16");
        return out;
    }
    if (p.default_point_size < 1 || p.default_point_size > 64) {
        ui.message("Default size: 1 / 64");
        return out;
    }
    // Paths are checked when the user changed them, so that a default that
    // was never installed (the theme editor under D) does not block Apply.
    const auto missing = [](const std::string& path, const std::string& before) {
        return path != before && !path.empty() && !platform::file_exists(path);
    };
    if (missing(p.auto_load_path, st.auto_load_path)) {
        ui.message("Check auto load software");
        p.auto_load_path.clear();
    }
    const std::pair<const std::string*, const std::string*> software[] = {
        {&p.style_editor_path, &st.style_editor_path}, {&p.viewer_path, &st.viewer_path},
        {&p.mossbit_path, &st.mossbit_path},           {&p.theme_editor_path, &st.theme_editor_path},
        {&p.dictionary_path, &st.dictionary_path}};
    for (const auto& [path, before] : software) {
        if (missing(*path, *before)) {
            ui.message("Can't locate " + *path);
            return out;
        }
    }

    out.applied = true;
    out.font_changed = p.label_font != st.label_font || p.label_font_size != st.label_font_size;
    out.transparency_changed = p.magenta_transparency != st.magenta_transparency;
    if (p.show_garmin_types != st.show_garmin_types) {
        ui.message("Please reload TYP file");
        out.reload_asked = true;
    }

    st.langsel = p.langsel;
    st.langname = p.langname;
    st.lang_default = p.lang_default;
    st.label_options = p.label_options;
    st.label_font = p.label_font;
    st.label_font_size = p.label_font_size;
    st.editor_text_font = p.editor_text_font.empty() ? "Courier" : p.editor_text_font;
    p.editor_text_font = st.editor_text_font;
    st.editor_text_size = p.editor_text_size;
    st.lock_font = p.lock_font;

    st.background = p.background;
    st.custom_icon_size = std::clamp(p.custom_icon_scroll + k_custom_scroll_offset, k_custom_min, k_custom_max);
    st.magenta_transparency = p.magenta_transparency;
    st.palette16 = p.palette16;
    st.show_font_colors = p.show_font_colors;
    st.nolabel_grey = p.nolabel_grey;
    st.click_shades = p.click_shades;
    st.filter_selected_colour = p.filter_selected_colour;
    st.icon_colour1 = p.icon_colour1;
    st.icon_colour2 = p.icon_colour2;

    st.point_seed = typed_seed(p.point_seed);
    st.polygon_seed = typed_seed(p.polygon_seed);
    st.line_seed = typed_seed(p.line_seed);
    st.max_canvas_poi = p.max_canvas_poi;
    st.default_point_size = p.default_point_size;
    st.show_garmin_types = p.show_garmin_types;
    st.show_offsets = p.show_offsets;
    st.extra_hex = p.extra_hex;
    st.extra_hex2 = p.extra_hex;
    st.trim_poi_colours = p.trim_poi_colours;
    st.half_day_night = p.half_day_night;
    st.no_duplicate_check = p.auto_check_duplicates ? 0 : 1;

    st.scroll_sensitivity = std::clamp(p.scroll_sensitivity, 1, 100);
    p.scroll_sensitivity = st.scroll_sensitivity;
    st.mouse_scroll = p.mouse_scroll;
    st.region = p.region.empty() ? "0" : p.region;
    st.logs_on = p.logs_on;
    st.daily_log = p.daily_log;
    st.check_updates = p.check_updates;
    st.check_updates2 = p.check_updates;
    st.unused_colour_check = p.unused_colour_check;
    st.dblclick_edit_text = p.dblclick_edit_text;
    st.show_errors = p.show_errors;
    st.ask_reload_undo = p.ask_reload_undo;
    st.history_limit = std::clamp(p.history_limit, 1, k_undo_steps_max);
    p.history_limit = st.history_limit;
    st.create_copy_topo = p.create_copy_topo;
    st.remember_window = p.remember_window;
    st.show_not_in_style = p.show_not_in_style;

    st.auto_load_path = p.auto_load_path;
    st.use_as_current_typ = p.use_as_current_typ;
    st.style_editor_path = p.style_editor_path;
    st.viewer_path = p.viewer_path;
    st.mossbit_path = p.mossbit_path;
    st.theme_editor_path = p.theme_editor_path;
    st.dictionary_path = p.dictionary_path;
    return out;
}

int32_t transparent_colour(bool magenta) { return magenta ? k_magenta : k_light_grey; }

}  // namespace korvex::workbench
