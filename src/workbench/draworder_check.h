// The draw order as a device reads it: a polygon whose type has no level is
// not drawn at all, and a type listed twice is a slip of whoever wrote the
// list.
#pragma once

#include <string>

#include "model/store.h"
#include "workbench/finding.h"

namespace korvex::workbench {

inline constexpr const char* k_check_no_draworder = "no-draworder";
inline constexpr const char* k_check_draworder_duplicate = "draworder-duplicate";

// Each polygon whose type has no entry in drwlist, once a type.
Findings chk_no_draworder(const model::Store& s);

// Each type with more than one entry, once, with its levels in list order.
// The entries are drwlist's and `dropped`: the tokens ("CODE,level",
// blank-separated) a text load removed as repeats of a type listed before,
// which the store no longer shows.
Findings chk_draworder_duplicates(const model::Store& s, const std::string& dropped = "");

}  // namespace korvex::workbench
