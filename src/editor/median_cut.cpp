#include "editor/median_cut.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "editor/canvas.h"

namespace korvex::editor {

namespace {

struct Entry {
    uint32_t colour;
    uint32_t count;
    uint32_t first;  // index of its first pixel
};

int channel_byte(uint32_t c, int k) { return static_cast<int>((c >> (8 * k)) & 0xFF); }

struct Box {
    size_t begin, end;  // a range of the entry list
    int widest = 0, range = 0;
    uint64_t pixels = 0;
    void measure(const std::vector<Entry>& v) {
        std::array<int, 3> lo{255, 255, 255}, hi{0, 0, 0};
        pixels = 0;
        for (size_t i = begin; i < end; ++i) {
            for (int k = 0; k < 3; ++k) {
                lo[k] = std::min(lo[k], channel_byte(v[i].colour, k));
                hi[k] = std::max(hi[k], channel_byte(v[i].colour, k));
            }
            pixels += v[i].count;
        }
        range = -1;
        for (int k = 0; k < 3; ++k)
            if (hi[k] - lo[k] > range) {
                range = hi[k] - lo[k];
                widest = k;
            }
    }
};

}  // namespace

std::vector<uint32_t> median_cut_palette(const Raster& picture, uint32_t marker, int target) {
    std::vector<Entry> v;
    std::unordered_map<uint32_t, size_t> at;
    at.reserve(1024);
    const std::vector<uint32_t>& px = picture.pixels();
    for (size_t i = 0; i < px.size(); ++i) {
        if (px[i] == marker) continue;
        const auto [it, added] = at.emplace(px[i], v.size());
        if (added)
            v.push_back({px[i], 1, static_cast<uint32_t>(i)});
        else
            ++v[it->second].count;
    }
    if (v.empty() || target < 1) return {};
    std::vector<Box> boxes{{0, v.size()}};
    boxes[0].measure(v);
    while (static_cast<int>(boxes.size()) < target) {
        // The box of the widest range that can still be split; the fuller one on a tie.
        Box* pick = nullptr;
        for (Box& b : boxes)
            if (b.end - b.begin > 1 && (!pick || b.range > pick->range || (b.range == pick->range && b.pixels > pick->pixels)))
                pick = &b;
        if (!pick) break;
        // Cut the widest channel where half the box's pixels lie at or
        // below; both halves keep one colour at least, as the range is not 0.
        const int k = pick->widest;
        std::array<uint64_t, 256> hist{};
        int lo = 255, hi = 0;
        for (size_t i = pick->begin; i < pick->end; ++i) {
            const int c = channel_byte(v[i].colour, k);
            hist[static_cast<size_t>(c)] += v[i].count;
            lo = std::min(lo, c);
            hi = std::max(hi, c);
        }
        int at = lo;
        for (uint64_t below = 0; at < hi - 1; ++at) {
            below += hist[static_cast<size_t>(at)];
            if (2 * below >= pick->pixels) break;
        }
        const auto first = v.begin() + static_cast<std::ptrdiff_t>(pick->begin);
        const auto mid = std::partition(first, v.begin() + static_cast<std::ptrdiff_t>(pick->end),
                                        [k, at](const Entry& x) { return channel_byte(x.colour, k) <= at; });
        const size_t cut = static_cast<size_t>(mid - v.begin());
        Box upper{cut, pick->end};
        pick->end = cut;
        pick->measure(v);
        upper.measure(v);
        boxes.push_back(upper);
    }
    std::vector<std::pair<uint32_t, uint32_t>> out;  // first pixel, colour
    for (const Box& b : boxes) {
        uint64_t sum[3] = {0, 0, 0};
        uint32_t first = UINT32_MAX;
        for (size_t i = b.begin; i < b.end; ++i) {
            for (int k = 0; k < 3; ++k) sum[k] += static_cast<uint64_t>(channel_byte(v[i].colour, k)) * v[i].count;
            first = std::min(first, v[i].first);
        }
        uint32_t mean[3];
        for (int k = 0; k < 3; ++k) mean[k] = static_cast<uint32_t>((sum[k] + b.pixels / 2) / b.pixels);
        uint32_t c = rgb(mean[0], mean[1], mean[2]);
        if (c == marker) c ^= rgb(0, 0, 1);  // a mean may not pose as transparency
        out.emplace_back(first, c);
    }
    std::sort(out.begin(), out.end());
    std::vector<uint32_t> colours;
    for (const auto& [first, c] : out)
        if (std::find(colours.begin(), colours.end(), c) == colours.end()) colours.push_back(c);
    return colours;
}

std::vector<uint32_t> median_cut_with_marker(const Raster& picture, uint32_t marker, int target) {
    const std::vector<uint32_t>& px = picture.pixels();
    const bool transparent = std::find(px.begin(), px.end(), marker) != px.end();
    std::vector<uint32_t> colours = median_cut_palette(picture, marker, std::max(target - (transparent ? 1 : 0), 1));
    if (transparent) colours.push_back(marker);
    return colours;
}

ReduceOutcome reduce_colours(EditorSession& e, int target) {
    const bool two = e.fn013() || e.is_group();
    target = two ? 2 : std::clamp(target, 1, k_max_colours);
    std::vector<uint32_t> colours = median_cut_with_marker(e.surface, e.transparentcolour, target);
    if (colours.empty()) return {};
    const bool palette_icon = !e.truecolour;
    if (palette_icon) save_curpalette(e);
    ReduceOutcome out = take_palette(e, std::move(colours));
    e.undo.store(undo_picture(e));
    e.lastpalok = false;
    return out;
}

}  // namespace korvex::editor
