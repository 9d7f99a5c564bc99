// Copy, paste and Create Copy of ElementOps.
#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "text/string_lines.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "workbench/clip_form.h"
#include "workbench/draworder_entries.h"
#include "workbench/element_ops.h"
#include "workbench/step_names.h"
#include "workbench/element_rows.h"
#include "workbench/message_ids.h"
#include "workbench/sort_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

// Each lone line feed becomes CR LF.
// An active line's section with its Activity= line set to the activity's
// name; one is put behind the Type= line when it has none.
std::string with_activity(const std::string& section, const std::string& code) {
    const std::string line = "Activity=" + activity_name(code);
    std::string out;
    bool done = false;
    size_t pos = 0, after_type = std::string::npos;
    while (pos < section.size()) {
        size_t end = section.find('\n', pos);
        end = end == std::string::npos ? section.size() : end + 1;
        std::string piece = section.substr(pos, end - pos);
        pos = end;
        const std::string low = typ::lower(piece.substr(std::min(piece.find_first_not_of(" \t"), piece.size())));
        if (low.rfind("activity", 0) == 0 && low.find('=') != std::string::npos) {
            out += done ? std::string() : line + "\r\n";
            done = true;
            continue;
        }
        out += piece;
        if (after_type == std::string::npos && low.rfind("type", 0) == 0) after_type = out.size();
    }
    if (!done) out.insert(after_type == std::string::npos ? out.size() : after_type, line + "\r\n");
    return out;
}

// The rows of a class by their type and, for active lines, their activity.
class ClassIndex {
public:
    ClassIndex(const model::Store& s, int cls) : cls_(cls) {
        for (int32_t r = first_row(s, cls); r < end_row(s, cls); ++r) add(key(s, r), r);
    }
    std::pair<int32_t, std::string> key(const model::Store& s, int32_t r) const {
        return {row_type_code(s, cls_, r), cls_ == model::k_active_lines ? s.ln_act[static_cast<size_t>(r)] : std::string()};
    }
    int32_t find(const std::pair<int32_t, std::string>& k) const {
        const auto it = rows_.find(k);
        return it == rows_.end() ? -1 : it->second;
    }
    // A new row opens at the end of its class: the rows already indexed keep their places.
    void add(const std::pair<int32_t, std::string>& k, int32_t r) { rows_.emplace(k, r); }

private:
    int cls_;
    std::map<std::pair<int32_t, std::string>, int32_t> rows_;
};

}  // namespace

bool ElementOps::mcopy(const std::vector<int32_t>& rows) {
    if (blocked()) return false;
    const int cls = s_.curclass;
    if (cls < 0 || cls >= model::k_extra_points) return false;
    const Layers layers = cls == model::k_polygons ? draworder_layers(s_) : Layers();
    std::string text;
    for (const int32_t r : rows)
        if (r >= first_row(s_, cls) && r < end_row(s_, cls)) text += get_code(s_, cls, r, &layers);
    if (text.empty()) return false;
    clip_.set_unicode_text(text::convert(s_, text));
    return true;
}

void ElementOps::mcop(const std::string& utf8) {
    if (!utf8.empty()) clip_.set_unicode_text(utf8);
}

int32_t ElementOps::mpaste() {
    const std::string u = clip_.unicode_text();
    return u.empty() ? paste_clip(clip_.text(), false) : paste_clip(u, true);
}
int32_t ElementOps::mpaste1() { return mpaste(); }
int32_t ElementOps::mpaste2() { return mpaste(); }
int32_t ElementOps::mpaste3() { return paste_clip(clip_.text(), false, "Paste Plain Text"); }
int32_t ElementOps::mpasteu8() { return paste_clip(clip_.unicode_text(), true, "Paste UTF-8"); }

int32_t ElementOps::paste_text(const std::string& text, bool utf8) { return paste_clip(text, utf8); }

