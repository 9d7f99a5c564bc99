// Replaces every occurrence of from, left to right; what was put in is not
// searched again. One pass over the text, however many there are.
#pragma once

#include <string>
#include <string_view>

namespace korvex::text {

inline void replace_all(std::string& text, std::string_view from, std::string_view to) {
    if (from.empty() || text.find(from) == std::string::npos) return;
    std::string out;
    out.reserve(text.size());
    size_t pos = 0;
    for (size_t p; (p = text.find(from, pos)) != std::string::npos; pos = p + from.size()) {
        out.append(text, pos, p - pos);
        out += to;
    }
    out.append(text, pos, std::string::npos);
    text = std::move(out);
}

}  // namespace korvex::text
