// A scanline fill: one run of a row at a time, with an explicit stack of
// seeds, so a 256 x 256 spiral costs no recursion.
#include "editor/flood_fill.h"

#include <vector>

namespace korvex::editor {

int flood_fill(Raster& r, int x, int y, uint32_t colour) {
    colour &= 0xFFFFFF;
    if (!r.inside(x, y)) return 0;
    const uint32_t target = r.at(x, y);
    if (target == colour) return 0;
    const int w = r.width(), h = r.height();
    std::vector<uint32_t>& px = r.pixels();
    auto at = [&](int cx, int cy) -> uint32_t& { return px[static_cast<size_t>(cy) * static_cast<size_t>(w) + static_cast<size_t>(cx)]; };
    struct Seed {
        int x, y;
    };
    std::vector<Seed> stack{{x, y}};
    int changed = 0;
    while (!stack.empty()) {
        const Seed s = stack.back();
        stack.pop_back();
        if (at(s.x, s.y) != target) continue;
        int left = s.x, right = s.x;
        while (left > 0 && at(left - 1, s.y) == target) --left;
        while (right < w - 1 && at(right + 1, s.y) == target) ++right;
        for (int cx = left; cx <= right; ++cx) at(cx, s.y) = colour;
        changed += right - left + 1;
        for (int ny : {s.y - 1, s.y + 1}) {
            if (ny < 0 || ny >= h) continue;
            bool in_run = false;
            for (int cx = left; cx <= right; ++cx) {
                const bool match = at(cx, ny) == target;
                if (match && !in_run) stack.push_back({cx, ny});
                in_run = match;
            }
        }
    }
    return changed;
}

}  // namespace korvex::editor
