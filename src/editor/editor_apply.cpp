#include "editor/editor_apply.h"

#include <algorithm>
#include <cctype>

#include "editor/ascii_case.h"
#include "editor/canvas.h"
#include "editor/element_open.h"
#include "editor/element_commit.h"
#include "editor/label_panel.h"
#include "editor/palette_edit.h"
#include "editor/point_size.h"
#include "typ/draw_order.h"
#include "typ/extended_sections.h"
#include "typ/type_range.h"
#include "workbench/sort_rows.h"

namespace korvex::editor {

namespace {

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

// Another element of the class has the code; an active line only within
// its activity, since every activity has lines of its own types.
bool type_exists(const model::Store& s, int cls, int32_t self, long value) {
    if (cls == model::k_polygons) {
        for (int32_t i = 0; i < s.pg_n; ++i)
            if (i != self && code_value(s.pg_typ[static_cast<size_t>(i)]) == value) return true;
    } else if (cls == model::k_lines || cls == model::k_active_lines) {
        const int32_t from = cls == model::k_lines ? 0 : s.ln_n;
        const int32_t to = cls == model::k_lines ? s.ln_n : s.ln_n + s.ln_nact;
        for (int32_t i = from; i < to; ++i)
            if (i != self && s.ln_code[static_cast<size_t>(i)] == value &&
                (cls == model::k_lines || s.ln_act[static_cast<size_t>(i)] == s.ln_act[static_cast<size_t>(self)]))
                return true;
    } else if (cls == model::k_points) {
        for (int32_t i = 0; i < s.pt_n; ++i)
            if (i != self && code_value(s.pt_typ[static_cast<size_t>(i)]) == value) return true;
    }
    return false;
}

// A line drawn in colours only, without a bitmap.
bool solid_line(const model::Store& s, int32_t r) { return s.ln_xpm[static_cast<size_t>(r)].find("\"0 0 ") != std::string::npos; }

// The polygon's new code stands in the draw order as a placeholder: an
// entry whose type no other polygon has.
bool is_placeholder(const model::Store& s, int32_t self, const std::string& code) {
    bool can_have = true;
    const std::string wanted = typ::drw_code_of(code, can_have);
    for (int32_t i = 0; i < s.pg_n; ++i) {
        if (i == self) continue;
        bool c = true;
        if (typ::polygon_drw_code(s, i, c) == wanted) return false;
    }
    const std::string& list = s.drwlist;
    size_t p = 0;
    while (p < list.size()) {
        while (p < list.size() && list[p] == ' ') ++p;
        size_t end = list.find(' ', p);
        if (end == std::string::npos) end = list.size();
        const std::string tok = list.substr(p, end - p);
        const size_t comma = tok.find(',');
        if (comma != std::string::npos) {
            bool c = true;
            if (typ::drw_code_of(tok.substr(0, comma), c) == wanted) return true;
        }
        p = end;
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
    if (type_changed && (c1 & (ch_ncols | ch_mode | ch_dimensions))) note += from_to;
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
    const long type_v = e.type_field.empty() ? 0 : hex_value(e.type_field), sub_v = hex_value(e.subtype_field);
    if (cls == model::k_extra_points) {
        // An extended type is hex digits only; the box takes the focus.
        if (type_v < 0 || e.type_field.empty()) {
            out.focus = "type";
            return out;
        }
    } else {
        if (sub_v < 0 || sub_v >= 0x20) {
            ui.message("Choose subtype : 0 - &1F");
            return out;
        }
        const bool same = code_value(type_code(e)) == code_value(e.oldtype);
        if (type_v < 0 || (!same && !e.type_field.empty() && !typ::chktype("0x" + type_code(e), cls).empty())) {
            ui.message("Unknow type");
            return out;
        }
    }
    const std::string code = type_code(e);
    const bool changed_type = code_value(code) != code_value(e.oldtype);
    bool border_to_all = false;  // the border colour goes to the activity's other lines
    std::string activity;
    // A group takes only what the group edit may change: the checks of one
    // element's type, draw order and size do not concern it.
    if (e.curclass == k_line_group && !ch7transp(e, ui)) return out;
    if (!e.is_group()) {
        if (changed_type && cls != model::k_extra_points && type_exists(s, cls, e.row, code_value(code))) {
            ui.message("Type exists.");
            return out;
        }
        if (cls == model::k_active_lines && form.apply_border && e.ncols() >= 2 && !e.palette.transparent(2, e.transparentcolour)) {
            activity = s.ln_act[static_cast<size_t>(e.row)];
            const std::string name = typ::chkactivity(activity);
            if (!ui.yes_no("Apply Border Color to ALL " + (name.empty() ? activity : name) + "?")) return out;
            border_to_all = true;
        }
        if (cls == model::k_points && type_v == 0) {
            ui.message("Select range: 1 - 7F or 100 - 17F");
            return out;
        }
        if (type_v == 0 && e.type_field.find('0') == std::string::npos) {
            ui.message("Invalid type.");
            return out;
        }
    }
    if (cls == model::k_polygons && !e.is_group()) {
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
        if (type_v != 0x100 && e.draworder.empty() && transparent && e.ncols() == 2) {
            if (!ui.yes_no("Polygons with no draworder AND transparency are not recommended. Continue anyway?")) {
                out.focus = "draworder";
                return out;
            }
        }
        if (type_v == 0x100 && level > 0) {
            ui.message("Polygons &100 do not have draworders.");
            e.draworder.clear();
        }
        if (e.ncols() == 1 && e.palette.transparent(1, e.transparentcolour)) {
            ui.message("One colour polygons can't have transparency.Add an extra colour.");
            return out;
        }
        if (changed_type && is_placeholder(s, e.row, code) &&
            !ui.yes_no("Draworder will replace existing placeholder.\r\nContinue?"))
            return out;
    }
    if ((cls == model::k_lines || cls == model::k_active_lines) && !e.is_group()) {
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
            if (H == 0 && B >= 1) {
                ui.message("No border with line height=0");
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
            } else if (!resize_point(e, ui, e.width_box, e.height_box, form.stretch)) {
                return out;
            }
        }
    }

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
        // A line group's second colour is the border: a solid member without
        // one keeps its colours.
        const auto borderless = [&](int32_t r) {
            return e.curclass == k_line_group && s.ln_bord[static_cast<size_t>(r)] == 0 && solid_line(s, r);
        };
        bool members_colours = p.picture;
        if (p.picture && e.curclass == k_line_group && e.solid && borderless(rows.front())) {
            ui.message("Cannot apply border colours for all. No border found");
            members_colours = false;
        }
        int left_out = 0;
        for (size_t k = 0; k < rows.size(); ++k) {
            Patch pk = p;
            if (k > 0) {
                // Members take colours, labels, draw order and fonts only.
                pk.picture = false;
                pk.colours_only = members_colours;
                pk.type = false;
                pk.widths = false;
                pk.orient = false;
                if (members_colours && borderless(rows[k])) {
                    pk.colours_only = false;
                    ++left_out;
                }
            }
            if (pk.type || pk.labels || pk.fonts || pk.widths || pk.orient || pk.picture || pk.colours_only)
                reparse(s, ui, cls, rows[k], patched_section(s, e, cls, rows[k], pk));
            if (cls == model::k_polygons && (level_changed || p.type)) set_level(s, rows[k], e.draworder);
        }
        if (left_out > 0) ui.message("Could not update border colours for " + std::to_string(left_out) + " highways.");
    }
    bool members_changed = false;
    if (border_to_all) {
        // Only a solid line with a border has a border colour: the second
        // colour of one without is its night colour, of a bitmap its background.
        const uint32_t colour = e.palette.colour(2);
        int left_out = 0;
        for (int32_t r = s.ln_n; r < s.ln_n + s.ln_nact; ++r) {
            const auto k = static_cast<size_t>(r);
            if (r == e.row || s.ln_act[k] != activity) continue;
            if (!solid_line(s, r) || s.ln_bord[k] == 0) {
                ++left_out;
                continue;
            }
            const std::string before = s.ln_col[k];
            reparse(s, ui, cls, r, border_section(s, cls, r, colour));
            members_changed = members_changed || s.ln_col[k] != before;
        }
        if (left_out > 0) ui.message("Could not update border colours for " + std::to_string(left_out) + " highways.");
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
    out.others_changed = members_changed;
    if (members_changed) s.dirty = true;
    if (anything || e.eddirty || fnchkbtns(e) != e.flags_on_entry) {
        s.dirty = true;
        out.note = change_note(e, code);
    }
    e.labelchanged = false;
    return out;
}

}  // namespace korvex::editor
