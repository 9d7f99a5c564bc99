// Pieces shared by the polygon and the line reader, and the two small list
// helpers of the interface.
#include "text/polygon_line_reader.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "text/point_picture.h"
#include "typ/curf_access.h"

namespace korvex::text {

namespace reader {

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
    const bool quoted = has(line, "\"");
    if (quoted && !typ::word_before(line, 6, "string") && !typ::contains_caseless(line, "xpm")) return line;
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
    const size_t at = typ::find_caseless(section, "[end]");
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
        return std::string("#").append(typ::upper(hex_run(line, c == std::string::npos ? line.size() : c + 2).substr(0, 6)));
    }
    return std::string("#").append(typ::upper(hex_run(line, hash + 1).substr(0, 6)));
}

void colour_table(const std::vector<std::string>& colours, int cpp, std::vector<std::string>& symbols,
                  std::vector<std::string>& values) {
    symbols.clear();
    values.clear();
    for (const std::string& c : colours) {
        if (values.size() == 4) break;
        symbols.push_back(colour_symbol(c, cpp));
        values.push_back(colour_value(c));
    }
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

void LabelChoice::offer(const Store& s, const std::string& line) {
    const size_t comma = line.find(',');
    const size_t x = typ::find_caseless(line, "=0x");
    if (comma == std::string::npos || x == std::string::npos || x > comma) return;
    const int64_t lang = typ::hex_value(point_text::trim_view(std::string_view(line).substr(x + 3, comma - x - 3)));
    std::string text = line.substr(comma + 1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\r' || text.back() == '\n')) text.pop_back();
    if (first.empty() && !text.empty() && static_cast<unsigned char>(text[0]) < 127) first = text;
    if (lang == s.opt.langid) preferred = text;
    if (lang == 0) zero = std::move(text);
}

std::string LabelChoice::shown() const {
    const std::string& label = !preferred.empty() ? preferred : !zero.empty() ? zero : first;
    return label.empty() ? std::string() : '\'' + label + '\'';
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

int32_t five_bit_subtype(Store& s, int32_t code) {
    if ((code & 0xff) <= 0x1f) return code;
    const int32_t kept = code & ~0xe0;
    model::note_once(s, "0x" + typ::lower(typ::hex(code)) + " subtype above 0x1f: read as 0x" + typ::lower(typ::hex(kept)));
    return kept;
}

bool idle_custom_colour(const std::string& low) {
    if (low.rfind("customcolor=", 0) != 0) return false;
    const std::string v = trim(std::string_view(low).substr(12));
    return v != "no" && v != "day" && v != "night" && v != "dayandnight";
}

}  // namespace reader

using reader::has;

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

}  // namespace korvex::text
