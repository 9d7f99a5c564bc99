#include "text/load_driver.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "text/codepage_check.h"
#include "text/point_reader.h"
#include "text/polygon_line_reader.h"
#include "text/replace_all.h"
#include "typ/curf_access.h"
#include "typ/draw_order.h"
#include "typ/encoding.h"

namespace korvex::text {

namespace {

using typ::contains_caseless;
using typ::find_caseless;
using typ::lower;
using typ::upper;

std::string trim(const std::string& t) {
    size_t a = 0, b = t.size();
    while (a < b && (t[a] == ' ' || t[a] == '\t' || t[a] == '\r' || t[a] == '\n')) ++a;
    while (b > a && (t[b - 1] == ' ' || t[b - 1] == '\t' || t[b - 1] == '\r' || t[b - 1] == '\n')) --b;
    return t.substr(a, b - a);
}

// A section marker in a comment line (";[_line]", but also "; Section
// [_LINE]" in a file's notes) loses its "_", so that it cannot split the
// file: a line starting with ";" is a comment wherever it stands.
void quiet_commented_markers(std::string& text) {
    if (text.find("[_") == std::string::npos) return;
    std::string out;
    out.reserve(text.size());
    bool line_start = true, comment = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n') {
            line_start = true;
            comment = false;
        } else if (line_start && c != ' ' && c != '\t' && c != '\r') {
            line_start = false;
            comment = c == ';';
        }
        out += c;
        if (comment && c == '[' && i + 1 < text.size() && text[i + 1] == '_') ++i;
    }
    text = std::move(out);
}

// Every spelling of a section marker becomes the literal one, so that a
// plain split finds all sections. marker is in lower case.
void unify_marker(std::string& text, const std::string& marker) {
    if (!contains_caseless(text, marker)) return;
    std::string out;
    out.reserve(text.size());
    size_t pos = 0;
    for (size_t p; (p = find_caseless(text, marker, pos)) != std::string::npos; pos = p + marker.size()) {
        out.append(text, pos, p - pos);
        out += marker;
    }
    out.append(text, pos, std::string::npos);
    text = std::move(out);
}

std::vector<std::string> split(const std::string& text, const std::string& sep) {
    std::vector<std::string> parts;
    size_t pos = 0;
    for (size_t p; (p = text.find(sep, pos)) != std::string::npos; pos = p + sep.size())
        parts.push_back(text.substr(pos, p - pos));
    parts.push_back(text.substr(pos));
    return parts;
}

// Pieces of text between the separators, without copies: the last piece of
// a pass holds every section of the passes behind it.
std::vector<std::string_view> split_views(std::string_view text, std::string_view sep) {
    std::vector<std::string_view> parts;
    size_t pos = 0;
    for (size_t p; (p = text.find(sep, pos)) != std::string_view::npos; pos = p + sep.size())
        parts.push_back(text.substr(pos, p - pos));
    parts.push_back(text.substr(pos));
    return parts;
}

// The text with its caseless spellings of marker made literal; text itself
// when every spelling in it is the literal one already. A file may mix
// spellings ("[_polygon]" and "[_POLYGON]"), so each one is looked at.
const std::string& with_marker(const std::string& text, const std::string& marker, std::string& copy) {
    bool literal = true;
    for (size_t p = find_caseless(text, marker, 0); literal && p != std::string::npos;
         p = find_caseless(text, marker, p + marker.size()))
        literal = text.compare(p, marker.size(), marker) == 0;
    if (literal) return text;
    copy = text;
    unify_marker(copy, marker);
    return copy;
}

// The last section of a pass cut behind its "[end]" into out; false when it
// has none.
bool cut_last(std::string_view part, std::string& out) {
    const size_t e = find_caseless(part, "[end]");
    if (e == std::string_view::npos) return false;
    out.assign(part.substr(0, e));
    out += "\r\n[end]";
    return true;
}

