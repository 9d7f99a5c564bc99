// [_polygon] sections of a whole-file save.
#include <string>
#include <vector>

#include "text/sections.h"

namespace korvex::text::detail {

namespace {

bool is_colour_line(std::string_view line, std::string_view lowered) {
    return line.starts_with('"') && contains(lowered, " c ");
}

void replace_first(std::string& s, std::string_view from, std::string_view to) {
    size_t p = s.find(from);
    if (p != std::string::npos) s.replace(p, from.size(), to);
}

// Colour lines of a solid polygon are renumbered 1 (one colour) or 2 and 3
// (day and night), then upper-cased with the " c " kept.
void solid_colour_line(std::vector<std::string>& lines, std::string line, bool day_night) {
    if (contains(line, "0 c")) {
        replace_first(line, "0 c", "1 c");
    } else if (day_night && contains(line, "1 c")) {
        replace_first(line, "1 c", "3 c");
        if (!lines.empty() && lines.back().starts_with('"')) replace_first(lines.back(), "1 c", "2 c");
    }
    for (char& c : line)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    replace_first(line, " C ", " c ");
    lines.push_back(std::move(line));
}

}  // namespace

std::string polygon_section(const Store& s, int32_t r, LineOptions& opt) {
    const std::string& txt = s.pg_txt[static_cast<size_t>(r)];
    if (trim(txt).empty()) return {};
    const std::string& xpm = s.pg_xpm[static_cast<size_t>(r)];
    const bool solid = contains(xpm, "0 0 ");
    const bool day_night = solid && contains(xpm, "0 2 ");

    std::vector<std::string> lines;
    int type_index = -1;
    std::string pending_sub;  // a SubType= in front of its Type=
    bool ended = false;
    for_each_line(txt, [&](std::string_view raw) {
        if (ended) return;
        std::string_view line = trim(raw);
        if (line.empty() || is_ruler(line)) return;
        const std::string lo = lower(line);
        if (is_end_marker(lo)) {
            ended = true;
            return;
        }
        if (lo.starts_with("subtype=")) {
            if (type_index >= 0)
                lines[static_cast<size_t>(type_index)] = merge_subtype(lines[static_cast<size_t>(type_index)], line);
            else
                pending_sub = line;
            return;
        }
        if (lo.starts_with("type=")) {
            std::string t = repair_type_line(line);
            if (!pending_sub.empty()) {
                t = merge_subtype(t, pending_sub);
                pending_sub.clear();
            }
            type_index = static_cast<int>(lines.size());
            lines.push_back(std::move(t));
            return;
        }
        if (solid && contains(lo, "xpm=")) {
            lines.emplace_back(xpm);
            return;
        }
        if (solid && is_colour_line(line, lo)) {
            solid_colour_line(lines, std::string(line), day_night);
            return;
        }
        if (is_string_line(lo)) {
            lines.push_back(string_line(s, line, opt));
            return;
        }
        lines.emplace_back(raw);
    });
    if (!pending_sub.empty()) lines.push_back(pending_sub);

    std::string out = join_lines(lines);
    out += crlf;
    if (!solid) {
        append_rows(out, s.pg_bmp[static_cast<size_t>(r)]);
        out += ruler;
        out += crlf;
    }
    out += "[end]";
    out += crlf;
    return out;
}

}  // namespace korvex::text::detail
