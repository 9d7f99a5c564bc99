// Encoding of point records and the point section of a file: data, index,
// header fields.
#include <algorithm>
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
    const size_t cm = find_word(line, "colormode=");
    if (cm != std::string_view::npos) {
        int v = 0;
        for (size_t i = cm + 10; i < line.size() && line[i] >= '0' && line[i] <= '9'; ++i) v = std::min(v * 10 + (line[i] - '0'), 255);
        head.colormode = v;
    }
    return head;
}

// Calls f(line, start) for every line of a text, the line without its line
// end, start its position in the text.
template <class F>
void for_each_line(std::string_view text, F&& f) {
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        f(line, pos);
        pos = end + 1;
    }
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
    // The first line that names the night picture is its head; one search
    // over the column instead of one a line.
    const size_t night_at = find_word(col, "nightxpm");
    for_each_line(col, [&](std::string_view line, size_t start) {
        if (!t.has_night && night_at < start + line.size()) {
            t.has_night = true;
            t.night_head = line;
            return;
        }
        if (is_colour_line(line)) (t.has_night ? t.night : t.day).push_back(line);
    });
    return t;
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

// The key lines of an element's text: its colour lines are no labels.
std::string key_lines(std::string_view text) {
    std::string out;
    for_each_line(text, [&out](std::string_view line, size_t) {
        if (is_colour_line(line)) return;
        out.append(line);
        out += k_crlf;
    });
    return out;
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
    const unsigned mask = (1u << bpp) - 1;
    bool bad = false;
    BadPixel first_bad;
    size_t pos = 0;
    for (int y = 0; y < h && pos < rows.size(); ++y) {
        size_t end = pos;
        while (end < rows.size() && rows[end] != '\r' && rows[end] != '\n') ++end;
        const auto* row = reinterpret_cast<const uint8_t*>(rows.data() + pos);
        auto* dst = reinterpret_cast<uint8_t*>(out.data() + row_bytes * static_cast<size_t>(y));
        const int present = std::min<int>(w, static_cast<int>((end - pos) / static_cast<size_t>(cpp)));
        for (int x = 0; x < present; ++x) {
            int v;
            if (cpp == 2) {
                const int hi = row[2 * x] - k_symbol_base;
                const int lo = row[2 * x + 1] - k_symbol_base;
                v = lo < 0 || lo > 15 || hi < 0 ? -1 : hi * 16 + lo;
            } else {
                v = row[x] - k_symbol_base;
            }
            if (v < 0 || v >= colours) {
                if (!bad) first_bad = {y + 1, x + 1, v};
                bad = true;
                v = 0;
            }
            const auto stored = static_cast<uint8_t>(colours == 0 ? 0 : remap ? remap[v] : v);
            if (bpp == 8) {
                dst[x] = stored;
            } else {
                const int bit = x * bpp;
                dst[bit >> 3] = static_cast<uint8_t>(dst[bit >> 3] | ((stored & mask) << (bit & 7)));
            }
        }
        // A line break is CR LF or a lone LF.
        pos = end;
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
EncodedPicture encode_picture(Store& s, const std::vector<std::string_view>& lines, const XpmHead& head, int w, int h,
                              std::string_view rows, const std::string& type) {
    EncodedPicture out;
    const int table = static_cast<int>(lines.size());
    // Lines of a picture without palette have no symbol: "#RRGGBB".
    bool alpha = false, none = false, bare = table > 0;
    std::vector<LineMarks> marks;
    marks.reserve(lines.size());
    for (std::string_view l : lines) {
        const LineMarks m = marks.emplace_back(line_marks(l));
        alpha = alpha || m.alpha;
        none = none || m.none;
        bare = bare && !m.colour && !m.none;
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
        for (int k = 0; k < table; ++k) transparent[static_cast<size_t>(k)] = marks[static_cast<size_t>(k)].none;
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
        const size_t at = find_word(s.pt_txt[r], "nightxpm");
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
            night = encode_picture(s, tables.night, nhead, w, h, s.pt_nbmp[r], type);
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
