#include "workbench/colour_line_hex.h"

namespace korvex::workbench {

namespace {

int hex_digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

size_t colour_digits_at(std::string_view line) {
    if (line.empty() || line.front() != '"') return std::string_view::npos;
    // The symbol may itself be "c" or "#": the colour is the last " c #" of
    // the quoted part.
    const size_t close = line.find('"', 1);
    const std::string_view quoted = line.substr(0, close == std::string_view::npos ? line.size() : close);
    size_t c = quoted.rfind(" c #");
    if (c == std::string_view::npos) c = quoted.rfind(" C #");
    if (c == std::string_view::npos || c + 10 > quoted.size()) return std::string_view::npos;
    for (size_t k = c + 4; k < c + 10; ++k)
        if (hex_digit_value(quoted[k]) < 0) return std::string_view::npos;
    return c + 4;
}

uint32_t hex_rgb(std::string_view six) {
    uint32_t v = 0;
    for (size_t k = 0; k < 6 && k < six.size(); ++k) v = v << 4 | static_cast<uint32_t>(hex_digit_value(six[k]) & 15);
    return v;
}

std::string rgb_hex(uint32_t rgb) {
    static const char* digits = "0123456789ABCDEF";
    std::string out(6, '0');
    for (int k = 5; k >= 0; --k, rgb >>= 4) out[static_cast<size_t>(k)] = digits[rgb & 15];
    return out;
}

}  // namespace korvex::workbench
