// Bitmap lines that are really a plain line with a border: a run of border
// rows, a run of line rows, the same border again. A plain line draws
// clearer and quicker.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/finding.h"

namespace korvex::workbench {

// The ordinary lines (rows) that qualify, in table order.
std::vector<int32_t> convertible_lines(const model::Store& s);

// linecheck: the report of the qualifying lines under "Lines are rendered
// clearer and quicker when converted to non-bitmap:"; "" when none.
std::string linecheck(const model::Store& s);

// The same as findings ("non-bitmap-line").
Findings non_bitmap_line_findings(const model::Store& s);

// Rewrites one qualifying line as a line without a bitmap (width, border,
// "Xpm="0 0 2 0""); false, changing nothing, when the row does not qualify.
bool convert_to_non_bitmap(model::Store& s, int32_t row);

// Check Lines for Non-Bitmap Conversion: the report to
// system/bin/linecheck.txt and shown, "None found." when empty; then asks
// "Reload TYP file to undo changes." / "Continue?" and converts them. True when the store changed (dirty is then set).
bool check_lines_flow(model::Store& s, platform::Prompt& ui, const std::string& data_folder);

}  // namespace korvex::workbench
