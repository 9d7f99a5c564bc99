#include "support/sample_builder.h"

#include <algorithm>
#include <cstdio>

#include "typ/curf_access.h"
#include "typ/decoder.h"
#include "typ/draw_order.h"
#include "typ/line_record.h"
#include "typ/point_record.h"

namespace korvex::samples {

namespace {

const std::string crlf = "\r\n";

// A small deterministic generator, so that samples are the same everywhere.
struct Rng {
    uint32_t x;
    explicit Rng(unsigned seed) : x(seed * 2654435761u + 1) {}
    uint32_t next() {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        return x;
    }
    int below(int n) { return n <= 0 ? 0 : static_cast<int>(next() % static_cast<uint32_t>(n)); }
};

std::string colour_of(Rng& r) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "#%02X%02X%02X", r.below(256), r.below(256), r.below(256));
    return buf;
}

std::string hex2(int v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02x", v);
    return buf;
}

std::string label_lines(const std::vector<Label>& labels) {
    std::string out;
    int k = 1;
    for (const auto& l : labels) {
        char lang[8];
        std::snprintf(lang, sizeof lang, "0x%02x", l.lang);
        out += "String" + std::to_string(k++) + "=" + lang + "," + l.text + crlf;
    }
    return out;
}

std::string font_lines(const Font& f) {
    std::string out;
    if (f.style.empty() && f.custom.empty()) return "ExtendedLabels=N" + crlf;
    out += "ExtendedLabels=Y" + crlf;
    out += "FontStyle=" + (f.style.empty() ? std::string("Default") : f.style) + crlf;
    if (!f.custom.empty()) {
        out += "CustomColor=" + f.custom + crlf;
        if (!f.day.empty()) out += "DaycustomColor:" + f.day + crlf;
        if (!f.night.empty()) out += "NightcustomColor:" + f.night + crlf;
    }
    return out;
}

std::string display_label(const std::vector<Label>& labels) {
    for (const auto& l : labels)
        if (l.lang == 0) return l.text;
    return labels.empty() ? std::string() : labels.front().text;
}

std::string swapped(const std::string& hash_colour) {
    return hash_colour.size() == 7 ? typ::rgbswap(hash_colour.substr(1)) : std::string("0");
}

std::string pattern_rows(int rows, unsigned seed) {
    std::string out;
    for (int y = 0; y < rows; ++y) {
        std::string row(32, '0');
        for (int x = 0; x < 32; ++x)
            if (((x + y + static_cast<int>(seed)) / 4) % 2 == 0 || (x * y + seed) % 7 == 0) row[static_cast<size_t>(x)] = '1';
        out += row + crlf;
    }
    return out;
}

template <typename T>
void grow(std::vector<T>& v, size_t n) {
    if (v.size() < n) v.resize(n);
}

}  // namespace

void add_polygon(model::Store& s, const PolygonSpec& p) {
    const int32_t n = s.pg_n;
    model::procredim(s, model::k_polygons, n + 1);
    const auto r = static_cast<size_t>(n);
    std::vector<std::string> pal;
    for (size_t k = 0; k < p.colours.size(); ++k)
        pal.push_back("\"" + std::to_string(k) + " c " + p.colours[k] + "\"");
    std::string col;
    for (size_t k = 0; k < pal.size(); ++k) col += (k ? crlf : "") + pal[k];
    const bool bitmap = p.scheme >= 8;
    const std::string xpm = bitmap ? "Xpm=\"32 32 " + std::to_string(pal.size()) + " 1\""
                                   : "Xpm=\"0 0 " + std::to_string(pal.size()) + " 0\"";
    s.pg_typ[r] = typ::polygon_type_text(p.type * 32 + p.subtype);
    s.pg_mode[r] = static_cast<uint8_t>(p.scheme);
    s.pg_col[r] = col;
    s.pg_ncol[r] = static_cast<int16_t>(pal.size());
    s.pg_xpm[r] = xpm;
    s.pg_bmp[r] = bitmap ? pattern_rows(32, static_cast<unsigned>(n)) : "";
    s.pg_dayc[r] = p.font.custom == "Day" || p.font.custom == "DayAndNight" ? swapped(p.font.day) : "0";
    s.pg_txt[r] = "[_polygon]" + crlf + "Type=" + s.pg_typ[r] + crlf + label_lines(p.labels) + font_lines(p.font) +
                  xpm + crlf + col + crlf;
    const bool night = pal.size() == 4 || p.scheme == 7;
    s.pg_lab[r] = std::string(1, night ? '\1' : '\0') + std::string(1, col.find("none") != std::string::npos ? '\1' : '\0') +
                  "#" + display_label(p.labels);
    if (night) ++s.pg_nnight;
    s.pg_n = n + 1;
    s.pg_ni = s.pg_n;
}

