#include "editor/colour_reduction.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <unordered_map>

#include "editor/canvas.h"
#include "editor/median_cut.h"
#include "model/nearest_colour.h"

namespace korvex::editor {

namespace {

// Colours a merge keeps apart, and the count of colours above which the
// near ones are merged before the list is built.
constexpr int k_merge_distance = 60;
constexpr int k_merge_above = 10;

// Polygons and lines (one element or a group): two day colours at most,
// and always two.
bool two_colour_class(const EditorSession& e) { return e.fn013() || e.is_group(); }

int distinct_colours(const Raster& r) {
    std::vector<uint32_t> v = r.pixels();
    std::sort(v.begin(), v.end());
    return static_cast<int>(std::unique(v.begin(), v.end()) - v.begin());
}

// The picture as histogram reads it: width x height pixels, at least 1 x 1.
Raster sample(const EditorSession& e) {
    const int w = std::max(e.width, 1), h = std::max(e.height, 1);
    if (e.surface.width() == w && e.surface.height() == h) return e.surface;
    Raster r(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) r.set(x, y, e.surface.at(x, y));
    return r;
}

// Rounds each channel value up to its level.
std::array<uint8_t, 256> round_up_table(const std::vector<int>& levels) {
    std::array<uint8_t, 256> t{};
    size_t k = 0;
    for (int v = 0; v < 256; ++v) {
        while (k < levels.size() && levels[k] < v) ++k;
        t[static_cast<size_t>(v)] = static_cast<uint8_t>(k < levels.size() ? levels[k] : levels.empty() ? v : levels.back());
    }
    return t;
}

void fit_pixels(EditorSession& e) {
    if (e.pixels.width() != e.width || e.pixels.height() != e.height) e.pixels = PixelGrid(e.width, e.height);
}

// The palette becomes the colours, by the rules of the class.
void set_palette(EditorSession& e, std::vector<uint32_t> colours) {
    if (two_colour_class(e)) {
        // A polygon or line has its transparent entry second, and always two.
        const auto m = std::find(colours.begin(), colours.end(), e.transparentcolour);
        if (m != colours.end()) std::rotate(m, m + 1, colours.end());
        if (colours.size() == 1) colours.push_back(colours[0] == e.transparentcolour ? 0xFFFFFFu : e.transparentcolour);
    }
    const bool opacity = !e.palette.alpha.empty();
    if (static_cast<int>(colours.size()) != e.ncols()) e.changes1 |= ch_ncols;
    e.palette.alpha.assign(opacity ? colours.size() : 0, 0);
    e.palette.colours = std::move(colours);
    e.truecolour = false;
    e.eddirty = true;
    e.curcol = std::min(e.curcol, e.ncols());
    e.curcol2 = std::min(e.curcol2, e.ncols());
}


}  // namespace

int levelsteps(ReduceMode mode) { return mode == ReduceMode::full ? 64 : 8; }

int colour_distance(uint32_t a, uint32_t b) {
    const int dr = static_cast<int>(red_of(a)) - static_cast<int>(red_of(b));
    const int dg = static_cast<int>(green_of(a)) - static_cast<int>(green_of(b));
    const int db = static_cast<int>(blue_of(a)) - static_cast<int>(blue_of(b));
    const int sum = dr * dr + dg * dg + db * db;
    int d = static_cast<int>(std::sqrt(static_cast<double>(sum)));
    while (d * d > sum) --d;
    while ((d + 1) * (d + 1) <= sum) ++d;
    return d;
}

std::vector<int> channel_levels(const ChannelHistogram& hist, int steps) {
    // The width of a group: 255 / steps to the nearest whole number, half to
    // even, so that 64 and 8 groups cover 0..255 exactly.
    const int step = std::max(1, static_cast<int>(std::nearbyint(255.0 / std::max(steps, 1))));
    std::vector<int> levels;
    uint32_t top = 0;
    int kept = 0;
    for (int v = 0; v < 256; ++v) {
        if (hist[static_cast<size_t>(v)] >= top) {
            top = hist[static_cast<size_t>(v)];
            kept = v;
        }
        if (v % step == step - 1 && v >= 1) {
            levels.push_back(kept);
            top = 0;
        }
    }
    std::sort(levels.begin(), levels.end());
    levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
    return levels;
}

Quantised quantise(const Raster& picture, uint32_t marker, int steps) {
    ChannelHistogram hr{}, hg{}, hb{};
    // The marker is counted with the rest; it is only spared the rounding.
    for (uint32_t c : picture.pixels()) {
        ++hr[red_of(c)];
        ++hg[green_of(c)];
        ++hb[blue_of(c)];
    }
    const auto tr = round_up_table(channel_levels(hr, steps));
    const auto tg = round_up_table(channel_levels(hg, steps));
    const auto tb = round_up_table(channel_levels(hb, steps));

    Quantised q;
    q.counts.assign(256, 0);
    q.indexes.resize(picture.pixels().size());
    std::unordered_map<uint32_t, uint8_t> index_of;
    index_of.reserve(512);
    uint32_t last_in = 0xFFFFFFFF;
    uint8_t last_index = 0;
    for (size_t i = 0; i < picture.pixels().size(); ++i) {
        const uint32_t c = picture.pixels()[i];
        uint8_t index;
        if (c == last_in) {
            index = last_index;
        } else {
            const uint32_t r = c == marker ? c : rgb(tr[red_of(c)], tg[green_of(c)], tb[blue_of(c)]);
            const auto hit = index_of.find(r);
            if (hit != index_of.end()) {
                index = hit->second;
            } else if (static_cast<int>(q.colours.size()) < k_colour_list_cap) {
                index = static_cast<uint8_t>(q.colours.size());
                q.colours.push_back(r);
                index_of.emplace(r, index);
            } else {
                index = k_surplus_index;
            }
            last_in = c;
            last_index = index;
        }
        q.indexes[i] = index;
        ++q.counts[index];
    }
    return q;
}

std::vector<uint32_t> choose_by_frequency(const Quantised& q, int target, uint32_t marker) {
    if (target <= 0) target = 2;
    target = std::min(target, k_max_colours);
    const size_t n = q.colours.size();
    std::vector<size_t> order(n);
    std::iota(order.begin(), order.end(), 0);
    std::vector<uint32_t> count(q.counts.begin(), q.counts.begin() + static_cast<std::ptrdiff_t>(n));
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return count[a] > count[b]; });

    auto colour = [&](size_t k) { return q.colours[order[k]]; };
    if (n > static_cast<size_t>(k_merge_above)) {
        for (size_t i = 0; i < n; ++i) {
            if (count[order[i]] == 0 || colour(i) == marker) continue;
            for (size_t j = i + 1; j < n; ++j)
                if (count[order[j]] > 0 && colour(j) != marker && colour_distance(colour(i), colour(j)) <= k_merge_distance)
                    count[order[j]] = 0;
        }
    }
    std::vector<uint32_t> chosen;
    bool any = false;
    uint32_t last = 0;
    for (size_t k = 0; k < n && static_cast<int>(chosen.size()) < target; ++k) {
        if (count[order[k]] == 0) continue;
        const uint32_t c = colour(k);
        if (c == marker) {
            chosen.push_back(c);
            continue;
        }
        if (any && colour_distance(last, c) <= k_merge_distance) continue;
        chosen.push_back(c);
        last = c;
        any = true;
    }
    return chosen;
}

