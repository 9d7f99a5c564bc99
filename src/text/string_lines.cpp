#include "text/string_lines.h"

#include <cstdlib>

#include "platform/codepage.h"
#include "typ/encoding.h"

namespace korvex::text {

namespace {

std::string lower_copy(std::string t) {
    for (char& c : t) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return t;
}

}  // namespace

std::string strings_to_pages(const model::Store& s, const std::string& utf8) {
    if (s.codepage >= 65001 || s.utf8txt) return utf8;
    std::string out;
    out.reserve(utf8.size());
    size_t pos = 0;
    while (pos < utf8.size()) {
        size_t end = utf8.find('\n', pos);
        end = end == std::string::npos ? utf8.size() : end + 1;
        const std::string piece = utf8.substr(pos, end - pos);
        pos = end;
        const size_t start = piece.find_first_not_of(" \t");
        const size_t comma = piece.find(',');
        const size_t x = lower_copy(piece).find("0x");
        if (start == std::string::npos || lower_copy(piece.substr(start, 6)) != "string" || comma == std::string::npos ||
            x == std::string::npos || x > comma) {
            out += piece;
            continue;
        }
        size_t body_end = piece.size();
        while (body_end > comma + 1 && (piece[body_end - 1] == '\n' || piece[body_end - 1] == '\r')) --body_end;
        const int lang = static_cast<int>(std::strtol(piece.substr(x + 2, 2).c_str(), nullptr, 16));
        out += piece.substr(0, comma + 1);
        out += platform::recode(piece.substr(comma + 1, body_end - comma - 1), 65001, typ::lang_cp(s, lang));
        out += piece.substr(body_end);
    }
    return out;
}

std::string with_crlf(const std::string& text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
        out += text[i];
    }
    return out;
}

}  // namespace korvex::text
