#include "workbench/line_check.h"

#include <array>

#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "workbench/cell_label.h"
#include "workbench/element_rows.h"
#include "workbench/picture_block.h"
#include "workbench/report_file.h"

namespace korvex::workbench {

namespace {

constexpr int k_min_pattern_width = 8;

// Border rows, line rows, border rows again: the runs of a line that a
// width and a border draw alike.
struct LineRuns {
    bool ok = false;
    char border = 0, line = 0;   // keys of the two runs
    int border_rows = 0, line_rows = 0;
};

LineRuns line_runs(const std::string& rows) {
    LineRuns out;
    std::array<int, 3> count{};
    std::array<char, 3> key{};
    int runs = 0;
    bool uniform = true;
    int width = -1;
    typ::for_each_line(rows, [&](std::string_view row) {
        if (!uniform || row.empty()) return;
        if (row.find_first_not_of(row[0]) != std::string_view::npos) {
            uniform = false;
            return;
        }
        if (width < 0) width = static_cast<int>(row.size());
        if (runs == 0 || key[static_cast<size_t>(runs - 1)] != row[0]) {
            if (runs == 3) {
                uniform = false;
                return;
            }
            key[static_cast<size_t>(runs++)] = row[0];
        }
        ++count[static_cast<size_t>(runs - 1)];
    });
    if (!uniform || runs != 3 || width < k_min_pattern_width || key[0] != key[2] || count[0] != count[2]) return out;
    if ((key[0] != '0' && key[0] != '1') || (key[1] != '0' && key[1] != '1')) return out;
    out.ok = true;
    out.border = key[0];
    out.line = key[1];
    out.border_rows = count[0];
    out.line_rows = count[1];
    return out;
}

bool has_colour(const std::string& col, char role) {
    bool found = false;
    typ::for_each_line(col, [&](std::string_view line) {
        const ColourLineParts p = colour_parts(std::string(line), 1);
        found = found || (p.key.size() == 1 && p.key[0] == role && !p.value.empty());
    });
    return found;
}

std::string colour_of(const std::string& col, char role) {
    std::string value;
    typ::for_each_line(col, [&](std::string_view line) {
        const ColourLineParts p = colour_parts(std::string(line), 1);
        if (p.key.size() == 1 && p.key[0] == role) value = p.value;
    });
    return value;
}

LineRuns qualifies(const model::Store& s, int32_t r) {
    const auto i = static_cast<size_t>(r);
    const int mode = s.ln_mode[i];
    const std::string& col = s.ln_col[i];
    if (mode < 8 || mode % 8 == 7) return {};
    if (has_colour(col, '3') || has_colour(col, '2') || !has_colour(col, '1')) return {};
    if (typ::contains_caseless(col, "none")) return {};
    return line_runs(s.ln_bmp[i]);
}

int line_class(const model::Store& s, int32_t r) {
    return r >= s.ln_n ? model::k_active_lines : model::k_lines;
}

}  // namespace

std::vector<int32_t> convertible_lines(const model::Store& s) {
    std::vector<int32_t> out;
    for (int32_t r = 0; r < s.ln_n + s.ln_nact; ++r)
        if (qualifies(s, r).ok) out.push_back(r);
    return out;
}

std::string linecheck(const model::Store& s) {
    const std::vector<int32_t> rows = convertible_lines(s);
    if (rows.empty()) return {};
    std::string out = "Lines are rendered clearer and quicker when converted to non-bitmap:\r\n";
    for (const int32_t r : rows) out += type_text(s, line_class(s, r), r) + "\r\n";
    return out;
}

Findings non_bitmap_line_findings(const model::Store& s) {
    Findings out;
    for (const int32_t r : convertible_lines(s))
        out.push_back({line_class(s, r), type_text(s, line_class(s, r), r), "non-bitmap-line",
                       "Lines are rendered clearer and quicker when converted to non-bitmap"});
    return out;
}

bool convert_to_non_bitmap(model::Store& s, int32_t row) {
    if (row < 0 || row >= s.ln_n + s.ln_nact) return false;
    const LineRuns runs = qualifies(s, row);
    if (!runs.ok) return false;
    const auto i = static_cast<size_t>(row);
    const std::string line_colour = colour_of(s.ln_col[i], runs.line);
    const std::string border_colour = colour_of(s.ln_col[i], runs.border);
    const int cls = line_class(s, row);
    const int32_t n = cls == model::k_active_lines ? row - s.ln_n + 1 : row + 1;
    std::vector<std::string> lines = section_lines(text::create_textfile(s, n, cls));
    const PictureBlock b = find_picture(lines, {"xpm="});
    if (b.head < 0) return false;
    lines.erase(lines.begin() + b.head, lines.begin() + b.first_row + b.row_lines);
    lines.insert(lines.begin() + b.head, {head_line(b.key, 0, 0, 2, 0, ""), "\"0 c " + line_colour + "\"",
                                          "\"1 c " + border_colour + "\""});
    set_line_widths(lines, b.head, runs.line_rows, runs.border_rows);
    platform::QuietPrompt quiet;
    parse_into(s, quiet, cls, row, joined_section(lines));
    return true;
}

bool check_lines_flow(model::Store& s, platform::Prompt& ui, const std::string& data_folder) {
    const std::string report = linecheck(s);
    if (report.empty()) {
        ui.message("None found.");
        return false;
    }
    show_report(ui, data_folder, "system/bin/linecheck.txt", "Check Lines for Non-Bitmap Conversion", report);
    // The conversion has no undo but a reload, as every destructive tool.
    if (s.opt.ask_reload_undo &&
        ui.yes_no_cancel("Reload TYP file to undo changes.\r\n\r\nContinue?") != platform::Answer::yes)
        return false;
    bool changed = false;
    for (const int32_t r : convertible_lines(s)) changed = convert_to_non_bitmap(s, r) || changed;
    if (changed) s.dirty = true;
    return changed;
}

}  // namespace korvex::workbench