void clear_line_row(Store& s, size_t r) {
    s.ln_bmp[r].clear();
    s.ln_col[r].clear();
    s.ln_txt[r].clear();
    s.ln_lab[r].clear();
    s.ln_dayc[r].clear();
    s.ln_act[r].clear();
    s.ln_xpm[r].clear();
    s.ln_len[r] = s.ln_pos[r] = s.ln_code[r] = 0;
    s.ln_ncol[r] = s.ln_wid[r] = s.ln_bord[r] = 0;
    s.ln_mode[r] = 0;
}

// Value behind the first "=" of a line whose blanks were removed; "x" marks
// hexadecimal digits.
std::string id_number(const std::string& v) {
    const size_t x = v.find('x');
    if (x == std::string::npos) return std::to_string(std::atoll(v.c_str()));
    return std::to_string(typ::hex_value(v.substr(x + 1)));
}

void read_id(Store& s, const std::string& text) {
    s.fid.clear();
    s.pid = "1";
    s.codepage = 1252;
    const size_t at = find_caseless(text, "[_id]");
    if (at == std::string::npos) return;
    size_t pos = at;
    while (pos < text.size()) {
        size_t nl = text.find('\n', pos);
        if (nl == std::string::npos) nl = text.size();
        std::string line;
        for (size_t k = pos; k < nl; ++k)
            if (text[k] != ' ' && text[k] != '\t') line += static_cast<char>(std::tolower(static_cast<unsigned char>(text[k])));
        pos = nl + 1;
        if (line == "[end]") break;
        auto value = [&](const std::string& key) { return line.substr(key.size()); };
        if (line.rfind("productcode=", 0) == 0) {
            s.pid = id_number(value("productcode="));
        } else if (line.rfind("fid=", 0) == 0) {
            std::string v = value("fid=");
            v = v.substr(0, v.find(';'));
            s.fid = id_number(v);
        } else if (line.rfind("codepage=", 0) == 0) {
            s.codepage = std::atoi(value("codepage=").c_str());
            if (s.codepage <= 0) s.codepage = 1252;
        } else if (line.rfind(";header=", 0) == 0) {
            const int64_t h = typ::hex_value(value(";header="));
            if (h > 0 && h < 0x10000) {
                s.hdr_len = static_cast<int32_t>(h);
                s.hdr_caption = " " + upper(typ::hex(static_cast<int32_t>(h)));
            }
        }
    }
}

// ";created :" head line, for the workbench caption.
void read_created(Store& s, const std::string& text) {
    s.created.clear();
    const size_t p = find_caseless(std::string_view(text).substr(0, std::min<size_t>(text.size(), 4096)), ";created :");
    if (p == std::string::npos) return;
    const size_t e = text.find('\n', p);
    s.created = trim(text.substr(p + 10, e == std::string::npos ? std::string::npos : e - p - 10));
}

// The header length the tables will be saved with: the caption's, and long
// enough for active lines when there are any.
void settle_header(Store& s) {
    int64_t v = typ::hex_value(trim(s.hdr_caption));
    if (v <= 0) v = s.hdr_len;
    if (s.ln_nact > 0 && v < k_active_header) v = k_active_header;
    s.hdr_len = static_cast<int32_t>(v);
    s.hdr_caption = " " + upper(typ::hex(v));
}

// key, blanks and "=" somewhere in text, case ignored: mkgmap allows blanks
// around "=", so "Type = 0x2f00" has a type.
bool has_key(std::string_view text, std::string_view key) {
    for (size_t p = find_caseless(text, key); p != std::string::npos; p = find_caseless(text, key, p + 1)) {
        size_t e = p + key.size();
        while (e < text.size() && text[e] == ' ') ++e;
        if (e < text.size() && text[e] == '=') return true;
    }
    return false;
}

