#include "platform/codepage.h"

#include <utility>

#include "platform/codepage_system.h"

namespace korvex::platform {

namespace {

constexpr char32_t k_replacement = 0xFFFD;

// UTF-8 is decoded by hand: it is the common case and needs no iconv handle.
std::u32string utf8_to_wide(const std::string& s) {
    std::u32string out;
    out.reserve(s.size());
    const auto* p = reinterpret_cast<const unsigned char*>(s.data());
    const size_t n = s.size();
    size_t i = 0;
    while (i < n) {
        unsigned c = p[i];
        if (c < 0x80) {
            out += static_cast<char32_t>(c);
            ++i;
            continue;
        }
        // F5 to FF never lead: they would start a character past U+10FFFF.
        int len = c >= 0xF5 ? 0 : c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC2 ? 2 : 0;
        if (len == 0 || i + static_cast<size_t>(len) > n) {
            out += k_replacement;
            ++i;
            continue;
        }
        char32_t v = c & (0x7F >> len);
        bool good = true;
        for (int k = 1; k < len; ++k) {
            unsigned b = p[i + static_cast<size_t>(k)];
            if ((b & 0xC0) != 0x80) {
                good = false;
                break;
            }
            v = (v << 6) | (b & 0x3F);
        }
        const char32_t min = len == 2 ? 0x80 : len == 3 ? 0x800 : 0x10000;
        if (!good || v < min || v > 0x10FFFF || (v >= 0xD800 && v <= 0xDFFF)) {
            out += k_replacement;
            ++i;
            continue;
        }
        out += v;
        i += static_cast<size_t>(len);
    }
    return out;
}

std::string wide_to_utf8(const std::u32string& w) {
    std::string out;
    out.reserve(w.size());
    for (char32_t c : w) {
        if (c >= 0xD800 && c <= 0xDFFF) c = k_replacement;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c <= 0x10FFFF) {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += "\xEF\xBF\xBD";
        }
    }
    return out;
}

bool pure_ascii(const std::string& s) {
    for (unsigned char c : s)
        if (c >= 0x80) return false;
    return true;
}

}  // namespace

std::string iconv_name(int cp) {
    if (cp == 65001) return "UTF-8";
    return "CP" + std::to_string(cp);
}

std::u32string bytes_to_wide(const std::string& bytes, int cp) {
    if (cp == 65001) return utf8_to_wide(bytes);
    if (pure_ascii(bytes)) return std::u32string(bytes.begin(), bytes.end());
    if (auto wide = system_bytes_to_wide(bytes, cp)) return std::move(*wide);
    // An unknown page: keep byte values as characters (Latin-1), the least
    // surprising fallback.
    std::u32string out;
    for (unsigned char c : bytes) out += static_cast<char32_t>(c);
    return out;
}

std::string wide_to_bytes(const std::u32string& text, int cp) {
    if (cp == 65001) return wide_to_utf8(text);
    bool ascii = true;
    for (char32_t c : text)
        if (c >= 0x80) {
            ascii = false;
            break;
        }
    if (ascii) return std::string(text.begin(), text.end());
    if (auto bytes = system_wide_to_bytes(text, cp)) return std::move(*bytes);
    std::string out;
    for (char32_t c : text) out += c < 256 ? static_cast<char>(c) : '?';
    return out;
}

std::string recode(const std::string& bytes, int from_cp, int to_cp) {
    if (from_cp == to_cp || pure_ascii(bytes)) return bytes;
    return wide_to_bytes(bytes_to_wide(bytes, from_cp), to_cp);
}

bool is_valid_utf8(const std::string& bytes) {
    // Walks the bytes without decoding them: labels are checked by the
    // thousand on every load.
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const size_t n = bytes.size();
    size_t i = 0;
    while (i < n) {
        const unsigned c = p[i];
        if (c < 0x80) {
            ++i;
            continue;
        }
        const int len = c >= 0xF0 && c < 0xF5 ? 4 : c >= 0xE0 && c < 0xF0 ? 3 : c >= 0xC2 && c < 0xE0 ? 2 : 0;
        if (len == 0 || i + static_cast<size_t>(len) > n) return false;
        for (int k = 1; k < len; ++k)
            if ((p[i + static_cast<size_t>(k)] & 0xC0) != 0x80) return false;
        const unsigned c1 = p[i + 1];
        if (c == 0xE0 && c1 < 0xA0) return false;  // overlong
        if (c == 0xED && c1 >= 0xA0) return false;  // surrogates
        if (c == 0xF0 && c1 < 0x90) return false;  // overlong
        if (c == 0xF4 && c1 >= 0x90) return false;  // above U+10FFFF
        i += static_cast<size_t>(len);
    }
    return true;
}

}  // namespace korvex::platform
