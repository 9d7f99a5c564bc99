// [_point] sections of a whole-file save (ordinary and extra points).
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

#include "text/sections.h"

namespace korvex::text::detail {

namespace {

bool all_hex(std::string_view d) {
    if (d.empty()) return false;
    for (char c : d)
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))) return false;
    return true;
}

// The type digits of the point from its pt_typ column: lower case, padded to
// five ("0" in front of four, "00" in front of three). "" when the column
// holds no usable digits.
std::string point_digits(std::string_view typ) {
    if (starts_with_ci(typ, "0x")) typ.remove_prefix(2);
    if (typ.size() == 6 && typ.front() == '0') typ.remove_prefix(1);
    if (!all_hex(typ) || typ.size() > 5) return {};
    std::string d = lower(typ);
    if (d.size() == 4)
        d = "0" + d;
    else if (d.size() == 3)
        d = "00" + d;
    return d;
}

std::string with_digits(std::string_view line, std::string_view digits) {
    std::string_view old = hex_digits_after_x(line);
    if (old.empty()) return std::string(line);
    const size_t b = static_cast<size_t>(old.data() - line.data());
    std::string out(line.substr(0, b));
    out += digits;
    out += line.substr(b + old.size());
    return out;
}

// Number k (from 1) of a quoted picture header ("" when absent).
std::string header_field(std::string_view header, int k) {
    size_t q = header.find('"');
    if (q == std::string_view::npos) return {};
    std::string_view rest = header.substr(q + 1);
    rest = rest.substr(0, rest.find('"'));
    int field = 0;
    size_t p = 0;
    while (p < rest.size()) {
        while (p < rest.size() && rest[p] == ' ') ++p;
        size_t e = p;
        while (e < rest.size() && rest[e] != ' ') ++e;
        if (e > p && ++field == k) return std::string(rest.substr(p, e - p));
        p = e;
    }
    return {};
}

// The rows of a picture without palette from its colours, one a pixel in
// row order, width to a row; the header is rewritten to "w h 0 0" with the
// rows there are. "" when the header gives no width.
std::string true_colour_picture(std::string& header, const std::vector<std::string_view>& colours) {
    const int width = std::atoi(header_field(header, 1).c_str());
    if (width <= 0) return {};
    std::string rows;
    int height = 0;
    std::string last = "#000000";
    const size_t total = (colours.size() + static_cast<size_t>(width) - 1) / static_cast<size_t>(width) * static_cast<size_t>(width);
    rows.reserve(total * 9 + colours.size() / static_cast<size_t>(width) * 2 + 2);
    for (size_t k = 0; k < total; ++k) {
        if (k < colours.size()) {
            const std::string_view c = colours[k];
            size_t n = 0;
            while (2 + n < c.size() && n < 6 && std::isxdigit(static_cast<unsigned char>(c[2 + n]))) ++n;
            last = "#";
            for (size_t i = 0; i < 6; ++i)
                last += i < n ? static_cast<char>(std::toupper(static_cast<unsigned char>(c[2 + i]))) : '0';
            // Opacity rides in the old-style form "#RRGGBB" "0" and its digit,
            // which the reader takes back.
            const size_t a = c.find("alpha=");
            if (a != std::string_view::npos) {
                const int v = std::clamp(std::atoi(std::string(c.substr(a + 6)).c_str()), 0, 15);
                last += '0';
                last += "0123456789ABCDEF"[v];
            }
        }
        rows += last;  // a short last row repeats its last colour
        if ((k + 1) % static_cast<size_t>(width) == 0) {
            rows += crlf;
            ++height;
        }
    }
    const size_t open = header.find('"');
    const size_t close = open == std::string::npos ? std::string::npos : header.find('"', open + 1);
    if (close != std::string::npos)
        header.replace(open, close - open + 1, "\"" + std::to_string(width) + ' ' + std::to_string(height) + " 0 0\"");
    return rows;
}

}  // namespace