// A point section keyed by "ID=" and without "Type=" is an extended point;
// its key is handed to the point reader as "Type=". False for others. The
// section's lines start at from.
bool as_extended_point(std::string& part, size_t from) {
    size_t id_at = std::string::npos;
    size_t pos = from;
    while (pos < part.size()) {
        size_t nl = part.find('\n', pos);
        if (nl == std::string::npos) nl = part.size();
        size_t a = pos;
        while (a < nl && part[a] == ' ') ++a;
        const std::string head = lower(part.substr(a, std::min<size_t>(nl - a, 5)));
        if (head.rfind("type", 0) == 0 && head.find_first_not_of(" ", 4) != std::string::npos &&
            head[head.find_first_not_of(" ", 4)] == '=')
            return false;
        if (id_at == std::string::npos && head.rfind("id", 0) == 0) {
            const size_t e = head.find_first_not_of(' ', 2);
            if (e != std::string::npos && head[e] == '=') id_at = a;
        }
        if (head.rfind("[end]", 0) == 0) break;
        pos = nl + 1;
    }
    if (id_at == std::string::npos) return false;
    part.replace(id_at, 2, "Type");
    return true;
}

// "String"+n+"=0x2F" (n 1 to 47) becomes "String"+n+"=0x00", in one walk.
void language_2f_to_00(std::string& text) {
    for (size_t p = text.find("=0x2"); p != std::string::npos; p = text.find("=0x2", p + 4)) {
        if (p + 4 >= text.size() || (text[p + 4] != 'F' && text[p + 4] != 'f')) continue;
        size_t d = p;
        while (d > 0 && std::isdigit(static_cast<unsigned char>(text[d - 1])) && p - d < 3) --d;
        if (d == p || d < 6 || text.compare(d - 6, 6, "String") != 0) continue;
        const int n = std::atoi(text.c_str() + d);
        if (n < 1 || n > 47 || text[d] == '0') continue;
        text[p + 3] = '0';
        text[p + 4] = '0';
    }
}

// A text that is valid UTF-8 and holds multi-byte characters.
bool holds_utf8(const std::string& t) {
    bool multi = false;
    for (size_t i = 0; i < t.size();) {
        // Eight plain ASCII bytes at a time: most of a text is pixels.
        if (i + 8 <= t.size()) {
            uint64_t word;
            std::memcpy(&word, t.data() + i, 8);
            if ((word & 0x8080808080808080ULL) == 0) {
                i += 8;
                continue;
            }
        }
        const auto c = static_cast<unsigned char>(t[i]);
        int more = c < 0x80 ? 0 : (c & 0xE0) == 0xC0 ? 1 : (c & 0xF0) == 0xE0 ? 2 : (c & 0xF8) == 0xF0 ? 3 : -1;
        if (more < 0 || (c & 0xFE) == 0xC0) return false;
        if (i + static_cast<size_t>(more) >= t.size() && more > 0) return false;
        for (int k = 1; k <= more; ++k)
            if ((static_cast<unsigned char>(t[i + static_cast<size_t>(k)]) & 0xC0) != 0x80) return false;
        multi = multi || more > 0;
        i += static_cast<size_t>(more) + 1;
    }
    return multi;
}

// Byte loops over the whole text, by memchr: the bytes are rare or come
// every line, and a line is a long row of pixels.
void drop_byte(std::string& text, char c) {
    char* const begin = text.data();
    char* const end = begin + text.size();
    char* hit = static_cast<char*>(std::memchr(begin, c, text.size()));
    if (hit == nullptr) return;
    char* out = hit;
    for (char* from = hit + 1; from < end;) {
        char* next = static_cast<char*>(std::memchr(from, c, static_cast<size_t>(end - from)));
        if (next == nullptr) next = end;
        std::memmove(out, from, static_cast<size_t>(next - from));
        out += next - from;
        from = next + 1;
    }
    text.resize(static_cast<size_t>(out - begin));
}

void replace_byte(std::string& text, char from, char to) {
    char* const end = text.data() + text.size();
    for (char* p = text.data(); p < end; ++p) {
        p = static_cast<char*>(std::memchr(p, from, static_cast<size_t>(end - p)));
        if (p == nullptr) return;
        *p = to;
    }
}

// Draw order type digits as the text states them, in the list's form.
std::string drw_digits(std::string d) {
    replace_all(d, "0X", "");
    d.erase(std::remove(d.begin(), d.end(), ' '), d.end());
    if (d.size() >= 5 && d[0] == '0') d.erase(0, 1);
    if (d.size() < 4) d = "00" + d;
    if (d.size() == 3) d = "0" + d;
    if (d.size() == 5 && d[0] == '0') d.erase(0, 1);
    return d;
}

