#include "workbench/clip_form.h"

#include <cctype>

#include "model/crlf.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "workbench/draworder_entries.h"
#include "workbench/element_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

std::string trimmed_lower_line(std::string_view line) {
    size_t a = 0, b = line.size();
    while (a < b && (line[a] == ' ' || line[a] == '\t')) ++a;
    while (b > a && (line[b - 1] == ' ' || line[b - 1] == '\t' || line[b - 1] == '\r')) --b;
    return typ::lower(line.substr(a, b - a));
}

// The kind of a section marker line: 0, 1, 2 for the element sections, 5 for
// the draw order, 9 for any other section; -1 for no marker.
int marker_kind(const std::string& low) {
    if (low.rfind("[_", 0) != 0) return -1;
    if (low.rfind("[_polygon]", 0) == 0) return model::k_polygons;
    if (low.rfind("[_line]", 0) == 0 || low.rfind("[_polyline]", 0) == 0) return model::k_lines;
    if (low.rfind("[_point]", 0) == 0) return model::k_points;
    if (low.rfind("[_draworder]", 0) == 0) return 5;
    return 9;
}

}  // namespace

const char* class_plural(int cls) {
    switch (cls) {
    case model::k_polygons: return "Polygons";
    case model::k_lines: return "Lines";
    case model::k_points: return "Points";
    case model::k_active_lines: return "Active Routing";
    default: return "Extra Points";
    }
}

std::string get_code(model::Store& s, int cls, int32_t row, const Layers* layers) {
    std::string out = "krv" + std::to_string(cls);
    const auto r = static_cast<size_t>(row);
    if (cls == model::k_active_lines) out += "," + (r < s.ln_act.size() ? s.ln_act[r] : std::string());
    out += k_crlf;
    const int32_t code = row_type_code(s, cls, row);
    out += five_digits(code) + k_crlf;
    if (cls == model::k_polygons) {
        // The list is what a save writes: a type may stand in several layers.
        Layers own;
        if (!layers) {
            own = draworder_layers(s);
            layers = &own;
        }
        const auto it = layers->find(code);
        const std::string drw = r < s.pg_drw.size() ? s.pg_drw[r] : std::string();
        out += it != layers->end() ? drw_entry(code, it->second) : drw.empty() ? drw_entry(code, 0) : drw;
        out += k_crlf;
    }
    out += text::create_code(s, row - first_row(s, cls) + 1, cls, true);
    out += "[end]\r\n";
    return out;
}

Clip read_clip(const std::string& text) {
    Clip clip;
    clip.any_bracket = text.find('[') != std::string::npos;
    Layers drawn;  // levels of a pasted [_drawOrder]
    int marker_cls = -1;
    std::string marker_activity;
    std::vector<int> note_levels;
    int kind = -1;              // the open section's kind, -1 for none
    ClipSection open;
    auto close = [&] {
        if (kind < 0) return;  // a note stands in front of its section
        if (kind <= model::k_points) {
            if (!typ::contains_caseless(open.section, "[end]")) open.section += "[end]\r\n";
            open.code = section_code(open.section);
            const std::string act = section_activity(open.section);
            open.cls = kind;
            if (kind == model::k_lines && (!act.empty() || marker_cls == model::k_active_lines)) {
                open.cls = model::k_active_lines;
                open.activity = marker_cls == model::k_active_lines ? marker_activity : std::string();
            }
            if (kind == model::k_polygons) open.levels = note_levels;
            clip.sections.push_back(std::move(open));
        }
        open = ClipSection{};
        kind = -1;
        note_levels.clear();
    };
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string_view line(text.data() + pos, end - pos);
        pos = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const std::string low = trimmed_lower_line(line);
        const int starts = marker_kind(low);
        if (starts >= 0) {
            close();
            kind = starts;
            if (kind <= model::k_points) open.section.append(line).append(k_crlf);
            continue;
        }
        if (kind < 0) {
            if (low.size() >= 4 && low.rfind("krv", 0) == 0 && std::isdigit(static_cast<unsigned char>(low[3]))) {
                clip.marked = true;
                marker_cls = low[3] - '0';
                const size_t comma = low.find(',');
                marker_activity = comma == std::string::npos ? std::string() : low.substr(comma + 1, 2);
            } else if (low.rfind("type=", 0) == 0 && entry_level(low) >= 0) {
                note_levels.push_back(entry_level(low));
            }
            continue;
        }
        if (kind == 5) {
            if (low.rfind("[end]", 0) == 0) {
                close();
            } else if (low.rfind("type=", 0) == 0) {
                const int level = entry_level(low);
                std::string digits = low.substr(5, low.find(',') == std::string::npos ? std::string::npos : low.find(',') - 5);
                const int32_t code = token_code(digits);
                if (code >= 0 && level >= 0) drawn[code].push_back(level);
            }
            continue;
        }
        if (kind <= model::k_points) open.section.append(line).append(k_crlf);
        if (low.rfind("[end]", 0) == 0) close();
    }
    close();
    for (ClipSection& c : clip.sections) {
        if (c.cls != model::k_polygons || !c.levels.empty()) continue;
        const auto it = drawn.find(c.code);
        if (it != drawn.end()) c.levels = it->second;
    }
    return clip;
}

}  // namespace korvex::workbench
