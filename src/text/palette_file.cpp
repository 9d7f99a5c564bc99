#include "text/palette_file.h"

#include <cctype>

#include "platform/files.h"

namespace korvex::text {

std::vector<std::string> tpal_fields(std::string text) {
    std::string flat;
    flat.reserve(text.size());
    for (char c : text) {
        if (c == '\r') continue;
        flat += c == '\n' ? ',' : c;
    }
    std::vector<std::string> out;
    size_t p = 0;
    while (p <= flat.size()) {
        size_t e = flat.find(',', p);
        if (e == std::string::npos) e = flat.size();
        std::string f = flat.substr(p, e - p);
        while (!f.empty() && (f.back() == ' ' || f.back() == '\t')) f.pop_back();
        while (!f.empty() && (f.front() == ' ' || f.front() == '\t')) f.erase(0, 1);
        if (!f.empty()) out.push_back(std::move(f));
        p = e + 1;
    }
    if (!out.empty() && out.back().size() != 6) out.pop_back();
    return out;
}

std::vector<uint32_t> parse_tpal(const std::string& text) {
    std::vector<uint32_t> out;
    for (const std::string& f : tpal_fields(text)) {
        uint32_t c = 0;
        if (!from_hex(f, c)) break;
        out.push_back(c);
    }
    return out;
}

std::string hex6(uint32_t colour) {
    static const char* digits = "0123456789ABCDEF";
    std::string out;
    // Red sits in the low byte.
    for (uint32_t v : {colour & 0xFFu, colour >> 8 & 0xFFu, colour >> 16 & 0xFFu}) {
        out += digits[v >> 4];
        out += digits[v & 15];
    }
    return out;
}

bool from_hex(const std::string& digits, uint32_t& colour) {
    if (digits.empty() || digits.size() > 6) return false;
    uint32_t v = 0;
    for (char c : digits) {
        if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
        v = v << 4 | static_cast<uint32_t>(std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : (std::tolower(c) - 'a' + 10));
    }
    // v is 0xRRGGBB in text order.
    colour = (v >> 16 & 0xFF) | (v & 0xFF00) | (v & 0xFF) << 16;
    return true;
}

std::string tpal_text(const std::vector<uint32_t>& colours) {
    std::string out;
    out.reserve(colours.size() * 7);
    for (uint32_t c : colours) out += hex6(c) + ",";
    return out;
}

std::string with_tpal_extension(const std::string& path) {
    if (path.size() >= 5) {
        std::string tail = path.substr(path.size() - 5);
        for (char& c : tail) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (tail == ".tpal") return path;
    }
    return path + ".tpal";
}

std::optional<std::vector<uint32_t>> read_tpal(const std::string& path) {
    const std::optional<std::string> text = platform::read_file(path);
    if (!text) return std::nullopt;
    return parse_tpal(*text);
}

bool save_tpal(const std::string& path, const std::vector<uint32_t>& colours, std::string* error,
               platform::FileSystem& fs) {
    return platform::write_file_atomic(with_tpal_extension(path), tpal_text(colours), error, fs);
}

}  // namespace korvex::text
