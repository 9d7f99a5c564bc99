#include "text/codepage_repair.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "typ/curf_access.h"
#include "typ/encoding.h"

namespace korvex::text {

namespace {

constexpr int k_western = 1252;
constexpr unsigned char k_high = 128;
constexpr unsigned char k_continuation_end = 0xC0;  // UTF-8 continuation bytes lie below
constexpr size_t k_head_stars = 40;

using Bytes = std::vector<unsigned char>;

// First bytes of the language's letters in UTF-8, as the page shows them.
// The first one is the tell-tale of UTF-8 kept in a single-byte page.
Bytes lead_bytes(int page) {
    switch (page) {
    case 1252: return {195};
    case 1251: return {208, 209, 210};
    case 1253: return {197, 198, 199};
    default: return {};
    }
}

bool is_lead(const Bytes& leads, unsigned char b) { return std::find(leads.begin(), leads.end(), b) != leads.end(); }

unsigned char byte_at(std::string_view t, size_t i) {
    // The terminator of the label block stands behind the last byte.
    return i < t.size() ? static_cast<unsigned char>(t[i]) : 0;
}

// Bytes of the UTF-8 character that b starts; 0 when b starts none.
size_t sequence_length(unsigned char b) {
    if (b >= 0xC2 && b <= 0xDF) return 2;
    if (b >= 0xE0 && b <= 0xEF) return 3;
    if (b >= 0xF0 && b <= 0xF4) return 4;
    return 0;
}

// In a UTF-8 file: a high byte standing alone is a page character that was
// never converted (a lead byte of the page so placed is let be), and so is a
// run of high bytes that makes no UTF-8 character.
bool has_stray_page_byte(std::string_view t, const Bytes& leads) {
    for (size_t i = 0; i < t.size(); ++i) {
        const unsigned char b = byte_at(t, i);
        if (b < k_high) continue;
        if (byte_at(t, i + 1) < k_high) {
            if (!is_lead(leads, b)) return true;
            continue;
        }
        const size_t length = sequence_length(b);
        if (length == 0) return true;
        for (size_t k = 1; k < length; ++k) {
            const unsigned char c = byte_at(t, i + k);
            if (c < k_high || c >= k_continuation_end) return true;
        }
        i += length - 1;
    }
    return false;
}

enum class Verdict { fine, utf8, double_byte };

// In a 1252 file: the page's first UTF-8 lead byte followed by a high byte is
// UTF-8 read as the page. A high byte standing alone is a real page
// character, and the string is taken as sound from there on.
Verdict walk_page_string(std::string_view t, const Bytes& leads) {
    Verdict v = Verdict::fine;
    for (size_t i = 0; i < t.size(); ++i) {
        const unsigned char b = byte_at(t, i);
        if (b < k_high) continue;
        if (byte_at(t, i + 1) < k_high) return v;
        if (!leads.empty() && b == leads.front()) return Verdict::utf8;
        v = Verdict::double_byte;
        ++i;
    }
    return v;
}

struct Rows {
    std::vector<std::string>* txt;
    std::vector<std::string>* lab;
    size_t count;
};

// Active lines and extra points sit behind their class's rows and carry
// labels as well.
Rows rows_of(model::Store& s, int cls) {
    auto rows = [](std::vector<std::string>& txt, std::vector<std::string>& lab, int64_t n) {
        return Rows{&txt, &lab, std::min({txt.size(), lab.size(), static_cast<size_t>(std::max<int64_t>(n, 0))})};
    };
    switch (cls) {
    case model::k_polygons: return rows(s.pg_txt, s.pg_lab, s.pg_n);
    case model::k_lines: return rows(s.ln_txt, s.ln_lab, int64_t{s.ln_n} + s.ln_nact);
    default: return rows(s.pt_txt, s.pt_lab, int64_t{s.pt_n} + s.pt_nx);
    }
}

bool starts_caseless(std::string_view line, std::string_view word) {
    if (line.size() < word.size()) return false;
    auto low = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    for (size_t k = 0; k < word.size(); ++k)
        if (low(line[k]) != low(word[k])) return false;
    return true;
}

std::string_view trim_left(std::string_view t) {
    while (!t.empty() && (t.front() == ' ' || t.front() == '\t')) t.remove_prefix(1);
    return t;
}

struct Line {
    size_t begin, end;  // end: in front of CR LF
};

std::vector<Line> lines_of(const std::string& text) {
    std::vector<Line> out;
    size_t a = 0;
    while (a < text.size()) {
        size_t b = text.find('\n', a);
        const size_t next = b == std::string::npos ? text.size() : b + 1;
        if (b == std::string::npos) b = text.size();
        if (b > a && text[b - 1] == '\r') --b;
        out.push_back({a, b});
        a = next;
    }
    return out;
}

// The language of a String line: the hex digits right behind "=0x". -1 when
// the line is no such line.
int string_language(std::string_view line, size_t& comma) {
    const std::string_view t = trim_left(line);
    if (t.empty() || t[0] == ';' || !starts_caseless(t, "string")) return -1;
    const size_t eq = line.find('=');
    if (eq == std::string_view::npos || eq + 3 > line.size()) return -1;
    if (line[eq + 1] != '0' || (line[eq + 2] != 'x' && line[eq + 2] != 'X')) return -1;
    comma = line.find(',', eq);
    if (comma == std::string_view::npos || comma == eq + 3) return -1;
    return static_cast<int>(typ::hex_value(line.substr(eq + 3, comma - eq - 3)));
}

struct Found {
    Line line;
    size_t text_begin = 0;  // behind the comma
    std::string type_line;
    bool ok = false;
};

// The first string of language lang behind the element's Type line.
Found find_string(const std::string& txt, int lang) {
    Found f;
    bool behind_type = false;
    for (const Line& l : lines_of(txt)) {
        const std::string_view line(txt.data() + l.begin, l.end - l.begin);
        if (!behind_type) {
            if (starts_caseless(trim_left(line), "type=")) {
                behind_type = true;
                f.type_line = trim_left(line);
            }
            continue;
        }
        size_t comma = 0;
        if (string_language(line, comma) != lang) continue;
        f.line = l;
        f.text_begin = l.begin + comma + 1;
        f.ok = true;
        return f;
    }
    return f;
}

// The label column holds the shown label behind its first "#", quoted by
// the text reader of points.
void replace_label(std::string& lab, const std::string& old_text, const std::string& new_text) {
    const size_t hash = lab.find('#');
    if (hash == std::string::npos) return;
    const std::string_view tail(lab.data() + hash + 1, lab.size() - hash - 1);
    if (tail == old_text) {
        lab.replace(hash + 1, std::string::npos, new_text);
    } else if (tail.size() == old_text.size() + 2 && tail.front() == '\'' && tail.back() == '\'' &&
               tail.substr(1, old_text.size()) == old_text) {
        lab.replace(hash + 2, old_text.size(), new_text);
    }
}

std::string language_entry(const model::Store& s) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "0x%02X", s.opt.langid & 0xFF);
    return std::string(digits) + " " + s.opt.langname;
}

}  // namespace

