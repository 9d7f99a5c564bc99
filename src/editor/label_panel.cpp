#include "editor/label_panel.h"

#include <algorithm>
#include <cctype>

#include "editor/ascii_case.h"
#include "editor/canvas.h"
#include "editor/palette_file.h"
#include "editor/point_pictures.h"
#include "platform/codepage.h"

namespace korvex::editor {

namespace {

std::string trim(std::string t) {
    while (!t.empty() && (t.back() == ' ' || t.back() == '\t' || t.back() == '\r')) t.pop_back();
    size_t p = 0;
    while (p < t.size() && (t[p] == ' ' || t[p] == '\t')) ++p;
    return t.substr(p);
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> out;
    size_t p = 0;
    while (p < text.size()) {
        size_t e = text.find('\n', p);
        if (e == std::string::npos) e = text.size();
        std::string l = text.substr(p, e - p);
        if (!l.empty() && l.back() == '\r') l.pop_back();
        out.push_back(std::move(l));
        p = e + 1;
    }
    return out;
}

// The colour behind "#" of a custom colour line, red low; false when none.
bool line_colour(const std::string& line, uint32_t& colour) {
    const size_t hash = line.find('#');
    if (hash == std::string::npos) return false;
    std::string digits;
    for (size_t i = hash + 1; i < line.size() && digits.size() < 6 && std::isxdigit(static_cast<unsigned char>(line[i])); ++i)
        digits += line[i];
    return from_hex(digits, colour);
}

}  // namespace

const std::vector<std::string>& font_styles() {
    static const std::vector<std::string> styles{"Default", "Nolabel", "SmallFont", "Normal", "Large"};
    return styles;
}

int font_style_index(const std::string& text) {
    const std::string low = lower(trim(text));
    for (size_t i = 0; i < font_styles().size(); ++i)
        if (lower(font_styles()[i]) == low) return static_cast<int>(i);
    return -1;
}

std::string fncombo3(const std::string& text) {
    const int i = font_style_index(text);
    return font_styles()[static_cast<size_t>(std::max(i, 0))];
}

int fndlang(const std::string& text) {
    const std::string low = lower(text);
    const size_t p = low.find("0x");
    if (p == std::string::npos || p + 3 >= low.size() + 1) return -1;
    int v = 0, n = 0;
    for (size_t i = p + 2; i < low.size() && n < 2 && std::isxdigit(static_cast<unsigned char>(low[i])); ++i, ++n)
        v = v * 16 + (std::isdigit(static_cast<unsigned char>(low[i])) ? low[i] - '0' : low[i] - 'a' + 10);
    return n == 0 ? -1 : v;
}

int language_codepage(int language, int file_codepage) {
    if (file_codepage == 65001) return 65001;
    switch (language) {
    case 0: return file_codepage;
    case 22: return 1254;
    case 23: return 1253;
    case 25: case 27: case 28: case 42: case 43: return 1251;
    case 26: case 31: return 1257;
    case 36: return 949;
    case 37: return 932;
    case 38: return 936;
    case 39: return 950;
    case 40: return 874;
    case 41: return 1256;
    default: break;
    }
    return language >= 17 && language <= 32 ? 1250 : 1252;
}

uint32_t chktxt4(const std::string& hex) {
    std::string digits = hex;
    if (digits.size() < 6) digits.insert(0, 6 - digits.size(), '0');
    uint32_t c = 0;
    if (!from_hex(digits.substr(0, 6), c)) return 0;
    const double b = red_of(c) * 0.2126 + green_of(c) * 0.7152 + blue_of(c) * 0.0722;
    return b < 129 ? 0xFFFFFF : 0;
}

LabelState read_labels(const std::string& element_text) {
    LabelState l;
    for (const std::string& raw : lines_of(element_text)) {
        const std::string line = trim(raw);
        const std::string low = lower(line);
        if (low.rfind("string", 0) == 0) {
            const size_t eq = line.find('=');
            if (eq == std::string::npos) continue;
            LabelSlot slot;
            slot.number = std::atoi(line.substr(6, eq - 6).c_str());
            const std::string value = line.substr(eq + 1);
            const size_t comma = value.find(',');
            slot.language = std::max(fndlang(value.substr(0, comma)), 0);
            slot.text = comma == std::string::npos ? std::string() : value.substr(comma + 1);
            l.labels.push_back(std::move(slot));
        } else if (low.rfind("extendedlabels=", 0) == 0) {
            l.extendedlabels = low.size() > 15 && low[15] == 'y';
        } else if (low.rfind("fontstyle=", 0) == 0) {
            l.fontstyle = line.substr(10);
            l.fontstyle_index = font_style_index(l.fontstyle);
            if (l.fontstyle_index < 0) l.fontstyle_index = 5;
        } else if (low.rfind("daycustomcolor", 0) == 0) {
            l.has_day = line_colour(line, l.daylabelcolour);
        } else if (low.rfind("nightcustomcolor", 0) == 0) {
            l.has_night = line_colour(line, l.nightlabelcolour);
        }
    }
    l.fontcolours = l.has_day || l.has_night;
    return l;
}

std::string string_lines(const LabelState& l) {
    std::string out;
    int number = 0;
    static const char* hex = "0123456789abcdef";
    for (const LabelSlot& slot : l.labels) {
        ++number;
        const int lang = std::clamp(slot.language, 0, 255);
        out += "String" + std::to_string(number) + "=0x" + hex[lang >> 4] + hex[lang & 15] + "," + slot.text + "\r\n";
    }
    return out;
}

std::string font_lines(const LabelState& l, bool line_class) {
    if (!l.extendedlabels) return line_class ? "ExtendedLabels=N\r\n" : "";
    std::string out = "ExtendedLabels=Y\r\n";
    if (l.fontstyle_index == 5)
        out += "FontStyle=" + l.fontstyle + "\r\n";
    else
        out += "FontStyle=" + font_styles()[static_cast<size_t>(std::clamp(l.fontstyle_index, 0, 4))] + "\r\n";
    if (l.fontcolours) {
        out += "CustomColor=DayAndNight\r\n";
        out += "DaycustomColor:#" + hex6(l.daylabelcolour) + "\r\n";
        out += "NightcustomColor:#" + hex6(l.nightlabelcolour) + "\r\n";
    }
    return out;
}

std::string slot_to_box(const std::string& stored) {
    std::string t = stored;
    if (t.find('|') != std::string::npos) {
        std::string out;
        for (char c : t) {
            if (c == '|')
                out += "\r\n";
            else
                out += c;
        }
        return out;
    }
    if (t.size() > 33) {
        // The first blank from position 27 (counting from 1), if before 34.
        size_t cut = 30;  // position 31
        const size_t blank = t.find(' ', 26);
        if (blank != std::string::npos && blank < 33) cut = blank;
        std::string rest = t.substr(cut);
        if (!rest.empty() && rest[0] == ' ') rest.erase(0, 1);
        return t.substr(0, cut) + "\r\n" + rest;
    }
    return t;
}

std::string box_to_slot(const std::string& box) {
    std::string out;
    for (size_t i = 0; i < box.size(); ++i) {
        if (box[i] == '\r' && i + 1 < box.size() && box[i + 1] == '\n') {
            out += '|';
            ++i;
        } else if (box[i] == '\n' || box[i] == '\r') {
            out += '|';
        } else {
            out += box[i];
        }
    }
    return out;
}

void store_label(EditorSession& e, const std::string& shown_box) {
    LabelState& l = e.labels;
    if (e.labelchanged && l.curlang >= 0 && static_cast<size_t>(l.curlang) < l.labels.size())
        l.labels[static_cast<size_t>(l.curlang)].text = box_to_slot(shown_box);
}

std::string choose_language(EditorSession& e, int slot, const std::string& shown_box) {
    LabelState& l = e.labels;
    store_label(e, shown_box);
    e.labelchanged = false;
    if (slot < 0 || static_cast<size_t>(slot) >= l.labels.size()) return {};
    l.curlang = slot;
    return slot_to_box(l.labels[static_cast<size_t>(slot)].text);
}

bool set_font_colours(EditorSession& e, bool on, platform::Prompt& ui) {
    if (on && !e.labels.extendedlabels) {
        ui.message("Font colours require the extended option ticked.");
        return false;
    }
    if (on != e.labels.fontcolours) e.changes1 |= ch_font_colours;
    e.labels.fontcolours = on;
    return on;
}

bool set_label_colour(EditorSession& e, bool night, bool panel_open, std::optional<uint32_t> chooser_pick,
                      const std::function<int64_t(uint32_t)>& dialog) {
    if (panel_open) return false;
    uint32_t& c = night ? e.labels.nightlabelcolour : e.labels.daylabelcolour;
    const int64_t picked = chooser_pick ? static_cast<int64_t>(*chooser_pick) : dialog ? dialog(c) : -1;
    if (picked < 0) return false;
    c = static_cast<uint32_t>(picked);
    e.eddirty = true;
    e.changes1 |= ch_font_colours;
    return true;
}

void set_extended_labels(EditorSession& e, bool on) {
    if (on == e.labels.extendedlabels) return;
    e.labels.extendedlabels = on;
    e.changes1 |= ch_font;
    if (!on) {
        e.labels.fontstyle_index = 0;
        e.labels.fontcolours = false;
    }
}

bool mut8(const std::string& clipboard_utf8, int file_codepage, int language, const std::string& language_name,
          platform::Prompt& ui, std::string& bytes) {
    std::string text = clipboard_utf8;
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.pop_back();
    size_t p = 0;
    while (p < text.size() && std::isspace(static_cast<unsigned char>(text[p]))) ++p;
    text.erase(0, p);
    if (text.empty()) {
        ui.message("No text to paste");
        return false;
    }
    if (file_codepage >= 65001) {
        bytes = text;
        return true;
    }
    bytes = platform::recode(text, 65001, language_codepage(language, file_codepage));
    if (bytes.find("??") != std::string::npos)
        ui.message(" Clipboard Text does not match language?\r\nChange " + language_name);
    return true;
}

namespace {

// The entry a new margin takes: in opacity mode the first of level 15, else
// the first transparent one; -1 for none.
int margin_entry(const EditorSession& e) {
    if (!e.alpha) return e.palette.first_transparent(e.transparentcolour) - 1;
    for (int entry = 1; entry <= e.ncols(); ++entry)
        if (level_of(e.palette, entry, e.transparentcolour) == 15) return entry - 1;
    return -1;
}

// A point's night picture would keep the old size: the canvas tools refuse it.
bool has_night_bitmap(const EditorSession& e) { return is_point(e) && (e.has_night_bitmap || e.bmpmode != 0 || e.newbmp); }

void place(EditorSession& e, int w, int h, int at_x, int at_y, int fill) {
    PixelGrid grown(w, h, static_cast<uint8_t>(fill));
    // Every old pixel keeps its level; the margin is fully transparent.
    PixelGrid levels(w, h, static_cast<uint8_t>(e.alpha ? 15 : 0));
    for (int y = 0; y < e.height; ++y)
        for (int x = 0; x < e.width; ++x) {
            grown.set(at_x + x, at_y + y, e.pixels.at(x, y));
            levels.set(at_x + x, at_y + y, e.opacity.at(x, y));
        }
    e.width = w;
    e.height = h;
    e.width_box = w;
    e.height_box = h;
    e.pixels = std::move(grown);
    e.opacity = std::move(levels);
    e.surface = Raster(w, h);
    painticon(e);
    start_history(e);
    e.eddirty = true;
    e.changes1 |= ch_dimensions;
}

}  // namespace

bool adb(EditorSession& e, int margin, platform::Prompt& ui) {
    if (has_night_bitmap(e)) {
        ui.message("Deselect night bitmap.");
        return false;
    }
    const int t = margin_entry(e);
    if (t < 0) {
        ui.message("No transp. Please add a transparent color");
        return false;
    }
    const int w = e.width + 2 * margin, h = e.height + 2 * margin;
    if (w > 128 || h > 128) {
        ui.message("Too big> " + std::to_string(std::max(w, h)));
        return false;
    }
    if (margin <= 0) return false;
    place(e, w, h, margin, margin, t);
    return true;
}

bool adcvs(EditorSession& e, char side, platform::Prompt& ui) {
    if (has_night_bitmap(e)) {
        ui.message("Deselect night bitmap.");
        return false;
    }
    const int t = margin_entry(e);
    if (t < 0) {
        ui.message("Please add a transparent color");
        return false;
    }
    const bool across = side == 'L' || side == 'R';
    const int w = across ? 2 * e.width : e.width, h = across ? e.height : 2 * e.height;
    if (w > 128 || h > 128) {
        ui.message("Too big >");
        return false;
    }
    place(e, w, h, side == 'L' ? e.width : 0, side == 'U' ? e.height : 0, t);
    return true;
}

bool add_canvas(EditorSession& e, const std::string& answer, platform::Prompt& ui) {
    if (answer.size() > 1 && answer[0] == 'M') {
        for (size_t i = 1; i < answer.size(); ++i)
            if (!std::isdigit(static_cast<unsigned char>(answer[i]))) return false;
        return adb(e, std::atoi(answer.c_str() + 1), ui);
    }
    if (answer == "L" || answer == "R" || answer == "U" || answer == "D") return adcvs(e, answer[0], ui);
    return false;
}

}  // namespace korvex::editor
