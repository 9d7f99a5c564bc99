// Every read-only consistency check of a project at once, for a program.
#pragma once

#include "model/store.h"
#include "workbench/finding.h"

namespace korvex::workbench {

// Unused colours of the three classes, convertible lines and both Basecamp
// passes, in that order.
Findings consistency_findings(const model::Store& s);

}  // namespace korvex::workbench
