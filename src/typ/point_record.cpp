#include "typ/point_record.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "typ/curf_access.h"
#include "typ/decoder.h"
#include "typ/header.h"
#include "typ/label_block.h"
#include "typ/point_pixels.h"
#include "typ/sort_types.h"

namespace korvex::typ {

namespace {

constexpr int k_flag_day = 1;
constexpr int k_flag_night = 2;
constexpr int k_flag_labels = 4;
constexpr int k_flag_font = 8;
constexpr int k_head_bytes = 5;          // flag, width, height, colours, mode
constexpr int k_full_palette = 256;      // a colour byte of 0 can mean 256 colours
constexpr int k_small_index_points = 300;
constexpr int64_t k_u16_limit = 0xffff;
constexpr int64_t k_u24_limit = 0xffffff;

const char* const k_crlf = "\r\n";

// The bytes from pos on, at most len of them; a short buffer gives a short view
// (the pixel readers take missing bytes as 0) and one report line.
std::string_view curf_view(Store& s, int64_t pos, int64_t len) {
    if (len <= 0) return {};
    const auto size = static_cast<int64_t>(s.curf.size());
    if (pos < 0 || pos >= size) {
        note_overrun(s, pos);
        return {};
    }
    if (pos + len > size) {
        note_overrun(s, size);
        len = size - pos;
    }
    return std::string_view(s.curf).substr(static_cast<size_t>(pos), static_cast<size_t>(len));
}

// A probe that must not leave report lines behind.
int quiet_byte(const Store& s, int64_t pos) {
    return pos >= 0 && static_cast<uint64_t>(pos) < s.curf.size() ? static_cast<unsigned char>(s.curf[static_cast<size_t>(pos)]) : 0;
}

// The colour mode a mode byte stands for; an unknown one is read as opaque.
int colour_mode(Store& s, int raw) {
    const int digit = raw / 16;
    if (digit > 2) {
        model::note_once(s, "Colour" + std::to_string(raw));
        return k_mode_opaque;
    }
    return digit * 16;
}

// Case-blind search for a lower-case word, without copying the text.
size_t find_nocase(std::string_view text, std::string_view word, size_t from = 0) {
    if (word.empty() || text.size() < word.size()) return std::string_view::npos;
    for (size_t i = from; i + word.size() <= text.size(); ++i) {
        size_t k = 0;
        while (k < word.size()) {
            char c = text[i + k];
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
            if (c != word[k]) break;
            ++k;
        }
        if (k == word.size()) return i;
    }
    return std::string_view::npos;
}

bool holds(std::string_view text, std::string_view word) { return find_nocase(text, word) != std::string_view::npos; }

// The quoted head of a picture: key="w h colours cpp" Colormode=m
std::string picture_head(const char* key, int w, int h, int colours, int cpp, int mode) {
    std::string head = key;
    head += '"';
    head += std::to_string(w) + ' ' + std::to_string(h) + ' ' + std::to_string(colours) + ' ' + std::to_string(cpp);
    head += "\" Colormode=";
    head += std::to_string(mode);
    return head;
}

// One decoded picture, day or night.
struct Picture {
    std::string head;       // DayXpm=... / NightXpm=...
    std::string colours;    // colour lines, each ending in CR LF
    std::string rows;       // canonical rows, each ending in CR LF
    int lines = 0;          // colour lines in the text
    int64_t pixels_at = 0;  // absolute position of the pixel data
    int64_t pixel_bytes = 0;
    int64_t end = 0;        // position behind the picture
};

// A picture with an n-entry palette (n may be 256, or 0 in mode 16).
Picture decode_palette_picture(Store& s, int64_t palette_at, const char* key, int w, int h, int n, int mode) {
    Picture p;
    const int64_t pal_bytes = point_palette_bytes(n, mode);
    std::vector<PaletteEntry> pal = read_palette(curf_view(s, palette_at, pal_bytes), n, mode);
    if (mode == k_mode_transparent) {
        PaletteEntry none;
        none.none = true;
        pal.push_back(none);
    }
    p.lines = static_cast<int>(pal.size());
    const int cpp = symbol_width(p.lines);
    p.head = picture_head(key, w, h, p.lines, cpp, mode);
    p.colours = palette_lines(pal, mode);
    p.pixels_at = palette_at + pal_bytes;
    p.pixel_bytes = point_pixel_bytes(w, h, n, mode);
    if (w > 0) p.rows = drawbmp(curf_view(s, p.pixels_at, p.pixel_bytes), w, h, n, mode, cpp);
    p.end = p.pixels_at + p.pixel_bytes;
    return p;
}

// Bytes of the label block whose length code stands at pos.
int64_t label_block_bytes(Store& s, int64_t pos) {
    int32_t at = 0;
    const int32_t L = lengthbyte(s, pos, at);
    return at == 0 ? 0 : at + 1 + static_cast<int64_t>(L) + 1;
}

// Where the record would end if its day palette held n colours.
int64_t record_end_with(Store& s, int64_t pos, int flag, int w, int h, int n, int mode) {
    int64_t p = pos + k_head_bytes + point_palette_bytes(n, mode) + point_pixel_bytes(w, h, n, mode);
    if (flag & k_flag_night) {
        const int nc = quiet_byte(s, p), nm = quiet_byte(s, p + 1);
        p += 2 + point_palette_bytes(nc, nm);
        if (nc > 0) p += point_pixel_bytes(w, h, nc, nm);
    }
    if (flag & k_flag_labels) {
        if (p >= static_cast<int64_t>(s.curf.size())) return -1;
        p += label_block_bytes(s, p);
    }
    if (flag & k_flag_font) {
        const int custom = (quiet_byte(s, p) >> 3) & 3;
        p += 1 + 3 * (custom == 3 ? 2 : custom > 0 ? 1 : 0);
    }
    return p;
}

// The dimensions text of pt_lab, from the Xpm line: "16x16 3 1".
std::string dimensions_text(const std::string& xpm) {
    const size_t q = xpm.find('"');
    std::string t = q == std::string::npos ? xpm : xpm.substr(q + 1);
    const size_t blank = t.find(' ');
    if (blank != std::string::npos) t[blank] = 'x';
    t.erase(std::remove(t.begin(), t.end(), '"'), t.end());
    // Cut from two characters in front of "Colormode" on.
    const size_t color = find_nocase(t, "color");
    if (color != std::string::npos) t.resize(color >= 1 ? color - 1 : 0);
    return t;
}

}  // namespace

std::string point_type_text(int32_t code) { return "0x" + hex2(hex(code / 32)) + hex2(hex(code % 32)); }

bool fnchk_nobmp(Store& s, int64_t base, int64_t sizepos) {
    const int count = fnzero_sz(curf_byte(s, sizepos), curf_byte(s, sizepos + 1));
    const int first = quiet_byte(s, base);
    for (int k = 1; k < count; ++k)
        if (quiet_byte(s, base + k) != first) return false;
    return true;
}

//   flag | w | h | n | mode | palette | pixels |
//   [night n | night mode | night palette | night pixels] | [labels] | [font]
void poi_bmp(Store& s, int64_t pos, int32_t n, int flag, int64_t indexpos, int32_t code) {
    if (n < 0 || static_cast<size_t>(n) >= s.pt_txt.size()) return;
    const auto r = static_cast<size_t>(n);
    const int32_t size = s.pt_len[r];
    const int w = curf_byte(s, pos + 1);
    const int h = curf_byte(s, pos + 2);
    const int count = curf_byte(s, pos + 3);
    const int mode = colour_mode(s, curf_byte(s, pos + 4));
    const int digit = mode / 16;
    const std::string type = point_type_text(code);

    std::string digits = type.substr(2);
    if (digits.size() < 5) digits.insert(0, 5 - digits.size(), '0');
    s.pt_typ[r] = digits;
    s.pt_mode[r] = static_cast<uint8_t>(digit);

    const int64_t palette_at = pos + k_head_bytes;
    Picture day;
    bool no_palette = false;  // colours printed as bare "#RRGGBB" lines
    int palette_n = count;
    if (count == 0) {
        // A colour byte of 0: 256 colours as mkgmap writes them, an icon of
        // transparent pixels only, or a picture without palette.
        // An icon without pixels reads the same every way; the last record's
        // size from the index is not always exact.
        const bool empty = w == 0 || h == 0;
        if (!empty && record_end_with(s, pos, flag, w, h, k_full_palette, mode) == pos + size)
            palette_n = k_full_palette;
        else if (mode == k_mode_transparent && (empty || record_end_with(s, pos, flag, w, h, 0, mode) == pos + size))
            palette_n = 0;
        else
            palette_n = -1;
    }
    if (palette_n >= 0) {
        day = decode_palette_picture(s, palette_at, "DayXpm=", w, h, palette_n, mode);
    } else {
        // Each pixel has its own colour entry, in row order.
        const int64_t area = static_cast<int64_t>(w) * h;
        const int64_t entries = area + (mode == k_mode_transparent ? 1 : 0);
        const int zero_sz = fnzero_sz(w, h);
        const bool nobmp = 3 * entries > size || entries == 0 || area == 1 || fnchk_nobmp(s, palette_at, pos + 1);
        day.pixels_at = palette_at;
        if (nobmp && entries < 2) {
            no_palette = true;
            day.pixel_bytes = std::max(0, zero_sz);
            day.end = palette_at + day.pixel_bytes;
        } else {
            no_palette = 3 * entries + k_head_bytes >= size || entries > k_full_palette - 1;
            const std::vector<PaletteEntry> pal = read_palette(curf_view(s, palette_at, 3 * entries), static_cast<int>(entries), k_mode_opaque);
            day.end = palette_at + 3 * entries;
            if (no_palette) {
                for (const PaletteEntry& e : pal) {
                    static const char* hx = "0123456789ABCDEF";
                    const char line[] = {'"', '#', hx[e.r >> 4], hx[e.r & 15], hx[e.g >> 4], hx[e.g & 15],
                                         hx[e.b >> 4], hx[e.b & 15], '"', '\r', '\n'};
                    day.colours.append(line, sizeof line);
                }
            } else {
                day.lines = static_cast<int>(entries);
                const int cpp = symbol_width(day.lines);
                day.colours = palette_lines(pal, k_mode_opaque);
                for (int64_t y = 0, v = 0; y < h; ++y) {
                    for (int x = 0; x < w; ++x, ++v) append_symbol(day.rows, static_cast<int>(v), cpp);
                    day.rows += k_crlf;
                }
            }
        }
        day.head = picture_head("DayXpm=", w, h, day.lines, no_palette ? 1 : symbol_width(day.lines), mode);
    }

    // Night picture: its own palette, or with a count of 0 the day pixels.
    const bool keep_night = model::chkl(s, 6) != '0';
    bool has_night = false;
    Picture night;
    int64_t p = day.end;
    if (flag & k_flag_night) {
        const int nc = curf_byte(s, p);
        const int nm = colour_mode(s, curf_byte(s, p + 1));
        if (nc > 0) {
            night = decode_palette_picture(s, p + 2, "NightXpm=", w, h, nc, nm);
        } else {
            night.head = picture_head("NightXpm=", w, h, 0, 1, nm);
            night.pixels_at = day.pixels_at;
            night.end = p + 2 + point_palette_bytes(0, nm);
        }
        p = night.end;
        has_night = keep_night;
    }

    // Labels and font byte.
    DecodedLabels labels;
    if (flag & k_flag_labels) {
        labels = decode_labels(s, pos, static_cast<int32_t>(p - pos), model::k_points, size, type);
        p = pos + labels.next;
        if (labels.strings == 0) model::note_once(s, " POI has empty text " + type);
    }
    const int64_t font_at = p;
    const DecodedFont font = chk_fontcc(s, font_at, (flag & k_flag_font) != 0, true, model::k_points, type);

    // The element's text.
    std::string& txt = s.pt_txt[r];
    txt.clear();
    txt.reserve(day.colours.size() + night.colours.size() + labels.lines.size() + 256);
    txt += "[_point]\r\nType=";
    txt += type;
    txt += k_crlf;
    txt += garmin_comment(s, type, model::k_points);
    if (s.opt.show_offsets) {
        txt += ";&" + hex(pos) + " pointers:&" + hex(indexpos) + k_crlf;
        txt += ";bmp:&" + hex(day.pixels_at) + k_crlf;
        if (has_night) txt += ";night_bmp:&" + hex(night.pixels_at) + k_crlf;
    }
    txt += labels.lines;
    if (s.opt.show_offsets && (flag & k_flag_font)) txt += ";Extended at &" + hex(font_at) + k_crlf;
    txt += font.lines;
    txt += day.head;
    txt += k_crlf;
    txt += day.colours;
    if (s.opt.show_offsets) txt += ";size:" + std::to_string(day.pixel_bytes) + k_crlf;

    s.pt_xpm[r] = day.head;
    s.pt_col[r] = std::move(day.colours);
    s.pt_bmp[r] = std::move(day.rows);
    s.pt_ncol[r] = static_cast<int16_t>(day.lines);
    s.pt_nncol[r] = 0;
    s.pt_nbmp[r].clear();
    if (has_night) {
        // The night head and colours stand behind the day colours, as one
        // block without a final line end.
        std::string block = night.head + k_crlf + night.colours;
        if (block.size() >= 2 && block.compare(block.size() - 2, 2, k_crlf) == 0) block.resize(block.size() - 2);
        s.pt_col[r] += k_crlf;
        s.pt_col[r] += block;
        txt += k_crlf;
        txt += block;
        if (s.opt.show_offsets && night.pixel_bytes > 0)
            txt += std::string(k_crlf) + ";size:" + std::to_string(night.pixel_bytes);
        s.pt_nncol[r] = static_cast<int16_t>(night.lines);
        s.pt_nbmp[r] = std::move(night.rows);
        s.pt_nnight += h;
    }

    const bool custom = holds(font.lines, "customcolor:");
    s.pt_cc[r] = custom ? font.colours : "0";
    s.pt_lab[r] = std::string(1, static_cast<char>(has_night ? 1 : 0)) + static_cast<char>(digit) +
                  dimensions_text(s.pt_xpm[r]) + k_crlf + digits + "#" + labels.label;
    (void)no_palette;
}


// ---- encoding ----

namespace {

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
    const std::string low = lower(line);
    const size_t cm = low.find("colormode=");
    if (cm != std::string::npos) {
        int v = 0;
        for (size_t i = cm + 10; i < low.size() && low[i] >= '0' && low[i] <= '9'; ++i) v = std::min(v * 10 + (low[i] - '0'), 255);
        head.colormode = v;
    }
    return head;
}

// Lines of a text without their line ends.
std::vector<std::string_view> text_lines(std::string_view text) {
    std::vector<std::string_view> out;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        out.push_back(line);
        pos = end + 1;
    }
    return out;
}

