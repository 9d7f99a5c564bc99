// Installed fonts and fonts.dat.
#include "platform/fonts.h"

#include <algorithm>
#include <charconv>

namespace korvex::platform {
namespace {

bool same_name(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        const auto low = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        return low(x) == low(y);
    });
}

std::string_view next_line(std::string_view& rest, bool& ok) {
    ok = !rest.empty();
    const size_t lf = rest.find('\n');
    std::string_view line = rest.substr(0, lf);
    rest.remove_prefix(lf == std::string_view::npos ? rest.size() : lf + 1);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
    return line;
}

bool read_int(std::string_view t, long& v) {
    const auto r = std::from_chars(t.data(), t.data() + t.size(), v);
    return r.ec == std::errc() && r.ptr == t.data() + t.size();
}

}  // namespace

bool FontList::has(const std::string& name) const {
    const auto names = families();
    return std::any_of(names.begin(), names.end(), [&](const std::string& n) { return same_name(n, name); });
}

std::string write_fonts_dat(const std::vector<std::string>& names) {
    std::string out = std::to_string(k_fonts_check) + "\r\n" + std::to_string(names.size()) + "\r\n";
    for (const std::string& n : names) out += n + "\r\n";
    return out;
}

std::optional<std::vector<std::string>> read_fonts_dat(std::string_view text) {
    bool ok = false;
    long check = 0, count = 0;
    if (!read_int(next_line(text, ok), check) || !ok || check != k_fonts_check) return std::nullopt;
    if (!read_int(next_line(text, ok), count) || !ok || count < 0) return std::nullopt;
    std::vector<std::string> names;
    for (long i = 0; i < count; ++i) {
        const std::string_view name = next_line(text, ok);
        if (!ok) return std::nullopt;
        names.emplace_back(name);
    }
    return names;
}

}  // namespace korvex::platform
