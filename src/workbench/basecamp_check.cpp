#include "workbench/basecamp_check.h"

#include <string_view>

#include "workbench/cell_label.h"
#include "workbench/report_file.h"

namespace korvex::workbench {

namespace {

// Types the viewer draws although their ranges say otherwise.
constexpr std::string_view k_shown_first = ",01700,02c00";
constexpr std::string_view k_shown_second =
    ",10200,1080e,10812,10813,10814,10815,10816,10817,10818,10819,1081a,1081b,1081c,1081d,1081e,1081f";

constexpr int32_t k_extended = 0x10000;

// Half-open ranges of codes the viewer leaves out.
constexpr std::pair<int32_t, int32_t> k_hidden[] = {
    {0x2F01, 0x10000}, {0x10200, 0x10300}, {0x10906, 0x10A00}, {0x10B02, 0x10B05}, {0x10B05, 0x10C00}};

std::string five_hex(int32_t code) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string out(5, '0');
    for (int k = 4; k >= 0; --k, code >>= 4) out[static_cast<size_t>(k)] = digits[code & 15];
    return out;
}

bool listed(int32_t code) {
    const std::string key = "," + five_hex(code);
    auto in = [&](std::string_view list) {
        for (size_t at = list.find(key); at != std::string_view::npos; at = list.find(key, at + 1))
            if (at + key.size() == list.size() || list[at + key.size()] == ',') return true;
        return false;
    };
    return in(k_shown_first) || in(k_shown_second);
}

int32_t point_code(const model::Store& s, int32_t r) {
    int32_t v = 0;
    for (const char c : s.pt_typ[static_cast<size_t>(r)]) {
        int d = -1;
        if (c >= '0' && c <= '9') d = c - '0';
        else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
        if (d < 0) return -1;
        v = v * 16 + d;
    }
    return v;
}

}  // namespace

bool basecamp_shows_line(int32_t code) {
    if (listed(code)) return true;
    for (const auto& [from, to] : k_hidden)
        if (code >= from && code < to) return false;
    return true;
}

Findings basecamp_findings(const model::Store& s) {
    Findings out;
    for (int32_t r = 0; r < s.ln_n; ++r)
        if (!basecamp_shows_line(s.ln_code[static_cast<size_t>(r)]))
            out.push_back({model::k_lines, type_text(s, model::k_lines, r), "basecamp-invisible", "Not visible in Basecamp"});
    // Extended points whose codes fall in the same ranges show without
    // their labels; the ordinary point types all carry theirs.
    for (int32_t r = 0; r < s.pt_n; ++r) {
        const int32_t code = point_code(s, r);
        if (code >= k_extended && !basecamp_shows_line(code))
            out.push_back({model::k_points, type_text(s, model::k_points, r), "basecamp-no-label", "No Labels in Basecamp"});
    }
    return out;
}

std::string chk_basecamp(const model::Store& s) {
    std::string lines, points;
    for (const Finding& f : basecamp_findings(s)) (f.cls == model::k_lines ? lines : points) += f.type + "\r\n";
    std::string out = lines.empty() ? "All lines are visible\r\n" : "Not visible in Basecamp:\r\n" + lines;
    if (!points.empty()) out += "\r\nNo Labels in Basecamp:\r\n" + points;
    return out;
}

void visible_in_basecamp(const model::Store& s, platform::Prompt& ui, const std::string& data_folder) {
    show_report(ui, data_folder, "system/bin/basecamp.txt", "Visible in Basecamp", chk_basecamp(s));
}

}  // namespace korvex::workbench
