// Reading and writing 6.dat, its place on disk and the reset.
#include "workbench/settings_file.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <limits>
#include <system_error>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/native_path.h"
#include "workbench/browser.h"

namespace korvex::workbench {
namespace {

// Languages the preferred-language list holds, 0x00 to 0x2e.
constexpr int k_language_count = 47;
constexpr int64_t k_min_width = 8400, k_min_height = 6900;
constexpr int64_t k_panel_min = 500;
constexpr const char* k_flags17 = "11111111111111111";

std::string_view trim_view(std::string_view t) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!t.empty() && blank(t.front())) t.remove_prefix(1);
    while (!t.empty() && blank(t.back())) t.remove_suffix(1);
    return t;
}

bool hex_digits_only(std::string_view t) {
    if (t.empty()) return false;
    for (char c : t)
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))) return false;
    return true;
}

// Walks the lines of the text in order; once the text ends, every value
// keeps the one it had.
class LineReader {
public:
    explicit LineReader(std::string_view text) : rest_(text) {}

    // The next line with surrounding blanks removed; nothing at the end.
    bool next(std::string_view& line) {
        if (done_) return false;
        const size_t lf = rest_.find('\n');
        line = trim_view(rest_.substr(0, lf));
        if (lf == std::string_view::npos) {
            done_ = true;
            if (rest_.empty()) return false;  // a final line end is no line
        } else {
            rest_.remove_prefix(lf + 1);
        }
        return true;
    }
    void skip() {
        std::string_view ignored;
        next(ignored);
    }
    // A string: an empty line keeps v.
    bool str(std::string& v) {
        std::string_view line;
        if (!next(line)) return false;
        if (line.empty()) return false;
        v.assign(line);
        return true;
    }
    // A number in plain decimal; an empty or unreadable line keeps v.
    bool number(double& v) {
        std::string_view line;
        if (!next(line) || line.empty()) return false;
        if (line.front() == '+') line.remove_prefix(1);
        double d = 0;
        const auto r = std::from_chars(line.data(), line.data() + line.size(), d);
        if (r.ec != std::errc() || !std::isfinite(d)) return false;
        v = d;
        return true;
    }
    template <typename Int>
    bool integer(Int& v) {
        double d = 0;
        if (!number(d)) return false;
        const double r = std::round(d);
        // Beyond the type's range is as unreadable as text.
        const double low = static_cast<double>(std::numeric_limits<Int>::min());  // -2^(bits-1), exact
        if (r < low || r >= -low) return false;
        v = static_cast<Int>(r);
        return true;
    }
    // A flag: read as a number, on when test says so.
    bool flag(bool& v, bool only_one) {
        int64_t n = 0;
        if (!integer(n)) return false;
        v = only_one ? n == 1 : n != 0;
        return true;
    }

private:
    std::string_view rest_;
    bool done_ = false;
};

void font_must_exist(std::string& name, const std::string& fallback, const platform::FontList* fonts) {
    if (fonts && !name.empty() && !fonts->has(name)) name = fallback;
}

// Writes lines in file order.
class LineWriter {
public:
    // A line break inside a value would shift every later line.
    void str(std::string v) {
        for (char& c : v)
            if (c == '\r' || c == '\n') c = ' ';
        line(v.empty() ? std::string(" ") : v);
    }
    void integer(int64_t v) { line(std::to_string(v)); }
    void flag(bool v) { line(v ? "1" : "0"); }
    void number(double v) {
        char buf[64];
        const auto r = std::to_chars(buf, buf + sizeof buf, v);
        line(std::string(buf, r.ptr));
    }
    std::string text;

private:
    void line(const std::string& v) {
        text += v;
        text += "\r\n";
    }
};

}  // namespace

AppSettings default_settings(const std::string& d) {
    AppSettings st;
    st.dictionary_path = platform::join_path(platform::join_path(d, "dictionaries"), "EN.dic");
    st.theme_editor_path = platform::join_path(platform::join_path(d, "themes"), "theme_editor.exe");
    return st;
}

