#include "workbench/day_opacity.h"

#include <algorithm>

#include "model/crlf.h"
#include "text/point_picture.h"
#include "typ/curf_access.h"
#include "workbench/batch_frame.h"
#include "workbench/point_keys.h"

namespace korvex::workbench {

namespace {

// The quoted part of a colour line: key, " c ", value, closing quote.
std::string quoted_part(const std::string& line) {
    const size_t close = line.find('"', 1);
    return close == std::string::npos ? line + '"' : line.substr(0, close + 1);
}

// The "alpha=" value of a line, -1 without one.
int alpha_of(const std::string& line) {
    const size_t at = typ::find_caseless(line, "alpha=");
    if (at == std::string::npos) return -1;
    int v = 0;
    bool digits = false;
    for (size_t k = at + 6; k < line.size() && line[k] >= '0' && line[k] <= '9' && v < 100; ++k) {
        v = v * 10 + (line[k] - '0');
        digits = true;
    }
    return digits ? v : -1;
}

std::string opacity_line(const std::string& key, const std::string& value, int alpha) {
    return '"' + key + " c " + value + "\" alpha=" + std::to_string(alpha);
}

}  // namespace

PointPicture night_picture(const std::string& night) {
    PointPicture p;
    size_t pos = 0;
    bool head = false;
    while (pos < night.size()) {
        size_t nl = night.find('\n', pos);
        if (nl == std::string::npos) nl = night.size();
        std::string line = night.substr(pos, nl - pos);
        pos = nl + 1;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        if (!head) {
            const text::point_text::Head h = text::point_text::read_head(line);
            p.key = h.key;
            p.width = std::max(h.field[0], 0);
            p.height = std::max(h.field[1], 0);
            p.colours = std::max(h.field[2], 0);
            p.cpp = h.field[3] == 2 ? 2 : 1;
            p.mode = h.mode.empty() ? "0" : h.mode;
            head = true;
        } else if (static_cast<int>(p.colour_lines.size()) < p.colours) {
            p.colour_lines.push_back(line);
        } else {
            const size_t close = line.rfind('"');
            p.rows.push_back(close > 0 ? line.substr(1, close - 1) : line.substr(1));
        }
    }
    return p;
}

bool add_opacity(PointPicture& p, int value) {
    value = std::clamp(value, 0, k_alpha_clear);
    bool changed = p.mode != "32";
    for (std::string& line : p.colour_lines) {
        const std::string key = colour_key(line, p.cpp);
        // In opacity form a transparent colour is black at full transparency;
        // a colour already fully transparent stays so.
        std::string next = is_none_colour(line) ? opacity_line(key, "#000000", k_alpha_clear)
                           : quoted_part(line) + " alpha=" +
                                 std::to_string(alpha_of(line) == k_alpha_clear ? k_alpha_clear : value);
        if (next != line) {
            line = std::move(next);
            changed = true;
        }
    }
    p.mode = "32";
    return changed;
}

bool replace_opacity(PointPicture& p) {
    bool changed = false;
    std::string none_key;
    KeyMap merged;
    std::vector<std::string> kept;
    kept.reserve(p.colour_lines.size());
    for (const std::string& line : p.colour_lines) {
        const std::string key = colour_key(line, p.cpp);
        const int alpha = alpha_of(line);
        std::string next = line;
        if (alpha == k_alpha_clear || is_none_colour(line)) {
            next = '"' + key + " c none\"";
            if (none_key.empty()) {
                none_key = key;
            } else {
                // One "none" is enough: the others' pixels take its key.
                merged[key] = none_key;
                changed = true;
                continue;
            }
        } else if (alpha >= 0) {
            next = quoted_part(line);
        }
        changed = changed || next != line;
        kept.push_back(std::move(next));
    }
    const std::string mode = none_key.empty() ? "0" : "16";
    changed = changed || p.mode != mode;
    if (!changed) return false;
    p.colour_lines = std::move(kept);
    p.colours = static_cast<int>(p.colour_lines.size());
    if (!merged.empty()) re_bmp(p.rows, merged, p.cpp);
    p.mode = mode;
    return true;
}

int conv_32(model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
            const Conv32Request& r) {
    if (!points_in_view(b)) {
        ui.message("Select Points");
        return 0;
    }
    std::vector<int32_t> rows;
    if (!batch_selection(s, b, ui, m, r.all, rows)) return 0;
    if (!confirm_no_undo(s, ui, m)) return 0;
    int count = 0;
    for (size_t k = 0; k < rows.size(); ++k) {
        PointPicture p = read_point_picture(s, rows[k]);
        if (p.width > 0 && p.height > 0 && p.colours > 0) {
            bool changed = r.add ? add_opacity(p, r.value) : replace_opacity(p);
            if (!p.night.empty()) {
                PointPicture night = night_picture(p.night);
                if (night.colours > 0 && (r.add ? add_opacity(night, r.value) : replace_opacity(night))) {
                    p.night = picture_text(night);
                    changed = true;
                }
            }
            if (changed) {
                updpoicod(s, ui, rows[k], p);
                ++count;
            }
        }
        ui.progress(static_cast<int>((k + 1) * 100 / rows.size()));
    }
    ui.progress(0);  // the window's bar shows only while a tool runs
    if (count > 0) s.dirty = true;
    return count;
}

}  // namespace korvex::workbench
