#include "typ/curf_access.h"

#include <algorithm>
#include <cctype>

namespace korvex::typ {

void note_overrun(Store& s, int64_t pos) {
    if (s.walk.overrun_noted) return;
    s.walk.overrun_noted = true;
    model::note_once(s, std::to_string(pos) + " Error,access byte beyond length of curf file");
}

void head(Store& s, int64_t pos, int value) {
    if (pos < 0) return;
    const auto p = static_cast<size_t>(pos);
    if (p >= s.curf.size()) s.curf.resize(p + 1, '\0');
    s.curf[p] = static_cast<char>(value & 0xff);
}

void put_head4(Store& s, int64_t value, int64_t pos) {
    const auto v = static_cast<uint32_t>(value);
    for (int k = 0; k < 4; ++k) head(s, pos + k, static_cast<int>((v >> (8 * k)) & 0xff));
}

namespace {
int digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
}  // namespace

std::string hexasc(std::string_view hex) {
    std::string out;
    out.reserve(hex.size() / 2);
    for (size_t i = 0; i + 1 < hex.size(); i += 2) {
        int hi = digit(hex[i]), lo = digit(hex[i + 1]);
        out += static_cast<char>(((hi < 0 ? 0 : hi) << 4) | (lo < 0 ? 0 : lo));
    }
    return out;
}

std::string hex2(std::string_view text) {
    if (text.size() == 1) return "0" + std::string(text);
    return std::string(text);
}

std::string hex(int64_t value) {
    static const char* digits = "0123456789ABCDEF";
    if (value == 0) return "0";
    auto v = static_cast<uint64_t>(value);
    std::string out;
    while (v) {
        out += digits[v & 15];
        v >>= 4;
    }
    std::reverse(out.begin(), out.end());
    return out;
}

std::string Dec2Binary(int value) {
    std::string out(8, '0');
    for (int k = 0; k < 8; ++k)
        if (value & (1 << k)) out[static_cast<size_t>(k)] = '1';
    return out;
}

std::string rgbswap(std::string_view text) {
    std::string t = text.size() < 6 ? std::string(6 - text.size(), '0') : std::string();
    t.append(text);
    std::swap(t[0], t[4]);
    std::swap(t[1], t[5]);
    return t;
}

std::string fnkl(std::string_view xpmline) {
    std::string clean;
    clean.reserve(xpmline.size());
    for (char c : xpmline)
        if (c != '"' && c != ' ') clean += c;
    const size_t hash = clean.rfind('#');
    if (hash == std::string::npos) return std::string(3, '\xff');
    std::string digits = clean.substr(hash + 1);
    // Only the colour digits count; "alpha=" and the like stand behind them.
    size_t n = 0;
    while (n < digits.size() && n < 6 && digit(digits[n]) >= 0) ++n;
    digits.resize(n);
    return hexasc(rgbswap(digits));
}

int64_t hex_value(std::string_view digits) {
    int64_t v = 0;
    for (char c : digits) {
        int d = digit(c);
        if (d < 0) break;
        v = v * 16 + d;
        if (v > (int64_t{1} << 40)) break;
    }
    return v;
}

// ASCII only, as the text form's keys are: bytes of labels above 127 keep
// their value whatever the locale.
std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    return out;
}

std::string upper(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
    return out;
}

}  // namespace korvex::typ
