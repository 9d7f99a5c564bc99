#include "editor/patterns.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "editor/canvas.h"

namespace korvex::editor {

namespace {

// Distance between two wave lines, the wave length and its height.
constexpr int k_wave_spacing = 6;
constexpr int k_wave_length = 10;
constexpr double k_wave_height = 1.5;

bool pattern_colour(const EditorSession& e, platform::Prompt& ui, uint32_t& colour) {
    if (e.truecolour) {
        colour = e.pen_colour;
        return true;
    }
    if (e.curcol < 1 || !e.palette.valid(e.curcol)) {
        ui.message("Please load a TYP file.");
        return false;
    }
    colour = e.palette.colour(e.curcol);
    return true;
}

Rect clip(const EditorSession& e, const Rect& area) {
    if (area.empty()) return {0, 0, e.width, e.height};
    const int x0 = std::max(area.x, 0), y0 = std::max(area.y, 0);
    const int x1 = std::min(area.x + area.w, e.width), y1 = std::min(area.y + area.h, e.height);
    return {x0, y0, std::max(x1 - x0, 0), std::max(y1 - y0, 0)};
}

// (a, b) along and across the pattern: kind 0 runs along x.
void put(EditorSession& e, const Rect& r, int kind, int along, int across, uint32_t colour) {
    const int x = kind == 0 ? along : across, y = kind == 0 ? across : along;
    if (r.contains(x, y)) e.surface.set(x, y, colour);
}

}  // namespace

bool stripes(EditorSession& e, int kind, int width, const Rect& area, std::mt19937& random, platform::Prompt& ui) {
    uint32_t colour = 0;
    if (!pattern_colour(e, ui, colour)) return false;
    const Rect r = clip(e, area);
    if (r.empty()) return false;
    width = std::max(width, 1);
    const int start = std::uniform_int_distribution<int>(0, 2 * width - 1)(random);
    const int along_n = kind == 0 ? r.w : r.h, across_n = kind == 0 ? r.h : r.w;
    const int along0 = kind == 0 ? r.x : r.y, across0 = kind == 0 ? r.y : r.x;
    for (int c = 0; c < across_n; ++c) {
        if ((c + start) % (2 * width) >= width) continue;
        for (int a = 0; a < along_n; ++a) put(e, r, kind, along0 + a, across0 + c, colour);
    }
    translate(e);
    e.eddirty = true;
    return true;
}

bool waves(EditorSession& e, int kind, const Rect& area, std::mt19937& random, platform::Prompt& ui) {
    uint32_t colour = 0;
    if (!pattern_colour(e, ui, colour)) return false;
    const Rect r = clip(e, area);
    if (r.empty()) return false;
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    const int along_n = kind == 0 ? r.w : r.h, across_n = kind == 0 ? r.h : r.w;
    const int along0 = kind == 0 ? r.x : r.y, across0 = kind == 0 ? r.y : r.x;
    for (int line = 0; line < across_n; line += k_wave_spacing) {
        const double offset = uniform(random) * 10;
        int last = -1;
        for (int a = 0; a < along_n; ++a) {
            const double phase = (a + offset) * 2 * std::numbers::pi / k_wave_length;
            const int c = line + static_cast<int>(std::lround(k_wave_height * (1 + std::sin(phase))));
            // The segment joins the previous point, so the wave has no gaps.
            const int from = last < 0 ? c : std::min(last, c), to = last < 0 ? c : std::max(last, c);
            for (int k = from; k <= to; ++k)
                if (k < across_n) put(e, r, kind, along0 + a, across0 + k, colour);
            last = c;
        }
    }
    translate(e);
    e.eddirty = true;
    return true;
}

}  // namespace korvex::editor