AppSettings read_settings(std::string_view text, const AppSettings& base, const platform::FontList* fonts,
                          std::vector<std::string>* notes) {
    AppSettings st = base;
    st.flags17 = k_flags17;
    LineReader in(text);

    in.skip();  // 1: version mark
    for (std::string& entry : st.recent) {
        // A blank line hides the entry; a short file keeps the rest.
        std::string_view line;
        if (in.next(line)) entry.assign(line);
    }
    if (in.integer(st.hdr_default) && st.hdr_default < 91) st.hdr_default = 110;
    in.str(st.last_program_folder);
    in.str(st.last_picture_folder);
    in.str(st.last_typ_path);
    in.integer(st.class_in_view);
    if (st.class_in_view < 0 || st.class_in_view > 4) st.class_in_view = base.class_in_view;
    in.skip();  // 19: reserved
    in.integer(st.spare20);
    if (in.str(st.editor_font)) font_must_exist(st.editor_font, base.editor_font, fonts);
    in.integer(st.editor_text_option);
    in.str(st.spare23);
    in.str(st.style_editor_path);
    if (in.integer(st.langsel) && (st.langsel >= k_language_count || st.langsel < 0)) {
        if (notes) notes->push_back("Load Langsel=" + std::to_string(st.langsel));
        st.langsel = 0;
        st.langname = "unspecified";
    }
    if (in.integer(st.label_options) && (st.label_options < 0 || st.label_options > 2)) st.label_options = 0;
    if (in.integer(st.label_font_size) && (st.label_font_size < 6 || st.label_font_size > 99))
        st.label_font_size = 8;
    if (in.str(st.label_font)) font_must_exist(st.label_font, "Arial", fonts);
    in.skip();  // 29: "WWW"
    in.str(st.codepage_text);
    if (in.number(st.background) && st.background < 100) st.background = k_white;
    in.integer(st.icon_size);
    in.integer(st.editor_grid_colour);
    in.skip();  // 34: reserved
    if (in.integer(st.default_point_size) && st.default_point_size != 1 && st.default_point_size != 64)
        st.default_point_size = 32;
    if (in.integer(st.mode36) && st.mode36 > 0) st.mode36 = 0;
    in.str(st.point_seed);
    in.str(st.language_file);
    in.flag(st.editor_grid, true);
    in.str(st.flags17);
    in.integer(st.editor_grid_value);
    // The seeds: an empty line or one that is not hexadecimal becomes "1".
    for (std::string* seed : {&st.polygon_seed, &st.line_seed}) {
        std::string_view line;
        if (!in.next(line)) break;
        *seed = hex_digits_only(line) ? std::string(line) : "1";
    }
    in.flag(st.show_font_colors, false);
    in.integer(st.editor_zoom);
    in.skip();  // 46: copy of 44
    in.skip();  // 47: blank
    in.str(st.flags8);
    for (int& size : st.bitmap_sizes) in.integer(size);
    in.integer(st.palette_box1);
    in.integer(st.palette_box2);
    in.integer(st.window_mode);
    in.skip();  // 64: "1"
    if (in.integer(st.custom_icon_size))
        st.custom_icon_size = std::clamp(st.custom_icon_size, k_custom_min, k_custom_max);
    in.integer(st.show_errors);
    in.str(st.font_day_colour);
    in.str(st.font_night_colour);
    in.str(st.auto_load_path);
    in.integer(st.create_copy_topo);
    in.integer(st.window_width);
    in.integer(st.window_height);
    in.flag(st.logs_on, false);
    in.flag(st.daily_log, false);
    in.str(st.viewer_path);
    if (in.integer(st.extra_page_size) && st.extra_page_size < 10) st.extra_page_size = 10;
    in.integer(st.window_left);
    in.integer(st.window_top);
    in.skip();  // 79-81: zero
    in.skip();
    in.skip();
    in.str(st.region);
    in.flag(st.check_updates, true);
    in.flag(st.check_updates2, true);
    in.flag(st.palette16, false);
    in.integer(st.dblclick_edit_text);
    int64_t split = 0;
    if (in.integer(split) && split > k_panel_min) st.split_pos = split;
    in.integer(st.draworder_view);
    in.flag(st.magenta_transparency, false);
    if (in.integer(st.scroll_sensitivity)) st.scroll_sensitivity = std::clamp(st.scroll_sensitivity, 1, 100);
    in.integer(st.no_duplicate_check);
    in.integer(st.extra_hex);
    in.integer(st.extra_hex2);
    in.flag(st.show_offsets, false);
    in.integer(st.polygon_draworder_text);
    in.integer(st.mouse_scroll);
    in.integer(st.unused_colour_check);
    in.integer(st.lang_default);
    {
        std::string_view line;
        if (in.next(line)) {
            if (line.size() < 3) {
                st.langname = "unspecified";
                st.langsel = 0;
            } else {
                st.langname.assign(line);
            }
        }
    }
    if (in.integer(st.editor_text_size) && (st.editor_text_size < 6 || st.editor_text_size >= 29))
        st.editor_text_size = 10;
    in.str(st.editor_text_font);
    in.integer(st.lock_font);
    in.str(st.dictionary_path);
    in.integer(st.palette64);
    in.integer(st.palette256);
    in.integer(st.spare106);
    in.str(st.last_palette);
    in.integer(st.editor_opacity);
    in.integer(st.use_as_current_typ);
    in.integer(st.icon_colour1);
    in.integer(st.icon_colour2);
    in.str(st.spare112);
    in.str(st.mossbit_path);
    in.integer(st.show_not_in_style);
    in.flag(st.remember_window, false);
    in.str(st.theme_editor_path);
    in.flag(st.nolabel_grey, false);
    in.flag(st.click_shades, false);
    in.flag(st.filter_selected_colour, false);
    in.integer(st.editor_state);
    in.integer(st.theme_colour);
    in.integer(st.theme_text_colour);
    if (in.integer(st.max_canvas_poi) && st.max_canvas_poi < 12) st.max_canvas_poi = 64;
    in.integer(st.trim_poi_colours);
    in.integer(st.half_day_night);
    in.str(st.last_text_path);
    int64_t panel = 0;
    if (in.integer(panel) && panel > k_panel_min) st.panel_width = panel;
    in.flag(st.show_garmin_types, false);
    in.flag(st.ask_reload_undo, false);
    if (in.integer(st.history_limit) && (st.history_limit < 1 || st.history_limit > k_undo_steps_max))
        st.history_limit = k_undo_steps_default;

    // After the last line, whatever the length of the file.
    st.window_width = std::max(st.window_width, k_min_width);
    st.window_height = std::max(st.window_height, k_min_height);
    return st;
}