void add_level(model::Store& s, int type, int subtype, int level) {
    std::string code = subtype == 0 && type < 0x100 ? "00" + hex2(type) : "1" + hex2(type & 0xff) + hex2(subtype);
    for (char& c : code) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    s.drwlist += " " + code + "," + std::to_string(level);
    for (int32_t n = 0; n < s.pg_n; ++n) typ::assign_level(s, n);
}

void add_line(model::Store& s, const LineSpec& l) {
    const bool active = !l.activity.empty();
    const int32_t n = s.ln_n + s.ln_nact;
    model::procredim(s, model::k_lines, n + 1);
    const auto r = static_cast<size_t>(n);
    const int code = l.type * 32 + l.subtype;
    const std::string type_text = typ::line_type_text(code);
    std::string col;
    for (size_t k = 0; k < l.colours.size(); ++k)
        col += (k ? crlf : "") + "\"" + std::to_string(k) + " c " + l.colours[k] + "\"";
    const int ncol = static_cast<int>(l.colours.size());
    int scheme;
    if (l.rows > 0) {
        const bool none1 = ncol > 1 && l.colours[1] == "none";
        const bool none3 = ncol > 3 && l.colours[3] == "none";
        scheme = ncol == 2 ? (none1 ? 6 : 0) : ncol == 4 ? (none1 && none3 ? 7 : none1 ? 3 : none3 ? 5 : 1) : 6;
    } else {
        scheme = ncol == 1 ? 6 : ncol == 4 ? 1 : (l.border > 0 ? 0 : 7);
    }
    const std::string xpm = l.rows > 0 ? "Xpm=\"32 " + std::to_string(l.rows) + " " + std::to_string(ncol) + " 1\""
                                       : "Xpm=\"0 0 " + std::to_string(ncol) + " 0\"";
    std::string keys = "[_line]" + crlf;
    if (active) keys += "Activity=" + l.activity + crlf;
    keys += "Type=" + type_text + crlf;
    if (l.rows == 0) keys += "LineWidth=" + std::to_string(l.width) + crlf + "BorderWidth=" + std::to_string(l.border) + crlf;
    keys += std::string("UseOrientation=") + (l.orientation ? "Y" : "N") + crlf;
    keys += label_lines(l.labels) + font_lines(l.font);
    s.ln_code[r] = (l.type << 8) | l.subtype;
    s.ln_mode[r] = static_cast<uint8_t>(l.rows * 8 + scheme);
    s.ln_col[r] = col;
    s.ln_ncol[r] = static_cast<int16_t>(ncol);
    s.ln_xpm[r] = xpm;
    s.ln_wid[r] = static_cast<int16_t>(l.rows > 0 ? 0 : l.width);
    s.ln_bord[r] = static_cast<int16_t>(l.rows > 0 ? 0 : l.border);
    if (l.rows > 0) {
        s.ln_bmp[r] = pattern_rows(l.rows, static_cast<unsigned>(n + 3));
    } else {
        std::string rows;
        for (int k = 0; k < l.border; ++k) rows += std::string(32, '1') + crlf;
        for (int k = 0; k < l.width; ++k) rows += std::string(32, '0') + crlf;
        for (int k = 0; k < l.border; ++k) rows += std::string(32, '1') + crlf;
        s.ln_bmp[r] = rows;
    }
    s.ln_dayc[r] = l.font.custom == "Day" || l.font.custom == "DayAndNight" ? swapped(l.font.day) : "0";
    s.ln_act[r] = l.activity;
    s.ln_txt[r] = keys + xpm + crlf + col + crlf;
    s.ln_lab[r] = type_text + "#" + display_label(l.labels);
    if (active)
        ++s.ln_nact;
    else
        ++s.ln_n;
}

