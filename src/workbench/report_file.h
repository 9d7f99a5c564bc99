// A report of a check or a tool: written to its file under the data folder
// (so it can be found again after the viewer is closed) and shown.
#pragma once

#include <string>

#include "platform/prompt.h"

namespace korvex::workbench {

// Writes text to the file `relative` under data_folder ("system/bin/colorcheck.txt")
// and shows it through ui.report with title. Returns the path written, or ""
// when the file could not be written (the report is shown all the same: an
// unwritable report fails the file step only).
std::string show_report(platform::Prompt& ui, const std::string& data_folder, const std::string& relative,
                        const std::string& title, const std::string& text);

}  // namespace korvex::workbench
