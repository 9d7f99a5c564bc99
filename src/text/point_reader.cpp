// Reading a "[_point]" section: keys, day and night pictures, into the point
// columns in the forms the TYP decoder gives them (canonical symbols, one
// character a pixel below cpp_limit colours, two from it on).
#include "text/point_reader.h"

#include <algorithm>
#include <charconv>
#include <deque>

#include "text/load_driver.h"
#include "text/point_picture.h"
#include "text/polygon_line_reader.h"
#include "typ/curf_access.h"
#include "typ/point_pixels.h"

namespace korvex::text {

namespace {

using namespace point_text;
using typ::lower;
using typ::upper;

// Blanks around the first "=" go: "Type = 0x2f00" is "Type=0x2f00".
std::string normalise_equals(std::string_view line) {
    const size_t eq = line.find('=');
    if (eq == std::string_view::npos) return std::string(line);
    std::string out(trim_view(line.substr(0, eq)));
    out += '=';
    std::string_view right = line.substr(eq + 1);
    while (!right.empty() && right.front() == ' ') right.remove_prefix(1);
    out += right;
    return out;
}

// The hexadecimal digits of a key's value, behind its "0x" when it has one.
std::string value_digits(std::string_view line) {
    const size_t eq = line.find('=');
    std::string_view v = trim_view(eq == std::string_view::npos ? line : line.substr(eq + 1));
    if (v.size() >= 2 && v[0] == '0' && (v[1] == 'x' || v[1] == 'X')) v.remove_prefix(2);
    size_t n = 0;
    while (n < v.size() && is_hex(v[n])) ++n;
    return std::string(v.substr(0, n));
}

// Type digits whose subtype is above 0x1f keep its low five bits, as mkgmap
// reads them; true when they changed.
bool five_bit_subtype(Store& s, std::string& digits) {
    if (digits.size() < 4) return false;
    const auto code = static_cast<int32_t>(typ::hex_value(digits));
    const int32_t kept = reader::five_bit_subtype(s, code);
    if (kept == code) return false;
    std::string d = typ::hex(kept);
    digits = std::string(digits.size() > d.size() ? digits.size() - d.size() : 0, '0') + d;
    return true;
}

// Custom colour digits in file byte order: padded to six, pairs reversed.
std::string swapped_digits(std::string_view line) {
    const size_t hash = line.find('#');
    std::string d;
    for (size_t k = hash + 1; hash != std::string_view::npos && k < line.size() && is_hex(line[k]) && d.size() < 6; ++k)
        d += line[k];
    if (d.size() < 6) d.insert(0, 6 - d.size(), '0');
    return upper(d.substr(4, 2) + d.substr(2, 2) + d.substr(0, 2));
}

// '"' symbol, blanks, "c", blanks, then "#" or "none".
bool reads_as_colour(std::string_view line, int cpp) {
    size_t p = static_cast<size_t>(1 + cpp);
    while (p < line.size() && line[p] == ' ') ++p;
    if (p + 1 >= line.size() || (line[p] != 'c' && line[p] != 'C') || line[p + 1] != ' ') return false;
    p += 2;
    while (p < line.size() && line[p] == ' ') ++p;
    return p < line.size() && (line[p] == '#' || typ::find_caseless(line.substr(p, 4), "none") == 0);
}

}  // namespace

void poiparse(Store& s, platform::Prompt& ui, const std::string& section, int32_t row, bool batch) {
    (void)ui;
    (void)batch;
    if (row < 0) return;
    if (static_cast<size_t>(row) >= s.pt_txt.size()) model::procredim(s, model::k_points, row + 1);
    const auto r = static_cast<size_t>(row);
    s.pt_col[r].clear();
    s.pt_bmp[r].clear();
    s.pt_nbmp[r].clear();
    s.pt_txt[r].clear();
    s.pt_typ[r].clear();
    s.pt_lab[r].clear();
    s.pt_xpm[r].clear();
    s.pt_cc[r] = "0";
    s.pt_ncol[r] = 0;
    s.pt_nncol[r] = 0;
    s.pt_mode[r] = 0;

    std::string_view text = section;
    const size_t end_at = typ::find_caseless(text, "[end]");
    if (end_at != std::string_view::npos) text = text.substr(0, end_at + 5);

    Picture day, night;
    bool in_night = false, old_style = false, seen_colour = false;
    std::string rest = "[_point]\r\n";
    std::string digits;  // the running type digits
    int strings = 0;
    std::string label_pref, label_zero, label_first;

    // Colour lines and rows stay views of the section; the few lines that
    // had to change live here (a deque does not move them).
    std::deque<std::string> changed;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t nl = text.find('\n', pos);
        if (nl == std::string_view::npos) nl = text.size();
        std::string_view view = trim_view(text.substr(pos, nl - pos));
        pos = nl + 1;
        if (holds(view, "\t")) {
            std::string& tabs = changed.emplace_back(view);
            std::replace(tabs.begin(), tabs.end(), '\t', ' ');
            view = trim_view(tabs);
        }
        // Rows make up most of a section: the words are looked for only
        // where their first character stands.
        const bool ends_section = holds(view, "[") && typ::contains_caseless(view, "[end]");
        if (old_style && !ends_section && !view.empty()) {
            std::string& quoted = changed.emplace_back(1, '"');
            quoted += view;
            quoted += '"';
            view = quoted;
        }
        if (holds(view, ";") && typ::contains_caseless(view, ";bitmap")) {
            old_style = true;
            continue;
        }
        if (view.empty()) continue;
        if (view.size() >= 2 && view.ends_with("\",")) view.remove_suffix(1);
        if (view.front() == '"') {
            Picture& p = in_night ? night : day;
            const int stated = p.head.field[2];
            // The head says how many colour lines follow; one more that
            // reads as a colour line is taken as one all the same.
            const bool colour = p.rows.empty() && typ::contains_caseless(view, "c ") &&
                                (static_cast<int>(p.colours.size()) < stated || reads_as_colour(view, p.cpp));
            if (colour) {
                p.colours.push_back(view);
                seen_colour = true;
            } else {
                // Behind the row's closing quote stands nothing of it.
                const size_t close = view.rfind('"');
                p.rows.push_back(close > 0 ? view.substr(1, close - 1) : view.substr(1));
            }
            continue;
        }
        if (ends_section) break;
        std::string line(view);
        if (typ::contains_caseless(line, ";123")) continue;
        if (line.front() == ';') {
            // Comments of the keys stay; what the writer prints behind a
            // head (";Colours") is its own. A picture or key in a comment
            // is no picture and no key.
            if (!seen_colour && day.head_line.empty()) rest += line + k_crlf;
            continue;
        }
        std::string lo = lower(line);
        if (holds(lo, "xpm=") || holds(lo, "xpm =") || holds(lo, "xpm  =")) {
            line = normalise_equals(line);
            Picture& p = holds(lo, "night") ? night : day;
            if (&p == &night) in_night = true;
            if (!p.head_line.empty()) continue;
            p.head_line = line;
            p.head = read_head(line);
            const int stated = p.head.field[3];
            p.cpp = stated == 2 ? 2 : 1;
            continue;
        }
        line = normalise_equals(line);
        lo = lower(line);
        if (holds(lo, "string")) {
            line = fnchkstringtxt(s, line, ++strings);
            // The label on show is chosen as for a decoded record: the
            // preferred language, else language 0, else the first string.
            const size_t comma = line.find(',');
            const size_t x = typ::find_caseless(line, "=0x");
            if (comma != std::string::npos && x != std::string::npos && x < comma) {
                const int64_t lang = typ::hex_value(trim_view(std::string_view(line).substr(x + 3, comma - x - 3)));
                const std::string label = line.substr(comma + 1);
                if (lang == s.opt.langid) label_pref = label;
                if (lang == 0) label_zero = label;
                if (label_first.empty() && !label.empty() && static_cast<unsigned char>(label[0]) < 127) label_first = label;
            }
            rest += line + k_crlf;
            continue;
        }
        if (lo.starts_with("subtype=")) {
            // mkgmap's separate subtype: type digits, then two subtype digits.
            if (digits.size() > 3) digits.resize(digits.size() - 2);
            std::string sub = value_digits(line);
            if (sub.size() < 2) sub.insert(0, 2 - sub.size(), '0');
            digits += sub.substr(sub.size() - 2);
            if (five_bit_subtype(s, digits)) line = "SubType=0x" + typ::lower(digits.substr(digits.size() - 2));
            rest += line + k_crlf;
            continue;
        }
        if (lo.starts_with("type=") || lo.starts_with("id=")) {
            digits = value_digits(line);
            if (digits.size() == 1) digits.insert(0, 1, '0');
            // Two or three digits name a type without its subtype, as mkgmap
            // reads them: 0x2f is 0x2f00, 0x115 is 0x11500.
            if (digits.size() == 2 || digits.size() == 3) digits += "00";
            if (digits.size() > 5) digits.erase(0, digits.size() - 5);
            if (five_bit_subtype(s, digits)) line = "Type=0x" + typ::lower(digits);
            rest += line + k_crlf;
            continue;
        }
        if (holds(lo, "customcolor")) {
            if (holds(lo, "#") && !holds(lo, "=no")) {
                if (holds(lo, "daycustom"))
                    s.pt_cc[r] = swapped_digits(line);
                else
                    s.pt_cc[r] += swapped_digits(line);
            }
            rest += line + k_crlf;
            continue;
        }
        if (lo.starts_with("extendedlabels") || lo.starts_with("fontstyle")) {
            // "=n" and "=y" are written in capitals.
            for (size_t k = 0; k + 1 < line.size(); ++k)
                if (line[k] == '=' && (line[k + 1] == 'n' || line[k + 1] == 'y')) line[k + 1] = static_cast<char>(line[k + 1] - 32);
            rest += line + k_crlf;
        }
    }

