// What the point decoder and encoder share: record flags, fixed sizes and a
// case-blind search that does not copy the text.
#pragma once

#include <cstdint>
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
inline size_t find_nocase(std::string_view text, std::string_view word, size_t from = 0) {
    if (word.empty() || text.size() < word.size()) return std::string_view::npos;
    for (size_t i = from; i + word.size() <= text.size(); ++i) {
        size_t k = 0;
        while (k < word.size()) {
            char c = text[i + k];
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
            if (c != word[k]) break;
            ++k;
        }
        if (k == word.size()) return i;
    }
    return std::string_view::npos;
}

inline bool holds(std::string_view text, std::string_view word) {
    return find_nocase(text, word) != std::string_view::npos;
}

}  // namespace korvex::typ::point_detail