// Sorts sections split at marker by the type value on their first line.
std::string sort_sections(const std::string& text, const std::string& marker) {
    std::vector<std::string> parts = split(text, marker);
    std::vector<std::pair<int64_t, size_t>> keys;
    for (size_t k = 1; k < parts.size(); ++k) {
        const std::string& p = parts[k];
        size_t a = 0;
        while (a < p.size() && (p[a] == '\r' || p[a] == '\n' || p[a] == ' ')) ++a;
        const size_t e = p.find('\n', a);
        const std::string first = p.substr(a, e == std::string::npos ? std::string::npos : e - a);
        const std::string digits = first.size() > 7 ? first.substr(7) : "";
        keys.emplace_back(typ::hex_value(trim(digits)), k);
    }
    std::stable_sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string out = parts[0];
    for (const auto& k : keys) {
        if (!out.empty() && out.back() != '\n') out += "\r\n";
        out += marker + parts[k.second];
    }
    return out;
}

}  // namespace

std::string chksemicolon(const std::string& text) {
    std::string out;
    size_t pos = 0;
    bool first = true;
    while (pos <= text.size()) {
        size_t nl = text.find('\n', pos);
        if (nl == std::string::npos) nl = text.size();
        std::string line = text.substr(pos, nl - pos);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        line = line.substr(0, line.find(';'));
        if (!first) out += "\r\n";
        out += line;
        first = false;
        pos = nl + 1;
    }
    return out;
}

std::string fnchkstringtxt(Store& s, const std::string& line, int n) {
    const std::string t = trim(line);
    const size_t eq = t.find('=');
    if (eq == std::string::npos) return t;
    // As mkgmap reads it: a language is hex digits behind "0x" or decimal
    // digits, right up to the comma; anything else ("String=Text",
    // "String1=Bus 0x5, late") is a text of language 0. Blanks in front of
    // the text are part of it.
    size_t v = eq + 1;
    while (v < t.size() && (t[v] == ' ' || t[v] == '\t')) ++v;
    const size_t comma = t.find(',', v);
    std::string lang, text;
    if (comma != std::string::npos && comma > v) {
        const std::string digits = t.substr(v, comma - v);
        const bool hex = digits.size() > 2 && digits[0] == '0' && (digits[1] | 0x20) == 'x' &&
                         digits.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string::npos;
        const bool dec = digits.size() <= 3 && digits.find_first_not_of("0123456789") == std::string::npos;
        if (hex) lang = digits.substr(2);
        if (dec && std::atoi(digits.c_str()) <= 0xff) lang = upper(typ::hex(std::atoi(digits.c_str())));
        if (!lang.empty()) text = t.substr(comma + 1);
    }
    if (lang.empty()) {
        lang = "0";
        text = t.substr(v);
    }
    if (text.empty()) return t;
    if (s.codepage != 65001 && lang.size() == 1) lang = "0" + lang;
    const std::string key = trim(t.substr(0, eq));
    const std::string left = (lower(key) == "string" ? "String" + std::to_string(n) : key) + "=0x";
    if (s.codepage == 65001) return left + lang + "," + text;
    const int langcp = typ::lang_cp(s, static_cast<int>(typ::hex_value(lang)));
    if (s.utf8txt && s.opt.utf8_convert) {
        s.cvcp = langcp > 0 ? langcp : 1252;
        text = typ::wide_to_cp(s, typ::bytes_to_wide(text, 65001));
    }
    if (text.find('\xC3') != std::string::npos && s.codepage == 1252 && langcp == 1252) {
        if (!s.walk.wrongly_parsed) s.walk.wrong_example = text;
        s.walk.wrongly_parsed = true;
    }
    return left + lang + "," + text;
}

