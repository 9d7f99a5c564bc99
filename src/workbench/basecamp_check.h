// What the desktop map viewer leaves out: line types in ranges it does not
// draw, and points it shows without labels.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/finding.h"

namespace korvex::workbench {

// True when the desktop viewer draws lines of the type (its digits without
// "0x", as ln_lab holds them, or a numeric code).
bool basecamp_shows_line(int32_t code);

// chk_basecamp: the report of both passes: lines under "Not visible in
// Basecamp:", points under "No Labels in Basecamp:"; "All lines are
// visible" when the first pass finds nothing.
std::string chk_basecamp(const model::Store& s);

// The same as findings ("basecamp-invisible", "basecamp-no-label").
Findings basecamp_findings(const model::Store& s);

// The Tools entry: the report shown (and written to system/bin/basecamp.txt).
void visible_in_basecamp(const model::Store& s, platform::Prompt& ui, const std::string& data_folder);

}  // namespace korvex::workbench