ReduceOutcome histogram(EditorSession& e, ReduceMode mode, int target) {
    ReduceOutcome out;
    const Raster picture = sample(e);
    out.before = distinct_colours(picture);
    const Quantised q = quantise(picture, e.transparentcolour, levelsteps(mode));
    std::vector<uint32_t> chosen = mode == ReduceMode::paste ? choose_by_frequency(q, target, e.transparentcolour) : q.colours;
    out.palette_kept = static_cast<int>(chosen.size()) >= k_colour_list_cap;
    const bool listed = mode != ReduceMode::paste && !out.palette_kept;  // the palette is the colour list
    if (out.palette_kept && (e.truecolour || e.ncols() == 0)) {
        // A true-colour icon has no palette that could stay: the picture
        // takes the most colours a palette holds, by median cut.
        chosen = median_cut_with_marker(picture, e.transparentcolour, k_max_colours);
        out.palette_kept = false;
    }
    if (out.palette_kept) {
        e.truecolour = false;
        e.eddirty = true;
    } else {
        set_palette(e, std::move(chosen));
    }
    out.after = e.ncols();

    fit_pixels(e);
    // A point in the colours of the list takes its indexes as they are; in
    // every other case (another class, a chosen subset, the old palette
    // kept) the indexes would not name the right entries, so each pixel
    // takes its nearest entry instead.
    const bool indexes_fit = e.curclass == 2 && listed && q.indexes.size() == e.pixels.values().size();
    if (indexes_fit) {
        e.pixels.values() = q.indexes;
        painticon(e);
    } else {
        reducecols(e);
    }
    return out;
}

ReduceOutcome take_palette(EditorSession& e, std::vector<uint32_t> colours) {
    ReduceOutcome out;
    out.before = distinct_colours(e.surface);
    set_palette(e, std::move(colours));
    out.after = e.ncols();
    reducecols(e);
    return out;
}

std::string reduce_status(const ReduceOutcome& r) {
    return "Reducing colours from " + std::to_string(r.before) + " to " + std::to_string(r.after);
}

void reducecols(EditorSession& e) {
    const int n = e.ncols();
    if (n == 0 || (two_colour_class(e) && n < 2)) return;
    fit_pixels(e);
    const model::NearestColour nearest(e.palette.colours);
    std::unordered_map<uint32_t, uint8_t> known;
    known.reserve(1024);
    uint32_t last_in = 0xFFFFFFFF;
    uint8_t last_index = 0;
    for (int y = 0; y < e.height; ++y)
        for (int x = 0; x < e.width; ++x) {
            const uint32_t c = e.surface.at(x, y);
            if (c != last_in) {
                const auto hit = known.find(c);
                last_index = hit != known.end() ? hit->second : known.emplace(c, static_cast<uint8_t>(nearest(c))).first->second;
                last_in = c;
            }
            e.pixels.set(x, y, last_index);
        }
    painticon(e);
}

}  // namespace korvex::editor
