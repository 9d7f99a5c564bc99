#include "editor/palette_map.h"

#include <algorithm>
#include <cmath>

#include "editor/canvas.h"
#include "editor/palette_file.h"
#include "editor/raster.h"
#include "platform/files.h"

namespace korvex::editor {

namespace {

// Hue bands: the last slot stays 0 and is never reached.
constexpr int k_bands[9] = {0, 45, 55, 60, 180, 200, 270, 320, 0};
constexpr int k_near = 60;

}  // namespace

Hsv rgbtohsv(uint32_t colour) {
    const int r = static_cast<int>(red_of(colour)), g = static_cast<int>(green_of(colour)), b = static_cast<int>(blue_of(colour));
    const int mx = std::max({r, g, b}), mn = std::min({r, g, b});
    Hsv out;
    out.v = round_even(mx * 100.0 / 255.0);
    if (mx == 0) return out;
    out.s = round_even((mx - mn) * 100.0 / mx);
    if (mx == mn) return out;
    const double d = mx - mn;
    double h;
    if (mx == r)
        h = 60.0 * (g - b) / d;
    else if (mx == g)
        h = 60.0 * (b - r) / d + 120.0;
    else
        h = 60.0 * (r - g) / d + 240.0;
    if (h < 0) h += 360.0;
    out.h = round_even(h);
    return out;
}

uint32_t HSLToRGB02(int hue, int saturation, int value) {
    const double v = value * 255.0 / 100.0, s = saturation * 255.0 / 100.0;
    if (s <= 0) {
        const auto g = static_cast<uint32_t>(round_even(v));
        return rgb(g, g, g);
    }
    const double h = std::fmod(std::max(hue, 0), 360);
    const double c = v * s / 255.0;  // chroma
    const double lo = v - c;
    const double f = std::fmod(h, 60.0) / 60.0;
    const double up = lo + c * f, down = v - c * f;
    double r, g, b;
    if (h < 60) { r = v; g = up; b = lo; }
    else if (h < 120) { r = down; g = v; b = lo; }
    else if (h < 180) { r = lo; g = v; b = up; }
    else if (h < 240) { r = lo; g = down; b = v; }
    else if (h < 300) { r = up; g = lo; b = v; }
    else { r = v; g = lo; b = down; }
    auto ch = [](double x) { return static_cast<uint32_t>(std::clamp(round_even(x), 0, 255)); };
    return rgb(ch(r), ch(g), ch(b));
}

std::vector<uint32_t> chooser_colours(const std::string& palette_text) {
    std::vector<uint32_t> out = parse_tpal(palette_text);
    std::string low = palette_text;
    std::transform(low.begin(), low.end(), low.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (low.find("ffffff") == std::string::npos) out.push_back(rgb(255, 255, 255));
    if (low.find("000000") == std::string::npos) out.push_back(rgb(0, 0, 0));
    return out;
}

size_t nearest_index(uint32_t colour, const std::vector<uint32_t>& palette, const std::vector<Hsv>& hues) {
    int best = 1000;
    size_t best_at = palette.size();
    for (size_t i = 0; i < palette.size(); ++i) {
        const int dr = static_cast<int>(red_of(palette[i])) - static_cast<int>(red_of(colour));
        const int dg = static_cast<int>(green_of(palette[i])) - static_cast<int>(green_of(colour));
        const int db = static_cast<int>(blue_of(palette[i])) - static_cast<int>(blue_of(colour));
        const int d = round_even(std::sqrt(static_cast<double>(dr * dr + dg * dg + db * db)));
        if (d < best) {
            best = d;
            best_at = i;
        }
    }
    if (best_at == palette.size()) return best_at;
    const Hsv own = rgbtohsv(colour);
    if (best <= k_near || own.h < 1) return best_at;
    int band = 7;
    for (int k = 0; k < 9; ++k)
        if (k_bands[k] >= own.h) {
            band = k;
            break;
        }
    const int limit = k_bands[band];
    int top = -1;
    size_t top_at = best_at;
    for (size_t i = 0; i < palette.size(); ++i)
        if (hues[i].h <= limit && hues[i].h > top) {
            top = hues[i].h;
            top_at = i;
        }
    return top_at;
}

namespace {

bool may_map(const EditorSession& e, bool selection_active, platform::Prompt& ui) {
    if (e.truecolour) {
        ui.message("Convert to 256 Colours.");
        return false;
    }
    return !selection_active || ui.yes_no("Action applies to the whole image.");
}

bool map_onto(EditorSession& e, const std::string& palette_text, std::vector<size_t>* hidden) {
    const std::vector<uint32_t> pal = chooser_colours(palette_text);
    if (pal.empty()) return false;
    std::vector<Hsv> hues;
    hues.reserve(pal.size());
    for (uint32_t c : pal) hues.push_back(rgbtohsv(c));
    save_curpalette(e);
    // The two colours of a polygon's or line's bitmap must stay two.
    const bool must_differ = e.fn013() || e.is_group();
    std::vector<uint32_t> used;
    for (int i = 1; i <= e.ncols(); ++i) {
        if (e.palette.transparent(i, e.transparentcolour)) continue;
        const size_t at = nearest_index(e.palette.colour(i), pal, hues);
        uint32_t c = pal[at];
        if (c == rgb(0xFF, 0x00, 0xFF)) c = rgb(0xFF, 0x00, 0xFE);  // magenta marks transparency in bitmap files
        if (must_differ) {
            if (std::find(used.begin(), used.end(), c) != used.end()) {
                if (hidden && std::find(hidden->begin(), hidden->end(), at) == hidden->end()) hidden->push_back(at);
                continue;
            }
            used.push_back(c);
        }
        if (c != e.palette.colour(i)) e.changes1 |= ch_colour;
        e.palette.set(i, c);
    }
    painticon(e);
    e.eddirty = true;
    return true;
}

}  // namespace

bool apply_palette(EditorSession& e, const std::string& palette_text, bool selection_active, platform::Prompt& ui,
                   std::vector<size_t>* hidden) {
    return may_map(e, selection_active, ui) && map_onto(e, palette_text, hidden);
}

bool apply_palette_file(EditorSession& e, const std::string& path, bool selection_active, platform::Prompt& ui,
                        std::vector<size_t>* hidden) {
    if (!may_map(e, selection_active, ui)) return false;
    const std::optional<std::string> text = platform::read_file(path);
    if (!text) {
        ui.message("Can't find Palette " + path);
        return false;
    }
    return map_onto(e, *text, hidden);
}

}  // namespace korvex::editor
