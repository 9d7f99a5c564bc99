#include "workbench/line_check.h"

namespace korvex::workbench {

std::vector<int32_t> convertible_lines(const model::Store&) { return {}; }
std::string linecheck(const model::Store&) { return {}; }
Findings non_bitmap_line_findings(const model::Store&) { return {}; }
bool convert_to_non_bitmap(model::Store&, int32_t) { return false; }
bool check_lines_flow(model::Store&, platform::Prompt&, const std::string&) { return false; }

}  // namespace korvex::workbench