    if (digits.size() < 5) digits.insert(0, 5 - digits.size(), '0');
    s.pt_typ[r] = upper(digits);
    const std::string& type = s.pt_typ[r];
    if (day.head_line.empty()) return;
    if (!day.head.has_blank) model::note_once(s, type + " problems with xpm");

    // Colours a pixel made into a palette of their own, in the section's
    // place of colour lines and rows.
    auto to_palette = [&](Picture& p) {
        PalettePicture pp = palette_from_true_colour(p.rows);
        p.colours.clear();
        p.rows.clear();
        for (std::string& c : pp.colours) p.colours.push_back(changed.emplace_back(std::move(c)));
        for (std::string& x : pp.rows) p.rows.push_back(changed.emplace_back(std::move(x)));
        p.cpp = pp.cpp;
        p.head.field[2] = static_cast<int>(p.colours.size());
        p.head.field[3] = pp.cpp;
        p.head.mode.clear();
    };

    // Day picture.
    int mode = 0;
    int none_at = -1;
    // A record holds width and height in one byte each.
    int width = std::clamp(day.head.field[0], 0, 255);
    int height = std::clamp(day.head.field[1], 0, 255);
    PointSymbols day_symbols;
    day_symbols.cpp = day.cpp;
    std::string table;
    int ncol = 0;
    bool bare = false;
    if (day.colours.empty() && !day.rows.empty() && true_colour_rows(day.rows)) {
        // Old style: the picture's lines are the colours of its pixels.
        table = old_style_table(day.rows, mode);
        day.rows.clear();
        bare = true;
    } else {
        table = canonical_table(day, day_symbols, mode, none_at, ncol);
        const std::vector<std::string> unknown = unknown_symbols(day.rows, day_symbols);
        if (!unknown.empty()) {
            if (none_at < 0) {
                model::note_once(s, upper(type) + "::old style point/colour? (" + unknown.front() + ")");
                day_symbols.add(unknown.front());
                day.colours.push_back(changed.emplace_back('"' + unknown.front() + " c none\""));
                table = canonical_table(day, day_symbols = PointSymbols{day.cpp, {}, 0, -1}, mode, none_at, ncol);
            }
            day_symbols.fallback = none_at;
        }
    }
    s.pt_ncol[r] = static_cast<int16_t>(ncol);
    s.pt_mode[r] = static_cast<uint8_t>(mode);
    if (!day.rows.empty()) s.pt_bmp[r] = convert_rows(day.rows, day_symbols, ncol);
    const int cpp = bare ? 1 : typ::symbol_width(ncol);

