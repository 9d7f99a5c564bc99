#include "editor/point_picture_text.h"

#include <algorithm>
#include <cctype>

#include "editor/canvas.h"
#include "editor/opacity.h"
#include "editor/palette_file.h"
#include "editor/point_pictures.h"
#include "model/store.h"

namespace korvex::editor {

namespace {

bool has_transparent(const PointPicture& p, uint32_t marker) {
    if (p.truecolour) return std::find(p.surface.pixels().begin(), p.surface.pixels().end(), marker) != p.surface.pixels().end();
    return p.palette.first_transparent(marker) != 0;
}

// The head's tail with the colormode's digits set, or " Colormode=" added.
std::string tail_with_mode(std::string tail, int mode) {
    std::string low = tail;
    std::transform(low.begin(), low.end(), low.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const size_t m = low.find("colormode=");
    if (m == std::string::npos) return " Colormode=" + std::to_string(mode);
    size_t end = m + 10;
    while (end < tail.size() && std::isdigit(static_cast<unsigned char>(tail[end]))) ++end;
    if (std::atoi(low.c_str() + m + 10) != mode) tail.replace(m + 10, end - m - 10, std::to_string(mode));
    return tail;
}

}  // namespace

int colormode_to_write(const PointPicture& p, uint32_t marker) {
    if (p.alpha) return 32;
    if (p.colormode == 32) return 32;
    if (p.truecolour) return p.colormode;
    return has_transparent(p, marker) ? 16 : 0;
}

std::vector<std::string> point_colour_lines(const PointPicture& p, uint32_t marker) {
    const Palette& pal = p.palette;
    const int n = pal.ncols();
    bool any_alpha = false;
    for (int i = 1; i <= n; ++i)
        any_alpha = any_alpha || (static_cast<size_t>(i - 1) < pal.alpha.size() && pal.alpha[static_cast<size_t>(i - 1)] != k_no_alpha);
    std::vector<std::string> out;
    std::string joined;
    std::vector<int> levels;
    for (int i = 1; i <= n; ++i) {
        const bool transparent = pal.transparent(i, marker);
        const bool stated = static_cast<size_t>(i - 1) < pal.alpha.size() && pal.alpha[static_cast<size_t>(i - 1)] != k_no_alpha;
        std::string l = "\"" + point_symbol(i - 1, n) + " c ";
        if (transparent && p.alpha && any_alpha)
            l += "#000000\" alpha=15";
        else
            l += (transparent ? std::string("none") : "#" + hex6(pal.colour(i))) + "\"";
        if (p.alpha && stated && !transparent) l += " alpha=" + std::to_string(pal.alpha[static_cast<size_t>(i - 1)]);
        levels.push_back(level_of(pal, i, marker));
        joined += l + "\n";
    }
    if (p.alpha) joined = addalpha(joined, levels);
    size_t s = 0;
    while (s < joined.size()) {
        const size_t e = joined.find('\n', s);
        out.push_back(joined.substr(s, e - s));
        s = e + 1;
    }
    return out;
}

std::vector<std::string> point_picture_lines(const PointPicture& picture, const std::string& old_head, int width, int height,
                                             uint32_t marker) {
    PointPicture p = picture;
    fold_opacity(p, marker);
    const size_t q = old_head.find('"');
    std::string key = q != std::string::npos ? old_head.substr(0, q) : !old_head.empty() && old_head.back() == '=' ? old_head : "Xpm=";
    const size_t close = q == std::string::npos ? std::string::npos : old_head.find('"', q + 1);
    const std::string tail = tail_with_mode(close == std::string::npos ? std::string() : old_head.substr(close + 1), colormode_to_write(p, marker));
    const std::string size = std::to_string(width) + " " + std::to_string(height);
    std::vector<std::string> out;
    if (p.truecolour) {
        // No colour table: each pixel is "#RRGGBB" in its row.
        static const char* hex = "0123456789ABCDEF";
        out.push_back(key + "\"" + size + " 0 0\"" + tail);
        for (int y = 0; y < height; ++y) {
            std::string row = "\"";
            for (int x = 0; x < width; ++x) {
                row += "#" + hex6(p.surface.at(x, y));
                const int level = p.alpha ? std::min<int>(p.opacity.at(x, y), 15) : 0;
                if (level > 0) row += {'0', hex[level]};
            }
            out.push_back(row + "\"");
        }
        return out;
    }
    const int n = p.palette.ncols();
    const int cpp = n >= model::cpp_limit ? 2 : 1;
    // A picture of one colour is written as two: "$" white and unused, the
    // pixels "%" in the colour.
    const bool one_colour = n == 1;
    out.push_back(key + "\"" + size + " " + std::to_string(one_colour ? 2 : n) + " " + std::to_string(cpp) + "\"" + tail);
    std::vector<std::string> colours = point_colour_lines(p, marker);
    if (one_colour) {
        colours[0][1] = '%';
        colours.insert(colours.begin(), "\"$ c #FFFFFF\"" + std::string(p.alpha ? " alpha=0" : ""));
    }
    out.insert(out.end(), colours.begin(), colours.end());
    for (int y = 0; y < height; ++y) {
        std::string row = "\"";
        for (int x = 0; x < width; ++x) row += one_colour ? std::string("%") : point_symbol(p.pixels.at(x, y), n);
        out.push_back(row + "\"");
    }
    return out;
}

}  // namespace korvex::editor