namespace {

// Canonical symbol of palette index v for a picture of `entries` entries.
std::string symbol(int v, int entries) {
    if (entries >= model::cpp_limit) return {static_cast<char>(v / 16 + 36), static_cast<char>(v % 16 + 36)};
    return {static_cast<char>(v + 36)};
}

struct Picture {
    std::string head_counts;  // "W H N C"
    std::string colour_lines;
    std::string rows;
};

Picture picture(int w, int h, int colours, int mode, Rng& rng) {
    const int entries = colours + (mode == 16 ? 1 : 0);
    const int cpp = entries >= model::cpp_limit ? 2 : 1;
    Picture p;
    p.head_counts = std::to_string(w) + " " + std::to_string(h) + " " + std::to_string(entries) + " " +
                    std::to_string(cpp);
    for (int k = 0; k < colours; ++k) {
        p.colour_lines += (k ? crlf : "") + "\"" + symbol(k, entries) + " c " + colour_of(rng) + "\"";
        if (mode == 32) p.colour_lines += " alpha=" + std::to_string(rng.below(16));
    }
    if (mode == 16) p.colour_lines += (colours ? crlf : "") + "\"" + symbol(colours, entries) + " c none\"";
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            // Blocks of one colour with some noise: pictures look like icons.
            int v = ((x / 4) * 7 + (y / 4) * 3 + rng.below(3)) % entries;
            p.rows += symbol(v, entries);
        }
        p.rows += crlf;
    }
    return p;
}

}  // namespace

void add_point(model::Store& s, const PointSpec& p, bool extra) {
    const int32_t n = s.pt_n + s.pt_nx;
    model::procredim(s, model::k_points, n + 1);
    const auto r = static_cast<size_t>(n);
    Rng rng(p.seed);
    std::string digits = typ::point_type_text(p.type * 32 + p.subtype).substr(2);
    while (digits.size() < 5) digits.insert(digits.begin(), '0');
    const int mode_digit = p.mode / 16;
    Picture day = picture(p.width, p.height, p.colours, p.mode, rng);
    const std::string head = (p.night_colours > 0 ? "DayXpm=\"" : "DayXpm=\"") + day.head_counts + "\" Colormode=" +
                             std::to_string(p.mode);
    std::string col = day.colour_lines;
    std::string night_rows;
    int night_entries = 0;
    if (p.night_colours > 0) {
        Picture night = picture(p.width, p.height, p.night_colours, p.mode, rng);
        night_entries = p.night_colours + (p.mode == 16 ? 1 : 0);
        col += crlf + "NightXpm=\"" + night.head_counts + "\" Colormode=" + std::to_string(p.mode) + crlf +
               night.colour_lines;
        night_rows = night.rows;
        s.pt_nnight += p.height;
    }
    s.pt_typ[r] = digits;
    s.pt_xpm[r] = head;
    s.pt_col[r] = col;
    s.pt_bmp[r] = day.rows;
    s.pt_nbmp[r] = night_rows;
    s.pt_ncol[r] = static_cast<int16_t>(p.colours + (p.mode == 16 ? 1 : 0));
    s.pt_nncol[r] = static_cast<int16_t>(night_entries);
    s.pt_mode[r] = static_cast<uint8_t>(mode_digit);
    std::string cc = "0";
    if (p.font.custom == "Day" || p.font.custom == "DayAndNight") cc = swapped(p.font.day);
    if (p.font.custom == "DayAndNight") cc += swapped(p.font.night);
    s.pt_cc[r] = cc;
    s.pt_txt[r] = "[_point]" + crlf + "Type=0x" + typ::point_type_text(p.type * 32 + p.subtype).substr(2) + crlf +
                  label_lines(p.labels) + font_lines(p.font) + head + crlf + col;
    s.pt_lab[r] = std::string(1, p.night_colours > 0 ? '\1' : '\0') + std::string(1, static_cast<char>(mode_digit)) +
                  std::to_string(p.width) + "x" + std::to_string(p.height) + crlf + digits + "#" +
                  display_label(p.labels);
    if (extra)
        ++s.pt_nx;
    else
        ++s.pt_n;
}

