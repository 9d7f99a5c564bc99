#include "workbench/new_sections.h"

#include <cstdio>

#include "model/crlf.h"
#include "workbench/element_ops.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

constexpr int k_new_line_width = 3;
constexpr int k_new_line_border = 1;
constexpr const char* k_ruler = ";12345678901234567890123456789012";

// A settings colour (red in the low byte) as RRGGBB.
std::string rgb_text(int64_t v) {
    const auto c = static_cast<uint32_t>(v & 0xFFFFFF);
    char b[8];
    std::snprintf(b, sizeof b, "%02X%02X%02X", c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
    return b;
}

std::string label_lines(const std::string& text) {
    std::string out;
    if (!text.empty()) out += "String1=0x00," + text + k_crlf;
    out += std::string("ExtendedLabels=N") + k_crlf;
    return out;
}

std::string rows_of(char symbol, int width, int height) {
    std::string out;
    const std::string row = "\"" + std::string(static_cast<size_t>(width), symbol) + "\"" + k_crlf;
    for (int k = 0; k < height; ++k) out += row;
    return out;
}

std::string type_line(const std::string& digits) { return "Type=0x" + five_digits(type_code(digits)) + k_crlf; }

}  // namespace

IconColours icon_colours(const AppSettings& settings) {
    IconColours c{rgb_text(settings.icon_colour1), rgb_text(settings.icon_colour2)};
    if (c.back == c.fore) c = {"FFFFFF", "000000"};
    return c;
}

std::string new_polygon_section(const std::string& digits, const std::string& text, const IconColours& c) {
    std::string section = std::string("[_polygon]") + k_crlf + type_line(digits) + label_lines(text);
    section += std::string("Xpm=\"32 32 2 1\"") + k_crlf;
    section += "\"0 c #" + c.back + "\"" + k_crlf + "\"1 c #" + c.fore + "\"" + k_crlf;
    return section + rows_of('0', k_tile, k_tile) + "[end]" + k_crlf;
}

std::string new_line_section(const std::string& digits, const std::string& activity, const std::string& text,
                             const IconColours& c) {
    std::string section = std::string("[_line]") + k_crlf + type_line(digits);
    if (!activity.empty()) section += "Activity=" + activity_name(activity) + k_crlf;
    section += label_lines(text);
    section += "LineWidth=" + std::to_string(k_new_line_width) + k_crlf;
    section += "BorderWidth=" + std::to_string(k_new_line_border) + k_crlf;
    section += std::string("Xpm=\"0 0 2 0\"") + k_crlf;
    return section + "\"0 c #" + c.fore + "\"" + k_crlf + "\"1 c #000000\"" + k_crlf + "[end]" + k_crlf;
}

std::string new_point_section(const std::string& digits, const std::string& text, int width, int height, bool night,
                              const IconColours& c) {
    const std::string head = "\"" + std::to_string(width) + " " + std::to_string(height) + " 2 1\" Colormode=0";
    const std::string table = "\"$ c #" + c.back + "\"" + k_crlf + "\"% c #" + c.fore + "\"" + k_crlf;
    std::string section = std::string("[_point]") + k_crlf + type_line(digits) + label_lines(text);
    section += (night ? "DayXpm=" : "Xpm=") + head + k_crlf + table + rows_of('$', width, height) + k_ruler + k_crlf;
    if (night) section += "NightXpm=" + head + k_crlf + table + rows_of('$', width, height);
    return section + "[end]" + k_crlf;
}

}  // namespace korvex::workbench
