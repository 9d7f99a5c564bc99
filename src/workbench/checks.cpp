#include "workbench/checks.h"

#include <iterator>

#include "workbench/basecamp_check.h"
#include "workbench/line_check.h"
#include "workbench/unused_colours.h"

namespace korvex::workbench {

Findings consistency_findings(const model::Store& s) {
    Findings out;
    for (const int cls : {model::k_polygons, model::k_lines, model::k_points}) {
        Findings f = unused_colour_findings(s, cls);
        out.insert(out.end(), std::make_move_iterator(f.begin()), std::make_move_iterator(f.end()));
    }
    for (Findings f : {non_bitmap_line_findings(s), basecamp_findings(s)}) out.insert(out.end(), f.begin(), f.end());
    return out;
}

}  // namespace korvex::workbench
