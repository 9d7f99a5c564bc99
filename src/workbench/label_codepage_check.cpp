#include "workbench/label_codepage_check.h"

#include <array>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "platform/codepage.h"
#include "typ/encoding.h"
#include "workbench/cell_label.h"
#include "workbench/element_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

constexpr char32_t k_undefined = 0xFFFD;

bool is_multibyte_page(int cp) { return cp == 932 || cp == 936 || cp == 949 || cp == 950 || cp == typ::k_utf8; }

// A single-byte page as two tables, built once a page: iconv opened for
// every label of a 20,000-element file would be the whole cost of the check.
struct SingleBytePage {
    std::array<char32_t, 256> wide{};
    std::unordered_map<char32_t, bool> holds;  // characters with a byte of their own

    explicit SingleBytePage(int cp) {
        for (int b = 0; b < 256; ++b) {
            const std::u32string w = platform::bytes_to_wide(std::string(1, static_cast<char>(b)), cp);
            wide[static_cast<size_t>(b)] = w.size() == 1 ? w[0] : k_undefined;
            if (w.size() == 1 && w[0] != k_undefined) holds[w[0]] = true;
        }
    }
};

class Pages {
public:
    const SingleBytePage& page(int cp) {
        auto& p = pages_[cp];
        if (!p) p = std::make_unique<SingleBytePage>(cp);
        return *p;
    }

    std::u32string decode(std::string_view bytes, int cp) {
        if (is_multibyte_page(cp)) return platform::bytes_to_wide(std::string(bytes), cp);
        const SingleBytePage& p = page(cp);
        std::u32string out;
        out.reserve(bytes.size());
        for (unsigned char c : bytes) out += p.wide[c];
        return out;
    }

    bool holds(char32_t c, int cp) {
        if (c < 0x80) return true;
        if (!is_multibyte_page(cp)) return page(cp).holds.count(c) > 0;
        if (cp == typ::k_utf8) return true;
        const std::string b = platform::wide_to_bytes(std::u32string(1, c), cp);
        return b != "?";
    }

private:
    std::unordered_map<int, std::unique_ptr<SingleBytePage>> pages_;
};

bool ascii(std::string_view t) {
    for (unsigned char c : t)
        if (c >= 0x80) return false;
    return true;
}

bool key_starts_with(std::string_view line, std::string_view word) {
    if (line.size() < word.size()) return false;
    for (size_t i = 0; i < word.size(); ++i)
        if ((line[i] | 0x20) != word[i]) return false;
    return true;
}

struct StringLine {
    int lang = 0;
    std::string_view text;
};

// "StringN=0xLL,text": false for any other line.
bool string_line(std::string_view line, StringLine& out) {
    if (!key_starts_with(line, "string")) return false;
    const size_t eq = line.find('=');
    const size_t comma = line.find(',');
    if (eq == std::string_view::npos || comma == std::string_view::npos || comma < eq) return false;
    std::string_view lang = line.substr(eq + 1, comma - eq - 1);
    while (!lang.empty() && (lang.front() == ' ' || lang.front() == '\t')) lang.remove_prefix(1);
    if (lang.size() > 2 && lang[0] == '0' && (lang[1] | 0x20) == 'x') lang.remove_prefix(2);
    int v = 0;
    for (char c : lang) {
        const int d = c >= '0' && c <= '9' ? c - '0' : (c | 0x20) >= 'a' && (c | 0x20) <= 'f' ? (c | 0x20) - 'a' + 10 : -1;
        if (d < 0) return false;
        v = (v * 16 + d) & 0xFF;
    }
    out.lang = v;
    out.text = line.substr(comma + 1);
    return true;
}

std::string hex2(int v) {
    static const char* d = "0123456789abcdef";
    return {'0', 'x', d[v >> 4 & 15], d[v & 15]};
}

// Why the page cannot hold the string; "" when it can.
std::string fault(Pages& pages, const model::Store& s, const StringLine& l, int page) {
    if (ascii(l.text)) return {};
    if (s.codepage == typ::k_utf8)
        return platform::is_valid_utf8(std::string(l.text)) ? std::string() : "is not valid UTF-8";
    const std::u32string wide = pages.decode(l.text, page);
    for (char32_t c : wide)
        if (c == k_undefined) return "has a byte code page " + std::to_string(page) + " leaves undefined";
    for (char32_t c : wide)
        if (!pages.holds(c, s.codepage)) return "has characters code page " + std::to_string(s.codepage) + " cannot hold";
    return {};
}

void check_class(Pages& pages, const model::Store& s, int cls, Findings& out) {
    for (int32_t r = first_row(s, cls), end = end_row(s, cls); r < end; ++r) {
        std::string_view t = section_text(s, cls, r);
        while (!t.empty()) {
            const size_t nl = t.find('\n');
            std::string_view line = t.substr(0, nl);
            t = nl == std::string_view::npos ? std::string_view() : t.substr(nl + 1);
            if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
            StringLine l;
            if (!string_line(line, l)) continue;
            const int page = typ::lang_cp(s, l.lang);
            const std::string why = fault(pages, s, l, page);
            if (why.empty()) continue;
            const int from = s.codepage == typ::k_utf8 ? typ::k_utf8 : page;
            out.push_back({cls, row_type_text(s, cls, r), k_check_label_codepage,
                           "label \"" + platform::wide_to_bytes(platform::bytes_to_wide(std::string(l.text), from), typ::k_utf8) +
                               "\" (language " +
                               hex2(l.lang) + ") " + why});
        }
    }
}

}  // namespace

Findings chk_label_codepage(const model::Store& s) {
    Pages pages;
    Findings out;
    for (int cls : {model::k_polygons, model::k_lines, model::k_active_lines, model::k_points, model::k_extra_points})
        check_class(pages, s, cls, out);
    return out;
}

}  // namespace korvex::workbench