void new_project(model::Store& s, const std::string& fid, int hdr_len) {
    model::newproject(s);
    s.fid = fid;
    s.pid = "1";
    s.codepage = 1252;
    s.hdr_len = hdr_len;
    static const char* hx = "0123456789abcdef";
    s.hdr_caption = {' ', hx[(hdr_len >> 4) & 15], hx[hdr_len & 15]};
    s.curf.assign(static_cast<size_t>(hdr_len), '\0');
}

void build_large(model::Store& s, int64_t target_bytes) {
    new_project(s, "9999", 156);
    const std::string long_label(120, 'x');
    int level = 1;
    for (int t = 1; t < 0x50; ++t) {
        const int schemes[] = {6, 7, 8, 9, 11, 13, 14, 15};
        const int sc = schemes[t % 8];
        std::vector<std::string> cols;
        const size_t need = sc == 6 ? 1 : (sc == 7 || sc == 8 || sc == 14) ? 2 : 4;
        for (size_t k = 0; k < need; ++k) cols.push_back("#" + std::string(6, "0123456789ABCDEF"[(t + k) % 16]));
        if (sc == 11 || sc == 14 || sc == 15) cols[0] = "none";
        if (sc == 13 || sc == 15) cols[2] = "none";
        add_polygon(s, {t, 0, sc, cols, {{0x04, "Area " + long_label}, {0x02, "Fläche"}}, {"Normal", "", "", ""}});
        add_level(s, t, 0, level);
        if (t % 10 == 0) ++level;
    }
    for (int t = 1; t < 0x40; ++t) {
        const int rows = t % 3 == 0 ? 0 : 1 + t % 31;
        std::vector<std::string> cols = {"#112233", "#445566"};
        if (t % 4 == 1) cols = {"#112233", "#445566", "#778899", "#AABBCC"};
        add_line(s, {t, 0, cols, rows, 1 + t % 8, t % 3, true, {{0x04, "Road " + long_label}}, {}, ""});
    }
    // Points carry the bulk: 64x64 pictures of many colours, half with night.
    int64_t bytes = 0;
    unsigned seed = 1;
    const int counts[] = {16, 48, 100, 200, 255, 15, 8, 3};
    while (bytes < target_bytes) {
        PointSpec p;
        p.type = 0x100 + static_cast<int>(seed / 32) % 0x600;
        p.subtype = static_cast<int>(seed % 32);
        p.width = 64;
        p.height = 64;
        p.colours = counts[seed % 8];
        p.mode = seed % 3 == 0 ? 32 : seed % 3 == 1 ? 16 : 0;
        if (p.mode == 16 && p.colours == 255) p.colours = 254;
        p.night_colours = seed % 2 ? p.colours : 0;
        p.seed = seed;
        p.labels = {{0x04, "Point " + std::to_string(seed) + " " + long_label}, {0x02, "Punkt"}};
        add_point(s, p);
        const int bits = p.colours >= 16 ? 8 : 4;
        bytes += (64 * 64 * bits / 8) * (p.night_colours ? 2 : 1) + p.colours * 4 + 150;
        ++seed;
    }
}

}  // namespace korvex::samples
