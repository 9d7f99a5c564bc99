#include "typ/curf_access.h"

#include <algorithm>
#include <cctype>
#include <cstring>

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

namespace {
struct BinaryTable {
    char digits[256][8]{};
    constexpr BinaryTable() {
        for (int v = 0; v < 256; ++v)
            for (int k = 0; k < 8; ++k) digits[v][k] = (v & (1 << k)) ? '1' : '0';
    }
};
constexpr BinaryTable k_binary;
}  // namespace

std::string_view binary8(int value) { return {k_binary.digits[value & 0xff], 8}; }

std::string Dec2Binary(int value) { return std::string(binary8(value)); }

void put_block(Store& s, int64_t pos, std::string_view bytes) {
    if (pos < 0 || bytes.empty()) return;
    const auto p = static_cast<size_t>(pos);
    if (p + bytes.size() > s.curf.size()) s.curf.resize(p + bytes.size(), '\0');
    s.curf.replace(p, bytes.size(), bytes);
}

std::string rgbswap(std::string_view text) {
    std::string t = text.size() < 6 ? std::string(6 - text.size(), '0') : std::string();
    t.append(text);
    std::swap(t[0], t[4]);
    std::swap(t[1], t[5]);
    return t;
}

std::string fnkl(std::string_view xpmline) {
    // Quotes and blanks do not count; the digits stand behind the last "#".
    const size_t hash = xpmline.rfind('#');
    if (hash == std::string_view::npos) return std::string(3, '\xff');
    // Only the colour digits count; "alpha=" and the like stand behind them.
    // Fewer than six are padded in front, so the value is the number.
    uint32_t v = 0;
    int n = 0;
    for (size_t k = hash + 1; k < xpmline.size() && n < 6; ++k) {
        const char c = xpmline[k];
        if (c == '"' || c == ' ') continue;
        const int d = digit(c);
        if (d < 0) break;
        v = v << 4 | static_cast<uint32_t>(d);
        ++n;
    }
    // Written blue, green, red.
    const char out[3] = {static_cast<char>(v & 0xff), static_cast<char>((v >> 8) & 0xff),
                         static_cast<char>((v >> 16) & 0xff)};
    return std::string(out, 3);
}

std::string colour_at(Store& s, int64_t pos) {
    static const char* const k_hex = "0123456789ABCDEF";
    const int b = curf_byte(s, pos), g = curf_byte(s, pos + 1), r = curf_byte(s, pos + 2);
    return {'#', k_hex[r >> 4], k_hex[r & 15], k_hex[g >> 4], k_hex[g & 15], k_hex[b >> 4], k_hex[b & 15]};
}

void append_palette_line(std::string& out, int digit, std::string_view value) {
    out += '"';
    out += static_cast<char>('0' + digit);
    out += " c ";
    out += value;
    out += '"';
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

namespace {

bool lower_letter(char c) { return c >= 'a' && c <= 'z'; }

// Needle at p, its first byte as given or in capitals, the others against
// the text in lower case.
bool caseless_at(std::string_view text, size_t p, std::string_view needle, char first_up) {
    const char c = text[p];
    if (c != needle[0] && c != first_up) return false;
    for (size_t k = 1; k < needle.size(); ++k) {
        char t = text[p + k];
        if (t >= 'A' && t <= 'Z') t = static_cast<char>(t + ('a' - 'A'));
        if (t != needle[k]) return false;
    }
    return true;
}

}  // namespace

// The candidates come from memchr, which walks many bytes a step: through a
// byte of the needle that has no second case when there is one ("[", "="),
// else through both cases of its first letter.
size_t find_caseless(std::string_view text, std::string_view needle, size_t from) {
    if (needle.empty()) return from <= text.size() ? from : std::string_view::npos;
    if (text.size() < needle.size() || from > text.size() - needle.size()) return std::string_view::npos;
    const char first = needle[0];
    const char first_up = lower_letter(first) ? static_cast<char>(first - ('a' - 'A')) : first;
    const size_t last = text.size() - needle.size();  // last start
    const char* base = text.data();
    size_t j = 0;
    while (j < needle.size() && lower_letter(needle[j])) ++j;
    if (j < needle.size()) {
        const char anchor = needle[j];
        for (size_t p = from; p <= last;) {
            const void* hit = std::memchr(base + p + j, anchor, last - p + 1);
            if (hit == nullptr) return std::string_view::npos;
            p = static_cast<size_t>(static_cast<const char*>(hit) - base) - j;
            if (caseless_at(text, p, needle, first_up)) return p;
            ++p;
        }
        return std::string_view::npos;
    }
    // Next place of each case of the first letter at or behind p.
    auto next = [&](char c, size_t p) {
        const void* hit = p <= last ? std::memchr(base + p, c, last - p + 1) : nullptr;
        return hit == nullptr ? std::string_view::npos : static_cast<size_t>(static_cast<const char*>(hit) - base);
    };
    size_t lo = next(first, from), up = next(first_up, from);
    while (lo != std::string_view::npos || up != std::string_view::npos) {
        const size_t p = std::min(lo, up);
        if (caseless_at(text, p, needle, first_up)) return p;
        if (p == lo) lo = next(first, p + 1);
        if (p == up) up = next(first_up, p + 1);
    }
    return std::string_view::npos;
}

CaselessNeedles::CaselessNeedles(std::initializer_list<std::string_view> needles) {
    for (std::string_view n : needles) {
        if (count_ == 8 || n.empty()) break;
        needles_[count_++] = n;
        if (window_ == 0 || n.size() < window_) window_ = n.size();
    }
    const auto most = static_cast<uint8_t>(std::min<size_t>(window_, 255));
    for (auto& s : shift_) s = most;
    for (size_t k = 0; k < count_; ++k)
        for (size_t j = 0; j < window_ && j < 255; ++j) {
            const auto c = static_cast<unsigned char>(needles_[k][j]);
            const auto s = static_cast<uint8_t>(window_ - 1 - j);
            shift_[c] = std::min(shift_[c], s);
            if (c >= 'a' && c <= 'z') shift_[c - ('a' - 'A')] = std::min(shift_[c - ('a' - 'A')], s);
        }
}

void CaselessNeedles::find_first(std::string_view text, size_t* at) const {
    for (size_t k = 0; k < count_; ++k) at[k] = std::string_view::npos;
    unsigned open = (1u << count_) - 1;  // needles not found yet
    if (count_ == 0 || window_ > 255) {
        for (size_t k = 0; k < count_; ++k) at[k] = find_caseless(text, needles_[k]);
        return;
    }
    // A needle starting at p has one of its window bytes at p + window - 1;
    // the shift skips the starts that byte rules out for every needle.
    for (size_t p = 0; open && p + window_ <= text.size();) {
        const uint8_t s = shift_[static_cast<unsigned char>(text[p + window_ - 1])];
        if (s) {
            p += s;
            continue;
        }
        for (unsigned m = open; m; m &= m - 1) {
            const int k = __builtin_ctz(m);
            const std::string_view n = needles_[k];
            if (text.size() - p < n.size()) continue;
            size_t j = 0;
            for (; j < n.size(); ++j) {
                char c = text[p + j];
                if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
                if (c != n[j]) break;
            }
            if (j == n.size()) {
                at[k] = p;
                open &= ~(1u << k);
            }
        }
        ++p;
    }
}

std::string upper(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
    return out;
}

}  // namespace korvex::typ
