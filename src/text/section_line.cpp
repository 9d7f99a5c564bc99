// [_line] sections of a whole-file save (ordinary and active lines).
#include <string>
#include <vector>

#include "text/sections.h"

namespace korvex::text::detail {

namespace {

constexpr int k_bitmap_mode = 8;  // a scheme byte of 8 or more has bitmap rows

// `Xpm="0 0 2 0"` with its colour count lowered by removed.
std::string lower_colour_count(const std::string& header, int removed) {
    size_t q = header.find('"');
    if (q == std::string::npos) return header;
    size_t end = header.find('"', q + 1);
    if (end == std::string::npos) end = header.size();
    // The third field of the quoted numbers.
    size_t p = q + 1;
    for (int field = 0; field < 2; ++field) {
        while (p < end && header[p] == ' ') ++p;
        while (p < end && header[p] != ' ') ++p;
    }
    while (p < end && header[p] == ' ') ++p;
    size_t e = p;
    while (e < end && header[e] >= '0' && header[e] <= '9') ++e;
    if (e == p) return header;
    int n = std::stoi(header.substr(p, e - p)) - removed;
    if (n < 0) n = 0;
    return header.substr(0, p) + std::to_string(n) + header.substr(e);
}

}  // namespace

std::string line_section(const Store& s, int32_t r, LineOptions& opt) {
    const std::string& txt = s.ln_txt[static_cast<size_t>(r)];
    if (trim(txt).empty()) return {};
    const bool has_border = contains_ci(txt, "borderwidth=");

    std::vector<std::string> lines;
    int xpm_index = -1;
    bool solid = false;
    int none_removed = 0;
    bool width_written = false;
    TypeLine type_line(lines);
    for_each_key_line(txt, [&](std::string_view raw, std::string_view line, std::string& lo) {
        // A comment is a comment wherever it stands: an old picture or key
        // kept in one never counts.
        if (line.starts_with(';')) {
            lines.emplace_back(raw);
            return;
        }
        if (type_line.take(line, lo)) return;
        // mkgmap knows the width only as LineWidth=; a border is always
        // stated so that two colours read as line and border.
        if (lo.starts_with("lwidth(=") || lo.starts_with("linewidth=")) {
            if (width_written) return;  // both spellings in one text: the first counts
            width_written = true;
            const size_t eq = line.find('=');
            lines.push_back("LineWidth=" + std::string(trim(line.substr(eq + 1))));
            if (!has_border) lines.emplace_back("BorderWidth=0");
            return;
        }
        if (contains(lo, "xpm=")) {
            solid = contains(lo, "xpm=\"0 ");
            xpm_index = static_cast<int>(lines.size());
            lines.emplace_back(line);
            return;
        }
        if (line.starts_with('"') && contains(lo, "c ")) {
            std::string colour(line);
            size_t p = lo.find("c #none");
            if (p != std::string::npos) {
                colour.replace(p, 7, "c none");
                lo.replace(p, 7, "c none");
            }
            if (solid && contains(lo, "c none")) {
                ++none_removed;
                return;
            }
            lines.push_back(std::move(colour));
            return;
        }
        keep_line(s, lines, raw, line, lo, opt);
    });
    type_line.finish();
    // The header must count what is left, or mkgmap stops.
    if (none_removed > 0 && xpm_index >= 0)
        lines[static_cast<size_t>(xpm_index)] = lower_colour_count(lines[static_cast<size_t>(xpm_index)], none_removed);

    std::string out = join_lines(lines);
    out += crlf;
    // A width key (not one in a comment) makes it a solid line.
    if (s.ln_mode[static_cast<size_t>(r)] >= k_bitmap_mode && !width_written)
        append_rows(out, s.ln_bmp[static_cast<size_t>(r)]);
    out += "[end]";
    out += crlf;
    return out;
}

}  // namespace korvex::text::detail