void draworder_fromtxt(Store& s, platform::Prompt& ui, const std::string& text) {
    s.drwlist.clear();
    const size_t at = find_caseless(text, "[_draworder]");
    if (at == std::string::npos) return;
    const size_t end = find_caseless(text, "[end]", at + 12);
    const std::string body = chksemicolon(text.substr(at + 12, end == std::string::npos ? std::string::npos : end - at - 12));
    // mkgmap draws level 0 below level 1, as a level of its own: with a level
    // 0 in the text every level moves up by one.
    int lift = 0;
    for (const std::string& raw : split(body, "\r\n")) {
        const size_t comma = raw.find(',');
        if (comma == std::string::npos) continue;
        size_t k = comma + 1;
        while (k < raw.size() && raw[k] == ' ') ++k;
        if (k < raw.size() && std::isdigit(static_cast<unsigned char>(raw[k])) && std::atoi(raw.c_str() + k) == 0) lift = 1;
    }
    for (const std::string& raw : split(body, "\r\n")) {
        const std::string line = trim(raw);
        // Only Type= lines: a second "[_drawOrder]" head in the body is none.
        if (line.size() <= 5 || lower(line.substr(0, 5)) != "type=") continue;
        const std::string rest = upper(line.substr(5));
        const size_t comma = rest.find(',');
        std::string digits = drw_digits(rest.substr(0, comma));
        if (digits.empty()) continue;
        std::string level;
        if (comma != std::string::npos) {
            for (size_t k = comma + 1; k < rest.size() && std::isdigit(static_cast<unsigned char>(rest[k])); ++k)
                level += rest[k];
        }
        if (lift && !level.empty()) level = std::to_string(std::atoi(level.c_str()) + lift);
        s.drwlist += " " + digits + (level.empty() ? "" : "," + level);
    }
    typ::sort_drwlist(s);
    if (s.drwlist.size() < 2) {
        if (s.pg_n > 0) ui.message("Polygons have no draworder");
        return;
    }
    // Tokens by code, built once, the first of a code winning: a search of
    // the list per polygon would be quadratic.
    std::unordered_map<std::string_view, std::string_view> tokens;
    {
        const std::string_view list = s.drwlist;
        size_t pos = 0;
        while (pos < list.size()) {
            while (pos < list.size() && list[pos] == ' ') ++pos;
            size_t end = list.find(' ', pos);
            if (end == std::string_view::npos) end = list.size();
            const std::string_view token = list.substr(pos, end - pos);
            const size_t comma = token.find(',');
            if (comma != std::string_view::npos) tokens.emplace(token.substr(0, comma), token);
            pos = end;
        }
    }
    auto find = [&](const std::string& d) -> std::string {
        const auto it = tokens.find(d);
        return it == tokens.end() ? std::string() : std::string(it->second);
    };
    if (s.pg_drw.size() < static_cast<size_t>(s.pg_n) + 1) s.pg_drw.resize(static_cast<size_t>(s.pg_n) + 1);
    for (int32_t n = 0; n < s.pg_n && static_cast<size_t>(n) < s.pg_typ.size(); ++n) {
        std::string d = upper(s.pg_typ[static_cast<size_t>(n)]);
        if (d.rfind("0X", 0) == 0) d.erase(0, 2);
        if (d.size() == 3) d = "00" + d;
        if (d.size() > 4 && d[0] == '0') d.erase(0, 1);
        std::string token = find(d);
        if (token.empty() && d.size() == 2) token = find(d += "00");
        // "4B00" is type 0x4b, subtype 0: the list writes it "004B".
        if (token.empty() && d.size() == 4 && d.compare(2, 2, "00") == 0) token = find("00" + d.substr(0, 2));
        if (token.empty() && d.size() == 4) token = find("0" + d);
        if (!token.empty()) s.pg_drw[static_cast<size_t>(n)] = "Type=" + token;
    }
}

bool chktxt(Store&, platform::Prompt& ui, int kind, int32_t index, const std::string& section) {
    static const char* const words[] = {"polygon", "line", "point"};
    const std::string word = words[std::clamp(kind, 0, 2)];
    bool failed = false;
    if (!contains_caseless(section, "xpm")) {
        ui.message("Warning! No xpm for " + word + " " + std::to_string(index + 1));
        failed = true;
    }
    if (!has_key(section, "type") && !has_key(section, "id")) {
        ui.message("Warning! No type for " + word + " " + std::to_string(index + 1));
        failed = true;
    }
    return failed;
}

