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
    TypeLine type_line(lines);
    for_each_key_line(txt, [&](std::string_view raw, std::string_view line, std::string& lo) {
        // A comment is a comment wherever it stands: an old picture or key
        // kept in one never counts.
        if (line.starts_with(';')) {
            lines.emplace_back(raw);
            return;
        }
        if (type_line.take(line, lo)) return;
        if (solid && contains(lo, "xpm=")) {
            lines.emplace_back(xpm);
            return;
        }
        if (solid && is_colour_line(line, lo)) {
            solid_colour_line(lines, std::string(line), day_night);
            return;
        }
        keep_line(s, lines, raw, line, lo, opt);
    });
    type_line.finish();

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
