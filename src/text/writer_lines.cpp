#include "text/writer_lines.h"

#include <cstdlib>

#include "typ/encoding.h"

namespace korvex::text::detail {

namespace {

constexpr int k_string_keys_max = 47;  // String1 .. String47 carry the 0x2F rule

bool is_hex(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

char lower_char(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Position and length of the hex digits behind the first "x" or "X".
std::pair<size_t, size_t> digits_span(std::string_view line) {
    size_t x = line.find_first_of("xX");
    if (x == std::string_view::npos) return {line.size(), 0};
    size_t b = x + 1;
    size_t e = b;
    while (e < line.size() && is_hex(line[e])) ++e;
    return {b, e - b};
}

std::string lower_digits(std::string_view d) {
    std::string out(d);
    for (char& c : out) c = lower_char(c);
    return out;
}

bool is_double_byte_page(int page) { return page == 932 || page == 936 || page == 949 || page == 950; }

std::string recode_to_utf8(const std::string& text, int page, LineOptions& opt) {
    if (is_double_byte_page(page) || text.empty()) return typ::saveasutf8(text, page);
    auto [it, fresh] = opt.utf8_of_byte.try_emplace(page);
    auto& table = it->second;
    if (fresh)
        for (int b = 0; b < 256; ++b) table[static_cast<size_t>(b)] = typ::saveasutf8(std::string(1, static_cast<char>(b)), page);
    std::string out;
    out.reserve(text.size() + text.size() / 2);
    for (unsigned char c : text) {
        if (c < 0x80)
            out += static_cast<char>(c);
        else
            out += table[c];
    }
    return out;
}

}  // namespace

std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = lower_char(c);
    return out;
}

std::string_view trim(std::string_view s) {
    size_t b = 0;
    while (b < s.size() && (s[b] == ' ' || s[b] == '\t')) ++b;
    size_t e = s.size();
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t')) --e;
    return s.substr(b, e - b);
}

bool contains(std::string_view hay, std::string_view needle) { return hay.find(needle) != std::string_view::npos; }

bool starts_with_ci(std::string_view s, std::string_view prefix) {
    if (s.size() < prefix.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (lower_char(s[i]) != lower_char(prefix[i])) return false;
    return true;
}

bool contains_ci(std::string_view hay, std::string_view needle) {
    if (needle.empty()) return true;
    const char first = needle.front();
    const char first_upper = first >= 'a' && first <= 'z' ? static_cast<char>(first - 'a' + 'A') : first;
    for (size_t i = 0; i + needle.size() <= hay.size(); ++i) {
        if (hay[i] != first && hay[i] != first_upper) continue;
        if (starts_with_ci(hay.substr(i), needle)) return true;
    }
    return false;
}

void append_rows(std::string& out, std::string_view rows) {
    for_each_line(rows, [&](std::string_view row) {
        if (row.empty()) return;
        out += '"';
        out += row;
        out += '"';
        out += crlf;
    });
}

bool is_string_line(std::string_view lowered) { return lowered.starts_with("string"); }

bool is_ruler(std::string_view line) { return line.starts_with(";123"); }

bool is_end_marker(std::string_view lowered) { return trim(lowered) == "[end]"; }

std::string string_line(const Store& s, std::string_view line, LineOptions& opt) {
    std::string out(line);
    // "StringN=0x2F" is the stored form of the unspecified language 0x00.
    size_t p = 6;  // behind "String"
    size_t n_end = p;
    while (n_end < out.size() && out[n_end] >= '0' && out[n_end] <= '9') ++n_end;
    if (n_end > p && n_end - p <= 2) {
        int n = std::atoi(out.substr(p, n_end - p).c_str());
        std::string_view rest = std::string_view(out).substr(n_end);
        if (n >= 1 && n <= k_string_keys_max && starts_with_ci(rest, "=0x2f") &&
            (rest.size() == 5 || !is_hex(rest[5])))
            out.replace(n_end + 3, 2, "00");
    }
    if (!opt.to_utf8) return out;
    size_t comma = out.find(',');
    if (comma == std::string::npos) return out;
    auto [b, len] = digits_span(std::string_view(out).substr(0, comma));
    int lang = len == 0 ? 0 : static_cast<int>(std::strtol(out.substr(b, len).c_str(), nullptr, 16));
    int page = typ::lang_cp(s, lang);
    if (page == 65001) return out;
    return out.substr(0, comma + 1) + recode_to_utf8(out.substr(comma + 1), page, opt);
}

std::string_view hex_digits_after_x(std::string_view line) {
    auto [b, len] = digits_span(line);
    return line.substr(b, len);
}

std::string repair_type_line(std::string_view line) {
    auto [b, len] = digits_span(line);
    if (len == 0) return std::string(line);
    std::string d = lower_digits(line.substr(b, len));
    if (d.size() == 3)
        d += "00";
    else if (d.size() == 4 && d.ends_with("00"))
        d.resize(2);
    std::string out(line.substr(0, b));
    out += d;
    out += line.substr(b + len);
    return out;
}

std::string merge_subtype(std::string_view type_line, std::string_view subtype_line) {
    auto [b, len] = digits_span(type_line);
    std::string d = lower_digits(type_line.substr(b, len));
    if (d.size() == 5)
        d.resize(3);
    else if (d.size() == 4)
        d.resize(2);
    else if (d.size() == 1)
        d = "0" + d;
    std::string sub = lower_digits(hex_digits_after_x(subtype_line));
    if (sub.size() > 2) sub = sub.substr(sub.size() - 2);
    while (sub.size() < 2) sub = "0" + sub;
    std::string out(type_line.substr(0, b));
    if (len == 0) out += "0x";
    out += d;
    out += sub;
    out += type_line.substr(b + len);
    return out;
}

std::string join_lines(const std::vector<std::string>& lines) {
    size_t total = 0;
    for (const auto& l : lines) total += l.size() + 2;
    std::string out;
    out.reserve(total);
    for (size_t i = 0; i < lines.size(); ++i) {
        if (i) out += crlf;
        out += lines[i];
    }
    return out;
}

void TypeLine::subtype(std::string_view line) {
    if (index_ >= 0)
        lines_[static_cast<size_t>(index_)] = merge_subtype(lines_[static_cast<size_t>(index_)], line);
    else
        pending_ = line;
}

void TypeLine::type(std::string line) {
    if (!pending_.empty()) {
        line = merge_subtype(line, pending_);
        pending_.clear();
    }
    index_ = static_cast<int>(lines_.size());
    lines_.push_back(std::move(line));
}

bool TypeLine::take(std::string_view line, std::string_view lowered) {
    if (lowered.starts_with("subtype=")) {
        subtype(line);
        return true;
    }
    if (lowered.starts_with("type=")) {
        type(repair_type_line(line));
        return true;
    }
    return false;
}

void keep_line(const Store& s, std::vector<std::string>& lines, std::string_view raw, std::string_view line,
               std::string_view lowered, LineOptions& opt) {
    if (is_string_line(lowered))
        lines.push_back(string_line(s, line, opt));
    else if (lowered.starts_with("contourcolor") || lowered.starts_with("antialias"))
        // Keys of other compilers: mkgmap warns about them, so they stay as comments.
        lines.push_back(";" + std::string(raw));
    else
        lines.emplace_back(raw);
}

void TypeLine::finish() {
    if (!pending_.empty()) lines_.push_back(pending_);
    pending_.clear();
}

}  // namespace korvex::text::detail
