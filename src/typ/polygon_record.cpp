// Polygon records, both directions.
//
//   flag | colours, three bytes each (blue, green, red) | [128-byte bitmap] |
//   [label block, flag bit 4] | [font byte and custom colours, flag bit 5]
//
// The low nibble of the flag is the scheme; it fixes which palette digits
// stand in the record and in which order:
//
//   6  0                 one colour
//   7  0 1               day and night colour
//   8  1 0     + bitmap  two day colours
//   9  1 0 3 2 + bitmap  day and night pairs
//  11  1 3 2   + bitmap  day 0 transparent
//  13  1 0 3   + bitmap  night 2 transparent
//  14  1       + bitmap  one colour, 0 transparent
//  15  1 3     + bitmap  one day and one night colour, both 0 and 2 transparent
//
// Bitmap: 32 rows of 4 bytes, lowest bit leftmost; the bit value is the
// palette digit (day 0/1, night 2/3 share the one bitmap).
#include "typ/polygon_record.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <vector>

#include "model/crlf.h"
#include "typ/curf_access.h"
#include "typ/decoder.h"
#include "typ/draw_order.h"
#include "typ/header.h"
#include "typ/label_block.h"
#include "typ/sort_types.h"

namespace korvex::typ {

namespace {

constexpr int k_polygon_flag_labels = 16;
constexpr int k_polygon_flag_font = 32;
constexpr int k_bitmap_bytes = 128;
constexpr int k_bitmap_side = 32;
// A record of this size or less is too short for the third colour of schemes
// 11 and 13.
constexpr int k_third_colour_min_size = 27;

std::string palette_line(int digit, const std::string& value) {
    std::string out;
    out.reserve(value.size() + 6);
    append_palette_line(out, digit, value);
    return out;
}

int pack_short(std::string_view digits) {
    int value = 0;
    for (size_t k = 0; k < digits.size() && k < 8; ++k)
        if (digits[k] == '1') value |= 1 << k;
    return value;
}

// Eight "0"/"1" characters to one byte, the first the lowest bit; any
// character but "1" is a 0. Eight at once: pictures have thousands.
int pack8(const char* digits) {
    if constexpr (std::endian::native != std::endian::little) return pack_short({digits, 8});
    uint64_t x;
    std::memcpy(&x, digits, 8);
    uint64_t y = ~(x ^ 0x3131313131313131ull);  // a byte of all ones where "1" stood
    y &= y >> 4;
    y &= y >> 2;
    y &= y >> 1;
    y &= 0x0101010101010101ull;
    // Byte k to bit k (little-endian load: the first character is byte 0).
    return static_cast<int>((y * 0x0102040810204080ull) >> 56);
}

// The comment lines ahead of the element data.
std::string comment_lines(const Store& s, int64_t pos, int64_t dblk, int32_t n, int flag) {
    std::string out = garmin_comment(s, s.pg_typ[static_cast<size_t>(n)], model::k_polygons);
    if (s.opt.show_offsets) out += ";polygon type:" + std::to_string(flag & 15) + k_crlf;
    const std::string level = polygon_level(s, n);
    if (!level.empty()) out += ";draworder:" + level + k_crlf;
    if (s.opt.show_offsets) out += ";&" + hex(pos) + " DBlk:&" + hex(dblk) + k_crlf;
    return out;
}

// Labels behind the colours and bitmap, then the font byte. Returns the key
// lines; off moves behind what was read.
std::string read_labels_and_font(Store& s, int64_t pos, int32_t n, int flag, int32_t& off,
                                 std::string& label, std::string& dayc) {
    const auto r = static_cast<size_t>(n);
    std::string keys;
    if (flag & k_polygon_flag_labels) {
        DecodedLabels d = decode_labels(s, pos, off, model::k_polygons, s.pg_len[r], s.pg_typ[r]);
        keys += d.lines;
        label = d.label;
        off = d.next;
    }
    if (flag & k_polygon_flag_font) {
        DecodedFont f = chk_fontcc(s, pos + off, true, true, model::k_polygons, s.pg_typ[r]);
        keys += f.lines;
        off += f.consumed;
        if (f.day_line) dayc = f.colours.substr(0, 6);
    }
    // The font lines start with the key; only label texts need the search.
    if (!(flag & k_polygon_flag_font) && !contains_caseless(keys, "extendedlabels"))
        keys += std::string("ExtendedLabels=N") + k_crlf;
    return keys;
}

// Stores the decoded element: text, palette, header line and label block.
void store_polygon(Store& s, int32_t n, int scheme, const std::string& head_and_keys,
                   const std::vector<std::string>& palette, const std::string& xpm,
                   const std::string& label, const std::string& dayc) {
    const auto r = static_cast<size_t>(n);
    s.pg_mode[r] = static_cast<uint8_t>(scheme);
    s.pg_col[r] = join_lines(palette);
    s.pg_ncol[r] = static_cast<int16_t>(palette.size());
    s.pg_xpm[r] = xpm;
    s.pg_dayc[r] = dayc.empty() ? "0" : dayc;
    std::string& txt = s.pg_txt[r];
    txt.clear();
    txt.reserve(head_and_keys.size() + xpm.size() + s.pg_col[r].size() + 4);
    txt += head_and_keys;
    txt += xpm;
    txt += k_crlf;
    txt += s.pg_col[r];
    txt += k_crlf;
    const bool night = palette.size() == 4 || scheme == 7;
    const bool transparent = s.pg_col[r].find("none") != std::string::npos;
    std::string& lab = s.pg_lab[r];
    lab.clear();
    lab += static_cast<char>(night ? 1 : 0);
    lab += static_cast<char>(transparent ? 1 : 0);
    lab += '#';
    lab += label;
    if (night) ++s.pg_nnight;
}

std::string polygon_head_lines(const Store& s, int32_t n) {
    std::string out;
    out.reserve(256);
    out += "[_polygon]";
    out += k_crlf;
    out += "Type=";
    out += s.pg_typ[static_cast<size_t>(n)];
    out += k_crlf;
    return out;
}

void bitmap_text(Store& s, int64_t pos, std::string& out) {
    constexpr size_t line = k_bitmap_side + 2;
    out.resize(k_bitmap_side * line - 2);
    char* o = out.data();
    for (int row = 0; row < k_bitmap_side; ++row, o += line) {
        for (int b = 0; b < 4; ++b) std::memcpy(o + 8 * b, binary8(curf_byte(s, pos + row * 4 + b)).data(), 8);
        if (row + 1 < k_bitmap_side) std::memcpy(o + k_bitmap_side, k_crlf, 2);
    }
}

}  // namespace

// Scheme 6: flag | colour 0 | [labels] | [font]
void polygon_no_bmp(Store& s, int64_t pos, int64_t dblk, int32_t n, int flag) {
    const auto r = static_cast<size_t>(n);
    std::string text = polygon_head_lines(s, n) + comment_lines(s, pos, dblk, n, flag);
    const std::vector<std::string> palette{palette_line(0, colour_at(s, pos + 1))};
    int32_t off = 1 + k_colour_bytes;
    std::string label, dayc;
    text += read_labels_and_font(s, pos, n, flag, off, label, dayc);
    s.pg_bmp[r].clear();
    store_polygon(s, n, flag & 15, text, palette, "Xpm=\"0 0 1 0\"", label, dayc);
}

// Schemes 7, 8, 9, 11, 13, 14, 15: see the table at the top.
void polygon_bmp(Store& s, int64_t pos, int64_t dblk, int32_t n, int flag) {
    const auto r = static_cast<size_t>(n);
    int scheme = flag & 15;
    std::string text = polygon_head_lines(s, n) + comment_lines(s, pos, dblk, n, flag);

    // Colours in file order.
    const int32_t size = s.pg_len[r];
    int read = 2;
    if (scheme == 9) read = 4;
    // An unknown size (0: two index entries sharing one record) reads it.
    if (scheme == 11 || scheme == 13) read = size > k_third_colour_min_size || size <= 0 ? 3 : 2;
    if (scheme == 14) read = 1;
    std::array<std::string, 4> c;
    for (int k = 0; k < read; ++k) c[static_cast<size_t>(k)] = colour_at(s, pos + 1 + k * k_colour_bytes);
    // The third colour's slot counts even when a short record left it unread.
    const int stored = (scheme == 11 || scheme == 13) ? 3 : read;
    int32_t off = 1 + stored * k_colour_bytes;

    // Palette digits 0 to 3; an empty value leaves the line out.
    std::array<std::string, 4> pal;
    switch (scheme) {
        case 7: pal = {c[0], c[1], "", ""}; break;
        case 8: pal = {c[1], c[0], "", ""}; break;
        case 9: pal = {c[1], c[0], c[3], c[2]}; break;
        case 11: pal = {"none", c[0], c[2], c[1]}; break;
        case 13: pal = {c[1], c[0], "none", c[2]}; break;
        case 14: pal = {"none", c[0], "", ""}; break;
        default: pal = {"none", c[0], "none", c[1]}; break;  // 15
    }
    // Night colours switched off in the load options: keep the day pair.
    if (model::chkl(s, 4) != '1') {
        switch (scheme) {
            case 7: scheme = 6; pal[1].clear(); break;
            case 9:
            case 13: scheme = 8; break;
            case 11:
            case 15: scheme = 14; break;
            default: break;
        }
        pal[2].clear();
        pal[3].clear();
    }

    if (scheme == 6 || scheme == 7) {
        s.pg_bmp[r].clear();
    } else {
        bitmap_text(s, pos + off, s.pg_bmp[r]);
        off += k_bitmap_bytes;
    }

    std::string label, dayc;
    text += read_labels_and_font(s, pos, n, flag, off, label, dayc);

    std::vector<std::string> palette;
    for (int k = 0; k < 4; ++k)
        if (!pal[static_cast<size_t>(k)].empty()) palette.push_back(palette_line(k, pal[static_cast<size_t>(k)]));
    std::string xpm;
    if (scheme == 6 || scheme == 7)
        xpm = "Xpm=\"0 0 " + std::to_string(palette.size()) + " 0\"";
    else
        xpm = "Xpm=\"32 32 " + std::to_string(scheme == 8 || scheme == 14 ? 2 : 4) + " 1\"";
    store_polygon(s, n, scheme, text, palette, xpm, label, dayc);
}

std::string compressbmp(Store& s, const std::string& text, int groupsize, const std::string& type) {
    std::string out;
    if (groupsize <= 0) return out;
    const auto group = static_cast<size_t>(groupsize);
    out.reserve(text.size() / group + 1);
    for_each_line(text, [&](std::string_view line) {
        for (size_t at = 0; at < line.size(); at += group) {
            const size_t n = std::min(group, line.size() - at);
            if (n < group) model::note_once(s, type + " compress error ");
            out += static_cast<char>(n >= 8 ? pack8(line.data() + at) : pack_short(line.substr(at, n)));
        }
    });
    return out;
}

std::string encode_polygon_record(Store& s, int32_t n) {
    const auto r = static_cast<size_t>(n);
    const int scheme = s.pg_mode[r] & 15;

    std::array<std::string, 4> c;
    size_t ncol = 0;
    for_each_line(s.pg_col[r], [&](std::string_view line) {
        if (ncol < 4) c[ncol++] = fnkl(line);
    });
    for (size_t k = ncol; k < 4; ++k) c[k] = fnkl("");
    // A scheme 8 polygon may lack its background line.
    const std::string c0_or_zero = ncol == 0 ? std::string(3, '\0') : c[0];

    const EncodedLabels labels = encode_labels(s, s.pg_txt[r], model::k_polygons);
    int flag = scheme;
    if (labels.has_block()) flag |= k_polygon_flag_labels;
    if (labels.has_font()) flag |= k_polygon_flag_font;

    std::string out;
    out.reserve(1 + 4 * k_colour_bytes + k_bitmap_bytes + labels.block.size() + labels.font.size());
    out += static_cast<char>(flag);
    switch (scheme) {
        case 6: out += c[0]; break;
        case 7: out += c[0] + c[1]; break;
        case 8: out += c[1] + c0_or_zero; break;
        case 9: out += c[1] + c[0] + c[3] + c[2]; break;
        case 11: out += c[1] + c[3] + c[2]; break;
        case 13: out += c[1] + c[0] + c[3]; break;
        case 14: out += c[1]; break;
        case 15: out += c[1] + c[3]; break;
        default: break;
    }
    if (scheme >= 8) {
        std::string bitmap;
        if (s.pg_bmp[r].empty())
            bitmap.assign(k_bitmap_bytes, '\xff');
        else
            bitmap = compressbmp(s, s.pg_bmp[r], 8, s.pg_typ[r]);
        // A short picture would shift everything behind it.
        bitmap.resize(k_bitmap_bytes, '\0');
        out += bitmap;
    }
    out += labels.block;
    out += labels.font;
    return out;
}

int64_t save_polygons(Store& s, int64_t offset) {
    const int32_t count = s.pg_n;
    const int recsize = count > k_wide_index_count ? 5 : 4;
    put_head4(s, static_cast<int64_t>(count) * recsize, hdr::pg_index_len);
    if (count <= 0) {
        put_head4(s, 0, hdr::pg_index);
        head(s, hdr::pg_recsize, 0);
        put_head4(s, 0, hdr::pg_data);
        return offset;
    }
    put_head4(s, offset, hdr::pg_data);

    const std::vector<int32_t> order = sort_types(s, model::k_polygons, 0, count);
    std::vector<int64_t> starts;
    starts.reserve(order.size());
    int64_t running = 0;
    for (int32_t n : order) {
        const std::string rec = encode_polygon_record(s, n);
        starts.push_back(running);
        put_block(s, offset + running, rec);
        running += static_cast<int64_t>(rec.size());
    }

    const int64_t index = offset + running;
    put_head4(s, running, hdr::pg_data_len);
    put_head4(s, index, hdr::pg_index);
    head(s, hdr::pg_recsize, recsize);
    for (size_t k = 0; k < order.size(); ++k) {
        const int64_t entry = index + static_cast<int64_t>(k) * recsize;
        const int32_t code = row_code(s, model::k_polygons, order[k]);
        head(s, entry, code & 0xff);
        head(s, entry + 1, (code >> 8) & 0xff);
        put_head4(s, starts[k], entry + 2);
    }
    return index + static_cast<int64_t>(count) * recsize;
}

}  // namespace korvex::typ