CpRepair correct_cp(model::Store& s, platform::Prompt& ui, int cls, int mode) {
    static const char* const k_class_words[] = {"Polygons", "Lines", "Points"};
    const int shown = cls == model::k_lines ? 1 : cls == model::k_points ? 2 : 0;
    CpRepair r;
    r.report = std::string(k_head_stars, '*') + k_class_words[shown] + "\r\n";

    const int page = typ::lang_cp(s, s.opt.langid);
    if (cls == model::k_polygons && page != typ::k_utf8)
        ui.message("Codepage: " + std::to_string(page) + "\r\nChecking: " + language_entry(s));
    const Bytes leads = lead_bytes(page);
    // A UTF-8 project without a list page still holds Western strings.
    const int source_page = page == typ::k_utf8 || page <= 0 ? k_western : page;

    const Rows rows = rows_of(s, cls);
    bool double_byte_noted = false;
    for (size_t n = 0; n < rows.count; ++n) {
        std::string& txt = (*rows.txt)[n];
        const Found f = find_string(txt, s.opt.langid);
        if (!f.ok) continue;
        const std::string old_text = txt.substr(f.text_begin, f.line.end - f.text_begin);
        std::string new_text;
        if (mode == k_repair_in_utf8) {
            if (!has_stray_page_byte(old_text, leads)) continue;
            new_text = typ::saveasutf8(old_text, source_page);
        } else {
            const Verdict v = walk_page_string(old_text, leads);
            if (v == Verdict::double_byte && !double_byte_noted) {
                double_byte_noted = true;
                ui.message("Double-byte characters passed over: " + txt.substr(f.line.begin, f.line.end - f.line.begin));
            }
            if (v != Verdict::utf8) continue;
            s.cvcp = source_page;
            new_text = typ::utf8_to_cp(s, old_text);
        }
        r.report += f.type_line + " " + txt.substr(f.line.begin, f.line.end - f.line.begin) + "\r\n";
        txt.replace(f.text_begin, old_text.size(), new_text);
        replace_label((*rows.lab)[n], old_text, new_text);
        r.repaired = true;
    }
    return r;
}

}  // namespace korvex::text
