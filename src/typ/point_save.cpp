// Encoding of point records and the point section of a file: data, index,
// header fields.
#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

#include "typ/curf_access.h"
#include "typ/header.h"
#include "typ/label_block.h"
#include "typ/point_detail.h"
#include "typ/point_pixels.h"
#include "typ/point_record.h"
#include "typ/sort_types.h"

namespace korvex::typ {

using namespace point_detail;

namespace {

constexpr int k_small_index_points = 300;
constexpr int64_t k_u16_limit = 0xffff;
constexpr int64_t k_u24_limit = 0xffffff;

struct XpmHead {
    int w = 0, h = 0, colours = 0, cpp = 1;
    int colormode = -1;  // -1 when the head does not state it
};

XpmHead parse_head(std::string_view line) {
    XpmHead head;
    const size_t q = line.find('"');
    if (q == std::string_view::npos) return head;
    int* fields[] = {&head.w, &head.h, &head.colours, &head.cpp};
    size_t k = q + 1;
    for (int f = 0; f < 4; ++f) {
        while (k < line.size() && (line[k] == ' ' || line[k] == '\t')) ++k;
        if (k >= line.size() || line[k] < '0' || line[k] > '9') break;
        int v = 0;
        for (; k < line.size() && line[k] >= '0' && line[k] <= '9'; ++k) v = std::min(v * 10 + (line[k] - '0'), 1 << 20);
        *fields[f] = v;
    }
    const size_t cm = find_word(line, "colormode=", 0, 9);
    if (cm != std::string_view::npos) {
        int v = 0;
        for (size_t i = cm + 10; i < line.size() && line[i] >= '0' && line[i] <= '9'; ++i) v = std::min(v * 10 + (line[i] - '0'), 255);
        head.colormode = v;
    }
    return head;
}

// Calls f(line) for every line of a text, the line without its line end.
template <class F>
void for_every_line(std::string_view text, F&& f) {
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        f(line);
        pos = end + 1;
    }
}

bool is_colour_line(std::string_view line) {
    size_t k = 0;
    while (k < line.size() && (line[k] == ' ' || line[k] == '\t')) ++k;
    return k < line.size() && line[k] == '"';
}

// The words of a colour line that decide its table's colour mode.
struct LineMarks {
    bool alpha = false;   // "alpha"
    bool none = false;    // "none"
    bool colour = false;  // "c #"
};

// One pass over the line, in any case.
LineMarks line_marks(std::string_view line) {
    LineMarks m;
    auto at = [line](size_t i, std::string_view word) {
        if (line.size() - i < word.size()) return false;
        for (size_t k = 0; k < word.size(); ++k) {
            char c = line[i + k];
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
            if (c != word[k]) return false;
        }
        return true;
    };
    for (size_t i = 0; i < line.size(); ++i) {
        switch (line[i]) {
            case 'a': case 'A': m.alpha = m.alpha || at(i, "alpha"); break;
            case 'n': case 'N': m.none = m.none || at(i, "none"); break;
            case 'c': case 'C': m.colour = m.colour || at(i, "c #"); break;
            default: break;
        }
    }
    return m;
}

// A colour line as the decoder writes it, '"' symbol " c #RRGGBB" '"'
// [" alpha=" digits], is read at a glance; the words and numbers come out
// as the general readers (line_marks, fnkl, fnpoi32) would find them.
struct ColourLine {
    LineMarks marks;
    bool plain = false;  // in that form; rgb and alpha are valid
    uint32_t rgb = 0;    // 0xRRGGBB
    int alpha = 0;       // alpha= value, 0 without
};

// Value of a hex digit, -1 for any other character.
struct HexDigits {
    std::array<int8_t, 256> value{};
    constexpr HexDigits() {
        for (int c = 0; c < 256; ++c)
            value[static_cast<size_t>(c)] = static_cast<int8_t>(c >= '0' && c <= '9'   ? c - '0'
                                                                : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                                : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                                                       : -1);
    }
};
constexpr HexDigits k_hex_digits;

int hex_digit(char c) { return k_hex_digits.value[static_cast<unsigned char>(c)]; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Length of a colour line in the decoder's form at pos, its words and numbers
// in c; 0 (c untouched) for a line in any other form. A line end ("\r\n",
// "\n", or a last "\r") or the end of the text must follow it, so that the
// line is the same one a split at line ends gives.
size_t read_plain_line(std::string_view text, size_t pos, ColourLine& c) {
    constexpr std::string_view k_colour = " c #";
    constexpr std::string_view k_alpha = " alpha=";
    const std::string_view t = text.substr(pos);
    const size_t n = t.size();
    auto ends_at = [&t, n](size_t k) { return k == n || t[k] == '\n' || (t[k] == '\r' && (k + 1 == n || t[k + 1] == '\n')); };
    // The symbol is one or two characters; whatever they are but a line
    // end, they cannot make up a word or a "#" behind the fixed " c #".
    if (n < 13 || t[0] != '"' || t[1] == '\n') return 0;
    size_t at;  // the first colour digit
    if (t.substr(2, 4) == k_colour)
        at = 6;
    else if (t[2] != '\n' && t.substr(3, 4) == k_colour)
        at = 7;
    else
        return 0;
    if (n < at + 7 || t[at + 6] != '"') return 0;
    uint32_t rgb = 0;
    for (size_t k = at; k < at + 6; ++k) {
        const int d = hex_digit(t[k]);
        if (d < 0) return 0;
        rgb = rgb << 4 | static_cast<uint32_t>(d);
    }
    size_t end = at + 7;
    int alpha = -1;
    if (!ends_at(end)) {
        // One or two digits of alpha, nothing else.
        const size_t d = end + k_alpha.size();
        if (n <= d || t.substr(end, k_alpha.size()) != k_alpha || !is_digit(t[d])) return 0;
        if (ends_at(d + 1)) {
            alpha = t[d] - '0';
            end = d + 1;
        } else if (is_digit(t[d + 1]) && ends_at(d + 2)) {
            alpha = std::min(10 * (t[d] - '0') + (t[d + 1] - '0'), 15);
            end = d + 2;
        } else {
            return 0;
        }
    }
    c = ColourLine{};
    c.plain = true;
    c.rgb = rgb;
    c.marks.colour = true;
    if (alpha >= 0) {
        c.alpha = alpha;
        c.marks.alpha = true;
    }
    return end;
}

ColourLine read_colour_line(std::string_view line) {
    ColourLine c;
    if (line.empty() || read_plain_line(line, 0, c) != line.size()) {
        c = ColourLine{};
        c.marks = line_marks(line);
    }
    return c;
}

// A colour line of a table and what it says.
struct TableLine {
    std::string_view text;
    ColourLine read;
};

// The day and night tables of a point's colour column.
struct Tables {
    std::vector<TableLine> day;
    std::vector<TableLine> night;
    std::string_view night_head;
    bool has_night = false;
};

Tables split_tables(std::string_view col) {
    Tables t;
    t.day.reserve(col.size() / 16 + 1);  // a colour line in the decoder's form takes 15 or more
    // The first line that names the night picture is its head; one search
    // over the column instead of one a line.
    const size_t night_at = find_key_word(col, "nightxpm", 2);
    size_t pos = 0;
    while (pos < col.size()) {
        // A line in the decoder's form is read where it stands, its end
        // found with it; any other is cut at its line end first.
        ColourLine c;
        std::string_view line;
        size_t next;
        if (const size_t len = read_plain_line(col, pos, c)) {
            line = col.substr(pos, len);
            next = pos + len;
            if (next < col.size() && col[next] == '\r') ++next;
            if (next < col.size() && col[next] == '\n') ++next;
        } else {
            size_t end = col.find('\n', pos);
            if (end == std::string_view::npos) end = col.size();
            line = col.substr(pos, end - pos);
            if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
            next = end + 1;
            if (is_colour_line(line)) c = read_colour_line(line);
        }
        if (!t.has_night && night_at < pos + line.size()) {
            t.has_night = true;
            t.night_head = line;
        } else if (is_colour_line(line)) {
            (t.has_night ? t.night : t.day).push_back({line, c});
        }
        pos = next;
    }
    return t;
}

// The three palette bytes of a colour line: blue, green, red.
void append_colour(std::string& out, const TableLine& line) {
    const ColourLine& c = line.read;
    if (!c.plain) {
        out += fnkl(line.text);
        return;
    }
    out += static_cast<char>(c.rgb & 0xff);
    out += static_cast<char>((c.rgb >> 8) & 0xff);
    out += static_cast<char>((c.rgb >> 16) & 0xff);
}

// The key lines of an element's text: its colour lines are no labels.
std::string key_lines(std::string_view text) {
    std::string out;
    for_every_line(text, [&out](std::string_view line) {
        if (is_colour_line(line)) return;
        out.append(line);
        out += k_crlf;
    });
    return out;
}

// Index of the symbol of pixel x in a row of Cpp characters a pixel; -1 for
// a symbol that is none (line ends included).
template <int Cpp>
int symbol_index(const uint8_t* row, int x) {
    if constexpr (Cpp == 2) {
        const int hi = row[2 * x] - k_symbol_base;
        const int lo = row[2 * x + 1] - k_symbol_base;
        return lo < 0 || lo > 15 || hi < 0 ? -1 : hi * 16 + lo;
    } else {
        return row[x] - k_symbol_base;
    }
}

bool is_line_end(uint8_t c) { return c == '\r' || c == '\n'; }

// One row of symbols into dst: returns the characters it used, less than
// `available` when a line end cut the row short. Pixels past it stay 0.
template <int Cpp, int Bpp, bool Remap>
size_t pack_row(const uint8_t* row, size_t available, int w, int y, uint8_t* dst, const int* remap, int colours,
                bool& bad, BadPixel& first_bad) {
    constexpr bool WholeBytes = Bpp == 8;
    constexpr unsigned mask = (1u << Bpp) - 1;
    const int present = static_cast<int>(std::min<size_t>(static_cast<size_t>(w), available / Cpp));
    // Below 8 bits a pixel, a byte is gathered in a register and stored
    // whole: dst starts out 0, as do the pixels a short row leaves out.
    unsigned gathered = 0;
    int filled = 0;
    size_t used = static_cast<size_t>(present) * Cpp;
    for (int x = 0; x < present; ++x) {
        int v = symbol_index<Cpp>(row, x);
        if (v < 0 || v >= colours) {
            // Line ends are no symbols, so they only need looking for here.
            bool cut = false;
            for (int k = 0; k < Cpp && !cut; ++k)
                if (is_line_end(row[Cpp * x + k])) {
                    used = static_cast<size_t>(Cpp * x + k);
                    cut = true;
                }
            if (cut) break;
            if (!bad) first_bad = {y + 1, x + 1, v};
            bad = true;
            v = 0;
        }
        uint8_t stored;
        if constexpr (Remap)
            stored = static_cast<uint8_t>(colours == 0 ? 0 : remap[v]);
        else
            stored = static_cast<uint8_t>(colours == 0 ? 0 : v);
        if constexpr (WholeBytes) {
            dst[x] = stored;
        } else {
            gathered |= (stored & mask) << filled;
            filled += Bpp;
            if (filled == 8) {
                *dst++ = static_cast<uint8_t>(gathered);
                gathered = 0;
                filled = 0;
            }
        }
    }
    if constexpr (!WholeBytes) {
        if (filled > 0) *dst = static_cast<uint8_t>(gathered);
    }
    if (used < static_cast<size_t>(present) * Cpp) return used;
    // Whatever stands behind the pixels up to the line end is not read.
    while (used < available && !is_line_end(row[used])) ++used;
    return used;
}

// Canonical symbol rows packed straight into byte-aligned pixel rows: the
// values pixel_values reads, stored as compressibmp stores them. remap turns
// a table index into the stored value (nullptr: stored as it is); colours is
// the size of the table. An unknown symbol is reported and stored as 0.
std::string pack_rows(Store& s, std::string_view rows, int w, int h, int cpp, const int* remap, int colours, int bpp,
                      const std::string& type) {
    w = std::max(w, 0);
    h = std::max(h, 0);
    const size_t row_bytes = (static_cast<size_t>(w) * static_cast<size_t>(bpp) + 7) / 8;
    std::string out(row_bytes * static_cast<size_t>(h), '\0');
    auto* const pixels = reinterpret_cast<uint8_t*>(out.data());
    const auto* const text = reinterpret_cast<const uint8_t*>(rows.data());
    // One routine for each symbol width, bit depth and remap.
    using Packer = size_t (*)(const uint8_t*, size_t, int, int, uint8_t*, const int*, int, bool&, BadPixel&);
    static constexpr Packer k_packers[2][4][2] = {
        {{pack_row<1, 1, false>, pack_row<1, 1, true>},
         {pack_row<1, 2, false>, pack_row<1, 2, true>},
         {pack_row<1, 4, false>, pack_row<1, 4, true>},
         {pack_row<1, 8, false>, pack_row<1, 8, true>}},
        {{pack_row<2, 1, false>, pack_row<2, 1, true>},
         {pack_row<2, 2, false>, pack_row<2, 2, true>},
         {pack_row<2, 4, false>, pack_row<2, 4, true>},
         {pack_row<2, 8, false>, pack_row<2, 8, true>}},
    };
    const int depth = bpp == 1 ? 0 : bpp == 2 ? 1 : bpp == 4 ? 2 : 3;
    const Packer pack = k_packers[cpp == 2 ? 1 : 0][depth][remap != nullptr ? 1 : 0];
    bool bad = false;
    BadPixel first_bad;
    size_t pos = 0;
    for (int y = 0; y < h && pos < rows.size(); ++y) {
        pos += pack(text + pos, rows.size() - pos, w, y, pixels + row_bytes * static_cast<size_t>(y), remap, colours,
                    bad, first_bad);
        // A line break is CR LF or a lone LF.
        if (pos < rows.size() && rows[pos] == '\r') ++pos;
        if (pos < rows.size() && rows[pos] == '\n') ++pos;
    }
    if (bad) {
        model::note_once(s, "compressbmp " + std::to_string(first_bad.row) + " x" + std::to_string(first_bad.col) +
                                " val:" + std::to_string(first_bad.value) + " " + type);
        model::note_once(s, " Unknown colour in Point bmp.");
    }
    return out;
}

struct EncodedPicture {
    int count = 0;       // palette entries (256 is stored as 0)
    int mode = 0;
    std::string palette;
    std::string pixels;
};

}  // namespace

bool alphabmp(const std::vector<uint32_t>& entries, int& transparent) {
    // Opaque entries have an alpha of 0; one entry of 15 is the transparent one.
    transparent = -1;
    for (size_t k = 0; k < entries.size(); ++k) {
        const uint32_t a = entries[k] >> 24;
        if (a == 0) continue;
        if (a != 15 || transparent >= 0) return false;
        transparent = static_cast<int>(k);
    }
    return transparent >= 0;
}

std::string compresspoibmp(Store& s, std::string_view rows, int w, int h, const std::vector<int>& remap, int count,
                           int mode, const std::string& type) {
    const int colours = static_cast<int>(remap.size());
    return pack_rows(s, rows, w, h, symbol_width(colours), remap.data(), colours, point_bpp(count, mode), type);
}

std::string compresspoibmp0(Store& s, std::string_view rows, int w, int h, int count, int mode, const std::string& type) {
    const int colours = std::max(0, count);
    return pack_rows(s, rows, w, h, symbol_width(colours), nullptr, colours, point_bpp(count, mode), type);
}

namespace {

// Palette and pixels of one picture from its colour lines and rows.
EncodedPicture encode_picture(Store& s, const std::vector<TableLine>& lines, const XpmHead& head, int w, int h,
                              std::string_view rows, const std::string& type) {
    EncodedPicture out;
    const int table = static_cast<int>(lines.size());
    // Lines of a picture without palette have no symbol: "#RRGGBB".
    bool alpha = false, none = false, bare = table > 0;
    for (const TableLine& l : lines) {
        const LineMarks& m = l.read.marks;
        alpha = alpha || m.alpha;
        none = none || m.none;
        bare = bare && !m.colour && !m.none;
    }
    if (bare) {
        // A picture without palette: one colour for each pixel, no pixel data.
        out.mode = head.colormode > 0 ? head.colormode : k_mode_opaque;
        for (const TableLine& l : lines) append_colour(out.palette, l);
        return out;
    }
    out.mode = alpha ? k_mode_alpha : none ? k_mode_transparent
                                           : (head.colormode == k_mode_transparent || head.colormode == k_mode_alpha ? head.colormode : k_mode_opaque);

    std::vector<uint8_t> transparent(static_cast<size_t>(table), 0);
    std::vector<uint32_t> entries32;
    if (out.mode == k_mode_alpha) {
        entries32.reserve(lines.size());
        for (int k = 0; k < table; ++k) {
            const TableLine& l = lines[static_cast<size_t>(k)];
            entries32.push_back(l.read.plain ? l.read.rgb | static_cast<uint32_t>(l.read.alpha) << 24 : fnpoi32(l.text));
        }
        // Only a head that does not insist on alpha lets opaque colours and
        // one fully transparent one become a mode 16 table.
        int t = -1;
        if (head.colormode != k_mode_alpha && alphabmp(entries32, t)) {
            out.mode = k_mode_transparent;
            transparent[static_cast<size_t>(t)] = true;
        }
    } else if (out.mode == k_mode_transparent) {
        for (int k = 0; k < table; ++k) transparent[static_cast<size_t>(k)] = lines[static_cast<size_t>(k)].read.marks.none;
    }

    // Table index to stored value: mode 16 stores its transparent colour as n.
    std::vector<int> remap(static_cast<size_t>(table), 0);
    int n = 0;
    for (int k = 0; k < table; ++k)
        if (!transparent[static_cast<size_t>(k)]) remap[static_cast<size_t>(k)] = n++;
    for (int k = 0; k < table; ++k)
        if (transparent[static_cast<size_t>(k)]) remap[static_cast<size_t>(k)] = n;
    if (n > k_full_palette) {
        model::note_once(s, "POI " + type + " has more than 256 colours");
        n = k_full_palette;
        for (int& v : remap) v = std::min(v, k_full_palette - 1);
    }
    out.count = n;

    if (out.mode == k_mode_alpha) {
        std::vector<uint32_t> kept;
        for (int k = 0; k < table && static_cast<int>(kept.size()) < n; ++k) kept.push_back(entries32[static_cast<size_t>(k)]);
        out.palette = alphacol32(kept);
    } else {
        out.palette.reserve(3 * static_cast<size_t>(n));
        for (int k = 0, written = 0; k < table && written < n; ++k) {
            if (transparent[static_cast<size_t>(k)]) continue;
            append_colour(out.palette, lines[static_cast<size_t>(k)]);
            ++written;
        }
    }
    if (w > 0 && h > 0 && (n > 0 || out.mode == k_mode_transparent)) {
        const bool plain = out.mode != k_mode_transparent && table == n;
        out.pixels = plain ? compresspoibmp0(s, rows, w, h, n, out.mode, type)
                           : compresspoibmp(s, rows, w, h, remap, n, out.mode, type);
    }
    return out;
}

}  // namespace

std::string encode_point_record(Store& s, int32_t n) {
    if (n < 0 || static_cast<size_t>(n) >= s.pt_txt.size()) return {};
    const auto r = static_cast<size_t>(n);
    const std::string type = "0x" + s.pt_typ[r];
    const XpmHead head = parse_head(s.pt_xpm[r]);
    const int w = std::min(head.w, 255), h = std::min(head.h, 255);

    const std::string& col = s.pt_col[r];
    Tables tables = split_tables(col);
    // The night block may stand in the text only (an edit of the text that
    // did not reach the colour column); without night data anywhere in the
    // tables there is nothing to look for.
    if (!tables.has_night && (s.pt_nnight > 0 || s.pt_nncol[r] > 0)) {
        const size_t at = find_key_word(s.pt_txt[r], "nightxpm", 2);
        if (at != std::string::npos) {
            const size_t line_start = s.pt_txt[r].rfind('\n', at);
            const Tables t = split_tables(std::string_view(s.pt_txt[r]).substr(line_start == std::string::npos ? 0 : line_start + 1));
            tables.has_night = true;
            tables.night = t.night;
            tables.night_head = t.night_head;
        }
    }

    const EncodedPicture day = encode_picture(s, tables.day, head, w, h, s.pt_bmp[r], type);
    EncodedPicture night;
    if (tables.has_night) {
        const XpmHead nhead = parse_head(tables.night_head);
        if (tables.night.empty()) {
            // No colours of its own: the night shows the day pixels.
            night.mode = nhead.colormode > 0 ? nhead.colormode : k_mode_opaque;
        } else {
            night = encode_picture(s, tables.night, nhead, w, h, s.pt_nbmp[r], type);
            // A count of 0 tells a reader "the day pixels, no pixels here":
            // a night of transparent pixels only takes one unused black
            // colour, so that its pixels (now value 1, transparent) stay its own.
            if (night.count == 0 && night.mode == k_mode_transparent && w > 0 && h > 0) {
                const std::vector<int> to_transparent(tables.night.size(), 1);
                night.count = 1;
                night.palette.assign(3, '\0');
                night.pixels = compresspoibmp(s, s.pt_nbmp[r], w, h, to_transparent, 1, night.mode, type);
            }
        }
    }
    // The label encoder passes over colour lines itself; only when strings
    // are reordered must they be gone first, so that none takes a string's
    // place.
    const bool reorder = s.opt.strorder && s.opt.langid != 0;
    std::string keys;
    if (reorder) keys = key_lines(s.pt_txt[r]);
    const EncodedLabels labels = encode_labels(s, reorder ? keys : s.pt_txt[r], model::k_points);

    int flag = k_flag_day;
    if (tables.has_night) flag |= k_flag_night;
    if (labels.has_block()) flag |= k_flag_labels;
    if (labels.has_font()) flag |= k_flag_font;

    std::string rec;
    rec.reserve(k_head_bytes + day.palette.size() + day.pixels.size() + night.palette.size() + night.pixels.size() +
                labels.block.size() + labels.font.size() + 2);
    rec += static_cast<char>(flag);
    rec += static_cast<char>(w);
    rec += static_cast<char>(h);
    rec += static_cast<char>(day.count & 0xff);
    rec += static_cast<char>(day.mode);
    rec += day.palette;
    rec += day.pixels;
    if (tables.has_night) {
        rec += static_cast<char>(night.count & 0xff);
        rec += static_cast<char>(night.mode);
        rec += night.palette;
        rec += night.pixels;
    }
    rec += labels.block;
    rec += labels.font;
    return rec;
}

int64_t save_pois(Store& s, int64_t offset) {
    const int32_t count = std::max(0, s.pt_n);
    auto put_u16 = [&](int field, int v) {
        head(s, field, v & 0xff);
        head(s, field + 1, (v >> 8) & 0xff);
    };
    if (count == 0) {
        put_head4(s, 0, hdr::pt_data);
        put_head4(s, 0, hdr::pt_data_len);
        put_head4(s, 0, hdr::pt_index);
        put_u16(hdr::pt_recsize, 0);
        put_head4(s, 0, hdr::pt_index_len);
        return offset;
    }

    const std::vector<int32_t> rows = sort_types(s, model::k_points, 0, count);
    std::vector<int64_t> offsets;
    offsets.reserve(rows.size());
    int64_t p = offset;
    for (int32_t row : rows) {
        const std::string rec = encode_point_record(s, row);
        if (static_cast<int64_t>(s.curf.size()) < p + static_cast<int64_t>(rec.size()))
            s.curf.resize(static_cast<size_t>(p) + rec.size(), '\0');
        if (!rec.empty()) std::memcpy(s.curf.data() + p, rec.data(), rec.size());
        offsets.push_back(p - offset);
        p += static_cast<int64_t>(rec.size());
    }
    const int64_t data_len = p - offset;

    // Offsets need three bytes with many points, or when two cannot hold
    // them; four when the data outgrows three (no real file comes near).
    const int recsize = data_len > k_u24_limit ? 6 : count > k_small_index_points || data_len > k_u16_limit ? 5 : 4;
    const int64_t index = p;
    const int64_t index_len = static_cast<int64_t>(count) * recsize;
    if (static_cast<int64_t>(s.curf.size()) < index + index_len) s.curf.resize(static_cast<size_t>(index + index_len), '\0');
    for (size_t k = 0; k < rows.size(); ++k) {
        const int64_t at = index + static_cast<int64_t>(k) * recsize;
        const int32_t code = row_code(s, model::k_points, rows[k]);
        head(s, at, code & 0xff);
        head(s, at + 1, (code >> 8) & 0xff);
        for (int b = 0; b < recsize - 2; ++b) head(s, at + 2 + b, static_cast<int>((offsets[k] >> (8 * b)) & 0xff));
    }

    put_head4(s, offset, hdr::pt_data);
    put_head4(s, data_len, hdr::pt_data_len);
    put_head4(s, index, hdr::pt_index);
    put_u16(hdr::pt_recsize, recsize);
    put_head4(s, index_len, hdr::pt_index_len);
    return index + index_len;
}

}  // namespace korvex::typ
