#include "platform/reg_text.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace korvex::platform {

namespace {

int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Reads a quoted string starting at text[at] == '"'; at ends behind the
// closing quote. Wine writes \xNNNN for characters it does not print.
std::string read_quoted(std::string_view text, size_t& at) {
    std::string out;
    ++at;
    while (at < text.size() && text[at] != '"') {
        char c = text[at++];
        if (c != '\\' || at >= text.size()) {
            out += c;
            continue;
        }
        c = text[at++];
        switch (c) {
            case 'n': out += '\n'; break;
            case 'r': out += '\r'; break;
            case 't': out += '\t'; break;
            case '0': out += '\0'; break;
            case 'x': {
                unsigned v = 0;
                int n = 0;
                while (n < 4 && at < text.size() && hex_digit(text[at]) >= 0) v = v * 16 + hex_digit(text[at++]), ++n;
                out += v < 256 ? static_cast<char>(v) : '?';
                break;
            }
            default: out += c;
        }
    }
    if (at < text.size()) ++at;
    return out;
}

// The bytes of "hh,hh,..." (continuation breaks already removed).
std::string hex_bytes(std::string_view list) {
    std::string out;
    int hi = -1;
    for (char c : list) {
        const int d = hex_digit(c);
        if (d < 0) {
            hi = -1;
            continue;
        }
        if (hi < 0) {
            hi = d;
        } else {
            out += static_cast<char>(hi * 16 + d);
            hi = -1;
        }
    }
    return out;
}

// UTF-16LE text of a hex(2)/hex(7) value, zero-terminated, one byte a character.
std::string narrow_utf16(const std::string& bytes) {
    std::string out;
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const unsigned v = static_cast<uint8_t>(bytes[i]) | static_cast<uint8_t>(bytes[i + 1]) << 8;
        if (v == 0) break;
        out += v < 256 ? static_cast<char>(v) : '?';
    }
    return out;
}

std::string read_data(std::string_view data) {
    if (data.starts_with("\"")) {
        size_t at = 0;
        return read_quoted(data, at);
    }
    if (data.starts_with("dword:")) return std::to_string(std::strtoul(std::string(data.substr(6)).c_str(), nullptr, 16));
    if (data.starts_with("str(")) {
        const size_t q = data.find('"');
        if (q == std::string_view::npos) return {};
        size_t at = q;
        return read_quoted(data, at);
    }
    if (data.starts_with("hex(2)") || data.starts_with("hex(7)")) return narrow_utf16(hex_bytes(data.substr(data.find(':') + 1)));
    if (data.starts_with("hex")) return hex_bytes(data.substr(data.find(':') + 1));
    return std::string(data);
}

// The key of a section line; Wine doubles the backslashes of its paths.
std::string section_key(std::string_view line) {
    const size_t close = line.rfind(']');
    std::string key;
    if (close == std::string_view::npos) return key;  // cut short: no section
    for (size_t i = 1; i < close; ++i) {
        if (line[i] == '\\' && i + 1 < close && line[i + 1] == '\\') ++i;
        key += line[i];
    }
    for (const char* hive : {"HKEY_LOCAL_MACHINE\\", "HKEY_CURRENT_USER\\"})
        if (key.size() >= std::string_view(hive).size() && key.compare(0, std::string_view(hive).size(), hive) == 0)
            key.erase(0, std::string_view(hive).size());
    return key;
}

}  // namespace

void read_reg_text(std::string_view text, RegistryTree& tree) {
    std::string key;
    std::string pending;  // a hex value continued over lines ending in '\'
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (!pending.empty() || (!line.empty() && line.back() == '\\' && !line.starts_with("["))) {
            while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
            if (!line.empty() && line.back() == '\\') {
                pending += line.substr(0, line.size() - 1);
                continue;
            }
            line = pending.append(line);
        }
        const std::string joined(line);
        pending.clear();
        line = joined;
        if (line.starts_with("[")) {
            key = section_key(line);
            if (!key.empty()) tree.add_key(key);
            continue;
        }
        if (key.empty()) continue;
        std::string name;
        size_t at = 0;
        if (line.starts_with("@=")) {
            at = 1;
        } else if (line.starts_with("\"")) {
            name = read_quoted(line, at);
            if (at >= line.size() || line[at] != '=') continue;
        } else {
            continue;
        }
        tree.set(key, name, read_data(line.substr(at + 1)));
    }
}

std::string reg_quote(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '\\' || c == '"') out += '\\';
        out += c;
    }
    return out + '"';
}

}  // namespace korvex::platform
