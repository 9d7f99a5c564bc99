// Line records, both directions; active lines share the format.
//
//   flag (rows << 3 | scheme) | flag2 | colours, three bytes each (blue, green,
//   red) | rows x 4 bytes of bitmap, or line width [total width] |
//   [label block, flag2 bit 0] | [font byte and custom colours, flag2 bit 2]
//
// flag2 bit 1 set means the bitmap is not turned with the line
// (UseOrientation=N).
//
// Colours in file order, as palette digits (0/1 day, 2/3 night):
//
//   0  0 1
//   1  0 1 2 3
//   3  0 2 3    1 transparent
//   5  0 1 2    3 transparent
//   6  0        1 transparent
//   7  0 2      1 and 3 transparent
//
// On a solid line 1 and 3 are the border colours: the line width and the
// total width (line plus both borders) follow the colours. Schemes 6 and 7
// have no border and so only the line width; their solid form is written as
// one colour, or as the day and the night colour without "none" lines.
// In the bitmap a set bit is the line colour 0, the opposite of polygons.
#include "typ/line_record.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "model/crlf.h"
#include "typ/curf_access.h"
#include "typ/decoder.h"
#include "typ/extended_sections.h"
#include "typ/header.h"
#include "typ/label_block.h"
#include "typ/polygon_record.h"
#include "typ/sort_types.h"

