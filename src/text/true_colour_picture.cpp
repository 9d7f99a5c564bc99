// Pictures whose pixels are colours ("#RRGGBB" a pixel) turned into a
// palette, for the place where a record cannot hold them as they are: a
// night picture always has a palette.
#include <algorithm>
#include <climits>
#include <unordered_map>

#include "text/point_picture.h"
#include "typ/curf_access.h"
#include "typ/point_pixels.h"

namespace korvex::text::point_text {

namespace {

constexpr int k_max_colours = 255;

struct Pixel {
    uint32_t rgb = 0;  // 0xRRGGBB as written
    int alpha = -1;
};

int distance(uint32_t a, uint32_t b) {
    const int dr = static_cast<int>(a >> 16 & 0xFF) - static_cast<int>(b >> 16 & 0xFF);
    const int dg = static_cast<int>(a >> 8 & 0xFF) - static_cast<int>(b >> 8 & 0xFF);
    const int db = static_cast<int>(a & 0xFF) - static_cast<int>(b & 0xFF);
    return dr * dr + dg * dg + db * db;
}

}  // namespace

bool true_colour_rows(const std::vector<std::string_view>& rows) {
    return std::any_of(rows.begin(), rows.end(), [](std::string_view r) { return holds(r, "#"); });
}

PalettePicture palette_from_true_colour(const std::vector<std::string_view>& rows) {
    std::vector<Pixel> table;
    std::unordered_map<uint64_t, int> index;  // rgb and alpha to table entry
    std::vector<std::vector<int>> pixels(rows.size());
    for (size_t y = 0; y < rows.size(); ++y) {
        const std::string_view row = rows[y];
        for (size_t h = row.find('#'); h != std::string_view::npos; h = row.find('#', h + 1)) {
            size_t n = 0;
            while (h + 1 + n < row.size() && is_hex(row[h + 1 + n]) && n < 8) ++n;
            if (n < 6) continue;
            Pixel px;
            px.rgb = static_cast<uint32_t>(typ::hex_value(row.substr(h + 1, 6)));
            if (n == 8) px.alpha = static_cast<int>(typ::hex_value(row.substr(h + 8, 1)));
            const uint64_t key = static_cast<uint64_t>(px.rgb) << 8 | static_cast<uint64_t>(px.alpha + 1);
            auto [it, fresh] = index.try_emplace(key, static_cast<int>(table.size()));
            if (fresh) {
                if (static_cast<int>(table.size()) < k_max_colours) {
                    table.push_back(px);
                } else {
                    int best = 0, best_d = INT_MAX;
                    for (int k = 0; k < k_max_colours; ++k) {
                        const int d = distance(table[static_cast<size_t>(k)].rgb, px.rgb);
                        if (d < best_d) best = k, best_d = d;
                    }
                    it->second = best;
                }
            }
            pixels[y].push_back(it->second);
        }
    }

    PalettePicture out;
    const int count = static_cast<int>(table.size());
    out.cpp = typ::symbol_width(count);
    out.alpha = std::any_of(table.begin(), table.end(), [](const Pixel& p) { return p.alpha >= 0; });
    static const char* hx = "0123456789ABCDEF";
    for (int k = 0; k < count; ++k) {
        const Pixel& p = table[static_cast<size_t>(k)];
        std::string line = "\"";
        typ::append_symbol(line, k, out.cpp);
        line += " c #";
        for (int shift = 20; shift >= 0; shift -= 4) line += hx[p.rgb >> shift & 15];
        line += '"';
        if (out.alpha) line += " alpha=" + std::to_string(std::max(p.alpha, 0));
        out.colours.push_back(std::move(line));
    }
    for (const std::vector<int>& row : pixels) {
        std::string r;
        for (int v : row) typ::append_symbol(r, v, out.cpp);
        out.rows.push_back(std::move(r));
    }
    return out;
}

}  // namespace korvex::text::point_text
