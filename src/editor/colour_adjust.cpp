#include "editor/colour_adjust.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "editor/canvas.h"
#include "editor/raster.h"

namespace korvex::editor {

namespace {

uint32_t channel(int v) { return static_cast<uint32_t>(std::clamp(v, 0, 255)); }
int r_of(uint32_t c) { return static_cast<int>(red_of(c)); }
int g_of(uint32_t c) { return static_cast<int>(green_of(c)); }
int b_of(uint32_t c) { return static_cast<int>(blue_of(c)); }

// Applies fn to the entries the scope lets change. A result that hits the
// marker would turn the entry transparent: it moves one step of blue.
template <class Fn>
std::vector<uint32_t> each(const std::vector<uint32_t>& pal, const AdjustScope& scope, Fn fn) {
    std::vector<uint32_t> out = pal;
    for (size_t i = 0; i < pal.size(); ++i) {
        if (pal[i] == scope.marker) continue;
        if (scope.only != 0 && static_cast<int>(i) + 1 != scope.only) continue;
        uint32_t c = fn(pal[i]) & 0xFFFFFF;
        if (c == scope.marker) c ^= rgb(0, 0, 1);
        out[i] = c;
    }
    return out;
}

// Hue in sixths (0 to 6), lightness and saturation 0 to 1.
struct Hls {
    double h = 0, l = 0, s = 0;
};

Hls to_hls(uint32_t c) {
    const double r = r_of(c) / 255.0, g = g_of(c) / 255.0, b = b_of(c) / 255.0;
    const double mx = std::max({r, g, b}), mn = std::min({r, g, b});
    Hls out;
    out.l = (mx + mn) / 2;
    if (mx == mn) return out;
    const double d = mx - mn;
    out.s = out.l > 0.5 ? d / (2 - mx - mn) : d / (mx + mn);
    if (mx == r)
        out.h = (g - b) / d + (g < b ? 6 : 0);
    else if (mx == g)
        out.h = (b - r) / d + 2;
    else
        out.h = (r - g) / d + 4;
    return out;
}

double hue_channel(double p, double q, double t) {
    if (t < 0) t += 6;
    if (t >= 6) t -= 6;
    if (t < 1) return p + (q - p) * t;
    if (t < 3) return q;
    if (t < 4) return p + (q - p) * (4 - t);
    return p;
}

uint32_t from_hls(const Hls& c) {
    auto to8 = [](double v) { return channel(round_even(v * 255)); };
    if (c.s <= 0) return rgb(to8(c.l), to8(c.l), to8(c.l));
    const double q = c.l < 0.5 ? c.l * (1 + c.s) : c.l + c.s - c.l * c.s;
    const double p = 2 * c.l - q;
    return rgb(to8(hue_channel(p, q, c.h + 2)), to8(hue_channel(p, q, c.h)), to8(hue_channel(p, q, c.h - 2)));
}

// The mean of the three channels by their sum, 0 to 765.
const std::array<int, 766>& mean_of_sum() {
    static const std::array<int, 766> table = [] {
        std::array<int, 766> t{};
        for (int s = 0; s < 766; ++s) t[static_cast<size_t>(s)] = round_even(s / 3.0);
        return t;
    }();
    return table;
}

uint32_t grey_of(uint32_t c) {
    const auto m = static_cast<uint32_t>(mean_of_sum()[static_cast<size_t>(r_of(c) + g_of(c) + b_of(c))]);
    return rgb(m, m, m);
}

}  // namespace

std::vector<uint32_t> change_brightness(const std::vector<uint32_t>& pal, int value, const AdjustScope& scope) {
    if (value == 0) return pal;
    const int offset = round_even(value * 0.9);
    std::array<uint32_t, 256> colourbyvalue{};
    for (int i = 0; i < 256; ++i) colourbyvalue[static_cast<size_t>(i)] = channel(i + offset);
    return each(pal, scope, [&](uint32_t c) {
        return rgb(colourbyvalue[red_of(c)], colourbyvalue[green_of(c)], colourbyvalue[blue_of(c)]);
    });
}

std::vector<uint32_t> change_contrast(const std::vector<uint32_t>& pal, int value, const AdjustScope& scope) {
    if (value == 0) return pal;
    long sr = 0, sg = 0, sb = 0, n = 0;
    for (uint32_t c : pal) {
        if (c == scope.marker) continue;
        sr += r_of(c);
        sg += g_of(c);
        sb += b_of(c);
        ++n;
    }
    if (n == 0) return pal;
    const int mr = static_cast<int>(sr / n), mg = static_cast<int>(sg / n), mb = static_cast<int>(sb / n);
    const double f = (100 + value) / 100.0;
    auto move = [f](int c, int mean) { return channel(round_even(mean + (c - mean) * f)); };
    return each(pal, scope, [&](uint32_t c) { return rgb(move(r_of(c), mr), move(g_of(c), mg), move(b_of(c), mb)); });
}

std::vector<uint32_t> change_hls(const std::vector<uint32_t>& pal, int hue, int lightness, int saturation,
                                 const AdjustScope& scope) {
    if (hue == 0 && lightness == 0 && saturation == 0) return pal;
    const double shift = hue / 60.0;
    const double fl = (lightness + 100) / 100.0, fs = (saturation + 100) / 100.0;
    return each(pal, scope, [&](uint32_t c) {
        Hls v = to_hls(c);
        v.h += shift;
        if (v.h < 0) v.h += 6;
        if (v.h >= 6) v.h -= 6;
        v.l = std::min(v.l * fl, 1.0);
        v.s = std::min(v.s * fs, 1.0);
        return from_hls(v);
    });
}

std::vector<uint32_t> change_cols(const std::vector<uint32_t>& pal, int red, int green, int blue, int cyan, int magenta,
                                  int yellow, const AdjustScope& scope) {
    if (red == cyan && green == magenta && blue == yellow) return pal;
    return each(pal, scope, [&](uint32_t c) {
        return rgb(channel(r_of(c) + red - cyan), channel(g_of(c) + green - magenta), channel(b_of(c) + blue - yellow));
    });
}

std::vector<uint32_t> vibrance(const std::vector<uint32_t>& pal, int amount, const AdjustScope& scope) {
    if (amount == 0) return pal;
    return each(pal, scope, [&](uint32_t c) {
        const int ch[3] = {r_of(c), g_of(c), b_of(c)};
        const int mx = std::max({ch[0], ch[1], ch[2]});
        const int mean = mean_of_sum()[static_cast<size_t>(ch[0] + ch[1] + ch[2])];
        const double factor = std::abs(mx - mean) / 127.0 * amount / 100.0;
        uint32_t out[3];
        for (int k = 0; k < 3; ++k)
            out[k] = ch[k] == mx ? static_cast<uint32_t>(ch[k]) : channel(round_even(ch[k] + (mx - ch[k]) * factor));
        return rgb(out[0], out[1], out[2]);
    });
}

std::vector<uint32_t> adjusted(const std::vector<uint32_t>& origpal, const Sliders& s, const AdjustScope& scope) {
    std::vector<uint32_t> pal = change_brightness(origpal, s.brightness, scope);
    pal = change_contrast(pal, s.contrast, scope);
    pal = change_hls(pal, s.hue, s.lightness, s.saturation, scope);
    pal = change_cols(pal, s.red, s.green, s.blue, s.cyan, s.magenta, s.yellow, scope);
    return vibrance(pal, s.vibrance, scope);
}

std::string slider_label(const std::string& name, int value) { return name + " " + std::to_string(value); }

void ColourAdjuster::open(EditorSession& e) {
    truecolour_ = e.truecolour;
    origpal_ = truecolour_ ? e.surface.pixels() : e.palette.colours;
    if (!truecolour_) save_curpalette(e);
    sliders_ = {};
    open_ = true;
}

void ColourAdjuster::show(EditorSession& e, const std::vector<uint32_t>& colours) const {
    if (truecolour_) {
        if (colours.size() == e.surface.pixels().size()) e.surface.pixels() = colours;
        return;
    }
    if (colours.size() != e.palette.colours.size()) return;
    e.palette.colours = colours;
    painticon(e);
}

void ColourAdjuster::move(EditorSession& e, const Sliders& s) {
    if (!open_) return;
    sliders_ = s;
    AdjustScope scope;
    scope.marker = e.transparentcolour;
    if (onecolour_ && !truecolour_) scope.only = e.palette.valid(e.curcol) ? e.curcol : -1;
    show(e, adjusted(origpal_, s, scope));
}

void ColourAdjuster::set_onecolour(EditorSession& e, bool on) {
    onecolour_ = on;
    move(e, sliders_);
}

void ColourAdjuster::restore(EditorSession& e) {
    if (!open_) return;
    sliders_ = {};
    show(e, origpal_);
}

void ColourAdjuster::apply(EditorSession& e) {
    if (!open_) return;
    open_ = false;
    const std::vector<uint32_t> now = truecolour_ ? e.surface.pixels() : e.palette.colours;
    if (now == origpal_) {
        e.lastpalok = false;
        return;
    }
    origpal_ = now;  // setpal
    e.eddirty = true;
    e.changes2 |= ch_filter;
    if (sliders_.brightness != 0) e.changes2 |= ch_brightness;
    if (truecolour_) e.undo.store(undo_picture(e));
    else e.changes1 |= ch_colour;
}

void ColourAdjuster::cancel(EditorSession& e) {
    if (!open_) return;
    show(e, origpal_);  // setorigpal
    sliders_ = {};
    open_ = false;
    if (!truecolour_) e.lastpalok = false;
}

bool minvert(EditorSession& e, platform::Prompt& ui) {
    if (e.truecolour) {
        ui.message("Convert to 256 Colours first.");
        return false;
    }
    save_curpalette(e);
    AdjustScope scope;
    scope.marker = e.transparentcolour;
    e.palette.colours = each(e.palette.colours, scope, [](uint32_t c) { return ~c & 0xFFFFFF; });
    painticon(e);
    e.eddirty = true;
    e.changes1 |= ch_colour;
    e.changes2 |= ch_filter;
    return true;
}

bool mdesat(EditorSession& e) {
    AdjustScope scope;
    scope.marker = e.transparentcolour;
    if (e.truecolour) {
        e.surface.pixels() = each(e.surface.pixels(), scope, grey_of);
        e.undo.store(undo_picture(e));
    } else {
        save_curpalette(e);
        e.palette.colours = each(e.palette.colours, scope, grey_of);
        painticon(e);
        e.changes1 |= ch_colour;
    }
    e.eddirty = true;
    e.changes2 |= ch_filter;
    return true;
}

}  // namespace korvex::editor
