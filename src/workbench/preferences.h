// The preferences dialog as plain values: the dialog edits a copy, Apply
// checks it and writes it into the settings, Cancel drops the copy.
#pragma once

#include <cstdint>
#include <string>

#include "platform/fonts.h"
#include "platform/prompt.h"
#include "workbench/settings_file.h"

namespace korvex::workbench {

// Offset between the custom-size scroll bar and the custom icon size.
constexpr int k_custom_scroll_offset = 110;

struct Preferences {
    // "Language / Font"
    int langsel = 0;                   // preferred label language index
    std::string langname;              // its list entry's name
    bool lang_default = false;         // "Set as Default"
    int label_options = 0;             // 0 "Type & Text", 1 "Text only", 2 "Type only"
    std::string label_font;
    int label_font_size = 8;
    std::string editor_text_font;
    int editor_text_size = 10;
    bool lock_font = false;

    // "Colours / Icons"
    double background = k_white;
    int custom_icon_scroll = 550;      // the scroll bar; the size is this + 110
    bool magenta_transparency = true;
    bool palette16 = true;
    bool show_font_colors = true;
    bool nolabel_grey = true;
    bool click_shades = true;
    bool filter_selected_colour = false;
    int64_t icon_colour1 = 0, icon_colour2 = 0;

    // "Elements"
    std::string point_seed;            // as shown: "060"
    std::string polygon_seed;          // as shown: "001"
    std::string line_seed;
    int max_canvas_poi = 64;
    int default_point_size = 32;
    bool show_garmin_types = false;
    bool show_offsets = true;
    bool extra_hex = false;
    bool trim_poi_colours = false;
    bool half_day_night = false;
    bool auto_check_duplicates = true;  // stored inverted in the settings

    // "Advanced"
    int scroll_sensitivity = 80;
    bool mouse_scroll = false;
    std::string region = "0";
    bool logs_on = false;
    bool daily_log = false;
    bool check_updates = false;
    bool unused_colour_check = false;
    bool dblclick_edit_text = false;
    bool show_errors = true;
    bool create_copy_topo = false;
    bool remember_window = true;
    bool show_not_in_style = false;
    bool ask_reload_undo = true;       // "Ask before changes that only Reload undoes"
    int history_limit = k_undo_steps_default;  // "Undo steps kept"

    // "Software / Auto TYP"
    std::string auto_load_path;
    bool use_as_current_typ = false;
    std::string style_editor_path;
    std::string viewer_path;           // Basecamp / Mapsource
    std::string mossbit_path;
    std::string theme_editor_path;
    std::string dictionary_path;       // Custom Spelling Dictionary
};

// What an Apply changed that the window must act on.
struct PrefOutcome {
    bool applied = false;        // false: a message was shown and nothing was written
    bool font_changed = false;   // label font or size: refresh the grid fonts
    bool reload_asked = false;   // "Please reload TYP file" was said
    bool transparency_changed = false;
};

// The dialog's values from the settings.
Preferences pref_from(const AppSettings& st);

// Checks p by the rules of the dialog and, when every check passes, writes
// it into st. A message goes through ui for each refusal; the first one
// ends the Apply. Paths are checked when they were changed: a software
// path that does not exist refuses the Apply ("Can't locate "), an auto-load
// path that does not exist is cleared in p ("Check auto load software")
// without stopping it.
PrefOutcome pref_apply(Preferences& p, AppSettings& st, platform::Prompt& ui);

// The colour that stands for transparency on screen, red in the low byte.
int32_t transparent_colour(bool magenta);

}  // namespace korvex::workbench