std::string point_section(const Store& s, int32_t r, bool extended, LineOptions& opt) {
    const size_t row = static_cast<size_t>(r);
    const std::string& txt = s.pt_txt[row];
    if (trim(txt).empty()) return {};
    const bool no_table = s.pt_ncol[row] == 0;
    const bool true_table = no_table && contains_ci(txt, "colormode=32");
    const std::string digits = point_digits(s.pt_typ[row]);
    const std::string key = extended ? "ID=" : "Type=";

    std::vector<std::string> lines;
    std::vector<std::string_view> bare;  // "#RRGGBB": the pixels of a picture without palette
    int day_header = -1;
    int night_start = -1;
    bool day_none = false;
    bool day_alpha = false;
    TypeLine type_line(lines);
    for_each_key_line(txt, [&](std::string_view raw, std::string_view line, std::string& lo) {
        // A comment is a comment wherever it stands: an old picture or key
        // kept in one never counts.
        if (line.starts_with(';')) {
            lines.emplace_back(raw);
            return;
        }
        if (lo.starts_with("subtype=")) {
            // pt_typ already holds the merged digits.
            if (!digits.empty()) return;
            type_line.subtype(line);
            return;
        }
        if (lo.starts_with("type=") || lo.starts_with("id=")) {
            std::string_view value = line.substr(line.find('=') + 1);
            std::string t = key + std::string(value);
            t = digits.empty() ? repair_type_line(t) : with_digits(t, digits);
            type_line.type(std::move(t));
            return;
        }
        if (contains(lo, "xpm=")) {
            if (contains(lo, "nightxpm")) {
                if (night_start < 0) night_start = static_cast<int>(lines.size());
            } else if (day_header < 0 && night_start < 0) {
                day_header = static_cast<int>(lines.size());
            }
            const bool day = day_header == static_cast<int>(lines.size());
            lines.emplace_back(line);
            // mkgmap takes any line behind a header for a colour or a row, so
            // the note stands only where no picture follows (it is gone then
            // with the one-pixel stand-in below) and never behind a night header.
            if (no_table && day && contains(lo, "xpm=\"")) lines.emplace_back(";Colours");
            return;
        }
        if (no_table && night_start < 0 && day_header >= 0 && line.starts_with("\"#")) {
            bare.push_back(line);
            return;
        }
        if (line.starts_with('"') && contains(lo, " c ")) {
            if (night_start < 0) {
                day_none = day_none || contains(lo, "none");
                day_alpha = day_alpha || contains(lo, "alpha");
            }
            std::string colour(line);
            if (true_table) {
                size_t p = colour.find("ALPHA=");
                if (p != std::string::npos) colour.replace(p, 6, "alpha=");
            }
            lines.push_back(std::move(colour));
            return;
        }
        keep_line(s, lines, raw, line, lo, opt);
    });
    type_line.finish();

    // Every day header states its opacity mode.
    if (day_header >= 0) {
        std::string& h = lines[static_cast<size_t>(day_header)];
        if (!contains(lower(h), "colormode")) {
            const bool old_style = contains(h, " 0 ") && !contains(txt, "#\"\r\n") && !contains(txt, "#\"\n");
            const char* mode = old_style ? (day_none ? "16" : day_alpha ? "32" : "0") : (day_alpha ? "32" : "16");
            h += " Colormode=";
            h += mode;
        }
    }

    // A night picture of no colours of its own (it shares the day pixels)
    // is not written: mkgmap stops on a header of zero colours, and the
    // device shows the day picture then anyway.
    std::vector<std::string> night;
    if (night_start >= 0) {
        night.assign(lines.begin() + night_start, lines.end());
        lines.resize(static_cast<size_t>(night_start));
        if (s.pt_nncol[row] == 0 && s.pt_nbmp[row].empty() && header_field(night.front(), 3) == "0") night.clear();
    }

    // A picture without palette is written as mkgmap reads one: no colour
    // lines, and rows of "#RRGGBB" a pixel.
    std::string true_rows;
    if (day_header >= 0 && !bare.empty()) {
        true_rows = true_colour_picture(lines[static_cast<size_t>(day_header)], bare);
        const size_t note = static_cast<size_t>(day_header) + 1;
        if (!true_rows.empty() && note < lines.size() && lines[note] == ";Colours") lines.erase(lines.begin() + static_cast<long>(note));
    }

    // A picture of no pixels or no colours (a label-only point) cannot be
    // compiled by mkgmap; one transparent pixel draws the same nothing.
    std::string_view day_rows = true_rows.empty() ? std::string_view(s.pt_bmp[row]) : std::string_view(true_rows);
    if (day_header >= 0 && true_rows.empty()) {
        const std::string& h = lines[static_cast<size_t>(day_header)];
        if (header_field(h, 1) == "0" || header_field(h, 2) == "0" ||
            (header_field(h, 3) == "0" && s.pt_bmp[row].empty())) {
            const size_t q = h.find('"');
            std::vector<std::string> kept(lines.begin(), lines.begin() + day_header);
            kept.push_back(h.substr(0, q) + "\"1 1 1 1\" Colormode=16");
            kept.emplace_back("\"$ c none\"");
            for (size_t i = static_cast<size_t>(day_header) + 1; i < lines.size(); ++i)
                if (!lines[i].starts_with('"') && lines[i] != ";Colours") kept.push_back(lines[i]);
            lines = std::move(kept);
            day_rows = "$";
            night.clear();
        }
    }

    std::string out = join_lines(lines);
    out += crlf;
    append_rows(out, day_rows);
    out += ruler;
    out += crlf;
    if (!night.empty()) {
        out += join_lines(night);
        out += crlf;
        append_rows(out, s.pt_nbmp[row]);
    }
    out += "[end]";
    out += crlf;
    return out;
}

}  // namespace korvex::text::detail
