// The label code-page tools: find strings stored in the wrong encoding,
// repair them, and write what was repaired to a report.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/launcher.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// Report files, relative to the user data folder.
inline const std::string k_report_65001 = "cp65001";
inline const std::string k_report_1252 = "system/cp1252";

// For a UTF-8 file: strings with bytes of a single-byte page become UTF-8.
// True when something was repaired (the project is then dirty and the
// report is shown). The launcher is no longer used: reports have a viewer.
bool check_labels_65001(model::Store& s, platform::Prompt& ui, platform::Launcher& launcher,
                        const std::string& data_folder);

// For a 1252 file: strings holding UTF-8 bytes become bytes of the page.
bool check_labels_1252(model::Store& s, platform::Prompt& ui, platform::Launcher& launcher,
                       const std::string& data_folder);

}  // namespace korvex::workbench
