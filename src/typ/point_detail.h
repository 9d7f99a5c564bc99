// What the point decoder and encoder share: record flags, fixed sizes and a
// case-blind search that does not copy the text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "model/crlf.h"

namespace korvex::typ::point_detail {

constexpr int k_flag_day = 1;
constexpr int k_flag_night = 2;
constexpr int k_flag_labels = 4;
constexpr int k_flag_font = 8;
constexpr int k_head_bytes = 5;      // flag, width, height, colours, mode
constexpr int k_full_palette = 256;  // a colour byte of 0 can mean 256 colours

// Position of a lower-case word in text, in any case; npos when absent.
// Element texts run to many kilobytes of colour lines, so the search looks
// for one character of the word with memchr, both cases, each at most once a
// byte. `anchor` picks that character: one rare in element texts is best (a
// non-letter best of all), since every false hit costs a memchr call.
inline size_t find_word(std::string_view text, std::string_view word, size_t from = 0, size_t anchor = 0) {
    constexpr auto npos = std::string_view::npos;
    if (word.empty() || text.size() < word.size() || from > text.size() - word.size()) return npos;
    if (anchor >= word.size()) anchor = 0;
    auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    const char lo = word[anchor];
    const char up = lo >= 'a' && lo <= 'z' ? static_cast<char>(lo - 'a' + 'A') : lo;
    const char* const base = text.data();
    // Candidates for the anchor stand in [first, last).
    const char* const first = base + from + anchor;
    const char* const last = base + (text.size() - word.size() + 1) + anchor;
    auto next = [last](const char* p, char c) {
        const void* hit = std::memchr(p, c, static_cast<size_t>(last - p));
        return hit ? static_cast<const char*>(hit) : last;
    };
    const char* next_lo = next(first, lo);
    const char* next_up = up == lo ? last : next(first, up);
    while (true) {
        const char* hit = std::min(next_lo, next_up);
        if (hit == last) return npos;
        const char* c = hit - anchor;
        size_t k = 0;
        while (k < word.size() && fold(c[k]) == word[k]) ++k;
        if (k == word.size()) return static_cast<size_t>(c - base);
        if (next_lo == hit) next_lo = next(hit + 1, lo);
        if (next_up == hit) next_up = up == lo ? last : next(hit + 1, up);
    }
}

// find_word, skipping hits on comment lines (";" first): a key kept in a
// comment is no key.
inline size_t find_key_word(std::string_view text, std::string_view word, size_t anchor = 0) {
    for (size_t at = find_word(text, word, 0, anchor); at != std::string_view::npos;
         at = find_word(text, word, at + 1, anchor)) {
        const size_t nl = at == 0 ? std::string_view::npos : text.rfind('\n', at - 1);
        const size_t lead = text.find_first_not_of(" \t", nl == std::string_view::npos ? 0 : nl + 1);
        if (lead == std::string_view::npos || text[lead] != ';') return at;
    }
    return std::string_view::npos;
}

inline bool holds(std::string_view text, std::string_view word) {
    return find_word(text, word) != std::string_view::npos;
}

}  // namespace korvex::typ::point_detail