    // Repairs of the head.
    const int rows = static_cast<int>(day.rows.size());
    const std::string stated_head = day.head_line;
    if (s.pt_bmp[r].empty() && !bare && !holds(day.head_line, " 0 ") && width > 0 && height > 0) {
        model::note_once(s, type + " Fixed incorrect poi bmp.");
        std::string filler(static_cast<size_t>(width), '$');
        std::string& bmp = s.pt_bmp[r];
        for (int y = 0; y < height; ++y) bmp += filler + k_crlf;
        if (ncol >= model::cpp_limit) fncoltxt(s, table, row, false);
    } else if (rows > 0 && rows != height) {
        model::note_once(s, type + " Fixed incorrect poi xpm.");
        height = rows;
    }
    const std::string stated_mode = day.head.mode.empty() ? std::to_string(mode * 16) : day.head.mode;
    s.pt_xpm[r] = head_text(day.head, width, height, ncol, cpp, stated_mode);
    s.pt_col[r] = table;

    // Night picture.
    const bool keep_night = model::chkl(s, 6) != '0';
    bool has_night = false;
    if (!night.head_line.empty() && keep_night) {
        has_night = true;
        // A night picture always has a palette.
        if (night.colours.empty() && true_colour_rows(night.rows)) to_palette(night);
        PointSymbols night_symbols;
        night_symbols.cpp = night.cpp;
        int night_mode = 0, night_none = -1, nncol = 0;
        const std::string night_table = canonical_table(night, night_symbols, night_mode, night_none, nncol);
        night_symbols.fallback = night_none;
        bool width_error = false;
        for (const std::string_view x : night.rows)
            width_error = width_error || static_cast<int>(x.size()) != width * night.cpp;
        if (width_error) s.loadmsg += "POI 0 x " + type + " Nightbmp width error . Please click on POI to edit.\r\n";
        s.pt_nncol[r] = static_cast<int16_t>(nncol);
        if (nncol > 0) {
            s.pt_nbmp[r] = convert_rows(night.rows, night_symbols, nncol);
            s.pt_nnight += static_cast<int32_t>(night.rows.size());
        }
        std::string& col = s.pt_col[r];
        col += k_crlf;
        col += head_text(night.head, width, height, nncol, typ::symbol_width(nncol), std::to_string(night_mode * 16));
        col += k_crlf;
        col += night_table;
        col.resize(col.size() - 2);
    }

    // The element's text: its keys, the head, the colour tables.
    std::string& txt = s.pt_txt[r];
    txt.reserve(rest.size() + s.pt_xpm[r].size() + s.pt_col[r].size() + 4);
    txt = std::move(rest);
    txt += s.pt_xpm[r];
    txt += k_crlf;
    txt += s.pt_col[r];

    std::string& lab = s.pt_lab[r];
    lab += static_cast<char>(has_night ? 1 : 0);
    lab += static_cast<char>(mode);
    lab += std::to_string(width) + 'x' + std::to_string(height) + ' ' + std::to_string(ncol) + ' ' + std::to_string(cpp);
    lab += k_crlf;
    lab += type;
    lab += '#';
    const std::string& label = !label_pref.empty() ? label_pref : !label_zero.empty() ? label_zero : label_first;
    if (!label.empty()) lab += '\'' + label + '\'';
    (void)stated_head;
}

}  // namespace korvex::text