int32_t ElementOps::paste_clip(const std::string& raw, bool utf8, const char* verb) {
    if (blocked()) return -1;
    auto step = open_step(history_, verb, Scope::rows_of(s_.curclass, {}));
    const int cls = s_.curclass;
    const std::string text = text::with_crlf(raw);
    const Clip clip = read_clip(text);
    if (!clip.marked && text.find("[_") == std::string::npos) {
        ui_.message("No element to paste");
        return -1;
    }
    if (host_.draworder_view()) {
        ui_.message("Return to polygon display first");
        return -1;
    }
    for (const ClipSection& c : clip.sections) {
        if (c.cls != cls) {
            ui_.message(std::string("Change to ") + class_plural(c.cls) + " .");
            return -1;
        }
    }
    const bool corrupt = std::any_of(clip.sections.begin(), clip.sections.end(), [](const ClipSection& c) { return c.code < 0; });
    if (!clip.any_bracket || corrupt) {
        ui_.message("Text corrupted");
        return -1;
    }
    if (clip.sections.empty()) {
        ui_.message("No element to paste");
        return -1;
    }

    ClassIndex index(s_, cls);
    std::vector<std::pair<int32_t, int>> levels;
    std::unordered_map<int32_t, int> standing;  // levels the types have, looked up once
    bool standing_read = false;
    std::string not_replaced;
    int32_t last = -1;
    int64_t pasted = 0;
    for (const ClipSection& c : clip.sections) {
        // The readers of a project read as UTF-8 take UTF-8 labels.
        std::string section = utf8 ? text::strings_to_pages(s_, c.section)
                              : s_.utf8txt ? text::convert(s_, c.section) : c.section;
        std::string act;
        if (cls == model::k_active_lines) {
            act = c.activity.empty() ? section_activity(section) : c.activity;
            if (act.empty()) act = "40";
            section = with_activity(section, act);
        }
        const auto key = std::make_pair(c.code, act);
        int32_t row = index.find(key);
        const std::string type = "0x" + five_digits(c.code);
        if (row >= 0) {
            if (!ui_.yes_no(type + " exists.\r\n\r\nReplace ?")) {
                not_replaced += type + "\r\n";
                continue;
            }
            parse_into(s_, ui_, cls, row, section);
        } else {
            row = append_element(s_, ui_, cls, section);
            index.add(key, row);
        }
        if (cls == model::k_polygons) {
            bool can_have = true;
            drw_code(c.code, &can_have);
            std::vector<int> own = c.levels;
            // A pasted polygon without a note is drawn like one of a text
            // load: at the level its type already has, else at level 1.
            if (own.empty() && s_.pg_drw[static_cast<size_t>(row)].empty()) {
                if (!standing_read) standing = draworder_levels(s_);
                standing_read = true;
                const auto it = standing.find(c.code);
                own.push_back(s_.opt.complete_draworder ? std::max(1, it == standing.end() ? 0 : it->second) : 0);
            }
            if (!own.empty()) {
                if (!can_have) own = {0};
                s_.pg_drw[static_cast<size_t>(row)] = drw_entry(c.code, own);
                for (const int level : own) levels.emplace_back(c.code, level);
            }
        }
        last = row;
        ++pasted;
    }
    // Create Copy and Paste Activity keep their own names.
    if (step && std::string(verb).rfind("Paste", 0) == 0 && std::string(verb) != "Paste Activity")
        step->rename(step_name(verb, pasted, cls));
    add_draworders(s_, levels);
    if (!not_replaced.empty()) ui_.message(msg(m_not_replaced) + "\r\n" + not_replaced);
    if (last < 0) return -1;
    return finish(cls, last);
}

int32_t ElementOps::paste_act(int32_t row) {
    if (blocked() || s_.curclass != model::k_active_lines) return -1;
    if (row < s_.ln_n || row >= s_.ln_n + s_.ln_nact) return -1;
    std::string text = clip_.unicode_text();
    const bool utf8 = !text.empty();
    if (!utf8) text = clip_.text();
    // The element's activity replaces the clipboard's, and the head says so.
    const std::string code = s_.ln_act[static_cast<size_t>(row)];
    std::string out = "krv3," + code + "\r\n";
    size_t pos = 0;
    text = text::with_crlf(text);
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        end = end == std::string::npos ? text.size() : end + 1;
        const std::string piece = text.substr(pos, end - pos);
        pos = end;
        const std::string low = typ::lower(piece.substr(std::min(piece.find_first_not_of(" \t"), piece.size())));
        if (low.rfind("krv", 0) == 0) continue;
        out += low.rfind("activity", 0) == 0 && low.find('=') != std::string::npos
                   ? "Activity=" + activity_name(code) + "\r\n"
                   : piece;
    }
    return paste_clip(out, utf8, "Paste Activity");
}

int32_t ElementOps::mcreatecopy(int32_t row, int subtype) {
    if (blocked()) return -1;
    const int cls = s_.curclass;
    if (cls < 0 || cls >= model::k_active_lines || row < first_row(s_, cls) || row >= end_row(s_, cls)) return -1;
    std::string digits;
    if (subtype >= 0) {
        const int32_t code = (row_type_code(s_, cls, row) & ~0xff) | (subtype & 0x1f);
        if (TypeIndex(s_, cls).has(code)) {
            ui_.message(msg(m_type_exists));
            return -1;
        }
        digits = five_digits(code);
    } else if (cls == model::k_points) {
        digits = next_point_type(s_, settings_.point_seed);
    } else {
        digits = nwtypnumber(s_, cls == model::k_polygons ? settings_.polygon_seed : settings_.line_seed, cls);
    }
    if (digits.empty()) {
        ui_.message(msg(m_no_number));
        return -1;
    }
    // The element's clipboard form with the new number: its draw-order note
    // keeps the level under the new type.
    const Clip clip = read_clip(get_code(s_, cls, row));
    if (clip.sections.size() != 1) return -1;
    const ClipSection& c = clip.sections.front();
    std::string text = "krv" + std::to_string(cls) + "\r\n";
    if (cls == model::k_polygons && !c.levels.empty()) text += drw_entry(type_code(digits), c.levels) + "\r\n";
    text += replacetype(c.section, digits);
    return paste_clip(text, false, "Create Copy");  // the labels are the project's own bytes
}

}  // namespace korvex::workbench
