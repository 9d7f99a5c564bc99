#include "editor/editor_apply.h"

#include <algorithm>
#include <cctype>

#include "editor/canvas.h"
#include "editor/element_open.h"
#include "editor/element_text.h"
#include "editor/label_panel.h"
#include "editor/palette_edit.h"
#include "text/point_reader.h"
#include "text/polygon_line_reader.h"
#include "text/text_writer.h"
#include "typ/draw_order.h"
#include "workbench/sort_rows.h"
#include "workbench/type_range.h"

namespace korvex::editor {

namespace {

std::string upper_trim(std::string t) {
    while (!t.empty() && std::isspace(static_cast<unsigned char>(t.back()))) t.pop_back();
    size_t p = 0;
    while (p < t.size() && std::isspace(static_cast<unsigned char>(t[p]))) ++p;
    t.erase(0, p);
    std::transform(t.begin(), t.end(), t.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return t;
}

long hex_value(const std::string& t) {
    if (t.empty() || t.size() > 7) return -1;
    for (char c : t)
        if (!std::isxdigit(static_cast<unsigned char>(c))) return -1;
    return std::strtol(t.c_str(), nullptr, 16);
}

// type << 8 | subtype of a code text, -1 when unreadable.
long code_value(const std::string& code) {
    std::string type, sub;
    split_type(code, type, sub);
    const long t = hex_value(type), st = hex_value(sub);
    return t < 0 || st < 0 ? -1 : t << 8 | st;
}

int32_t local_row(const model::Store& s, int cls, int32_t row) {
    if (cls == model::k_active_lines) return row - s.ln_n;
    if (cls == model::k_extra_points) return row - s.pt_n;
    return row;
}

// Another element of the class has the code.
bool type_exists(const model::Store& s, int cls, int32_t self, long value) {
    if (cls == model::k_polygons) {
        for (int32_t i = 0; i < s.pg_n; ++i)
            if (i != self && code_value(s.pg_typ[static_cast<size_t>(i)]) == value) return true;
    } else if (cls == model::k_lines || cls == model::k_active_lines) {
        const int32_t from = cls == model::k_lines ? 0 : s.ln_n;
        const int32_t to = cls == model::k_lines ? s.ln_n : s.ln_n + s.ln_nact;
        for (int32_t i = from; i < to; ++i)
            if (i != self && s.ln_code[static_cast<size_t>(i)] == value) return true;
    } else if (cls == model::k_points) {
        for (int32_t i = 0; i < s.pt_n; ++i)
            if (i != self && code_value(s.pt_typ[static_cast<size_t>(i)]) == value) return true;
    }
    return false;
}

bool labels_differ(const LabelState& a, const LabelState& b) {
    if (a.labels.size() != b.labels.size()) return true;
    for (size_t i = 0; i < a.labels.size(); ++i)
        if (a.labels[i].language != b.labels[i].language || a.labels[i].text != b.labels[i].text) return true;
    return false;
}

bool fonts_differ(const LabelState& a, const LabelState& b) {
    if (a.extendedlabels != b.extendedlabels) return true;
    if (!a.extendedlabels) return false;
    if (a.fontstyle_index != b.fontstyle_index || a.fontcolours != b.fontcolours) return true;
    return a.fontcolours && (a.daylabelcolour != b.daylabelcolour || a.nightlabelcolour != b.nightlabelcolour);
}

std::string original_text(const model::Store& s, int cls, int32_t row) {
    const auto r = static_cast<size_t>(row);
    if (cls == model::k_polygons) return s.pg_txt[r];
    if (cls == model::k_points || cls == model::k_extra_points) return s.pt_txt[r];
    return s.ln_txt[r];
}

// The element's text as the commit leaves it, from the full section.
struct Patch {
    bool type = false, labels = false, fonts = false, widths = false, orient = false, picture = false, colours_only = false;
};

std::string patched_section(model::Store& s, const EditorSession& e, int cls, int32_t row, const Patch& p) {
    std::vector<std::string> lines = section_lines(text::create_code(s, local_row(s, cls, row) + 1, cls, false));
    const bool point = cls == model::k_points || cls == model::k_extra_points;
    if (!p.labels) {
        // The String lines as the element's own text holds them: the panel's
        // form may show them converted for the eye.
        const std::vector<std::string> own = section_lines(original_text(s, cls, row));
        std::vector<std::string> strings;
        for (const std::string& l : own)
            if (find_key({l}, {"string"}) == 0) strings.push_back(l);
        const int at = remove_keys(lines, {"string"});
        if (at >= 0) lines.insert(lines.begin() + at, strings.begin(), strings.end());
    }
    const bool line = cls == model::k_lines || cls == model::k_active_lines;
    if (p.picture || p.colours_only) {
        const int x = xpm_line(lines);
        if (x >= 0) {
            const int end = picture_end(lines, x);
            std::vector<std::string> block;
            if (p.picture) {
                block = picture_lines(e, lines[static_cast<size_t>(x)]);
            } else {
                // Colours only: the member keeps its head and rows.
                block.push_back(lines[static_cast<size_t>(x)]);
                const std::vector<std::string> colours = colour_block(e);
                block.insert(block.end(), colours.begin(), colours.end());
                int k = x + 1;
                while (k < end && lines[static_cast<size_t>(k)].find(" c ") != std::string::npos) ++k;
                block.insert(block.end(), lines.begin() + k, lines.begin() + end);
            }
            lines.erase(lines.begin() + x, lines.begin() + end);
            lines.insert(lines.begin() + x, block.begin(), block.end());
        }
    }
    const auto before_xpm = [&]() {
        const int x = xpm_line(lines);
        return x < 0 ? static_cast<int>(lines.size()) : x;
    };
    if (p.type) {
        const int at = remove_keys(lines, {"type=", "subtype="});
        const std::string t = "Type=0x" + type_code(e);
        lines.insert(lines.begin() + (at < 0 ? std::min<int>(1, static_cast<int>(lines.size())) : at), t);
    }
    if (p.labels) {
        int at = remove_keys(lines, {"string"});
        if (at < 0) {
            at = find_key(lines, {"subtype=", "type="});
            at = at < 0 ? std::min<int>(1, static_cast<int>(lines.size())) : at + 1;
            const int st = find_key(lines, {"subtype="});
            if (st >= at) at = st + 1;
        }
        const std::vector<std::string> add = section_lines(string_lines(e.labels));
        lines.insert(lines.begin() + at, add.begin(), add.end());
    }
    if (p.fonts) {
        int at = remove_keys(lines, {"extendedlabels=", "fontstyle=", "customcolor=", "daycustomcolor", "nightcustomcolor"});
        if (at < 0) at = before_xpm();
        const std::vector<std::string> add = section_lines(font_lines(e.labels, line));
        lines.insert(lines.begin() + at, add.begin(), add.end());
    }
    if (p.widths && line) {
        int at = remove_keys(lines, {"linewidth=", "lwidth(=", "borderwidth="});
        if (at < 0) at = before_xpm();
        lines.insert(lines.begin() + at, {"LineWidth=" + std::to_string(e.lwidth), "BorderWidth=" + std::to_string(e.border)});
    }
    if (p.orient && line) {
        int at = remove_keys(lines, {"useorientation="});
        if (at < 0) at = before_xpm();
        lines.insert(lines.begin() + at, std::string("UseOrientation=") + (e.orient ? "Y" : "N"));
    }
    (void)point;
    return join_section(lines);
}

// Reads a section into the row, as the text panel does.
void reparse(model::Store& s, platform::Prompt& ui, int cls, int32_t row, const std::string& section) {
    const auto r = static_cast<size_t>(row);
    // The section's strings are bytes of their pages already, as the tables
    // hold them, whatever encoding the open text came in.
    struct Keep {
        model::Store& s;
        bool utf8txt;
        ~Keep() { s.utf8txt = utf8txt; }
    } keep{s, s.utf8txt};
    s.utf8txt = false;
    if (cls == model::k_polygons) {
        if (!s.pg_lab[r].empty() && s.pg_lab[r][0] == 1 && s.pg_nnight > 0) --s.pg_nnight;
        text::pgonparse_txt(s, ui, section, row, true);
    } else if (cls == model::k_points || cls == model::k_extra_points) {
        const auto night_rows = static_cast<int32_t>(std::count(s.pt_nbmp[r].begin(), s.pt_nbmp[r].end(), '\n'));
        s.pt_nnight = std::max(0, s.pt_nnight - night_rows);
        text::poiparse(s, ui, section, row, false);
    } else {
        // The decoder heads a line "[_line] "; the reader writes it bare.
        // The head is kept as it was, so an apply changes no more than it must.
        const std::string head = s.ln_txt[r].substr(0, s.ln_txt[r].find("\r\n"));
        const int shown = s.curclass;
        s.curclass = cls;
        text::pollineparse(s, ui, section, row, false);
        s.curclass = shown;
        std::string& txt = s.ln_txt[r];
        const size_t end = txt.find("\r\n");
        if (head.rfind("[_line]", 0) == 0 && txt.compare(0, end, "[_line]") == 0) txt.replace(0, end, head);
    }
}

// The polygon's draw order: its token in drwlist and its pg_drw entry.
void set_level(model::Store& s, int32_t row, const std::string& old_code_text, const std::string& level) {
    typ::assign_level(s, row);
    std::string drw = s.pg_drw[static_cast<size_t>(row)];
    const size_t eq = drw.find('='), comma = drw.find(',');
    if (eq == std::string::npos || comma == std::string::npos) return;
    const std::string code = drw.substr(eq + 1, comma - eq - 1);
    // Tokens of this code go; a level above 0 comes back as one token.
    std::string kept;
    std::string upcode = upper_trim(code);
    if (upcode.size() == 5 && upcode[0] == '0') upcode.erase(0, 1);
    size_t p = 0;
    const std::string& list = s.drwlist;
    while (p < list.size()) {
        while (p < list.size() && list[p] == ' ') ++p;
        size_t e = list.find(' ', p);
        if (e == std::string::npos) e = list.size();
        if (e > p) {
            const std::string tok = list.substr(p, e - p);
            std::string tc = upper_trim(tok.substr(0, tok.find(',')));
            if (tc.size() == 5 && tc[0] == '0') tc.erase(0, 1);
            if (tc != upcode) kept += " " + tok;
        }
        p = e;
    }
    (void)old_code_text;
    const int lv = std::atoi(level.c_str());
    if (lv > 0) kept += " " + upcode + "," + std::to_string(lv);
    s.drwlist = kept;
    typ::sort_drwlist(s);
    typ::assign_level(s, row);
}

std::string change_note(const EditorSession& e, const std::string& code) {
    std::string note = "Edited:0x" + code;
    if (!e.labels.labels.empty()) note += " (" + e.labels.labels.front().text + ")";
    note += "\r\n";
    const bool type_changed = code != e.oldtype;
    const std::string from_to = "From " + e.oldtype + " to " + code + "\r\n";
    if (type_changed) note += from_to;
    const uint8_t c1 = e.changes1, c2 = e.changes2;
    if (c1 & ch_ncols) note += "Changed number of colours\r\n";
    if (c1 & ch_colour) note += "Changed colour\r\n";
    if (c1 & ch_mode) note += "Changed mode\r\n";
    if (c1 & ch_type) note += "Changed type number from 0x" + e.oldtype + "\r\n";
    if (c1 & ch_font) note += "Edited Font\r\n";
    if (c1 & ch_font_colours) note += "Changed Font colours\r\n";
    if (c1 & ch_dimensions) {
        if (e.store_class() == 0)
            note += "Edited draworder from " + e.olddraw + " to " + e.draworder + "\r\n";
        else
            note += "Changed dimensions\r\n";
    }
    if (c1 & ch_night) note += "Edited night version\r\n";
    if (c2 & ch_language) note += "Edited Language\r\n";
    if (c2 & ch_text) note += "Edited text\r\n";
    if (c2 & ch_imported) note += "Imported Picture\r\n";
    if (e.store_class() == 1) {
        if (c2 & ch_border) note += "Edited Border Width\r\n";
        if (c2 & ch_lwidth) note += "Edited lwidth(\r\n";
    }
    if (c2 & ch_brightness) note += "Edited Brightness\r\n";
    if (c2 & ch_filter) note += "Used colour filter\r\n";
    return note;
}


}  // namespace

std::string type_code(const EditorSession& e) {
    std::string sub = e.subtype_field.empty() ? "00" : e.subtype_field;
    if (sub.size() < 2) sub.insert(0, "0");
    return e.type_field + sub;
}

std::string fnpolyact(int index) { return index <= 2 ? "4" + std::to_string(index) : "5" + std::to_string(index - 3); }

ApplyOutcome apply(model::Store& s, EditorSession& e, platform::Prompt& ui, const ApplyForm& form) {
    ApplyOutcome out;
    if (form.filter_panel_open) {
        ui.message("Click Apply or Cancel.");
        return out;
    }
    // Type fields: trimmed, upper case; a subtype of value 0 is "00".
    e.type_field = upper_trim(e.type_field);
    e.subtype_field = upper_trim(e.subtype_field);
    if (e.subtype_field.empty() || hex_value(e.subtype_field) == 0) e.subtype_field = "00";
    const int cls = e.store_class();
    const long type_v = hex_value(e.type_field), sub_v = hex_value(e.subtype_field);
    if (cls != model::k_extra_points) {
        if (sub_v < 0 || sub_v >= 0x20) {
            ui.message("Choose subtype : 0 - &1F");
            return out;
        }
        const bool same = code_value(type_code(e)) == code_value(e.oldtype);
        if (type_v < 0 || (!same && !workbench::chktype("0x" + type_code(e), cls).empty())) {
            ui.message("Unknow type");
            return out;
        }
    }
    const std::string code = type_code(e);
    const bool changed_type = code_value(code) != code_value(e.oldtype);
    if (!e.is_group() && changed_type && cls != model::k_extra_points && type_exists(s, cls, e.row, code_value(code))) {
        ui.message("Type exists.");
        return out;
    }
    if (cls == model::k_points && type_v == 0) {
        ui.message("Select range: 1 - 7F or 100 - 17F");
        return out;
    }
    if (cls == model::k_polygons) {
        const int level = std::atoi(e.draworder.c_str());
        if (sub_v >= 0x20) {
            ui.message("SubTypes must be between 0 and 1F.");
            return out;
        }
        if (level > 0 && sub_v >= 1 && type_v < 0x100) {
            ui.message("This polygon with a type <&100 and a subtype>0 can't have a draworder.\r\nSet draworder to 'none' or subtype  to '0'.");
            return out;
        }
        const bool transparent = e.palette.first_transparent(e.transparentcolour) != 0;
        if (type_v != 0x100 && e.draworder.empty() && transparent && e.ncols() == 2 && !e.is_group()) {
            if (!ui.yes_no("Polygons with no draworder AND transparency are not recommended. Continue anyway?")) return out;
        }
        if (type_v == 0x100 && level > 0) {
            ui.message("Polygons &100 do not have draworders.");
            e.draworder.clear();
        }
        if (e.ncols() == 1 && e.palette.transparent(1, e.transparentcolour)) {
            ui.message("One colour polygons can't have transparency.Add an extra colour.");
            return out;
        }
    }
    if (cls == model::k_lines || cls == model::k_active_lines) {
        if (e.solid) {
            const int H = e.lwidth, B = e.border;
            if (H < 1) {
                ui.message("Line Height must be at least 1");
                return out;
            }
            if (H < 0 || B < 0 || 2 * B + H >= 32) {
                ui.message("lwidth( + 2 x Border can't be more than 31");
                return out;
            }
        } else if (e.height < 1 || e.height > 32) {
            ui.message("Please enter a valid size between 1 & 32.");
            return out;
        }
    }
    if (cls == model::k_points || cls == model::k_extra_points) {
        if (e.width_box != e.width || e.height_box != e.height) {
            if (e.width_box * e.height_box == 0) {
                if (e.newbmp) {
                    ui.message("Deselect night bitmap.");
                    return out;
                }
                e.width_box = e.width;
                e.height_box = e.height;
            } else if (!form.resize_open) {
                ui.message("Please click resize.");
                return out;
            }
        }
    }
    if (e.curclass == k_line_group && !ch7transp(e, ui)) return out;

    // ---- commit ----
    const std::vector<int32_t> rows = e.is_group() ? e.group : std::vector<int32_t>{e.row};
    const LabelState entry_labels = read_labels(original_text(s, cls, e.row));
    Patch p;
    p.type = changed_type && !e.is_group();
    p.labels = labels_differ(e.labels, entry_labels);
    p.fonts = fonts_differ(e.labels, entry_labels);
    if (cls == model::k_lines || cls == model::k_active_lines) {
        p.widths = e.solid && (e.lwidth != s.ln_wid[static_cast<size_t>(e.row)] || e.border != s.ln_bord[static_cast<size_t>(e.row)]);
        std::string entry_text = original_text(s, cls, e.row);
        std::transform(entry_text.begin(), entry_text.end(), entry_text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        const bool orient_on_entry = entry_text.find("useorientation=y") != std::string::npos;
        p.orient = (e.orient != 0) != orient_on_entry;
    }
    p.picture = e.eddirty;
    if (p.labels) e.changes2 |= ch_text;
    if (p.fonts) e.changes1 |= ch_font;
    if (p.type) e.changes1 |= ch_type;
    const bool level_changed = cls == model::k_polygons && e.draworder != e.olddraw;
    if (level_changed) e.changes1 |= ch_dimensions;
    const bool anything = p.type || p.labels || p.fonts || p.widths || p.orient || p.picture || level_changed;

    if (anything) {
        for (size_t k = 0; k < rows.size(); ++k) {
            Patch pk = p;
            if (k > 0) {
                // Members take colours, labels, draw order and fonts only.
                pk.picture = false;
                pk.colours_only = p.picture;
                pk.type = false;
            }
            if (pk.type || pk.labels || pk.fonts || pk.widths || pk.orient || pk.picture || pk.colours_only)
                reparse(s, ui, cls, rows[k], patched_section(s, e, cls, rows[k], pk));
            if (cls == model::k_polygons && (level_changed || p.type)) set_level(s, rows[k], e.oldtype, e.draworder);
        }
    }
    out.committed = true;
    out.type_changed = p.type;
    out.row = e.row;
    if (p.type) {
        // The tables stay in type order: the row moves to its new place.
        out.row = workbench::swap_types(s, cls, e.row);
        e.row = out.row;
    }
    out.drawdirty = level_changed || (cls == model::k_polygons && p.type);
    if (anything || e.eddirty || fnchkbtns(e) != e.flags_on_entry) {
        s.dirty = true;
        out.note = change_note(e, code);
    }
    e.labelchanged = false;
    return out;
}

}  // namespace korvex::editor
