// The label keys of an element's own text: its strings, FontStyle= and the
// custom label colours. Keys are found in any case, as the readers do.
#include <cctype>
#include <string_view>

#include "preview/element_look.h"

namespace korvex::preview {

namespace {

// Calls f(line) for each line of text, without its line end.
template <class F>
void each_line(std::string_view text, F f) {
    while (!text.empty()) {
        size_t nl = text.find('\n');
        if (nl == std::string_view::npos) nl = text.size();
        std::string_view line = text.substr(0, nl);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        f(line);
        text.remove_prefix(std::min(text.size(), nl + 1));
    }
}

bool starts_caseless(std::string_view line, std::string_view key) {
    if (line.size() < key.size()) return false;
    for (size_t k = 0; k < key.size(); ++k)
        if (std::tolower(static_cast<unsigned char>(line[k])) != key[k]) return false;
    return true;
}

int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const int l = std::tolower(static_cast<unsigned char>(c));
    return l >= 'a' && l <= 'f' ? l - 'a' + 10 : -1;
}

}  // namespace

std::string choose_label(const std::string& section, int language) {
    std::string preferred, zero, first;
    bool have_preferred = false, have_zero = false, have_first = false;
    each_line(section, [&](std::string_view line) {
        if (!starts_caseless(line, "string")) return;
        const size_t eq = line.find('=');
        const size_t comma = line.find(',');
        if (eq == std::string_view::npos || comma == std::string_view::npos || comma < eq) return;
        std::string_view digits = line.substr(eq + 1, comma - eq - 1);
        if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) digits.remove_prefix(2);
        int lang = 0;
        for (const char c : digits) {
            const int d = hex_digit(c);
            if (d < 0) return;
            lang = lang * 16 + d;
        }
        const std::string_view text = line.substr(comma + 1);
        if (!have_first) {
            first = text;
            have_first = true;
        }
        if (lang == language) {
            preferred = text;
            have_preferred = true;
        }
        if (lang == 0) {
            zero = text;
            have_zero = true;
        }
    });
    return have_preferred ? preferred : have_zero ? zero : first;
}

bool read_font_style(const std::string& section, FontStyle& style) {
    bool shown = true;
    style = FontStyle::normal;
    each_line(section, [&](std::string_view line) {
        if (!starts_caseless(line, "fontstyle=")) return;
        std::string value;
        for (const char c : line.substr(10))
            if (c != ' ' && c != '\t') value += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        shown = value != "nolabel";
        style = value == "smallfont" ? FontStyle::small : value == "large" ? FontStyle::large : FontStyle::normal;
    });
    return shown;
}

bool read_label_colour(const std::string& section, bool night, uint32_t& argb) {
    bool found = false, switched_off = false;
    const std::string_view key = night ? "nightcustomcolor:" : "daycustomcolor:";
    each_line(section, [&](std::string_view line) {
        if (starts_caseless(line, "customcolor=")) {
            switched_off = starts_caseless(line.substr(12), "no");
            return;
        }
        if (!starts_caseless(line, key)) return;
        const size_t hash = line.find('#', key.size());
        if (hash == std::string_view::npos || line.size() < hash + 7) return;
        uint32_t rgb = 0;
        for (size_t k = hash + 1; k < hash + 7; ++k) {
            const int d = hex_digit(line[k]);
            if (d < 0) return;
            rgb = rgb * 16 + static_cast<uint32_t>(d);
        }
        argb = 0xFF000000u | rgb;
        found = true;
    });
    return found && !switched_off;
}

}  // namespace korvex::preview
