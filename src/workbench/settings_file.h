// The settings file 6.dat: one value a line, the line number is the key.
// Every line has a field here, spares included, so that the positions of the
// others survive a read and a write by this program.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/file_system.h"
#include "platform/fonts.h"
#include "platform/prompt.h"

namespace korvex::workbench {

constexpr int k_settings_lines = 130;
constexpr int k_recent_entries = 12;
constexpr int64_t k_white = 0xFFFFFF;
// The steps the history keeps, unless the user chose another number.
constexpr int k_undo_steps_default = 200;
constexpr int k_undo_steps_max = 10000;

// The fields in file order; the comment gives the line.
struct AppSettings {
    // 1: the version mark "cvrs", written and skipped
    std::array<std::string, k_recent_entries> recent;  // 2-13: "" is a hidden entry
    int hdr_default = 91;                               // 14: default header byte
    std::string last_program_folder;                    // 15
    std::string last_picture_folder;                    // 16
    std::string last_typ_path;                          // 17
    int class_in_view = 2;                              // 18: 0 polygons .. 4 extra points
    // 19: reserved, written 0
    int spare20 = 0;                                    // 20
    std::string editor_font;                            // 21: "" when not installed
    int editor_text_option = 0;                         // 22
    std::string spare23;                                // 23
    std::string style_editor_path;                      // 24
    int langsel = 0;                                    // 25: preferred label language index
    int label_options = 0;                              // 26: 0 type & text, 1 text, 2 type
    int label_font_size = 8;                            // 27
    std::string label_font = "Arial";                   // 28
    // 29: the mark "WWW", written and skipped
    std::string codepage_text = "1252";                 // 30: the codepage list's number
    double background = k_white;                        // 31: grid background colour
    int icon_size = 2;                                  // 32: icon size index
    int64_t editor_grid_colour = 0;                     // 33
    // 34: reserved, written 0
    int default_point_size = 32;                        // 35: 1, 32 or 64
    int mode36 = 0;                                     // 36
    std::string point_seed = "060";                     // 37: new point numbers from
    std::string language_file;                          // 38: "" is English
    bool editor_grid = true;                            // 39
    std::string flags17 = "11111111111111111";          // 40
    int64_t editor_grid_value = 0;                      // 41
    std::string polygon_seed = "00100";                 // 42
    std::string line_seed = "00100";                    // 43
    bool show_font_colors = true;                       // 44 (46 is its copy)
    int editor_zoom = 1;                                // 45
    // 47: a blank, skipped
    std::string flags8 = "10000000";                    // 48
    std::array<int, 12> bitmap_sizes{32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32};  // 49-60
    int64_t palette_box1 = 0, palette_box2 = 0;         // 61, 62
    int window_mode = 0;                                // 63
    // 64: "1", skipped
    int custom_icon_size = 660;                         // 65: 250 .. 1500
    int show_errors = 1;                                // 66
    std::string font_day_colour, font_night_colour;     // 67, 68
    std::string auto_load_path;                         // 69
    int create_copy_topo = 0;                           // 70
    int64_t window_width = 14400, window_height = 10800;  // 71, 72: twips
    bool logs_on = false;                               // 73
    bool daily_log = false;                             // 74
    std::string viewer_path;                            // 75: the map viewer
    int extra_page_size = 10;                           // 76
    int64_t window_left = 0, window_top = 0;            // 77, 78
    // 79-81: zero, skipped
    std::string region = "0";                           // 82
    bool check_updates = false, check_updates2 = false;  // 83, 84
    bool palette16 = true;                              // 85
    int64_t dblclick_edit_text = 0;                     // 86
    int64_t split_pos = 0;                              // 87: taken above 500 only
    int64_t draworder_view = 0;                         // 88
    bool magenta_transparency = true;                   // 89
    int scroll_sensitivity = 80;                        // 90: 1 .. 100
    int64_t no_duplicate_check = 0;                     // 91: inverted "Auto check Draworder Duplicates"
    int64_t extra_hex = 0, extra_hex2 = 0;              // 92, 93
    bool show_offsets = true;                           // 94
    int64_t polygon_draworder_text = 0;                 // 95
    int64_t mouse_scroll = 0;                           // 96
    int unused_colour_check = 0;                        // 97
    int64_t lang_default = 0;                           // 98: preferred-language strings first
    std::string langname = "unspecified";               // 99
    int editor_text_size = 10;                          // 100
    std::string editor_text_font = "Courier";           // 101
    int64_t lock_font = 0;                              // 102
    std::string dictionary_path;                        // 103: set from D by default_settings
    int64_t palette64 = 0, palette256 = 0, spare106 = 0;  // 104-106
    std::string last_palette;                           // 107
    int64_t editor_opacity = 0;                         // 108
    int use_as_current_typ = 0;                         // 109
    int64_t icon_colour1 = 0, icon_colour2 = 0;         // 110, 111
    std::string spare112;                               // 112
    std::string mossbit_path;                           // 113
    int64_t show_not_in_style = 0;                      // 114
    bool remember_window = true;                        // 115
    std::string theme_editor_path;                      // 116: set from D by default_settings
    bool nolabel_grey = true;                           // 117
    bool click_shades = true;                           // 118
    bool filter_selected_colour = false;                // 119
    int64_t editor_state = 0;                           // 120
    int64_t theme_colour = 0, theme_text_colour = 0;    // 121, 122
    int max_canvas_poi = 64;                            // 123
    int64_t trim_poi_colours = 0;                       // 124
    int64_t half_day_night = 0;                         // 125
    std::string last_text_path;                         // 126
    int64_t panel_width = 0;                            // 127: taken above 500 only
    bool show_garmin_types = false;                     // 128
    bool ask_reload_undo = true;                        // 129: "Ask before changes that only Reload undoes"
    int history_limit = k_undo_steps_default;           // 130: "Undo steps kept", the most kept, 1 .. 10000
};

// The defaults with the paths that depend on the data folder d.
AppSettings default_settings(const std::string& d);

// Reads a 6.dat text over the values in base (the defaults): lines in order,
// each limit applied as the line is read; a short text ends the read and the
// fields not reached keep their values. Font names are checked against fonts
// when given. Notes of the read ("Load Langsel=47") go to notes. Any bytes
// are safe here.
AppSettings read_settings(std::string_view text, const AppSettings& base,
                          const platform::FontList* fonts = nullptr,
                          std::vector<std::string>* notes = nullptr);

// The 6.dat text: every line in order, CR LF, numbers in plain decimal,
// booleans 1 or 0, an empty string as one blank.
std::string write_settings(const AppSettings& st);

// Where 6.dat lives: D/6.dat when the marker D/flg exists, else 6.dat in
// the program's folder.
std::string settings_path(const std::string& d, const std::string& program_folder);

// Reads the file at path over st (its defaults); false when there is none,
// and st stays. A language file path that no longer exists is cleared.
bool loaddata(const std::string& path, AppSettings& st, const platform::FontList* fonts = nullptr,
              std::vector<std::string>* notes = nullptr);

// Writes st to path, unless reset_done (a reset is waiting for the restart).
// A failure says messages 238 and 239 through ui; returns false then.
bool savedata(const std::string& path, const AppSettings& st, bool reset_done,
              const integration::Messages& msgs, platform::Prompt& ui,
              platform::FileSystem& fs = platform::real_file_system());

// Reset All Values: asks "Are you sure?"; then copies 6.dat to the same name
// with "old" added, deletes it, sets reset_done and tells where the old
// settings went. False when the user said no.
bool mreset(const std::string& path, bool& reset_done, const integration::Messages& msgs,
            platform::Prompt& ui);

// Copies the settings the codecs consult into the store (label language,
// text options, header byte, codepage list entry).
void settings_to_store(const AppSettings& st, model::Store& s);

}  // namespace korvex::workbench
