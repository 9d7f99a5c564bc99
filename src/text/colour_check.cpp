#include "text/colour_check.h"

#include <algorithm>

#include "typ/curf_access.h"

namespace korvex::text {

namespace {

constexpr size_t k_digits = 6;

bool hex_char(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); }

}  // namespace

ColourCheck colour_check(const std::string& line) {
    const size_t hash = line.find('#');
    if (hash == std::string::npos) return {true, line};

    std::string value = typ::lower(std::string_view(line).substr(hash + 1));
    std::erase_if(value, [](char c) { return c == '"' || c == ' ' || c == '\t'; });
    // Older texts spell the opacity "canalalpha=".
    if (const size_t alpha = value.find("alpha"); alpha != std::string::npos) {
        value.resize(alpha);
        if (value.ends_with("canal")) value.resize(value.size() - 5);
    }
    // A trailing comma behind a colour line is tolerated.
    while (!value.empty() && value.back() == ',') value.pop_back();

    ColourCheck out{std::all_of(value.begin(), value.end(), hex_char), line};
    if (out.valid && value.size() < k_digits) {
        // The digits as written run up to the closing quote or a blank.
        size_t end = hash + 1;
        while (end < line.size() && line[end] != '"' && line[end] != ' ' && line[end] != '\t' && line[end] != ',')
            ++end;
        const std::string padded = std::string(k_digits - value.size(), '0') + typ::upper(value);
        out.line = line.substr(0, hash + 1) + padded + line.substr(end);
    }
    return out;
}

}  // namespace korvex::text
