// The painters read only the columns: rows of palette digits ("0"/"1" on
// polygons and lines, canonical symbols on points), the colour lines and the
// Xpm head. Whatever is in them, they return a raster of the stated size or
// an empty one with one report line; they never read outside a row.
#include "workbench/icon_painter.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "typ/point_pixels.h"
#include "workbench/colour_table.h"

namespace korvex::workbench {

namespace {

constexpr int k_side = 32;           // polygon tiles and line rows are 32 pixels wide
using typ::k_symbol_base;             // "$", the symbol of colour 0 in point rows
constexpr int k_symbol_span = 16;    // second character of a two-character symbol
constexpr int k_max_stored_point_side = 255;  // a point record holds each side in a byte

// One row of a CR LF list at a time, without its line end.
class Rows {
public:
    explicit Rows(std::string_view text) : text_(text) {}
    bool next(std::string_view& row) {
        if (pos_ >= text_.size()) return false;
        size_t nl = text_.find('\n', pos_);
        if (nl == std::string_view::npos) nl = text_.size();
        row = text_.substr(pos_, nl - pos_);
        if (!row.empty() && row.back() == '\r') row.remove_suffix(1);
        pos_ = nl + 1;
        return true;
    }

private:
    std::string_view text_;
    size_t pos_ = 0;
};

Raster filled(int w, int h, uint32_t colour, IconFit fit) {
    Raster r;
    r.w = w;
    r.h = h;
    r.fit = fit;
    r.px.assign(static_cast<size_t>(w) * static_cast<size_t>(h), colour);
    return r;
}

// The four palette digits of a polygon or line: a line's key digit says its
// slot, any other key takes the next slot in order.
struct Slots {
    std::array<uint32_t, 4> colour{};
    std::array<bool, 4> set{};
};

Slots slots_of(const ColourTable& t, uint32_t background) {
    Slots s;
    int k = 0;
    for (const ColourEntry& e : t.entries) {
        int slot = e.key >= '0' && e.key <= '3' ? e.key - '0' : k;
        ++k;
        if (slot < 0 || slot > 3 || s.set[static_cast<size_t>(slot)]) continue;
        s.colour[static_cast<size_t>(slot)] = shown(e, background);
        s.set[static_cast<size_t>(slot)] = true;
    }
    return s;
}

uint32_t slot_colour(const Slots& s, int slot, uint32_t background) {
    if (slot < 0 || slot > 3 || !s.set[static_cast<size_t>(slot)]) return background;
    return s.colour[static_cast<size_t>(slot)];
}

std::string line_type(const model::Store& s, int32_t row) {
    static const char* const k_hex = "0123456789abcdef";
    std::string out = "0x";
    const auto v = static_cast<uint32_t>(s.ln_code[static_cast<size_t>(row)]);
    std::string digits;
    for (uint32_t x = v; x; x >>= 4) digits.insert(digits.begin(), k_hex[x & 15]);
    if (digits.size() < 5) digits.insert(0, 5 - digits.size(), '0');
    return out + digits;
}

bool polygon_solid(const model::Store& s, size_t r) {
    const int mode = s.pg_mode[r] & 15;
    if (mode == 6 || mode == 7) return true;
    const bool bitmap_scheme = mode == 8 || mode == 9 || mode == 11 || mode == 13 || mode == 14 || mode == 15;
    return !bitmap_scheme && s.pg_bmp[r].empty();
}

// Night colours of a polygon: digits 2 and 3 of a tile, or the second colour
// of a solid one.
bool polygon_night(const model::Store& s, size_t r, const Slots& slots) {
    if (polygon_solid(s, r)) return slots.set[1] && (s.pg_mode[r] & 15) == 7;
    return slots.set[2] || slots.set[3];
}

bool line_bitmap(const model::Store& s, size_t r) { return (s.ln_mode[r] >> 3) > 0; }

// A solid line of two colours without border is a day and a night colour.
bool line_day_night_pair(const model::Store& s, size_t r, const Slots& slots) {
    return !line_bitmap(s, r) && (s.ln_mode[r] & 7) == 7 && !slots.set[2] && !slots.set[3];
}

bool line_night(const model::Store& s, size_t r, const Slots& slots) {
    if (line_day_night_pair(s, r, slots)) return slots.set[1];
    return slots.set[2] || slots.set[3];
}

// The four numbers of a point's Xpm head: width, height, colours, characters
// a pixel. False when the head holds fewer.
bool read_head(std::string_view xpm, std::array<int, 4>& f) {
    size_t at = xpm.find('"');
    if (at == std::string_view::npos) return false;
    ++at;
    for (int k = 0; k < 4; ++k) {
        while (at < xpm.size() && (xpm[at] == ' ' || xpm[at] == '\t')) ++at;
        int v = 0, digits = 0;
        while (at < xpm.size() && xpm[at] >= '0' && xpm[at] <= '9' && digits < 6) {
            v = v * 10 + (xpm[at] - '0');
            ++at;
            ++digits;
        }
        if (digits == 0) return false;
        f[static_cast<size_t>(k)] = v;
    }
    return true;
}

// Heads of a picture that was never there: the decoder writes them for
// icons it could not read, so the cell stays empty.
bool malformed_head(const std::array<int, 4>& f) {
    const auto is = [&f](int a, int b, int c, int d) { return f[0] == a && f[1] == b && f[2] == c && f[3] == d; };
    return is(0, 0, 0, 1) || is(0, 0, 0, 0) || is(1, 1, 0, 1);
}

// Rows of canonical symbols in the colours of a table. Every point pixel
// passes here, so a symbol is looked up, not computed: one table by the
// character, the second character of a two-character symbol adding its
// place within the first's run of 16.
Raster point_rows(model::Store& s, const std::string& type, std::string_view rows, const std::vector<uint32_t>& colours,
                  int w, int h, uint32_t background) {
    Raster out = filled(w, h, background, IconFit::picture);
    // The symbol width follows from the table, as the readers write it; a
    // row of twice the width says so too.
    int cpp = colours.size() >= static_cast<size_t>(model::cpp_limit) ? 2 : 1;
    std::string_view row;
    {
        Rows peek(rows);
        if (peek.next(row)) {
            if (row.size() == static_cast<size_t>(2 * w)) cpp = 2;
            else if (row.size() == static_cast<size_t>(w)) cpp = 1;
        }
    }
    // One character: its colour. Two: the first character's colour index
    // times 16 (-1 when it names none).
    std::array<uint32_t, 256> colour_of{};
    std::array<int, 256> index_of{};
    colour_of.fill(background);
    index_of.fill(-1);
    for (int c = k_symbol_base; c < 256; ++c) {
        const auto v = static_cast<size_t>(c - k_symbol_base);
        if (cpp == 1 && v < colours.size()) {
            colour_of[static_cast<size_t>(c)] = colours[v];
            index_of[static_cast<size_t>(c)] = static_cast<int>(v);
        } else if (cpp == 2 && v * k_symbol_span < colours.size()) {
            index_of[static_cast<size_t>(c)] = static_cast<int>(v) * k_symbol_span;
        }
    }
    const auto n = static_cast<int>(colours.size());
    Rows lines(rows);
    bool stray = false;
    for (int y = 0; y < h && lines.next(row); ++y) {
        uint32_t* dst = out.px.data() + static_cast<size_t>(y) * static_cast<size_t>(w);
        const auto* p = reinterpret_cast<const unsigned char*>(row.data());
        const int have = std::min(w, static_cast<int>(row.size()) / cpp);
        if (cpp == 1) {
            for (int x = 0; x < have; ++x) {
                dst[x] = colour_of[p[x]];
                stray |= index_of[p[x]] < 0;
            }
        } else {
            for (int x = 0; x < have; ++x) {
                const int hi = index_of[p[2 * x]];
                const int lo = p[2 * x + 1] - k_symbol_base;
                const int v = hi + lo;
                if (hi < 0 || lo < 0 || lo >= k_symbol_span || v >= n) {
                    stray = true;
                    continue;
                }
                dst[x] = colours[static_cast<size_t>(v)];
            }
        }
    }
    if (stray) model::note_once(s, type + " icon pixels without a colour");
    return out;
}

}  // namespace

Raster paintpgn(model::Store& s, int32_t row, uint32_t background, bool night) {
    if (row < 0 || static_cast<size_t>(row) >= s.pg_col.size()) return {};
    const auto r = static_cast<size_t>(row);
    const ColourTable table = read_colour_table(s.pg_col[r], 1);
    if (table.bad) {
        model::note_once(s, s.pg_typ[r] + " colour data unreadable");
        return {};
    }
    if (table.entries.empty()) {
        model::note_once(s, "Empty colour!");
        return filled(k_side, k_side, background, IconFit::tile);
    }
    const Slots slots = slots_of(table, background);
    night = night && polygon_night(s, r, slots);
    if (polygon_solid(s, r)) {
        const uint32_t fill = night ? slot_colour(slots, 1, background) : shown(table.entries.front(), background);
        return filled(k_side, k_side, fill, IconFit::tile);
    }

    // Each pixel is the palette digit of its day colour; night adds 2. An
    // empty picture is saved as all ones, a short one padded with zeros.
    const int shift = night ? 2 : 0;
    const uint32_t zero = slot_colour(slots, shift, background), one = slot_colour(slots, 1 + shift, background);
    Raster out = filled(k_side, k_side, s.pg_bmp[r].empty() ? one : zero, IconFit::tile);
    Rows lines(s.pg_bmp[r]);
    std::string_view line;
    bool stray = false;
    for (int y = 0; y < k_side && lines.next(line); ++y) {
        uint32_t* dst = out.px.data() + static_cast<size_t>(y) * k_side;
        const int n = std::min(k_side, static_cast<int>(line.size()));
        for (int x = 0; x < n; ++x) {
            if (line[static_cast<size_t>(x)] == '1') dst[x] = one;
            else if (line[static_cast<size_t>(x)] != '0') stray = true;
        }
    }
    if (stray) model::note_once(s, s.pg_typ[r] + " icon pixels without a colour");
    return out;
}

Raster paintline(model::Store& s, int32_t row, uint32_t background, bool night) {
    if (row < 0 || static_cast<size_t>(row) >= s.ln_col.size()) return {};
    const auto r = static_cast<size_t>(row);
    const ColourTable table = read_colour_table(s.ln_col[r], 1);
    if (table.bad || table.entries.empty()) {
        model::note_once(s, line_type(s, row) + (table.bad ? " colour data unreadable" : " has no colours"));
        return {};
    }
    const Slots slots = slots_of(table, background);
    night = night && line_night(s, r, slots);
    // Digit 0 is the line colour, 1 the border or the transparent part.
    uint32_t zero, one;
    if (night && line_day_night_pair(s, r, slots)) {
        zero = slot_colour(slots, 1, background);
        one = background;
    } else {
        const int shift = night ? 2 : 0;
        zero = slot_colour(slots, shift, background);
        one = line_day_night_pair(s, r, slots) ? background : slot_colour(slots, 1 + shift, background);
    }

    if (!line_bitmap(s, r)) {
        // Without a bitmap the rows come from the width and the border.
        const int width = std::clamp<int>(s.ln_wid[r], 0, 255);
        const int border = std::clamp<int>(s.ln_bord[r], 0, 255);
        const int h = 2 * border + width;
        if (h == 0) return {};
        Raster out = filled(k_side, h, zero, IconFit::rows);
        for (int y = 0; y < h; ++y)
            if (y < border || y >= border + width)
                std::fill_n(out.px.begin() + static_cast<std::ptrdiff_t>(y) * k_side, k_side, one);
        return out;
    }

    const int h = s.ln_mode[r] >> 3;
    Raster out = filled(k_side, h, background, IconFit::rows);
    Rows lines(s.ln_bmp[r]);
    std::string_view line;
    bool stray = false;
    for (int y = 0; y < h && lines.next(line); ++y) {
        uint32_t* dst = out.px.data() + static_cast<size_t>(y) * k_side;
        const int n = std::min(k_side, static_cast<int>(line.size()));
        for (int x = 0; x < n; ++x) {
            const char c = line[static_cast<size_t>(x)];
            if (c == '0') dst[x] = zero;
            else if (c == '1') dst[x] = one;
            else stray = true;
        }
    }
    if (stray) model::note_once(s, line_type(s, row) + " icon pixels without a colour");
    return out;
}

Raster paintpoi(model::Store& s, int32_t row, uint32_t background, bool night) {
    if (row < 0 || static_cast<size_t>(row) >= s.pt_col.size()) return {};
    const auto r = static_cast<size_t>(row);
    const std::string& type = s.pt_typ[r];
    std::array<int, 4> head{};
    if (!read_head(s.pt_xpm[r], head)) {
        if (!s.pt_xpm[r].empty()) model::note_once(s, type + " Xpm head unreadable");
        return {};
    }
    if (malformed_head(head)) return {};
    const int w = head[0], h = head[1];
    if (w <= 0 || h <= 0) return {};
    if (w > k_max_stored_point_side || h > k_max_stored_point_side) {
        model::note_once(s, type + " Xpm head unreadable");
        return {};
    }

    // Day lines first; a night picture's head and colours stand behind them.
    const std::string_view col = s.pt_col[r];
    const ColourTable day = read_colour_table(col, head[3] == 2 ? 2 : 1);
    if (day.bad) {
        model::note_once(s, type + " colour data unreadable");
        return {};
    }
    const bool bare = !day.entries.empty() && day.entries.front().bare;

    if (night && !s.pt_nbmp[r].empty() && day.next != std::string_view::npos) {
        const std::string_view rest = col.substr(day.next);
        const ColourTable nt = read_colour_table(rest, s.pt_nncol[r] >= model::cpp_limit ? 2 : 1);
        if (nt.bad) {
            model::note_once(s, type + " colour data unreadable");
            return {};
        }
        if (!nt.entries.empty()) {
            std::vector<uint32_t> colours;
            colours.reserve(nt.entries.size());
            for (const ColourEntry& e : nt.entries) colours.push_back(shown(e, background));
            return point_rows(s, type, s.pt_nbmp[r], colours, w, h, background);
        }
    }

    if (bare) {
        // A picture without palette: each line is the colour of one pixel,
        // in row order, and the head gives the size.
        Raster out = filled(w, h, background, IconFit::picture);
        const size_t n = std::min(out.px.size(), day.entries.size());
        for (size_t k = 0; k < n; ++k) out.px[k] = shown(day.entries[k], background);
        return out;
    }
    if (day.entries.empty()) {
        // No colours: an icon of transparent pixels only.
        return filled(w, h, background, IconFit::picture);
    }
    if (s.pt_bmp[r].empty()) {
        Raster out;
        out.question = true;
        return out;
    }
    std::vector<uint32_t> colours;
    colours.reserve(day.entries.size());
    for (const ColourEntry& e : day.entries) colours.push_back(shown(e, background));
    return point_rows(s, type, s.pt_bmp[r], colours, w, h, background);
}

Raster paint_element(model::Store& s, int cls, int32_t row, uint32_t background, bool night) {
    switch (cls) {
        case model::k_polygons: return paintpgn(s, row, background, night);
        case model::k_lines:
        case model::k_active_lines: return paintline(s, row, background, night);
        case model::k_points:
        case model::k_extra_points: return paintpoi(s, row, background, night);
        default: return {};
    }
}

bool has_night(const model::Store& s, int cls, int32_t row) {
    if (row < 0) return false;
    const auto r = static_cast<size_t>(row);
    switch (cls) {
        case model::k_polygons: {
            if (r >= s.pg_col.size()) return false;
            const ColourTable t = read_colour_table(s.pg_col[r], 1);
            return !t.bad && polygon_night(s, r, slots_of(t, 0));
        }
        case model::k_lines:
        case model::k_active_lines: {
            if (r >= s.ln_col.size()) return false;
            const ColourTable t = read_colour_table(s.ln_col[r], 1);
            return !t.bad && line_night(s, r, slots_of(t, 0));
        }
        case model::k_points:
        case model::k_extra_points: return r < s.pt_nbmp.size() && !s.pt_nbmp[r].empty();
        default: return false;
    }
}

Raster fit_cell(const Raster& icon, int side, uint32_t background) {
    side = std::max(0, side);
    Raster out = filled(side, side, background, icon.fit);
    out.question = icon.question;
    if (icon.empty() || side == 0 || icon.px.size() < static_cast<size_t>(icon.w) * static_cast<size_t>(icon.h))
        return out;
    const int w = icon.w, h = icon.h;
    switch (icon.fit) {
        case IconFit::tile: {
            const int f = std::max(1, side / std::max(w, h));
            for (int y = 0; y < side; ++y)
                for (int x = 0; x < side; ++x) out.px[static_cast<size_t>(y) * side + x] = icon.at(x / f % w, y / f % h);
            break;
        }
        case IconFit::rows: {
            const int f = std::max(1, std::min(side / w, side / h));
            const int top = (side - h * f) / 2;
            for (int y = std::max(0, top); y < side && y < top + h * f; ++y)
                for (int x = 0; x < side; ++x)
                    out.px[static_cast<size_t>(y) * side + x] = icon.at(x / f % w, (y - top) / f);
            break;
        }
        case IconFit::picture:
        case IconFit::none: {
            if (w <= side && h <= side) {
                const int f = std::min(side / w, side / h);
                const int left = (side - w * f) / 2, top = (side - h * f) / 2;
                for (int y = 0; y < h * f; ++y)
                    for (int x = 0; x < w * f; ++x)
                        out.px[static_cast<size_t>(top + y) * side + left + x] = icon.at(x / f, y / f);
            } else {
                // Shrunk by dropping pixels, the longer side to the cell.
                const int big = std::max(w, h);
                const int sw = std::max(1, w * side / big), sh = std::max(1, h * side / big);
                const int left = (side - sw) / 2, top = (side - sh) / 2;
                for (int y = 0; y < sh; ++y)
                    for (int x = 0; x < sw; ++x)
                        out.px[static_cast<size_t>(top + y) * side + left + x] =
                            icon.at(std::min(w - 1, x * big / side), std::min(h - 1, y * big / side));
            }
            break;
        }
    }
    return out;
}

Raster paint_cell(model::Store& s, int cls, int32_t row, int side, uint32_t background, bool night) {
    return fit_cell(paint_element(s, cls, row, background, night), side, background);
}

}  // namespace korvex::workbench