std::string write_settings(const AppSettings& st) {
    LineWriter out;
    out.str(KORVEX_VERSION);
    for (const std::string& entry : st.recent) out.str(entry);
    out.integer(st.hdr_default);
    out.str(st.last_program_folder);
    out.str(st.last_picture_folder);
    out.str(st.last_typ_path);
    out.integer(st.class_in_view);
    out.integer(0);
    out.integer(st.spare20);
    out.str(st.editor_font);
    out.integer(st.editor_text_option);
    out.str(st.spare23);
    out.str(st.style_editor_path);
    out.integer(st.langsel);
    out.integer(st.label_options);
    out.integer(st.label_font_size);
    out.str(st.label_font);
    out.str("WWW");
    // The codepage box shows "1252 West European"; the file keeps the number.
    const std::string_view cp = trim_view(st.codepage_text);
    const size_t digits = cp.find_first_not_of("0123456789");
    out.str(std::string(digits == 0 ? cp : cp.substr(0, digits)));
    out.number(st.background);
    out.integer(st.icon_size);
    out.integer(st.editor_grid_colour);
    out.integer(0);
    out.integer(st.default_point_size);
    out.integer(st.mode36);
    out.str(st.point_seed);
    out.str(st.language_file);
    out.flag(st.editor_grid);
    out.str(st.flags17);
    out.integer(st.editor_grid_value);
    out.str(st.polygon_seed);
    out.str(st.line_seed);
    out.flag(st.show_font_colors);
    out.integer(st.editor_zoom);
    out.flag(st.show_font_colors);
    out.str("");
    out.str(st.flags8);
    for (int size : st.bitmap_sizes) out.integer(size);
    out.integer(st.palette_box1);
    out.integer(st.palette_box2);
    out.integer(st.window_mode);
    out.str("1");
    out.integer(st.custom_icon_size);
    out.integer(st.show_errors);
    out.str(st.font_day_colour);
    out.str(st.font_night_colour);
    out.str(st.auto_load_path);
    out.integer(st.create_copy_topo);
    out.integer(st.window_width);
    out.integer(st.window_height);
    out.flag(st.logs_on);
    out.flag(st.daily_log);
    out.str(st.viewer_path);
    out.integer(st.extra_page_size == 0 ? 10 : st.extra_page_size);
    out.integer(st.window_left);
    out.integer(st.window_top);
    out.integer(0);
    out.integer(0);
    out.integer(0);
    out.str(st.region);
    out.flag(st.check_updates);
    out.flag(st.check_updates2);
    out.flag(st.palette16);
    out.integer(st.dblclick_edit_text);
    out.integer(st.split_pos);
    out.integer(st.draworder_view);
    out.flag(st.magenta_transparency);
    out.integer(st.scroll_sensitivity);
    out.integer(st.no_duplicate_check);
    out.integer(st.extra_hex);
    out.integer(st.extra_hex2);
    out.flag(st.show_offsets);
    out.integer(st.polygon_draworder_text);
    out.integer(st.mouse_scroll);
    out.integer(st.unused_colour_check);
    out.integer(st.lang_default);
    out.str(st.langname);
    out.integer(st.editor_text_size);
    out.str(st.editor_text_font);
    out.integer(st.lock_font);
    out.str(st.dictionary_path);
    out.integer(st.palette64);
    out.integer(st.palette256);
    out.integer(st.spare106);
    out.str(st.last_palette);
    out.integer(st.editor_opacity);
    out.integer(st.use_as_current_typ);
    out.integer(st.icon_colour1);
    out.integer(st.icon_colour2);
    out.str(st.spare112);
    out.str(st.mossbit_path);
    out.integer(st.show_not_in_style);
    out.flag(st.remember_window);
    out.str(st.theme_editor_path);
    out.flag(st.nolabel_grey);
    out.flag(st.click_shades);
    out.flag(st.filter_selected_colour);
    out.integer(st.editor_state);
    out.integer(st.theme_colour);
    out.integer(st.theme_text_colour);
    out.integer(st.max_canvas_poi);
    out.integer(st.trim_poi_colours);
    out.integer(st.half_day_night);
    out.str(st.last_text_path);
    out.integer(st.panel_width);
    out.flag(st.show_garmin_types);
    out.flag(st.ask_reload_undo);
    out.integer(st.history_limit);
    return out.text;
}