bool is_colour_line(std::string_view line) {
    size_t k = 0;
    while (k < line.size() && (line[k] == ' ' || line[k] == '\t')) ++k;
    return k < line.size() && line[k] == '"';
}

// The day and night tables of a point's colour column.
struct Tables {
    std::vector<std::string_view> day;
    std::vector<std::string_view> night;
    std::string_view night_head;
    bool has_night = false;
};

Tables split_tables(std::string_view col) {
    Tables t;
    for (std::string_view line : text_lines(col)) {
        if (!t.has_night && holds(line, "nightxpm")) {
            t.has_night = true;
            t.night_head = line;
            continue;
        }
        if (!is_colour_line(line)) continue;
        (t.has_night ? t.night : t.day).push_back(line);
    }
    return t;
}

bool holds_alpha(std::string_view line) { return holds(line, "alpha"); }
bool holds_none(std::string_view line) { return holds(line, "none"); }

// The key lines of an element's text: its colour lines are no labels.
std::string key_lines(std::string_view text) {
    std::string out;
    for (std::string_view line : text_lines(text)) {
        if (is_colour_line(line)) continue;
        out.append(line);
        out += k_crlf;
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
    std::vector<BadPixel> bad;
    const int cpp = symbol_width(static_cast<int>(remap.size()));
    const std::vector<uint8_t> values = pixel_values(rows, w, h, cpp, remap, &bad);
    if (!bad.empty()) {
        model::note_once(s, "compressbmp " + std::to_string(bad.front().row) + " x" + std::to_string(bad.front().col) +
                                " val:" + std::to_string(bad.front().value) + " " + type);
        model::note_once(s, " Unknown colour in Point bmp.");
    }
    return compressibmp(values, w, h, point_bpp(count, mode));
}

std::string compresspoibmp0(Store& s, std::string_view rows, int w, int h, int count, int mode, const std::string& type) {
    std::vector<int> identity(static_cast<size_t>(count));
    for (int k = 0; k < count; ++k) identity[static_cast<size_t>(k)] = k;
    return compresspoibmp(s, rows, w, h, identity, count, mode, type);
}

namespace {

// Palette and pixels of one picture from its colour lines and rows.
EncodedPicture encode_picture(Store& s, const std::vector<std::string_view>& lines, const XpmHead& head, int w, int h,
                              std::string_view rows, const std::string& type) {
    EncodedPicture out;
    const int table = static_cast<int>(lines.size());
    // Lines of a picture without palette have no symbol: "#RRGGBB".
    bool alpha = false, none = false, bare = table > 0;
    for (std::string_view l : lines) {
        alpha = alpha || holds_alpha(l);
        none = none || holds_none(l);
        bare = bare && !holds(l, "c #") && !holds(l, "none");
    }
    if (bare) {
        // A picture without palette: one colour for each pixel, no pixel data.
        out.mode = head.colormode > 0 ? head.colormode : k_mode_opaque;
        for (std::string_view l : lines) out.palette += fnkl(l);
        return out;
    }
    out.mode = alpha ? k_mode_alpha : none ? k_mode_transparent
                                           : (head.colormode == k_mode_transparent || head.colormode == k_mode_alpha ? head.colormode : k_mode_opaque);

    std::vector<bool> transparent(static_cast<size_t>(table), false);
    std::vector<uint32_t> entries32;
    if (out.mode == k_mode_alpha) {
        for (std::string_view l : lines) entries32.push_back(fnpoi32(l));
        // Only a head that does not insist on alpha lets opaque colours and
        // one fully transparent one become a mode 16 table.
        int t = -1;
        if (head.colormode != k_mode_alpha && alphabmp(entries32, t)) {
            out.mode = k_mode_transparent;
            transparent[static_cast<size_t>(t)] = true;
        }
    } else if (out.mode == k_mode_transparent) {
        for (int k = 0; k < table; ++k) transparent[static_cast<size_t>(k)] = holds_none(lines[static_cast<size_t>(k)]);
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
            out.palette += fnkl(lines[static_cast<size_t>(k)]);
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
    if (!tables.has_night) {
        // The night block may stand in the text only.
        const size_t at = find_nocase(s.pt_txt[r], "nightxpm");
        if (at != std::string::npos) {
            const size_t line_start = s.pt_txt[r].rfind('\n', at);
            const Tables t = split_tables(std::string_view(s.pt_txt[r]).substr(line_start == std::string::npos ? 0 : line_start + 1));
            tables.has_night = true;
            tables.night = t.day;  // nothing stands before the head in this slice
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
            XpmHead nh = nhead;
            if (nh.colours == 0) nh.colours = static_cast<int>(tables.night.size());
            night = encode_picture(s, tables.night, nh, w, h, s.pt_nbmp[r], type);
        }
    }
    const EncodedLabels labels = encode_labels(s, key_lines(s.pt_txt[r]), model::k_points);

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
