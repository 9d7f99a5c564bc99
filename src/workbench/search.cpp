#include <algorithm>
#include <cctype>

#include "typ/curf_access.h"
#include "workbench/browser.h"
#include "workbench/cell_label.h"

namespace korvex::workbench {

namespace {

constexpr int k_msg_not_found = 14, k_msg_too_short = 247;
// last_hit_ after a search ran to the end: the next one starts at the top.
constexpr int k_from_top = -2;

std::string trimmed_lower_text(const std::string& text) {
    const size_t a = text.find_first_not_of(" \t\r\n");
    if (a == std::string::npos) return {};
    const size_t b = text.find_last_not_of(" \t\r\n");
    return typ::lower(std::string_view(text).substr(a, b - a + 1));
}

bool starts_caseless(std::string_view line, std::string_view word) {
    return line.size() >= word.size() && typ::find_caseless(line.substr(0, word.size()), word) == 0;
}

// A row matches when one of its String lines (the text behind the language)
// or its Type= value holds the text.
bool section_matches(std::string_view section, const std::string& t, bool types_only) {
    bool hit = false;
    typ::for_each_line(section, [&](std::string_view line) {
        if (hit) return;
        if (starts_caseless(line, "type=")) {
            hit = typ::contains_caseless(line.substr(5), t);
        } else if (!types_only && starts_caseless(line, "string")) {
            const size_t comma = line.find(',');
            hit = comma != std::string_view::npos && typ::contains_caseless(line.substr(comma + 1), t);
        }
    });
    return hit;
}

// Extra points are found by their number, typed in hex or decimal as the
// option shows them.
bool extra_matches(const model::Store& s, int32_t row, std::string t, bool hex) {
    if (t.rfind("0x", 0) == 0) t.erase(0, 2);
    if (t.empty() || row < 0 || static_cast<size_t>(row) >= s.pt_typ.size()) return false;
    const auto is_digit = [hex](unsigned char c) { return hex ? std::isxdigit(c) != 0 : std::isdigit(c) != 0; };
    if (!std::all_of(t.begin(), t.end(), is_digit) || t.size() > 9) return false;
    const int64_t wanted = hex ? typ::hex_value(t) : std::stoll(t);
    return wanted == typ::hex_value(s.pt_typ[static_cast<size_t>(row)]);
}

}  // namespace

SearchResult Browser::search(const model::Store& s, const std::string& text, bool types_only, bool garmin_only) {
    SearchResult r;
    const std::string t = trimmed_lower_text(text);
    if (t.empty()) return r;
    if (t.size() < 2) {
        r.msg = k_msg_too_short;
        return r;
    }
    // No table of Garmin's default type names ships, so that search finds nothing.
    if (garmin_only && cls_ < model::k_active_lines) {
        r.msg = k_msg_not_found;
        return r;
    }
    if (t != last_search_) {
        last_search_ = t;
        last_hit_ = -1;
        hits_ = 0;
    }
    const int start = last_hit_ >= 0 ? last_hit_ + 1 : last_hit_ == k_from_top ? 0 : std::max(current_, 0);
    for (int cell = start; cell < cell_count(); ++cell) {
        if (night_cell(cell)) continue;
        const int32_t row = row_of(cell);
        const bool hit = cls_ == model::k_extra_points ? extra_matches(s, row, t, opt.extra_hex)
                                                       : section_matches(section_text(s, cls_, row), t, types_only);
        if (!hit) continue;
        current_ = cell;
        last_hit_ = cell;
        ++hits_;
        r.found = true;
        r.cell = cell;
        r.count = "(" + std::to_string(hits_) + ")";
        return r;
    }
    last_hit_ = k_from_top;
    hits_ = 0;
    r.msg = k_msg_not_found;
    return r;
}

}  // namespace korvex::workbench