void polgon_txt(Store& s, platform::Prompt& ui, const std::string& in) {
    std::string copy;
    const std::string& text = with_marker(in, "[_polygon]", copy);
    const std::vector<std::string_view> parts = split_views(text, "[_polygon]");
    if (s.pg_n > 0) {
        model::procredim(s, model::k_polygons, 0);
        s.pg_n = 0;
    }
    const size_t count = parts.size() - 1;
    model::procredim(s, model::k_polygons, static_cast<int32_t>(count));
    std::string section;
    for (size_t k = 1; k < parts.size(); ++k) {
        // The reader takes nothing behind "[end]": the last polygon need not
        // carry every line and point along.
        std::string_view part = parts[k];
        const size_t end = find_caseless(part, "[end]");
        if (end != std::string_view::npos) part = part.substr(0, end + 5);
        section.assign("[_polygon]");
        section.append(part);
        pgonparse_txt(s, ui, section, s.pg_n, true);
        ++s.pg_n;
        if (s.pg_n % 10 == 1) ui.progress(static_cast<int>(static_cast<double>(s.pg_n) / static_cast<double>(count) * 36 + 60));
    }
    model::procredim(s, model::k_polygons, s.pg_n);
    draworder_fromtxt(s, ui, text);
    const std::string removed = typ::find_duplicates(s, ui, true);
    if (!removed.empty()) ui.message("Found and removed duplicates :\r\n\r\n" + removed);
    typ::sort_drwlist(s);
    s.pg_ni = s.pg_n;
}

void polline_txt(Store& s, platform::Prompt& ui, const std::string& in) {
    if (!contains_caseless(in, "[_line]")) return;
    std::string copy;
    const std::string& text = with_marker(in, "[_line]", copy);
    s.ln_n = 0;
    s.ln_nact = 0;
    std::vector<std::string_view> parts = split_views(text, "[_line]");
    model::procredim(s, model::k_lines, static_cast<int32_t>(parts.size() - 1));
    std::string later;  // the active lines, read in the second round
    std::string section, last;
    for (int round = 1; round <= 2 && parts.size() > 1; ++round) {
        std::string deferred;
        for (size_t k = 1; k < parts.size(); ++k) {
            std::string_view part = parts[k];
            if (round == 1 && contains_caseless(part, "activity=")) {
                deferred += "[_line]";
                deferred += part;
                continue;
            }
            const auto row = static_cast<size_t>(s.ln_n + s.ln_nact);
            clear_line_row(s, row);
            if (k == parts.size() - 1) {
                if (!cut_last(part, last)) {
                    ui.message("Error. Cannot find [end]");
                    return;
                }
                part = last;
            }
            section.assign("[_line] \r\n");
            section.append(part);
            pollineparse(s, ui, section, static_cast<int32_t>(row), true);
            if (round == 1) ++s.ln_n; else ++s.ln_nact;
        }
        if (deferred.empty()) break;
        later = std::move(deferred);
        parts = split_views(later, "[_line]");
    }
    settle_header(s);
}

void poi_txt(Store& s, platform::Prompt& ui, const std::string& in) {
    std::string copy;
    const std::string& text = with_marker(in, "[_point]", copy);
    const std::vector<std::string_view> parts = split_views(text, "[_point]");
    const auto count = static_cast<int32_t>(parts.size() - 1);
    model::procredim(s, model::k_points, 0);
    model::procredim(s, model::k_points, s.pt_nx + count);
    if (count == 0) return;
    s.pt_n = 0;
    s.pt_nx = 0;
    // Extended points ("ID=" in place of "Type=") sit behind the ordinary
    // ones, in file order, as the writer puts them.
    // Each section goes to the tests and the reader with its marker in
    // front; the marker holds none of the words they look for.
    constexpr size_t marker = 8;
    std::vector<std::string> extra;
    std::string section, last;
    for (size_t k = 1; k < parts.size(); ++k) {
        std::string_view part = parts[k];
        if (k == parts.size() - 1) {
            if (!cut_last(part, last)) {
                ui.message("Error. Cannot find [end]");
                return;
            }
            part = last;
        }
        section.assign("[_point]");
        section.append(part);
        std::replace(section.begin() + marker, section.end(), '\t', ' ');
        if (as_extended_point(section, marker)) {
            extra.push_back(section);
            continue;
        }
        if (chktxt(s, ui, 2, s.pt_n, section)) return;
        poiparse(s, ui, section, s.pt_n, true);
        ++s.pt_n;
    }
    for (const std::string& full : extra) {
        if (chktxt(s, ui, 2, s.pt_n + s.pt_nx, full)) return;
        poiparse(s, ui, full, s.pt_n + s.pt_nx, true);
        ++s.pt_nx;
    }
}

