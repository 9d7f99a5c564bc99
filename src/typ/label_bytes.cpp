#include "typ/label_bytes.h"

#include <algorithm>

#include "platform/codepage.h"
#include "typ/encoding.h"

namespace korvex::typ {

namespace {

constexpr char32_t k_replacement = 0xFFFD;

// Pages of one or two bytes a character: a lone byte of them says nothing.
bool double_byte(int cp) { return cp == 932 || cp == 936 || cp == 949 || cp == 950; }

void build(model::UndefinedBytes& t, int cp) {
    t.codepage = cp;
    t.single_byte = cp != k_utf8 && !double_byte(cp);
    t.undefined.fill(false);
    for (int b = 0; b < 32; ++b) t.undefined[static_cast<size_t>(b)] = true;
    if (!t.single_byte) return;
    for (int b = 0x80; b < 0x100; ++b) {
        // A blank behind the byte completes what a page holds back for a
        // following character (combining marks of 1258).
        const std::u32string w = platform::bytes_to_wide(std::string{static_cast<char>(b), ' '}, cp);
        t.undefined[static_cast<size_t>(b)] = w.empty() || std::find(w.begin(), w.end(), k_replacement) != w.end();
    }
}

// Length of the well-formed UTF-8 sequence at p, 0 when there is none.
size_t utf8_length(const std::string& s, size_t p) {
    const auto c = static_cast<unsigned char>(s[p]);
    size_t n = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
    if (n == 0 || p + n > s.size()) return 0;
    for (size_t k = 1; k < n; ++k)
        if ((static_cast<unsigned char>(s[p + k]) & 0xC0) != 0x80) return 0;
    return n;
}

}  // namespace

bool drop_unwritable_bytes(std::string& label, int codepage, model::UndefinedBytes& table) {
    if (table.codepage != codepage) build(table, codepage);
    std::string out;
    out.reserve(label.size());
    bool changed = false;
    if (codepage == k_utf8) {
        for (size_t p = 0; p < label.size();) {
            const size_t n = utf8_length(label, p);
            if (n == 0) {
                ++p;
                continue;
            }
            if (!(n == 1 && table.undefined[static_cast<unsigned char>(label[p])])) out.append(label, p, n);
            p += n;
        }
    } else {
        for (const char c : label)
            if (!table.undefined[static_cast<unsigned char>(c)]) out += c;
        if (!table.single_byte) {
            std::u32string wide = platform::bytes_to_wide(out, codepage);
            if (std::find(wide.begin(), wide.end(), k_replacement) != wide.end()) {
                std::erase(wide, k_replacement);
                out = platform::wide_to_bytes(wide, codepage);
                changed = true;
            }
        }
    }
    if (!changed && out.size() == label.size()) return false;
    label = std::move(out);
    return true;
}

}  // namespace korvex::typ
