#include "cli/pipeline_commands.h"

#include <cstdio>
#include <string>

#include "workbench/finding_format.h"
#include "workbench/line_check.h"
#include "workbench/pipeline_checks.h"
#include "workbench/unused_colours.h"

namespace korvex::cli {

namespace {

// What the text load says when it drops repeated draw-order entries; the
// tokens follow the blank line.
const std::string k_duplicates_removed = "Found and removed duplicates :\r\n\r\n";

}  // namespace

void LoadPrompt::message(const std::string& text) {
    if (text.rfind(k_duplicates_removed, 0) == 0) dropped_ += " " + text.substr(k_duplicates_removed.size());
    platform::ConsolePrompt::message(text);
}

int check(const model::Store& s, bool json, int max_size, const std::string& dropped_draworder) {
    const workbench::Findings f = workbench::pipeline_findings(s, max_size, dropped_draworder);
    const std::string out = json ? workbench::findings_json(f) : workbench::findings_lines(f);
    std::fwrite(out.data(), 1, out.size(), stdout);
    std::fflush(stdout);
    return f.empty() ? 0 : 1;
}

void repair(model::Store& s, bool unused_colours, bool non_bitmap_lines) {
    if (unused_colours) {
        int32_t changed = 0;
        for (int cls : {model::k_polygons, model::k_lines, model::k_points}) changed += workbench::redun(s, cls);
        std::fprintf(stderr, "repaired: unused colours in %d elements\n", static_cast<int>(changed));
    }
    if (non_bitmap_lines) {
        // Rows found first: a conversion does not move rows, but it changes
        // what the next look at the table would find.
        int converted = 0;
        for (int32_t row : workbench::convertible_lines(s))
            if (workbench::convert_to_non_bitmap(s, row)) ++converted;
        std::fprintf(stderr, "repaired: %d lines converted to non-bitmap\n", converted);
    }
}

}  // namespace korvex::cli
