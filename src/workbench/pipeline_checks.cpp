#include "workbench/pipeline_checks.h"

#include <algorithm>
#include <tuple>

#include "workbench/checks.h"
#include "workbench/draworder_check.h"
#include "workbench/label_codepage_check.h"
#include "workbench/point_limits_check.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

void sort_findings(Findings& f) {
    auto key = [](const Finding& a) { return std::tie(a.cls, a.type, a.check, a.message); };
    std::sort(f.begin(), f.end(), [&](const Finding& a, const Finding& b) { return key(a) < key(b); });
    f.erase(std::unique(f.begin(), f.end(), [&](const Finding& a, const Finding& b) { return key(a) == key(b); }),
            f.end());
}

Findings pipeline_findings(const model::Store& s, int max_size, const std::string& dropped_draworder) {
    Findings all = consistency_findings(s);
    for (Findings more : {chk_label_codepage(s), chk_no_draworder(s), chk_draworder_duplicates(s, dropped_draworder),
                          chk_point_limits(s, max_size)})
        all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    // One form of a type for a program to match on, whatever form a check
    // took from the grid: "0x0100,2" (a polygon with its level) is "0x00100".
    for (Finding& f : all) {
        const int32_t code = type_code(f.type.substr(0, f.type.find(',')));
        if (code >= 0) f.type = "0x" + five_digits(code);
    }
    sort_findings(all);
    return all;
}

}  // namespace korvex::workbench
