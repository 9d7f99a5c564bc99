// The checks a batch bitmap tool makes before it touches a point: whether the
// point is one the tools pass over, and how much transparent margin it has.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// chkcanv: a point with opacity, a night picture or no bitmap is passed over
// by the tools; each reason adds type + " has opacity", " has night bmp" or
// " has no bitmap" (a line each) to report. True when the point is excluded.
bool chkcanv(const model::Store& s, int32_t r, std::string& report);

// chktrbmp: rows and columns at the four sides that hold only the
// transparent key. A row of a single key stands for a whole row of it.
struct TrimEdges {
    int top = 0, bottom = 0, left = 0, right = 0;
    bool all = false;          // every pixel is transparent (top == bottom == row count)
    bool width_error = false;  // a row is not width keys wide: "oops bmp width"
};
TrimEdges chktrbmp(const std::vector<std::string>& rows, std::string_view key, int width);

}  // namespace korvex::workbench
