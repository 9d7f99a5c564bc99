#include "typ/sort_types.h"

#include <algorithm>

#include "typ/curf_access.h"

namespace korvex::typ {

std::string type_digits(const std::string& type_text) {
    const size_t x = type_text.find_first_of("xX");
    std::string d = x == std::string::npos ? type_text : type_text.substr(x + 1);
    while (!d.empty() && (d.back() == ' ' || d.back() == '\r' || d.back() == '\n')) d.pop_back();
    return d;
}

int32_t index_code(const std::string& digits) {
    if (digits.size() >= 3) {
        const int64_t sub = hex_value(digits.substr(digits.size() - 2));
        const int64_t type = hex_value(digits.substr(0, digits.size() - 2));
        return static_cast<int32_t>(((type * 32) + sub) & 0xffff);
    }
    return static_cast<int32_t>((hex_value(digits) * 32) & 0xffff);
}

int32_t row_code(const Store& s, int cls, int32_t row) {
    const auto r = static_cast<size_t>(row);
    switch (cls) {
        case model::k_polygons: return r < s.pg_typ.size() ? index_code(type_digits(s.pg_typ[r])) : 0;
        case model::k_lines:
        case model::k_active_lines: {
            if (r >= s.ln_code.size()) return 0;
            // ln_code keeps the value of the type digits: type << 8 | subtype.
            const int32_t v = s.ln_code[r];
            return (((v >> 8) * 32) + (v & 0xff)) & 0xffff;
        }
        default: return r < s.pt_typ.size() ? index_code(type_digits(s.pt_typ[r])) : 0;
    }
}

std::vector<int32_t> sort_types(const Store& s, int cls, int32_t first, int32_t last) {
    std::vector<std::pair<int32_t, int32_t>> keyed;
    keyed.reserve(static_cast<size_t>(std::max(0, last - first)));
    for (int32_t r = first; r < last; ++r) keyed.emplace_back(row_code(s, cls, r), r);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<int32_t> rows;
    rows.reserve(keyed.size());
    for (auto& k : keyed) rows.push_back(k.second);
    return rows;
}

}  // namespace korvex::typ
