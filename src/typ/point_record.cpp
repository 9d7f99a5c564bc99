// Decoding of point records into the text form and the point columns.
#include "typ/point_record.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <vector>

#include "typ/curf_access.h"
#include "typ/decoder.h"
#include "typ/label_block.h"
#include "typ/point_detail.h"
#include "typ/point_pixels.h"

namespace korvex::typ {

using namespace point_detail;

namespace {

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


void append_int(std::string& out, int64_t v) {
    char digits[24];
    out.append(digits, static_cast<size_t>(std::to_chars(digits, digits + sizeof digits, v).ptr - digits));
}

// The quoted head of a picture: key="w h colours cpp" Colormode=m
std::string picture_head(const char* key, int w, int h, int colours, int cpp, int mode) {
    std::string head;
    head.reserve(48);
    head += key;
    head += '"';
    append_int(head, w);
    head += ' ';
    append_int(head, h);
    head += ' ';
    append_int(head, colours);
    head += ' ';
    append_int(head, cpp);
    head += "\" Colormode=";
    append_int(head, mode);
    return head;
}

// One decoded picture, day or night.
struct Picture {
    std::string head;       // DayXpm=... / NightXpm=...
    std::string colours;    // colour lines, each ending in CR LF
    std::string rows;       // canonical rows, each ending in CR LF
    int lines = 0;          // colour lines in the text
    int cpp = 1;            // characters a pixel, as the head says
    int64_t pixels_at = 0;  // absolute position of the pixel data
    int64_t pixel_bytes = 0;
    int64_t end = 0;        // position behind the picture
};

// Pixels of all point pictures together: a file holds at most 8 a byte (one
// bit each), and a day and a night picture of pixels its bytes run out on.
// Records that overlap or run past the end could otherwise make a file of a
// megabyte print gigabytes.
int64_t point_pixel_budget(const Store& s) { return 8 * static_cast<int64_t>(s.curf.size()) + 2 * 255 * 255; }

// A picture with an n-entry palette (n may be 256, or 0 in mode 16).
Picture decode_palette_picture(Store& s, int64_t palette_at, const char* key, int w, int h, int n, int mode) {
    Picture p;
    const int64_t pal_bytes = point_palette_bytes(n, mode);
    p.pixels_at = palette_at + pal_bytes;
    p.pixel_bytes = point_pixel_bytes(w, h, n, mode);
    p.end = p.pixels_at + p.pixel_bytes;
    // Over the budget the picture is dropped; the record still ends where its size says.
    // Palette entries count as pixels: a file holds fewer of them still.
    s.walk.point_pixels += static_cast<int64_t>(w) * h + std::max(0, n);
    const bool over = s.walk.point_pixels > point_pixel_budget(s);
    if (over) {
        model::note_once(s, "Point pictures larger than the file can hold: read as empty");
        w = h = 0;
    }
    p.lines = over ? 0 : std::max(0, n) + (mode == k_mode_transparent ? 1 : 0);
    p.cpp = symbol_width(p.lines);
    p.head = picture_head(key, w, h, p.lines, p.cpp, mode);
    if (!over) append_record_palette(p.colours, curf_view(s, palette_at, pal_bytes), n, mode);
    if (w > 0) {
        append_rows(p.rows, curf_view(s, p.pixels_at, p.pixel_bytes), w, h, n, mode, p.cpp);
        // A damaged record: a symbol no colour line defines would make a
        // text that no compiler takes.
        if ((1 << point_bpp(n, mode)) > p.lines && pixels_within_palette(p.rows, p.lines, p.cpp))
            model::note_once(s, "Point pixels past their colour table were given its first colour");
    }
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

// The dimensions text of pt_lab, what the Xpm head quotes: "16x16 3 1".
void append_dimensions(std::string& out, int w, int h, int colours, int cpp) {
    append_int(out, w);
    out += 'x';
    append_int(out, h);
    out += ' ';
    append_int(out, colours);
    out += ' ';
    append_int(out, cpp);
}

}  // namespace

std::string point_type_text(int32_t code) {
    // hex2(hex(code / 32)) + hex2(hex(code % 32)) without the temporaries.
    static const char* const digits = "0123456789ABCDEF";
    char buf[40];
    char* end = buf + sizeof buf;
    char* p = end;
    auto put = [&p](uint64_t v) {
        int n = 0;
        do {
            *--p = digits[v & 15];
            v >>= 4;
            ++n;
        } while (v != 0);
        if (n == 1) *--p = '0';
    };
    put(static_cast<uint64_t>(static_cast<int64_t>(code % 32)));
    put(static_cast<uint64_t>(static_cast<int64_t>(code / 32)));
    *--p = 'x';
    *--p = '0';
    return std::string(p, static_cast<size_t>(end - p));
}

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
        // transparent pixels only, or a picture without palette; the record
        // size tells them apart. An icon without pixels reads the same every
        // way (and the last record's size from the index is not always exact).
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
        // Three bytes of the file a pixel: the budget counts bits.
        s.walk.point_pixels += 24 * area;
        const bool over = s.walk.point_pixels > point_pixel_budget(s);
        if (nobmp && entries < 2) {
            no_palette = true;
            day.pixel_bytes = std::max(0, zero_sz);
            day.end = palette_at + day.pixel_bytes;
        } else if (over) {
            model::note_once(s, "Point pictures larger than the file can hold: read as empty");
            day.end = palette_at + 3 * entries;
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
        day.cpp = no_palette ? 1 : symbol_width(day.lines);
        day.head = over && !(nobmp && entries < 2) ? picture_head("DayXpm=", 0, 0, 0, 1, mode)
                                                   : picture_head("DayXpm=", w, h, day.lines, day.cpp, mode);
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

    std::string& col = s.pt_col[r];
    col = std::move(day.colours);
    s.pt_bmp[r] = std::move(day.rows);
    s.pt_ncol[r] = static_cast<int16_t>(day.lines);
    s.pt_nncol[r] = 0;
    s.pt_nbmp[r].clear();
    if (has_night) {
        // The night head and colours stand behind the day colours, as one
        // block without a final line end.
        const size_t block = col.size();
        col += k_crlf;
        col += night.head;
        col += k_crlf;
        col += night.colours;
        col.resize(col.size() - 2);  // the head's or the last colour's line end
        txt.append(col, block);
        if (s.opt.show_offsets && night.pixel_bytes > 0)
            txt += std::string(k_crlf) + ";size:" + std::to_string(night.pixel_bytes);
        s.pt_nncol[r] = static_cast<int16_t>(night.lines);
        s.pt_nbmp[r] = std::move(night.rows);
        s.pt_nnight += h;
    }

    const bool custom = holds(font.lines, "customcolor:");
    s.pt_cc[r] = custom ? font.colours : "0";
    std::string& lab = s.pt_lab[r];
    lab.clear();
    lab.reserve(32 + digits.size() + labels.label.size());
    lab += static_cast<char>(has_night ? 1 : 0);
    lab += static_cast<char>(digit);
    append_dimensions(lab, w, h, day.lines, day.cpp);
    lab += k_crlf;
    lab += digits;
    lab += '#';
    lab += labels.label;
    s.pt_xpm[r] = std::move(day.head);
}

}  // namespace korvex::typ
