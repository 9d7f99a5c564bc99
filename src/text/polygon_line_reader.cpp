// Polygon and line sections of the text form into table rows.
//
// Both readers normalise rather than reject: texts come from hand editing and
// from mkgmap sources (tabs, "c None", LineWidth=, SubType= lines). Each
// rebuilds the element's own text from the normalised pieces, so that text
// and columns agree.
#include "text/polygon_line_reader.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "text/load_driver.h"
#include "typ/curf_access.h"
#include "typ/draw_order.h"

namespace korvex::text {

namespace {

const char* const k_crlf = "\r\n";
constexpr int k_max_width = 31;
constexpr int32_t k_active_header = 174;
const std::string k_row_ones(32, '1');
const std::string k_row_zeros(32, '0');

bool has(std::string_view text, std::string_view word) { return text.find(word) != std::string_view::npos; }

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string trim(std::string_view t) {
    size_t a = 0, b = t.size();
    while (a < b && blank(t[a])) ++a;
    while (b > a && blank(t[b - 1])) --b;
    return std::string(t.substr(a, b - a));
}

bool is_hex(char c) { return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f'); }

// The hex digits standing right behind position at (blanks skipped).
std::string hex_run(std::string_view t, size_t at) {
    while (at < t.size() && blank(t[at])) ++at;
    size_t e = at;
    while (e < t.size() && is_hex(t[e])) ++e;
    return std::string(t.substr(at, e - at));
}

// Lines at CR LF, or at LF when the text has lone LFs.
std::vector<std::string> split_lines(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    std::vector<std::string> out;
    size_t pos = 0;
    while (pos <= text.size()) {
        const size_t nl = text.find('\n', pos);
        out.push_back(text.substr(pos, nl == std::string::npos ? std::string::npos : nl - pos));
        if (nl == std::string::npos) break;
        pos = nl + 1;
    }
    return out;
}

// Blanks around the first "=" dropped, on key lines only: a quoted colour or
// row keeps its blanks (they can be symbols).
std::string normalise_key(const std::string& line) {
    const std::string low = typ::lower(line);
    const bool quoted = has(line, "\"");
    if (quoted && low.rfind("string", 0) != 0 && !has(low, "xpm")) return line;
    const size_t eq = line.find('=');
    if (eq == std::string::npos) return line;
    return trim(std::string_view(line).substr(0, eq)) + "=" + trim(std::string_view(line).substr(eq + 1));
}

// The section with blanks around each key's "=" gone, for the section test.
std::string keys_normalised(const std::string& section) {
    std::string out;
    for (const std::string& line : split_lines(section)) out += normalise_key(trim(line)) + k_crlf;
    return out;
}

// Text after "[end]" goes; keep bytes to match the marker's spelling.
std::string cut_after_end(const std::string& section) {
    const size_t at = typ::lower(section).find("[end]");
    return at == std::string::npos ? section : section.substr(0, at + 5);
}

int count_quotes(std::string_view t) { return static_cast<int>(std::count(t.begin(), t.end(), '"')); }

// A colour line: quoted, "c " and a "#" behind it or "none" anywhere.
bool colour_line(const std::string& low) {
    if (low.empty() || low[0] != '"') return false;
    const size_t c = low.find("c ") != std::string::npos ? low.find("c ") : low.find("c\t");
    if (c == std::string::npos) return false;
    return low.find('#', c) != std::string::npos || has(low, "none");
}

// The symbol of a colour line: cpp characters behind the opening quote,
// trimmed when something is left (a blank may be a symbol).
std::string colour_symbol(const std::string& line, int cpp) {
    std::string sym = line.substr(1, static_cast<size_t>(cpp));
    const std::string t = trim(sym);
    if (!t.empty()) sym = t;
    return sym;
}

// "#RRGGBB" upper case, or "none".
std::string colour_value(const std::string& line) {
    const std::string low = typ::lower(line);
    const size_t c = low.find("c ") != std::string::npos ? low.find("c ") : low.find("c\t");
    const size_t hash = line.find('#', c == std::string::npos ? 0 : c);
    if (hash == std::string::npos) {
        if (has(low, "none")) return "none";
        // No "#": the value stands behind the "c ".
        return "#" + typ::upper(hex_run(line, c == std::string::npos ? line.size() : c + 2).substr(0, 6));
    }
    return "#" + typ::upper(hex_run(line, hash + 1).substr(0, 6));
}

std::string canonical_colour(int k, const std::string& value) {
    std::string out;
    typ::append_palette_line(out, k, value);
    return out;
}

std::string join(const std::vector<std::string>& lines) {
    std::string out;
    for (size_t k = 0; k < lines.size(); ++k) {
        if (k) out += k_crlf;
        out += lines[k];
    }
    return out;
}

// Digits padded to 6 and reversed by pairs: text order to file byte order.
std::string byte_swap(std::string digits) {
    digits = typ::upper(digits.substr(0, 6));
    digits = std::string(6 - digits.size(), '0') + digits;
    return digits.substr(4, 2) + digits.substr(2, 2) + digits.substr(0, 2);
}

// "=n" and "=y" of key values in capitals; label texts ("bicycle=no") and
// comments keep theirs.
void yes_no_upper(std::string& t) {
    size_t start = 0;
    while (start < t.size()) {
        size_t end = t.find('\n', start);
        if (end == std::string::npos) end = t.size();
        const bool label = end - start >= 6 && typ::lower(t.substr(start, 6)) == "string";
        if (!label && t[start] != ';')
            for (size_t k = start; k + 1 < end; ++k)
                if (t[k] == '=' && (t[k + 1] == 'n' || t[k + 1] == 'y')) t[k + 1] = static_cast<char>(t[k + 1] - 32);
        start = end + 1;
    }
}

// Rows of symbols to palette digits: each pixel of cpp characters becomes
// "0" or "1" by its colour's place in the pair (night colours 2 and 3 share
// the one bitmap with day colours 0 and 1). Unknown symbols and blanks are 0.
std::string rows_to_digits(const std::vector<std::string>& rows, const std::vector<std::string>& symbols, int cpp) {
    // One look-up a pixel, whatever the number of colours; the first colour
    // of a symbol wins.
    std::array<char, 256> one{};
    std::unordered_map<std::string, char> many;
    for (size_t k = symbols.size(); k-- > 0;) {
        const char digit = (k & 1) ? '1' : '0';
        if (cpp == 1 && symbols[k].size() == 1) one[static_cast<unsigned char>(symbols[k][0])] = digit;
        many[symbols[k]] = digit;
    }
    std::string out;
    out.reserve(rows.size() * 34);
    for (size_t r = 0; r < rows.size(); ++r) {
        if (r) out += k_crlf;
        const std::string& row = rows[r];
        for (size_t at = 0; at < row.size(); at += static_cast<size_t>(cpp)) {
            if (cpp == 1) {
                if (row[at] == ',') continue;
                const char d = one[static_cast<unsigned char>(row[at])];
                out += d ? d : '0';
                continue;
            }
            const auto it = many.find(row.substr(at, static_cast<size_t>(cpp)));
            out += it == many.end() ? '0' : it->second;
        }
    }
    return out;
}

// The label text of a String line when it holds the preferred language or
// "0x0"; "" otherwise.
bool label_candidate(const Store& s, const std::string& line, std::string& label) {
    const std::string low = typ::lower(line);
    if (!has(low, "0x" + std::to_string(s.opt.langid)) && !has(low, "0x0")) return false;
    const size_t comma = line.find(',');
    if (comma == std::string::npos) return false;
    label = line.substr(comma + 1);
    return true;
}

// Characters-a-pixel of an Xpm line: 2 when its last number is 2.
int xpm_cpp(std::string& xpm) {
    const size_t at = xpm.find(" 2\"");
    if (at == std::string::npos) return 1;
    xpm.replace(at, 3, " 1\"");
    return 2;
}

// Xpm line cut behind its last quote.
std::string cut_xpm(std::string xpm) {
    const size_t q = xpm.rfind('"');
    if (q != std::string::npos) xpm.resize(q + 1);
    return xpm;
}

// Type digits: 1 or 2 digits (and 3, mkgmap's extended types such as 0x115)
// are the type, with subtype 00 behind them; 4 or 5 digits hold the subtype.
int32_t type_value(const std::string& digits) {
    const auto v = static_cast<int32_t>(typ::hex_value(digits.substr(0, 5)));
    return digits.size() <= 3 ? v << 8 : v;
}

std::string five_digits(int32_t code) {
    const std::string d = typ::hex(code);
    return d.size() >= 5 ? d : std::string(5 - d.size(), '0') + d;
}

// A SubType= value replaces the subtype of the running code.
int32_t with_subtype(int32_t code, const std::string& line) {
    const size_t x = typ::lower(line).find('x', line.find('='));
    const std::string sub = x == std::string::npos ? "0" : hex_run(line, x + 1);
    return (code & ~0xff) | static_cast<int32_t>(typ::hex_value(sub.empty() ? "0" : sub.substr(0, 2)));
}

std::string type_digits_of(const std::string& line) {
    const std::string low = typ::lower(line);
    const size_t t = low.find("type=");
    const size_t x = low.find('x', t);
    return x == std::string::npos ? hex_run(line, t + 5) : hex_run(line, x + 1);
}

}  // namespace

std::string reducl(const std::string& colours, int n) {
    std::string out;
    int k = 0;
    size_t pos = 0;
    while (k < n && pos < colours.size()) {
        const size_t e = colours.find(k_crlf, pos);
        if (k) out += k_crlf;
        out += colours.substr(pos, e == std::string::npos ? std::string::npos : e - pos);
        ++k;
        if (e == std::string::npos) break;
        pos = e + 2;
    }
    return out;
}

std::string activity_code(const std::string& value) {
    static const std::array<std::pair<const char*, const char*>, 6> k_names{{{"walking", "40"},
                                                                            {"hiking", "41"},
                                                                            {"mountaineering", "42"},
                                                                            {"cycling", "50"},
                                                                            {"tour cycling", "51"},
                                                                            {"mountain biking", "52"}}};
    const std::string low = typ::lower(value);
    std::string code = "40";
    for (const auto& [name, c] : k_names)
        if (has(low, name)) code = c;
    return code;
}

void pgonparse_txt(Store& s, platform::Prompt& ui, const std::string& in, int32_t row, bool batch) {
    std::string section = cut_after_end(in);
    if (chktxt(s, ui, model::k_polygons, row, keys_normalised(section))) return;
    const std::string low_section = typ::lower(section);
    if (has(low_section, "id=") && !has(low_section, "type=")) section = "type=0x0\r\n" + section;
    const bool has_extended = has(low_section, "extendedlabels=");
    const auto r = static_cast<size_t>(row);

    int32_t code = -1;
    std::string rest, xpm, label;
    std::vector<std::string> colours, rows;
    bool in_picture = false, rows_closed = false, extended_added = false;
    int cpp = 1, strings = 0;
    s.pg_dayc[r] = "0";
    for (std::string line : split_lines(section)) {
        line = normalise_key(trim(line));
        std::string low = typ::lower(line);
        if (line.empty() || line[0] == ';') {
            if (has(low, ";123")) rows_closed = true;
            if (!in_picture && !line.empty()) rest += line + k_crlf;
            continue;
        }
        if (has(low, "type=") && !has(low, "string")) {
            code = low.rfind("subtype", 0) == 0 ? with_subtype(code < 0 ? 0 : code, line)
                                                : type_value(type_digits_of(line));
            s.pg_typ[r] = "0x" + typ::hex(code >> 8) + typ::hex2(typ::hex(code & 0xff));
            if (s.pg_typ[r].size() == 5) s.pg_typ[r] = "0x0" + s.pg_typ[r].substr(2);
        }
        if (has(low, "[end]")) break;
        if (colour_line(low)) {
            colours.push_back(line);
            in_picture = true;
            continue;
        }
        if (has(low, "string")) {
            ++strings;
            line = fnchkstringtxt(s, line, strings);
            label_candidate(s, line, label);
        } else if (has(low, "xpm=")) {
            xpm = cut_xpm(line);
            cpp = xpm_cpp(xpm);
            in_picture = true;
            continue;
        }
        if (has(low, ";123")) rows_closed = true;
        if (!xpm.empty() && !rows_closed && line[0] == '"' && !has(low, "c ") && !has(low, "cust")) {
            std::string q = line;
            q.erase(std::remove(q.begin(), q.end(), '"'), q.end());
            rows.push_back(q);
            continue;
        }
        if (low.rfind("[_", 0) != 0 && !in_picture) {
            rest += line + k_crlf;
            if (code >= 0 && !has_extended && !extended_added) {
                rest += std::string("ExtendedLabels=N") + k_crlf;
                extended_added = true;
            }
        }
        if (has(low, "daycustom") && has(low, "#")) s.pg_dayc[r] = byte_swap(hex_run(line, line.find('#') + 1));
    }

    // Canonical colour lines; symbols map rows to palette digits.
    std::vector<std::string> symbols, values;
    for (const std::string& c : colours) {
        symbols.push_back(colour_symbol(c, cpp));
        values.push_back(colour_value(c));
    }
    // Four colours at most: day and night pairs.
    if (values.size() > 4) {
        values.resize(4);
        symbols.resize(4);
    }
    bool none1 = values.size() > 1 && values[1] == "none";
    bool none3 = values.size() > 3 && values[3] == "none";
    // The transparent colour of a pair stands first: swap pair and pixels.
    if (none1 || none3) {
        std::swap(values[0], values[1]);
        std::swap(symbols[0], symbols[1]);
        if (values.size() >= 4) {
            std::swap(values[2], values[3]);
            std::swap(symbols[2], symbols[3]);
        }
    }
    s.pg_bmp[r] = rows_to_digits(rows, symbols, cpp);

    const bool none0 = !values.empty() && values[0] == "none";
    const bool none2 = values.size() > 2 && values[2] == "none";
    const bool any_none = std::find(values.begin(), values.end(), "none") != values.end();
    int mode;
    const bool solid = has(xpm, "\"0 0") || has(xpm, " 0 0 ");
    if (solid) {
        // A solid polygon has no transparent part: mkgmap's "c None" beside
        // one colour leaves that colour alone.
        if (any_none && values.size() > 1) values.erase(std::remove(values.begin(), values.end(), "none"), values.end());
        mode = values.size() <= 1 ? 6 : 7;
    } else if (values.size() <= 2) {
        mode = any_none ? 14 : 8;
    } else if (none0 && none2) {
        mode = 15;
    } else {
        mode = none0 ? 11 : none2 ? 13 : 9;
    }
    if (mode == 6 || mode == 7) s.pg_bmp[r].clear();

    // Night colours switched off in the load options: the day pair stays.
    if (model::chkl(s, 4) == '0' && (mode & 1)) {
        if (mode == 7) {
            mode = 6;
            values.resize(1);
        } else {
            mode = (mode == 9 || mode == 13) ? 8 : 14;
            values.resize(2);
        }
    }
    // The header says what the columns hold.
    if (!xpm.empty()) xpm = std::string(solid ? "Xpm=\"0 0 " : "Xpm=\"32 32 ") + std::to_string(values.size()) + (solid ? " 0\"" : " 1\"");

    std::vector<std::string> lines;
    for (size_t k = 0; k < values.size(); ++k) lines.push_back(canonical_colour(static_cast<int>(k), values[k]));
    s.pg_col[r] = join(lines);
    s.pg_ncol[r] = static_cast<int16_t>(lines.size());
    s.pg_mode[r] = static_cast<uint8_t>(mode);
    s.pg_xpm[r] = xpm;
    std::string& txt = s.pg_txt[r];
    txt = std::string("[_polygon]") + k_crlf + rest + xpm + k_crlf + s.pg_col[r] + k_crlf;
    yes_no_upper(txt);

    const bool night = lines.size() == 4 || mode == 7;
    std::string& lab = s.pg_lab[r];
    lab.clear();
    lab += static_cast<char>(night ? 1 : 0);
    lab += static_cast<char>(has(s.pg_col[r], "none") ? 1 : 0);
    lab += '#';
    lab += label;
    if (night) ++s.pg_nnight;

    if (!batch && row > 0) {
        draworder_fromtxt(s, ui, in);
        typ::sort_drwlist(s);
    }
}

void pollineparse(Store& s, platform::Prompt& ui, const std::string& in, int32_t row, bool batch) {
    (void)batch;
    const std::string section = cut_after_end(in);
    if (chktxt(s, ui, model::k_lines, row, keys_normalised(section))) return;
    const auto r = static_cast<size_t>(row);
    s.ln_bmp[r].clear();
    s.ln_col[r].clear();
    s.ln_xpm[r].clear();
    s.ln_ncol[r] = 0;
    s.ln_wid[r] = 0;
    s.ln_bord[r] = 0;
    s.ln_mode[r] = 0;
    s.ln_code[r] = 0;
    s.ln_act[r] = s.curclass == model::k_active_lines ? "40" : "";
    s.ln_dayc[r] = "0";
    const std::string low_section = typ::lower(section);
    const bool has_bitmap = has(low_section, "\"32");
    // An active line needs the long header, also when applied alone.
    if (has(low_section, "activity=") && s.hdr_len < k_active_header) {
        s.hdr_len = k_active_header;
        s.hdr_caption = " " + typ::hex(k_active_header);
    }

    int32_t code = 0;
    std::string rest, xpm, label, type_text;
    std::vector<std::string> colours, rows;
    bool bad_header = false, rows_closed = false, width_seen = false;
    int cpp = 1, strings = 0;
    for (std::string line : split_lines(section)) {
        line = normalise_key(trim(line));
        const std::string low = typ::lower(line);
        if (line.empty()) continue;
        if (has(low, ";123")) rows_closed = true;
        if (line[0] == ';') {
            rest += line + k_crlf;
            continue;
        }
        if (has(low, "xpm=") && count_quotes(line) < 2) model::note_once(s, "Lines: missing quotes:" + line);
        if (has(low, "activity=")) {
            rest += line + k_crlf;
            s.ln_act[r] = activity_code(line.substr(line.find('=') + 1));
            continue;
        }
        if (has(low, "type=") && !has(low, "string")) {
            code = low.rfind("subtype", 0) == 0 ? with_subtype(code, line) : type_value(type_digits_of(line));
            type_text = "0x" + typ::lower(five_digits(code));
            rest += line + k_crlf;
            continue;
        }
        if (has(low, "[end]")) break;
        const bool lwidth = has(low, "lwidth(") || low.rfind("linewidth", 0) == 0;
        const bool border = low.rfind("borderwidth", 0) == 0;
        if (lwidth || border) {
            const size_t eq = line.find('=');
            if (eq == std::string::npos) {
                model::note_once(s, "No lwidth(");
                return;
            }
            if (has_bitmap) continue;
            int v = static_cast<int>(std::strtol(line.c_str() + eq + 1, nullptr, 10));
            const std::string key = line.substr(0, eq + 1);
            if (lwidth) {
                width_seen = true;
                if (v < 1) {
                    model::note_once(s, type_text + " lwidth( set to 1");
                    v = 1;
                } else if (v > k_max_width) {
                    model::note_once(s, type_text + " lwidth( (>31) Reset to 31 max");
                    v = k_max_width;
                    s.ln_bord[r] = 0;
                }
                s.ln_wid[r] = static_cast<int16_t>(v);
            } else {
                if (v > k_max_width) {
                    model::note_once(s, type_text + " Borderwidth (>31) Reset to 31 max");
                    v = k_max_width;
                }
                s.ln_bord[r] = static_cast<int16_t>(std::max(0, v));
                v = s.ln_bord[r];
            }
            rest += key + std::to_string(v) + k_crlf;
            continue;
        }
        if (line[0] == '"' && (has(low, "c ") || has(low, "c\t")) && !has(low, "xpm=")) {
            if (count_quotes(line) < 2 && !has(low, "tring")) model::note_once(s, "Lines: missing quotes: " + line);
            if (colour_line(low)) colours.push_back(line);
            continue;
        }
        if (has(low, "xpm=")) {
            xpm = cut_xpm(line);
            const size_t q1 = xpm.find('"');
            std::string inner = q1 == std::string::npos ? "" : xpm.substr(q1 + 1);
            int fields = 0;
            bool in_field = false;
            for (char c : inner) {
                const bool part = c != ' ' && c != '"';
                if (part && !in_field) ++fields;
                in_field = part;
            }
            if (fields < 4) bad_header = true;
            if (!width_seen) cpp = xpm_cpp(xpm);
            continue;
        }
        if (!xpm.empty() && !rows_closed && line[0] == '"') {
            std::string q = line;
            q.erase(std::remove(q.begin(), q.end(), '"'), q.end());
            rows.push_back(q);
            continue;
        }
        if (line[0] == '"') continue;
        if (has(low, "string")) {
            ++strings;
            line = fnchkstringtxt(s, line, strings);
            label_candidate(s, line, label);
            rest += line + k_crlf;
            continue;
        }
        if (has(low, "useorientation") || has(low, "extendedlabels") || has(low, "fontstyle") ||
            has(low, "customcolor")) {
            if (has(low, "daycustom") && has(low, "#")) s.ln_dayc[r] = byte_swap(hex_run(line, line.find('#') + 1));
            rest += line + k_crlf;
        }
    }

    s.ln_code[r] = code;
    s.ln_lab[r] = "0x" + typ::lower(five_digits(code)) + "#" + label;

    std::vector<std::string> symbols, values;
    for (const std::string& c : colours) {
        symbols.push_back(colour_symbol(c, cpp));
        values.push_back(colour_value(c));
    }
    if (values.size() > 4) {
        values.resize(4);
        symbols.resize(4);
    }
    // A line stores its transparent colour second (polygons first): a text
    // with "0 c none" or "2 c none" has its pairs and pixels swapped.
    auto none_of = [&](size_t k) { return values.size() > k && values[k] == "none"; };
    if (values.size() >= 2 && ((none_of(0) && !none_of(1)) || (none_of(2) && !none_of(3) && !none_of(1)))) {
        std::swap(values[0], values[1]);
        std::swap(symbols[0], symbols[1]);
        if (values.size() >= 4) {
            std::swap(values[2], values[3]);
            std::swap(symbols[2], symbols[3]);
        }
    }
    // A line record holds 31 rows at most; the mode byte has no room for more.
    if (rows.size() > k_max_width) rows.resize(k_max_width);
    const bool xpm_ok = !xpm.empty() && !bad_header;
    if (!xpm_ok) rows.clear();
    const bool bitmap = !rows.empty() && has_bitmap;
    if (bitmap) {
        s.ln_bmp[r] = rows_to_digits(rows, symbols, cpp);
        s.ln_wid[r] = 0;
        s.ln_bord[r] = 0;
    } else {
        const int wid = s.ln_wid[r], bord = s.ln_bord[r];
        std::string& text = s.ln_bmp[r];
        for (int k = 0; k < 2 * bord + wid; ++k) {
            if (k) text += k_crlf;
            text += (k < bord || k >= bord + wid) ? k_row_ones : k_row_zeros;
        }
    }

    // Scheme from the colours; a bitmap adds its rows above the low 3 bits.
    auto none_at = [&](size_t k) { return values.size() > k && values[k] == "none"; };
    const auto nones = static_cast<int>(std::count(values.begin(), values.end(), "none"));
    int scheme;
    if (values.size() <= 1) {
        scheme = 6;
    } else if (values.size() == 2) {
        scheme = nones ? 6 : (bitmap || s.ln_bord[r] > 0) ? 0 : 7;
    } else if (nones == 0) {
        scheme = 1;
    } else if (nones >= 2) {
        scheme = 7;
    } else {
        scheme = (none_at(2) || none_at(3)) ? 5 : 3;
    }
    // Night colours switched off in the load options: the day colours stay.
    if (model::chkl(s, 5) == '0' && (scheme & 1)) {
        if (!bitmap && (scheme == 3 || scheme == 7)) {
            scheme = 6;
            values.resize(1);
        } else {
            scheme = (scheme == 1 || scheme == 5) ? 0 : 6;
            values.resize(2);
        }
    }
    const int nrows = bitmap ? static_cast<int>(rows.size()) : 0;
    s.ln_mode[r] = static_cast<uint8_t>(nrows * 8 + scheme);

    std::vector<std::string> lines;
    for (size_t k = 0; k < values.size(); ++k) lines.push_back(canonical_colour(static_cast<int>(k), values[k]));
    s.ln_col[r] = join(lines);
    s.ln_ncol[r] = static_cast<int16_t>(lines.size());

    if (bitmap && lines.size() == 1 && !has(typ::lower(rest), "useorientation="))
        rest += std::string("Useorientation=N") + k_crlf;
    if (!xpm_ok) {
        model::note_once(s, type_text + " Line xpm error. Click on line to fix.");
        s.ln_bmp[r].clear();
    }
    // The header says what the columns hold.
    if (bitmap)
        xpm = "Xpm=\"32 " + std::to_string(nrows) + " " + std::to_string(lines.size()) + " 1\"";
    else
        xpm = "Xpm=\"0 0 " + std::to_string(lines.size()) + " 0\"";
    s.ln_xpm[r] = xpm;
    std::string& txt = s.ln_txt[r];
    txt = std::string("[_line]") + k_crlf + rest + xpm + k_crlf + s.ln_col[r] + k_crlf;
    yes_no_upper(txt);
}

}  // namespace korvex::text
