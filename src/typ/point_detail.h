// What the point decoder and encoder share: record flags, fixed sizes and a
// case-blind search that does not copy the text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace korvex::typ::point_detail {

constexpr int k_flag_day = 1;
constexpr int k_flag_night = 2;
constexpr int k_flag_labels = 4;
constexpr int k_flag_font = 8;
constexpr int k_head_bytes = 5;      // flag, width, height, colours, mode
constexpr int k_full_palette = 256;  // a colour byte of 0 can mean 256 colours

inline const char* const k_crlf = "\r\n";

// Position of a lower-case word in text, in any case; npos when absent.
// Element texts run to many kilobytes of colour lines, so the first letter is
// looked for with memchr, both cases, each at most once per byte.
inline size_t find_word(std::string_view text, std::string_view word, size_t from = 0) {
    constexpr auto npos = std::string_view::npos;
    if (word.empty() || text.size() < word.size() || from > text.size() - word.size()) return npos;
    auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    const char lo = word[0];
    const char up = lo >= 'a' && lo <= 'z' ? static_cast<char>(lo - 'a' + 'A') : lo;
    const char* const base = text.data();
    const char* const end = base + (text.size() - word.size() + 1);  // candidates stand before it
    auto next = [end](const char* p, char c) {
        const void* hit = std::memchr(p, c, static_cast<size_t>(end - p));
        return hit ? static_cast<const char*>(hit) : end;
    };
    const char* p = base + from;
    const char* next_lo = next(p, lo);
    const char* next_up = up == lo ? end : next(p, up);
    while (true) {
        const char* c = std::min(next_lo, next_up);
        if (c == end) return npos;
        size_t k = 0;
        while (k < word.size() && fold(c[k]) == word[k]) ++k;
        if (k == word.size()) return static_cast<size_t>(c - base);
        p = c + 1;
        if (next_lo < p) next_lo = next(p, lo);
        if (next_up < p) next_up = up == lo ? end : next(p, up);
    }
}

inline bool holds(std::string_view text, std::string_view word) {
    return find_word(text, word) != std::string_view::npos;
}

}  // namespace korvex::typ::point_detail
