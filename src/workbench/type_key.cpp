#include "workbench/type_key.h"

#include <algorithm>
#include <cctype>

#include "typ/curf_access.h"
#include "typ/type_range.h"

namespace korvex::workbench {

namespace {

// Below this code the walk steps a whole type; from here on every subtype.
constexpr int32_t k_subtype_walk = 0xff01;
constexpr int32_t k_types_of_subtypes = 32;
constexpr int32_t k_skip_to_next_type = 224;  // 0x20 .. 0xff are no subtypes
constexpr int32_t k_last_code = 0x1ff1f;       // the highest type any class takes
constexpr int32_t k_point_seed_value = 0x6000;
constexpr int32_t k_point_seed_max = 0x20000;

bool is_hex_char(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

// The hexadecimal digits of a type text: behind the first "x", else from the
// first digit, blanks skipped.
std::string digits_of(const std::string& text) {
    size_t at = text.find_first_of("xX");
    at = at == std::string::npos ? 0 : at + 1;
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
    std::string d;
    while (at < text.size() && is_hex_char(text[at]) && d.size() < 8) d += text[at++];
    return d;
}

int32_t max_code(int cls) {
    switch (cls) {
    case model::k_polygons: return 0x17f1f;
    case model::k_lines:
    case model::k_active_lines: return 0x14f1f;
    default: return k_last_code;
    }
}

}  // namespace

int32_t type_code(const std::string& text) {
    const std::string d = digits_of(text);
    if (d.empty()) return -1;
    if (d.size() > 5) return static_cast<int32_t>(typ::hex_value(d.substr(d.size() - 5)));
    const auto v = static_cast<int32_t>(typ::hex_value(d));
    return d.size() <= 3 ? v << 8 : v;
}

std::string five_digits(int32_t code) {
    std::string d = typ::lower(typ::hex(code < 0 ? 0 : code));
    if (d.size() < 5) d.insert(0, 5 - d.size(), '0');
    return d;
}

int32_t first_row(const model::Store& s, int cls) {
    switch (cls) {
    case model::k_active_lines: return s.ln_n;
    case model::k_extra_points: return s.pt_n;
    default: return 0;
    }
}

int32_t end_row(const model::Store& s, int cls) {
    switch (cls) {
    case model::k_polygons: return s.pg_n;
    case model::k_lines: return s.ln_n;
    case model::k_active_lines: return s.ln_n + s.ln_nact;
    case model::k_points: return s.pt_n;
    case model::k_extra_points: return s.pt_n + s.pt_nx;
    default: return 0;
    }
}

int32_t row_type_code(const model::Store& s, int cls, int32_t row) {
    const auto r = static_cast<size_t>(row);
    switch (cls) {
    case model::k_polygons: return r < s.pg_typ.size() ? type_code(s.pg_typ[r]) : -1;
    case model::k_lines:
    case model::k_active_lines: return r < s.ln_code.size() ? s.ln_code[r] : -1;
    case model::k_points:
    case model::k_extra_points:
        // Five digits always: the value is the code (the id of an extra point).
        return r < s.pt_typ.size() ? static_cast<int32_t>(typ::hex_value(digits_of(s.pt_typ[r]))) : -1;
    default: return -1;
    }
}

TypeIndex::TypeIndex(const model::Store& s, int cls) {
    const int32_t end = end_row(s, cls);
    rows_.reserve(static_cast<size_t>(std::max(0, end - first_row(s, cls))));
    for (int32_t r = first_row(s, cls); r < end; ++r) rows_.emplace(row_type_code(s, cls, r), r);
}

int32_t TypeIndex::row(int32_t code) const {
    const auto it = rows_.find(code);
    return it == rows_.end() ? -1 : it->second;
}

bool type_exists(const model::Store& s, const std::string& text, int cls) {
    const int32_t code = cls == model::k_extra_points ? static_cast<int32_t>(typ::hex_value(digits_of(text)))
                                                      : type_code(text);
    const int32_t end = end_row(s, cls);
    for (int32_t r = first_row(s, cls); r < end; ++r)
        if (row_type_code(s, cls, r) == code) return true;
    return false;
}

std::string nwtypnumber(const model::Store& s, const std::string& seed, int cls) {
    std::string d = digits_of(seed);
    if (d.size() < 5) d += "00";
    int32_t n = static_cast<int32_t>(typ::hex_value(d.substr(0, 5)));
    if (n == 0) n = 1;
    const TypeIndex index(s, cls);
    const int32_t last = max_code(cls);
    while (index.has(n)) {
        if (n >= k_subtype_walk) {
            ++n;
            if (n % k_types_of_subtypes == 0) n += k_skip_to_next_type;
        } else {
            n += 256;
        }
        if (n > last) return {};
    }
    const std::string text = five_digits(n);
    return typ::chktype(text, cls).empty() ? text : std::string();
}

std::string next_point_type(const model::Store& s, const std::string& seed) {
    std::string d = digits_of(seed);
    if (!d.empty() && d[0] == '0') d.erase(0, 1);
    int64_t n = d.empty() ? 0 : typ::hex_value(d) * 256;
    if (n < 1 || n > k_point_seed_max) n = k_point_seed_value;
    const TypeIndex index(s, model::k_points);
    while (index.has(static_cast<int32_t>(n))) {
        ++n;
        if (n % k_types_of_subtypes == 0) n += k_skip_to_next_type;
        if (n > k_last_code) return {};
    }
    const std::string text = five_digits(static_cast<int32_t>(n));
    return typ::chktype(text, model::k_points).empty() ? text : std::string();
}

std::vector<int> subtypes(const model::Store& s, int32_t code, int cls) {
    const TypeIndex index(s, cls);
    std::vector<int> free;
    const int32_t type = code >> 8;
    for (int sub = 0; sub < k_types_of_subtypes; ++sub)
        if (!index.has(type << 8 | sub)) free.push_back(sub);
    return free;
}

std::string replacetype(const std::string& section, const std::string& digits, bool id) {
    const std::string key = id ? "ID=0x" : "Type=0x";
    std::string out;
    out.reserve(section.size() + 16);
    bool done = false;
    size_t pos = 0;
    while (pos < section.size()) {
        size_t end = section.find('\n', pos);
        end = end == std::string::npos ? section.size() : end + 1;
        const std::string line = section.substr(pos, end - pos);
        pos = end;
        std::string low;
        for (char c : line)
            if (c != ' ' && c != '\t') low += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (low.rfind("subtype=", 0) == 0) continue;
        if (!done && (low.rfind("type=", 0) == 0 || low.rfind("id=", 0) == 0)) {
            size_t tail = line.size();
            while (tail > 0 && (line[tail - 1] == '\n' || line[tail - 1] == '\r')) --tail;
            out += key + digits + line.substr(tail);
            done = true;
            continue;
        }
        out += line;
    }
    if (!done) {
        // Behind the marker line, or in front of everything without one.
        const size_t marker = out.find("[_");
        const size_t nl = marker == std::string::npos ? std::string::npos : out.find('\n', marker);
        const size_t at = nl == std::string::npos ? 0 : nl + 1;
        out.insert(at, key + digits + "\r\n");
    }
    return out;
}

std::string drw_code(int32_t code, bool* can_have) {
    const int32_t type = code >> 8, sub = code & 0xff;
    if (can_have) *can_have = true;
    if (type >= 0x100) return typ::upper(typ::hex(type) + typ::hex2(typ::hex(sub)));
    if (sub == 0) return "00" + typ::upper(typ::hex2(typ::hex(type)));
    if (can_have) *can_have = false;
    return typ::upper(typ::hex2(typ::hex(type)) + typ::hex2(typ::hex(sub)));
}

}  // namespace korvex::workbench
