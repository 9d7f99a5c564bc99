#include "editor/image_filters.h"

#include <cmath>
#include <cstdlib>

#include "editor/canvas.h"
#include "editor/colour_reduction.h"
#include "editor/raster.h"

namespace korvex::editor {

namespace {

// Below this on both sides the convolution filters warn.
constexpr int k_filter_min_side = 16;
// Channel results below this become black.
constexpr int k_black_below = 50;
constexpr int k_emboss_bias = -127;

// The ring's offsets, in the order of the weights.
constexpr int k_ring_dx[8] = {-1, -1, -1, 0, 1, 1, 1, 0};
constexpr int k_ring_dy[8] = {-1, 0, 1, 1, 1, 0, -1, -1};

int clamp_channel(int v) {
    if (v > 255) return 255;
    if (v < k_black_below) return 0;
    return v;
}

// The picture as the filter reads it: three channels a pixel, 0 for a
// transparent pixel.
struct Channels {
    int w = 0, h = 0;
    std::vector<std::array<int, 3>> v;
    std::array<int, 3> at(int x, int y) const {
        if (x < 0 || y < 0 || x >= w || y >= h) return {0, 0, 0};
        return v[static_cast<size_t>(y) * static_cast<size_t>(w) + static_cast<size_t>(x)];
    }
};

Channels filtergrid(const Raster& in, uint32_t marker) {
    Channels g;
    g.w = in.width();
    g.h = in.height();
    g.v.reserve(in.pixels().size());
    for (uint32_t c : in.pixels()) {
        if (c == marker)
            g.v.push_back({0, 0, 0});
        else
            g.v.push_back({static_cast<int>(red_of(c)), static_cast<int>(green_of(c)), static_cast<int>(blue_of(c))});
    }
    return g;
}

}  // namespace

const std::vector<FilterDef>& filter_table() {
    static const std::vector<FilterDef> table = {
        {f_emboss, "Emboss", {}, 0, k_emboss_bias},
        {f_extrude, "Extrude", {}, 0, 0},
        {f_sharpen_gentle, "Sharpen Gentle", {0, -1, 0, -1, 0, -1, 0, -1}, 5, 127},
        {f_sharpen_hard, "Sharpen Hard", {0, -1, 0, -1, 0, -1, 0, -1}, 4, 96},
        {f_soft_outline, "Soft Outline", {-1, -2, -1, 0, 1, 2, 1, 0}, 0, 64},
        {f_hard_outline, "Hard Outline", {1, 1, 1, 1, 1, -1, -1, -1}, -2, 32},
        {f_blur, "Blur", {1, 1, 1, 1, 1, 1, 1, 1}, 12, 8},
    };
    return table;
}

const FilterDef* filter_of(int code) {
    for (const FilterDef& d : filter_table())
        if (d.code == code) return &d;
    return nullptr;
}

std::optional<Raster> filter_picture(const Raster& in, int code, uint32_t marker) {
    const FilterDef* def = filter_of(code);
    if (!def) return std::nullopt;
    const Channels g = filtergrid(in, marker);
    Raster out = in;
    const bool difference = code == f_emboss || code == f_extrude;
    const bool outline = code > f_sharpen_hard && code < f_blur;
    int divisor = def->centre;
    for (int w : def->ring) divisor += w;
    // The outlines' weights sum to 0 by design: they divide by 1. Sharpen
    // Hard's 0 stops the run instead, and its entry is kept that way.
    if (outline && divisor == 0) divisor = 1;

    for (int y = 0; y < g.h; ++y)
        for (int x = 0; x < g.w; ++x) {
            if (in.at(x, y) == marker) continue;
            const std::array<int, 3> p = g.at(x, y);
            std::array<int, 3> v{};
            if (difference) {
                const std::array<int, 3> q = g.at(x + 1, y + 1);
                int sum = 0;
                for (int c = 0; c < 3; ++c) sum += std::abs(p[c] - q[c] + def->bias);
                const int grey = clamp_channel(round_even(sum / 3.0));
                v = {grey, grey, grey};
            } else {
                if (divisor == 0) return std::nullopt;
                for (int c = 0; c < 3; ++c) {
                    int acc = 0;
                    for (int k = 0; k < 8; ++k) acc += def->ring[static_cast<size_t>(k)] * g.at(x + k_ring_dx[k], y + k_ring_dy[k])[c];
                    int value = round_even(static_cast<double>(def->centre * p[c] + acc) / divisor + def->bias);
                    if (outline) value = 255 - value;
                    v[c] = clamp_channel(value);
                }
            }
            out.set(x, y, rgb(static_cast<uint32_t>(v[0]), static_cast<uint32_t>(v[1]), static_cast<uint32_t>(v[2])));
        }
    return out;
}

bool Filter(EditorSession& e, int code, platform::Prompt& ui) {
    if (!filter_of(code)) return false;
    if (code > f_extrude && e.width < k_filter_min_side && e.height < k_filter_min_side)
        ui.message("Filters work only on width and height > 16.");
    if (e.truecolour) {
        ui.message("Convert to 256 Colours first.");
        return false;
    }
    if (e.width <= 0 || e.height <= 0) return false;
    if (e.palette.first_transparent(e.transparentcolour) != 0 && e.undo.level() >= 1 &&
        !ui.yes_no("All previous undos will be cleared.\r\nContinue anyway?"))
        return false;
    std::optional<Raster> out = filter_picture(e.surface, code, e.transparentcolour);
    if (!out) return false;
    save_curpalette(e);
    e.surface = std::move(*out);
    const bool point = e.curclass == 2 || e.curclass == 4;
    ui.status(reduce_status(histogram(e, point ? ReduceMode::full : ReduceMode::paste)));
    // One step of the history, with the palette the reduction made.
    e.undo.store(undo_picture(e));
    e.lastpalok = false;
    e.eddirty = true;
    e.changes2 |= ch_filter;
    return true;
}

}  // namespace korvex::editor