std::string sorttxt(const std::string& text) {
    const size_t cut = text.find("_line");
    // The "[" of the first line marker belongs to the line part.
    const size_t at = cut == std::string::npos ? text.size() : (cut > 0 && text[cut - 1] == '[' ? cut - 1 : cut);
    std::string polygons = sort_sections(text.substr(0, at), "[_polygon]");
    const std::string lines = sort_sections(text.substr(at), "[_line]");
    if (lines.empty()) return polygons;
    if (!polygons.empty() && polygons.back() != '\n') polygons += "\r\n";
    return polygons + lines;
}

bool load_txt(Store& s, platform::Prompt& ui, const std::string& path, std::string text, bool reselect,
              bool identified) {
    (void)reselect;  // no code-page list on this side of the window
    s.loadrep.clear();
    s.loadmsg.clear();
    s.walk.wrongly_parsed = false;
    s.walk.wrong_example.clear();
    s.walk.short_strings = 0;
    s.utf8txt = false;
    if (path.empty() || path == "*") {
        if (s.curfile.empty()) s.curfile = "untitled.typ";
    } else {
        s.curfile = path;
    }
    if (contains_caseless(text, "codepage=65001")) s.utf8txt = true;
    language_2f_to_00(text);
    // mkgmap reads its texts as UTF-8; a file without the signature whose
    // bytes are UTF-8 means the same as one with it.
    const bool signed_utf8 = text.compare(0, 3, typ::bom) == 0;
    if (!s.utf8txt && (signed_utf8 || holds_utf8(text))) {
        if (ui.yes_no("Detected UTF8. Continue loading as UTF8?")) s.utf8txt = true;
    }
    if (text.empty()) return true;
    if (identified && !contains_caseless(text, "[_id]")) {
        ui.message("Can't find TYP information.");
        return true;
    }
    s.loadrep.clear();
    ui.progress(10);
    replace_all(text, "XPM", "Xpm");
    if (!s.opt.comma_rows_marker.empty() && text.find(s.opt.comma_rows_marker) != std::string::npos) {
        replace_all(text, "\",\r\n", "\"\r\n");
        replace_all(text, "\",\n", "\"\n");
    }
    drop_byte(text, '\r');
    read_created(s, text);
    read_id(s, text);
    quiet_commented_markers(text);
    replace_byte(text, '\t', ' ');
    replace_byte(text, '\0', ' ');

    model::procredim(s, model::k_polygons, 0);
    model::procredim(s, model::k_lines, 0);
    model::procredim(s, model::k_points, 0);
    s.pg_n = s.pg_ni = s.ln_n = s.ln_nact = s.pt_n = s.pt_nx = 0;
    s.drwlist.clear();
    if (model::chkl(s, 2) == '1') polline_txt(s, ui, text);
    ui.progress(40);
    if (model::chkl(s, 3) == '1') poi_txt(s, ui, text);
    ui.progress(60);
    if (model::chkl(s, 1) == '1') polgon_txt(s, ui, text);
    ui.progress(100);
    settle_header(s);

    if (s.walk.wrongly_parsed) {
        ui.message("Found wrongly parsed unicode,ie " + s.walk.wrong_example);
        ui.message("Go Tools,check 1252 and match language to " + s.walk.wrong_example);
    }
    if (!s.loadmsg.empty()) ui.message(s.loadmsg);
    chkcp(s, ui, false);
    s.loadmsg.clear();
    s.dirty = false;
    return true;
}

}  // namespace korvex::text
