#include "editor/colour_count.h"

#include <algorithm>

namespace korvex::editor {

std::vector<long> colour_counts(const EditorSession& e) {
    std::vector<long> counts(static_cast<size_t>(std::max(e.ncols(), 0)), 0);
    for (uint8_t v : e.pixels.values())
        if (v < counts.size()) ++counts[v];
    return counts;
}

int next_rarer(const std::vector<long>& counts, int current) {
    const int n = static_cast<int>(counts.size());
    if (n == 0) return 0;
    auto before = [&](int a, int b) {  // entries from 1
        const long ca = counts[static_cast<size_t>(a - 1)], cb = counts[static_cast<size_t>(b - 1)];
        return ca != cb ? ca < cb : a < b;
    };
    int best = 0, rarest = 1;
    for (int i = 1; i <= n; ++i) {
        if (before(i, rarest)) rarest = i;
        if (current >= 1 && current <= n && !before(current, i)) continue;
        if (current >= 1 && current <= n && i == current) continue;
        if (best == 0 || before(i, best)) best = i;
    }
    return best == 0 ? rarest : best;
}

std::string colour_count_text(const std::vector<long>& counts, int entry) {
    if (entry < 1 || entry > static_cast<int>(counts.size())) return "Colour Count:";
    return "Colour Count: " + std::to_string(counts[static_cast<size_t>(entry - 1)]) + " (colour " + std::to_string(entry) + ")";
}

Raster blink_view(const Raster& view, const EditorSession& e, int entry) {
    Raster shown = view;
    if (e.truecolour || !e.palette.valid(entry)) return shown;
    const uint32_t colour = e.palette.colour(entry);
    const int w = std::min(shown.width(), e.width);
    const int h = std::min(shown.height(), e.height);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            if (e.pixels.at(x, y) == entry - 1 && shown.at(x, y) == colour) shown.set(x, y, k_blink_colour);
    return shown;
}

}  // namespace korvex::editor
