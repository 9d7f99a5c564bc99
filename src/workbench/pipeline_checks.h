// Every read-only check a map pipeline runs before shipping a style: the
// consistency checks of the window and the shipping checks beside them.
#pragma once

#include <string>

#include "model/store.h"
#include "workbench/finding.h"

namespace korvex::workbench {

// The Max Size setting when none is given.
inline constexpr int k_default_max_size = 64;

// All findings, sorted by class, type, check and message, each once: the
// same store gives the same list, whatever order the checks ran in.
// dropped_draworder: the draw-order tokens a text load removed as repeats.
Findings pipeline_findings(const model::Store& s, int max_size = k_default_max_size,
                           const std::string& dropped_draworder = "");

// Sorts findings into that order and drops repeats.
void sort_findings(Findings& f);

}  // namespace korvex::workbench