std::string settings_path(const std::string& d, const std::string& program_folder) {
    if (!d.empty() && platform::file_exists(platform::join_path(d, "flg"))) return platform::join_path(d, "6.dat");
    return platform::join_path(program_folder, "6.dat");
}

bool loaddata(const std::string& path, AppSettings& st, const platform::FontList* fonts,
              std::vector<std::string>* notes) {
    const auto text = platform::read_file(path);
    if (!text) return false;
    st = read_settings(*text, st, fonts, notes);
    if (!st.language_file.empty() && !platform::file_exists(st.language_file)) st.language_file.clear();
    return true;
}

bool savedata(const std::string& path, const AppSettings& st, bool reset_done,
              const integration::Messages& msgs, platform::Prompt& ui, platform::FileSystem& fs) {
    if (reset_done) return true;
    std::string error;
    if (platform::write_file_atomic(path, write_settings(st), &error, fs)) return true;
    ui.message(msgs.get_msg(238) + "\r\n\r\n" + msgs.get_msg(239) + "\r\n\r\n" + path + ": " + error);
    return false;
}

bool mreset(const std::string& path, bool& reset_done, const integration::Messages& msgs,
            platform::Prompt& ui) {
    if (!ui.yes_no(msgs.get_msg(171))) return false;
    const std::string old = path + "old";
    if (platform::file_exists(path)) {
        std::error_code ec;
        std::filesystem::copy_file(platform::native_path(path), platform::native_path(old),
                                   std::filesystem::copy_options::overwrite_existing, ec);
        if (ec) {
            ui.message(msgs.get_msg(238) + "\r\n\r\n" + path + ": " + ec.message());
            return false;
        }
        std::filesystem::remove(platform::native_path(path), ec);
    }
    reset_done = true;
    ui.message("You must exit and restart.\r\n\r\nPrevious settings have been saved as:\r\n" + old);
    return true;
}

void settings_to_store(const AppSettings& st, model::Store& s) {
    s.opt.langid = st.langsel;
    s.opt.langname = st.langname;
    s.opt.show_offsets = st.show_offsets;
    s.opt.show_garmin_types = st.show_garmin_types;
    s.opt.hdr_def = st.hdr_default;
    s.opt.strorder = st.lang_default != 0;
    s.opt.ask_reload_undo = st.ask_reload_undo;
    int page = 0;
    const std::string_view cp = trim_view(st.codepage_text);
    const auto r = std::from_chars(cp.data(), cp.data() + cp.size(), page);
    if (r.ec == std::errc() && page > 0) s.opt.list_codepage = page;
}

}  // namespace korvex::workbench