namespace korvex::typ {

namespace {

constexpr int k_flag2_labels = 1;
constexpr int k_flag2_fixed_orientation = 2;
constexpr int k_flag2_font = 4;
constexpr int k_row_bytes = 4;
constexpr int k_max_rows = 31;
constexpr int k_active_recsize = 4;

constexpr std::string_view k_row_of_ones = "11111111111111111111111111111111";
constexpr std::string_view k_row_of_zeros = "00000000000000000000000000000000";

// Rows of all line pictures together. A solid line's rows come from its width
// and border, two bytes that can ask for hundreds of rows, and records that
// overlap repeat them: a small file could otherwise print gigabytes. Real
// files stay far below this.
bool rows_fit(Store& s, int rows) {
    s.walk.line_rows += static_cast<int64_t>(rows) * (k_row_of_ones.size() + 2);
    if (s.walk.line_rows <= 64 * static_cast<int64_t>(s.curf.size()) + (1 << 20)) return true;
    model::note_once(s, "Line pictures larger than the file can hold: read as empty");
    return false;
}

bool known_scheme(int scheme) { return scheme != 2 && scheme != 4; }

// Colours stored in a record of this scheme.
int stored_colours(int scheme) {
    switch (scheme) {
        case 0: return 2;
        case 1: return 4;
        case 3:
        case 5: return 3;
        case 6: return 1;
        case 7: return 2;
        default: return 0;
    }
}

// Palette digits 0 to 3 from the colours in file order; "" leaves a slot out.
std::array<std::string, 4> palette_of(int scheme, bool bitmap, const std::array<std::string, 4>& c) {
    if (!bitmap && scheme == 6) return {c[0], "", "", ""};
    if (!bitmap && scheme == 7) return {c[0], c[1], "", ""};
    switch (scheme) {
        case 0: return {c[0], c[1], "", ""};
        case 1: return {c[0], c[1], c[2], c[3]};
        case 3: return {c[0], "none", c[1], c[2]};
        case 5: return {c[0], c[1], c[2], "none"};
        case 6: return {c[0], "none", "", ""};
        case 7: return {c[0], "none", c[1], "none"};
        default: return {};
    }
}

// Night colours switched off in the load options: the day part of the
// palette stays, and the scheme becomes the day-only scheme of the same look.
int drop_night(int scheme, bool bitmap, std::array<std::string, 4>& pal) {
    if (!bitmap && (scheme == 3 || scheme == 7)) {
        pal[1].clear();
        pal[2].clear();
        pal[3].clear();
        return 6;
    }
    pal[2].clear();
    pal[3].clear();
    switch (scheme) {
        case 1:
        case 5: return 0;
        case 3: return 6;
        case 7: return 6;
        default: return scheme;
    }
}

std::string activity_line(const Store& s, int32_t n) {
    const auto r = static_cast<size_t>(n);
    if (n < s.ln_n || r >= s.ln_act.size() || s.ln_act[r].empty()) return {};
    // The name reads back to the same code; the digits are the fallback.
    std::string name = chkactivity(s.ln_act[r]);
    if (name.empty()) name = s.ln_act[r];
    return "Activity=" + name + k_crlf;
}

// Lower-case hex digits of a line code, at least five.
void append_code_digits(std::string& out, int32_t code) {
    static const char* const k_hex = "0123456789abcdef";
    char buf[16];
    int n = 0;
    auto v = static_cast<uint64_t>(static_cast<int64_t>(code));
    do {
        buf[n++] = k_hex[v & 15];
        v >>= 4;
    } while (v);
    for (int k = n; k < 5; ++k) out += '0';
    while (n) out += buf[--n];
}

struct LineDecode {
    std::string keys;       // text between the head and the Xpm line
    int scheme = 0;
    int rows = 0;
    std::array<std::string, 4> pal;
    int width = 0, border = 0;
};

// Everything from the label block on: labels, font byte, then the columns and
// the element text.
void finish_line(Store& s, int64_t pos, int32_t n, int flag2, int32_t off, int32_t size, LineDecode& d,
                 const std::string& type) {
    const auto r = static_cast<size_t>(n);
    std::string label;
    s.ln_dayc[r].assign(1, '0');
    if (flag2 & k_flag2_labels) {
        DecodedLabels labels = decode_labels(s, pos, off, model::k_lines, size, type);
        d.keys += labels.lines;
        label = labels.label;
        off = labels.next;
    }
    if ((flag2 & k_flag2_font) && flag2 > 0) {
        DecodedFont font = chk_fontcc(s, pos + off, true, true, model::k_lines, type);
        d.keys += font.lines;
        off += font.consumed;
        if (font.day_line) s.ln_dayc[r] = font.colours.substr(0, 6);
    }

    if (model::chkl(s, 5) != '1') d.scheme = drop_night(d.scheme, d.rows > 0, d.pal);

    std::string colours;
    colours.reserve(64);
    int ncol = 0;
    for (int k = 0; k < 4; ++k) {
        const std::string& v = d.pal[static_cast<size_t>(k)];
        if (v.empty()) continue;
        if (ncol) colours += k_crlf;
        append_palette_line(colours, k, v);
        ++ncol;
    }
    if (d.rows > 0) {
        s.ln_xpm[r] = "Xpm=\"32 " + std::to_string(d.rows) + " " + std::to_string(ncol) + " 1\"";
    } else {
        s.ln_xpm[r] = "Xpm=\"0 0 " + std::to_string(ncol) + " 0\"";
        // The browser draws a solid line from rows: border, line, border.
        std::string& text = s.ln_bmp[r];
        text.clear();
        int rows = 2 * d.border + d.width;
        if (!rows_fit(s, rows)) rows = 0;
        text.reserve(static_cast<size_t>(rows) * (k_row_of_ones.size() + 2));
        for (int k = 0; k < rows; ++k) {
            if (k) text += k_crlf;
            text += (k < d.border || k >= d.border + d.width) ? k_row_of_ones : k_row_of_zeros;
        }
    }
    s.ln_mode[r] = static_cast<uint8_t>(d.rows * 8 + d.scheme);
    s.ln_col[r] = colours;
    s.ln_ncol[r] = static_cast<int16_t>(ncol);
    s.ln_wid[r] = static_cast<int16_t>(d.width);
    s.ln_bord[r] = static_cast<int16_t>(d.border);
    std::string& lab = s.ln_lab[r];
    lab.assign("0x");
    append_code_digits(lab, s.ln_code[r]);
    lab += '#';
    lab += label;
    std::string& txt = s.ln_txt[r];
    txt.clear();
    txt.reserve(d.keys.size() + s.ln_xpm[r].size() + colours.size() + 4);
    txt += d.keys;
    txt += s.ln_xpm[r];
    txt += k_crlf;
    txt += colours;
    txt += k_crlf;
    s.ln_len[r] = off;
}

int32_t index_code_of(const Store& s, int32_t n) { return row_code(s, model::k_lines, n); }

std::string line_head_lines(const Store& s, int32_t n, int flag, const std::string& type) {
    std::string out;
    out.reserve(256);
    out += "[_line] ";
    out += k_crlf;
    out += activity_line(s, n);
    out += "Type=";
    out += type;
    out += k_crlf;
    out += garmin_comment(s, type, model::k_lines);
    if (s.opt.show_offsets) out += ";typ=" + std::to_string(flag) + k_crlf;
    return out;
}

std::array<std::string, 4> read_colours(Store& s, int64_t pos, int count) {
    std::array<std::string, 4> c;
    for (int k = 0; k < count && k < 4; ++k) c[static_cast<size_t>(k)] = colour_at(s, pos + 2 + k * k_colour_bytes);
    return c;
}

std::string orientation_line(int flag2) {
    return std::string("UseOrientation=") + ((flag2 & k_flag2_fixed_orientation) ? "N" : "Y") + k_crlf;
}

}  // namespace

std::string line_type_text(int32_t code) {
    std::string text = polygon_type_text(code);
    if (code >= 8192 && text.size() > 4 && text.compare(text.size() - 2, 2, "00") == 0) text.resize(text.size() - 2);
    return text;
}

void line_no_bmp(Store& s, int64_t pos, int32_t n, int flag, int32_t size) {
    LineDecode d;
    const std::string type = line_type_text(index_code_of(s, n));
    d.keys = line_head_lines(s, n, flag, type);
    const int flag2 = curf_byte(s, pos + 1);
    d.scheme = flag & 7;
    d.rows = 0;
    if (!known_scheme(d.scheme)) model::note_once(s, "unknown polyline format");
    const int count = stored_colours(d.scheme);
    d.pal = palette_of(d.scheme, false, read_colours(s, pos, count));

    int32_t off = 2 + count * k_colour_bytes;
    d.width = curf_byte(s, pos + off);
    ++off;
    if (d.scheme != 6 && d.scheme != 7) {
        const int total = curf_byte(s, pos + off);
        ++off;
        // Halves round to even, as the border of an odd excess has always read.
        const double half = (total - d.width) / 2.0;
        d.border = std::max(0, static_cast<int>(std::nearbyint(half)));
    }
    // A border of width 0 is not drawn, and its colour beside the line colour
    // would read back as a night colour: the line is one of one colour.
    if (d.scheme == 0 && d.border == 0) {
        d.scheme = 6;
        d.pal[1].clear();
    }
    d.keys += "LineWidth=";
    d.keys += std::to_string(d.width);
    d.keys += k_crlf;
    d.keys += "BorderWidth=";
    d.keys += std::to_string(d.border);
    d.keys += k_crlf;
    d.keys += orientation_line(flag2);
    finish_line(s, pos, n, flag2, off, size, d, type);
}

void line_bmp(Store& s, int64_t pos, int32_t n, int flag, int32_t size) {
    const auto r = static_cast<size_t>(n);
    LineDecode d;
    const std::string type = line_type_text(index_code_of(s, n));
    d.keys = line_head_lines(s, n, flag, type);
    const int flag2 = curf_byte(s, pos + 1);
    d.scheme = flag & 7;
    d.rows = flag >> 3;
    if (!known_scheme(d.scheme)) model::note_once(s, "unknown polyline format line_bmp");
    const int count = stored_colours(d.scheme);
    d.pal = palette_of(d.scheme, true, read_colours(s, pos, count));

    int32_t off = 2 + count * k_colour_bytes;
    std::string& rows = s.ln_bmp[r];
    rows.clear();
    if (!rows_fit(s, d.rows)) {
        off += d.rows * k_row_bytes;
        d.rows = 0;
    }
    rows.reserve(static_cast<size_t>(d.rows) * 34);
    for (int row = 0; row < d.rows; ++row) {
        if (row) rows += k_crlf;
        for (int b = 0; b < k_row_bytes; ++b) rows += binary8(255 - curf_byte(s, pos + off + b));
        off += k_row_bytes;
    }
    d.keys += orientation_line(flag2);
    finish_line(s, pos, n, flag2, off, size, d, type);
}

std::string encode_line_record(Store& s, int32_t n) {
    const auto r = static_cast<size_t>(n);
    std::array<std::string, 4> c;
    size_t ncol = 0;
    for_each_line(s.ln_col[r], [&](std::string_view line) {
        if (ncol < 4) c[ncol++] = fnkl(line);
    });
    for (size_t k = ncol; k < 4; ++k) c[k] = fnkl("");

    int flag2 = 0;
    int width = -1, border = 0;
    // "orientation=n", "lwidth(=", "linewidth=" and "borderwidth=" anywhere
    // in a line that is not a comment. Each holds an "=", so only the few "="
    // of the text are looked at, not every character.
    const std::string_view txt = s.ln_txt[r];
    for (size_t eq = txt.find('='); eq != std::string_view::npos; eq = txt.find('=', eq + 1)) {
        const size_t lf = txt.rfind('\n', eq);
        if (txt[lf == std::string_view::npos ? 0 : lf + 1] == ';') continue;
        if (word_before(txt, eq, "orientation") && eq + 1 < txt.size() && (txt[eq + 1] | 0x20) == 'n')
            flag2 |= k_flag2_fixed_orientation;
        if (word_before(txt, eq, "lwidth(") || word_before(txt, eq, "linewidth")) width = s.ln_wid[r];
        if (word_before(txt, eq, "borderwidth")) border = s.ln_bord[r];
    }
    const EncodedLabels labels = encode_labels(s, s.ln_txt[r], model::k_lines);
    if (labels.has_block()) flag2 |= k_flag2_labels;
    if (labels.has_font()) flag2 |= k_flag2_font;

    const int scheme = s.ln_mode[r] & 7;
    // Solid lines keep rows for the browser; a width says which form it is.
    // Schemes 0 and 6 also exist as bitmaps with a width key of 0. A picture
    // of no rows can only be written as a solid line.
    bool solid;
    if (scheme == 0 || scheme == 6)
        solid = width >= 1 || (width == 0 && s.ln_xpm[r].find("\"0 0 ") != std::string::npos);
    else
        solid = width >= 0;
    solid = solid || s.ln_bmp[r].empty();

    auto colours = [&](bool bitmap) -> std::string {
        switch (scheme) {
            case 0: return c[0] + c[1];
            case 1: return c[0] + c[1] + c[2] + c[3];
            case 3: return c[0] + c[2] + c[3];
            case 5: return c[0] + c[1] + c[2];
            case 6: return c[0];
            case 7: return bitmap ? c[0] + c[2] : c[0] + c[1];
            default:
                model::note_once(s, std::to_string(s.ln_code[r]) + " Unknow type");
                return {};
        }
    };

    std::string out;
    if (solid) {
        const int w = std::clamp(width, 0, 255);
        out += static_cast<char>(scheme);
        out += static_cast<char>(flag2);
        out += colours(false);
        out += static_cast<char>(w);
        // Schemes 6 and 7 have no border colour, hence no total width.
        if (scheme != 6 && scheme != 7)
            out += static_cast<char>(std::clamp(w + 2 * std::max(0, static_cast<int>(border)), 0, 255));
    } else {
        std::string bitmap = compressbmp(s, s.ln_bmp[r], 8, line_type_text(row_code(s, model::k_lines, n)));
        const size_t max_bytes = static_cast<size_t>(k_max_rows) * k_row_bytes;
        if (bitmap.size() > max_bytes) bitmap.resize(max_bytes);
        bitmap.resize(bitmap.size() / k_row_bytes * k_row_bytes);
        for (char& b : bitmap) b = static_cast<char>(255 - static_cast<unsigned char>(b));
        out += static_cast<char>(static_cast<int>(bitmap.size() / k_row_bytes) * 8 + scheme);
        out += static_cast<char>(flag2);
        out += colours(true);
        out += bitmap;
    }
    out += labels.block;
    out += labels.font;
    return out;
}

int64_t save_polylines(Store& s, int64_t offset) {
    const int32_t count = s.ln_n;
    const bool active = s.ln_nact > 0 && s.hdr_len >= hdr::k_active;
    const int32_t nact = active ? s.ln_nact : 0;

    // Offsets need two bytes at least; only 4 and 5 are written.
    int recsize = curf_byte(s, hdr::ln_recsize);
    if (recsize != 5) recsize = 4;
    if (count > k_wide_index_count) recsize = 5;

    for (int f : {hdr::ln_data, hdr::ln_data_len, hdr::ln_index, hdr::ln_index_len}) put_head4(s, 0, f);
    head(s, hdr::ln_recsize, 0);
    if (count + nact <= 0) return offset;
    put_head4(s, offset, hdr::ln_data);

    // Ordinary lines first, active lines behind them in the same data.
    const std::vector<int32_t> order = sort_types(s, model::k_lines, 0, count);
    const std::vector<int32_t> act_order = sort_types(s, model::k_lines, count, count + nact);
    int64_t running = 0;
    auto write_all = [&](const std::vector<int32_t>& rows) {
        std::vector<int64_t> starts;
        for (int32_t n : rows) {
            const std::string rec = encode_line_record(s, n);
            starts.push_back(running);
            put_block(s, offset + running, rec);
            running += static_cast<int64_t>(rec.size());
        }
        return starts;
    };
    const std::vector<int64_t> starts = write_all(order);
    const std::vector<int64_t> act_starts = write_all(act_order);

    const int64_t index = offset + running;
    put_head4(s, running, hdr::ln_data_len);
    put_head4(s, index, hdr::ln_index);
    head(s, hdr::ln_recsize, count > 0 ? recsize : 0);
    put_head4(s, static_cast<int64_t>(count) * recsize, hdr::ln_index_len);
    for (size_t k = 0; k < order.size(); ++k) {
        const int64_t entry = index + static_cast<int64_t>(k) * recsize;
        const int32_t code = row_code(s, model::k_lines, order[k]);
        head(s, entry, code & 0xff);
        head(s, entry + 1, (code >> 8) & 0xff);
        put_head4(s, starts[k], entry + 2);
    }
    int64_t end = index + static_cast<int64_t>(count) * recsize;
    if (!active) return end;

    // Active routing index: data offset, then the two activity digits.
    put_head4(s, end, hdr::act_index);
    head(s, hdr::act_recsize, k_active_recsize);
    put_head4(s, static_cast<int64_t>(nact) * k_active_recsize, hdr::act_index_len);
    for (size_t k = 0; k < act_order.size(); ++k) {
        const int64_t entry = end + static_cast<int64_t>(k) * k_active_recsize;
        const std::string& act = s.ln_act[static_cast<size_t>(act_order[k])];
        head(s, entry, static_cast<int>(act_starts[k] & 0xff));
        head(s, entry + 1, static_cast<int>((act_starts[k] >> 8) & 0xff));
        head(s, entry + 2, act.size() > 0 ? act[0] - '0' : 0);
        head(s, entry + 3, act.size() > 1 ? act[1] - '0' : 0);
    }
    return end + static_cast<int64_t>(nact) * k_active_recsize;
}

}  // namespace korvex::typ
