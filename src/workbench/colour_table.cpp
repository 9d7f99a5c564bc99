#include "workbench/colour_table.h"

#include <algorithm>

namespace korvex::workbench {

namespace {

int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

char lower_char(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

size_t find_caseless(std::string_view text, std::string_view word, size_t from = 0) {
    if (word.size() > text.size()) return std::string_view::npos;
    for (size_t k = from; k + word.size() <= text.size(); ++k) {
        size_t j = 0;
        while (j < word.size() && lower_char(text[k + j]) == word[j]) ++j;
        if (j == word.size()) return k;
    }
    return std::string_view::npos;
}

bool skipped(char c) { return c == '"' || c == '\t' || c == ' ' || c == '\r'; }

}  // namespace

bool read_colour_line(std::string_view line, int key_chars, ColourEntry& out) {
    out = ColourEntry{};
    size_t at = 0;
    while (at < line.size() && skipped(line[at])) ++at;
    if (at >= line.size()) return false;
    if (line[at] == '#') {
        out.bare = true;
    } else {
        out.key = line[at];
        at = std::min(line.size(), at + static_cast<size_t>(key_chars > 0 ? key_chars : 1));
    }
    const size_t hash = line.find('#', at);
    if (hash != std::string_view::npos) {
        uint32_t v = 0;
        for (size_t k = 1; k <= 6; ++k) {
            const int d = hash + k < line.size() ? hex_digit(line[hash + k]) : -1;
            if (d < 0) return false;
            v = v << 4 | static_cast<uint32_t>(d);
        }
        out.rgb = v;
    } else if (find_caseless(line.substr(at), "none") != std::string_view::npos) {
        out.none = true;
    } else {
        return false;
    }
    // Most lines have no "=" at all; only an "=" is worth a closer look.
    for (size_t eq = line.find('=', at); eq != std::string_view::npos; eq = line.find('=', eq + 1)) {
        if (eq < 5 || find_caseless(line.substr(eq - 5, 6), "alpha=") != 0) continue;
        int v = 0, digits = 0;
        for (size_t k = eq + 1; k < line.size() && line[k] >= '0' && line[k] <= '9' && digits < 3; ++k, ++digits)
            v = v * 10 + (line[k] - '0');
        if (digits > 0) out.alpha = v > 15 ? 15 : v;
        break;
    }
    return true;
}

ColourTable read_colour_table(std::string_view text, int key_chars) {
    ColourTable t;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t nl = text.find('\n', pos);
        const size_t end = nl == std::string_view::npos ? text.size() : nl;
        std::string_view line = text.substr(pos, end - pos);
        pos = nl == std::string_view::npos ? text.size() : nl + 1;
        size_t first = 0;
        while (first < line.size() && (line[first] == ' ' || line[first] == '\t' || line[first] == '\r')) ++first;
        if (first == line.size() || line[first] == ';') continue;
        // Colour lines start with a quote; a head line with its key.
        if (line[first] != '"' && find_caseless(line, "xpm=") != std::string_view::npos) {
            t.next = pos;
            return t;
        }
        ColourEntry e;
        if (!read_colour_line(line, key_chars, e)) {
            t.bad = true;
            continue;
        }
        t.entries.push_back(e);
    }
    return t;
}

}  // namespace korvex::workbench
