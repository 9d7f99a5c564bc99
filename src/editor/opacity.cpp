#include "editor/opacity.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>

#include "editor/ascii_case.h"
#include "editor/canvas.h"
#include "editor/palette_edit.h"
#include "editor/point_pictures.h"

namespace korvex::editor {

namespace {

void ensure_alpha(Palette& p) {
    if (p.alpha.size() < p.colours.size()) p.alpha.resize(p.colours.size(), k_no_alpha);
}

bool colour_taken(const Palette& p, uint32_t c) { return p.first_of(c) != 0; }

// The nearest colour that no entry holds: one channel moved by the
// smallest step, red first, up before down.
uint32_t distinct_colour(const Palette& p, uint32_t c) {
    if (!colour_taken(p, c)) return c;
    for (int step = 1; step < 256; ++step)
        for (int shift : {0, 8, 16})
            for (int sign : {1, -1}) {
                const int v = static_cast<int>((c >> shift) & 0xFF) + sign * step;
                if (v < 0 || v > 255) continue;
                const uint32_t t = (c & ~(0xFFu << shift)) | static_cast<uint32_t>(v) << shift;
                if (!colour_taken(p, t)) return t;
            }
    return c;
}

}  // namespace

bool opacity_tool(const EditorSession& e, int tool) { return e.alpha && (tool == t_opacity_fill || tool == t_opacity_pencil); }

int moplev(int level) { return std::clamp(level, 0, k_max_level); }

bool opacity_press_allowed(EditorSession& e, platform::Prompt& ui) {
    if (!e.alpha || e.truecolour || !e.palette.has_duplicates()) return true;
    ui.message("Palette contains identical colours!\r\nCannot continue.");
    chk1col(e, ui);
    return false;
}

bool opaval(EditorSession& e, bool on, platform::Prompt& ui) {
    if (!is_point(e) || on == e.alpha) return false;
    const uint32_t marker = e.transparentcolour;
    if (on) {
        if (!chk1col(e, ui)) return false;
        e.opacity = PixelGrid(e.width, e.height);
        for (int y = 0; y < e.height; ++y)
            for (int x = 0; x < e.width; ++x) e.opacity.set(x, y, e.surface.at(x, y) == marker ? k_max_level : 0);
        if (!e.truecolour) {
            e.palette.alpha.assign(e.palette.colours.size(), 0);
            for (int i = 1; i <= e.ncols(); ++i)
                if (e.palette.transparent(i, marker)) e.palette.alpha[static_cast<size_t>(i - 1)] = k_max_level;
        }
        e.alpha = true;
        e.colormode = 32;
        ui.message("With Opacity (colormode 32) only 'pink opacity tools' can be used.");
    } else {
        if (!ui.yes_no("This will clear your opacity levels. Are you sure?")) return false;
        if (e.truecolour) {
            // A fully transparent pixel keeps looking so.
            for (int y = 0; y < e.height; ++y)
                for (int x = 0; x < e.width; ++x)
                    if (e.opacity.at(x, y) == k_max_level) e.surface.set(x, y, marker);
        } else if (e.palette.first_transparent(marker) == 0) {
            for (int i = 1; i <= e.ncols(); ++i)
                if (level_of(e.palette, i, marker) == k_max_level) {
                    e.palette.set(i, marker);
                    break;
                }
        }
        e.palette.alpha.clear();
        e.opacity.fill(0);
        e.alpha = false;
        const bool none = e.truecolour ? std::find(e.surface.pixels().begin(), e.surface.pixels().end(), marker) != e.surface.pixels().end()
                                       : e.palette.first_transparent(marker) != 0;
        e.colormode = none ? 16 : 0;
        e.oplevel = k_max_level;
        painticon(e);
    }
    e.changes1 |= ch_mode;
    e.eddirty = true;
    return true;
}

bool set_colour_level(EditorSession& e, int entry, int level) {
    if (!e.alpha || e.truecolour || !e.palette.valid(entry)) return false;
    level = moplev(level);
    ensure_alpha(e.palette);
    // A transparent colour that becomes visible is black, as a file reads it.
    if (level < k_max_level && e.palette.transparent(entry, e.transparentcolour)) {
        e.palette.set(entry, distinct_colour(e.palette, 0));
        painticon(e);
    }
    e.palette.alpha[static_cast<size_t>(entry - 1)] = static_cast<uint8_t>(level);
    const std::vector<uint8_t>& idx = e.pixels.values();
    std::vector<uint8_t>& op = e.opacity.values();
    for (size_t i = 0; i < idx.size() && i < op.size(); ++i)
        if (idx[i] == entry - 1) op[i] = static_cast<uint8_t>(level);
    e.eddirty = true;
    e.changes1 |= ch_colour;
    return true;
}

bool opacity_fill(EditorSession& e, int x, int y) {
    if (!e.alpha || !e.surface.inside(x, y)) return false;
    if (!e.truecolour) return set_colour_level(e, e.pixels.at(x, y) + 1, e.oplevel);
    const uint32_t c = e.surface.at(x, y);
    const std::vector<uint32_t>& px = e.surface.pixels();
    std::vector<uint8_t>& op = e.opacity.values();
    bool changed = false;
    for (size_t i = 0; i < px.size() && i < op.size(); ++i)
        if (px[i] == c && op[i] != e.oplevel) {
            op[i] = static_cast<uint8_t>(moplev(e.oplevel));
            changed = true;
        }
    e.eddirty = e.eddirty || changed;
    return changed;
}

bool opacity_plot(EditorSession& e, int x, int y) {
    if (!e.alpha || !e.opacity.inside(x, y)) return false;
    const int level = moplev(e.oplevel);
    if (e.opacity.at(x, y) == level) return false;
    e.opacity.set(x, y, static_cast<uint8_t>(level));
    e.eddirty = true;
    return true;
}

bool opacity_press(EditorSession& e, int x, int y) {
    if (e.tool == t_opacity_fill) return opacity_fill(e, x, y);
    if (e.tool == t_opacity_pencil) return opacity_plot(e, x, y);
    return false;
}

bool opacity_rubber(EditorSession& e, platform::Prompt& ui) {
    if (!e.alpha) return false;
    ui.message("Set one colour's opacity to 15 (right click on color)");
    e.tool = t_pencil;
    return true;
}

void fold_opacity(PointPicture& p, uint32_t marker) {
    if (!p.alpha || p.truecolour || p.palette.ncols() == 0) return;
    Palette& pal = p.palette;
    ensure_alpha(pal);
    const int n = pal.ncols();
    // How many pixels of each colour stand at each level.
    std::vector<std::array<int, k_max_level + 1>> count(static_cast<size_t>(n));
    for (auto& c : count) c.fill(0);
    const std::vector<uint8_t>& idx = p.pixels.values();
    std::vector<uint8_t>& op = p.opacity.values();
    for (size_t i = 0; i < idx.size() && i < op.size(); ++i)
        if (idx[i] < n) ++count[idx[i]][std::min<int>(op[i], k_max_level)];
    // Each colour keeps its own level if a pixel has it, else the level most
    // of its pixels have.
    std::vector<int> keep(static_cast<size_t>(n));
    for (int k = 0; k < n; ++k) {
        const auto& c = count[static_cast<size_t>(k)];
        int level = level_of(pal, k + 1, marker);
        if (c[static_cast<size_t>(level)] == 0) {
            const auto most = std::max_element(c.begin(), c.end());
            if (*most > 0) level = static_cast<int>(most - c.begin());
        }
        keep[static_cast<size_t>(k)] = level;
        if (level != level_of(pal, k + 1, marker)) {
            if (pal.transparent(k + 1, marker)) pal.set(k + 1, distinct_colour(pal, 0));
            pal.alpha[static_cast<size_t>(k)] = static_cast<uint8_t>(level);
        }
    }
    std::map<std::pair<int, int>, int> split;  // (entry index, level) -> new index
    for (size_t i = 0; i < idx.size() && i < op.size(); ++i) {
        const int k = idx[i];
        if (k >= n || op[i] == keep[static_cast<size_t>(k)]) continue;
        const auto key = std::make_pair(k, static_cast<int>(op[i]));
        auto it = split.find(key);
        if (it == split.end()) {
            if (pal.ncols() >= k_max_colours) {
                op[i] = static_cast<uint8_t>(keep[static_cast<size_t>(k)]);
                continue;
            }
            const uint32_t base = pal.transparent(k + 1, marker) ? 0 : pal.colour(k + 1);
            pal.colours.push_back(distinct_colour(pal, base));
            pal.alpha.push_back(static_cast<uint8_t>(op[i]));
            it = split.emplace(key, pal.ncols() - 1).first;
        }
        p.pixels.values()[i] = static_cast<uint8_t>(it->second);
    }
    for (int y = 0; y < p.pixels.height(); ++y)
        for (int x = 0; x < p.pixels.width(); ++x) p.surface.set(x, y, pal.colour(p.pixels.at(x, y) + 1));
}

std::string addalpha(const std::string& text, const std::vector<int>& levels) {
    if (lower(text).find("alpha") != std::string::npos) return text;
    std::string out;
    size_t p = 0, colour = 0;
    while (p < text.size()) {
        size_t e = text.find('\n', p);
        const bool last = e == std::string::npos;
        if (last) e = text.size();
        std::string l = text.substr(p, e - p);
        const bool cr = !l.empty() && l.back() == '\r';
        if (cr) l.pop_back();
        const std::string low = lower(l);
        if (low.find(" c ") != std::string::npos || low.find("\tc ") != std::string::npos) {
            const size_t none = low.find("none");
            if (none != std::string::npos) {
                l.replace(none, 4, "#000000");
                l += " alpha=15";
            } else {
                const int level = colour < levels.size() ? moplev(levels[colour]) : 0;
                l += " alpha=" + std::to_string(level);
            }
            ++colour;
        }
        out += l;
        if (cr) out += '\r';
        if (!last) out += '\n';
        p = e + 1;
    }
    return out;
}

}  // namespace korvex::editor
