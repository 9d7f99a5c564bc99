#include "typ/type_range.h"

#include <cctype>

#include "model/store.h"

namespace korvex::typ {

namespace {

struct Range {
    long low, high;
};

struct ClassRanges {
    Range first, second;
    const char* refusal;
};

constexpr long k_max_subtype_value = 0x1f;

// Ranges of the type part, subtype taken off.
constexpr ClassRanges k_polygon{{0x1, 0x7f}, {0x100, 0x17f}, "Select range: 1 - 7F or 100 - 17F"};
constexpr ClassRanges k_line{{0x1, 0x2f}, {0x100, 0x14f}, "Select range: 1 - 2F or 100 - 14F"};
constexpr ClassRanges k_point{{0x1, 0x1ff}, {0x1, 0x1ff}, "Select range: 1 - 1FF "};

long hex_of(const std::string& digits) {
    long v = 0;
    for (char c : digits) v = v * 16 + (std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : (c | 0x20) - 'a' + 10);
    return v;
}

}  // namespace

std::vector<std::string> chktype(const std::string& type_text, int cls) {
    const ClassRanges* ranges = nullptr;
    switch (cls) {
    case model::k_polygons: ranges = &k_polygon; break;
    case model::k_lines:
    case model::k_active_lines: ranges = &k_line; break;
    case model::k_points: ranges = &k_point; break;
    default: return {};
    }
    std::string t = type_text;
    while (!t.empty() && std::isspace(static_cast<unsigned char>(t.front()))) t.erase(0, 1);
    if (t.size() >= 2 && t[0] == '0' && (t[1] == 'x' || t[1] == 'X')) t.erase(0, 2);
    std::string digits;
    for (char c : t) {
        if (!std::isxdigit(static_cast<unsigned char>(c))) break;
        digits += c;
    }
    // Eight digits are more than any class holds; this keeps the value in range.
    if (digits.size() > 8) digits = "fffffff";
    long type = hex_of(digits);
    long subtype = 0;
    if (digits.size() >= 4) {
        type = hex_of(digits.substr(0, digits.size() - 2));
        subtype = hex_of(digits.substr(digits.size() - 2));
    }
    const auto within = [type](Range r) { return type >= r.low && type <= r.high; };
    if (!within(ranges->first) && !within(ranges->second)) return {ranges->refusal, "Invalid type."};
    if (subtype > k_max_subtype_value) return {"SubTypes must be between 0 and 1F."};
    return {};
}

}  // namespace korvex::typ
