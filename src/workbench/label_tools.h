// Label tools of the Tools menu: the "NOT in STYLE" tag, the grey
// "=nolabel" mark, the extra label data of a file and the code-page checks
// with their report.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/launcher.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// chk_nolabel: the row's only label key is a "=nolabel" font style.
bool chk_nolabel(const model::Store& s, int cls, int32_t row);

// remnotis: removes "NOT in STYLE" from the texts and labels of the class
// in view. Says the count and "Found"; "No data." for an empty class.
// Returns the number of rows changed (dirty is set when above 0).
int32_t remnotis(model::Store& s, platform::Prompt& ui);

// Extra POI Labels Data (entry 16): the labels of the file's extra label
// block as a report, or "No Extra Label Data Found.".
void extra_poi_labels(const model::Store& s, platform::Prompt& ui, const std::string& data_folder);

// Check 65001 labels (entry 24) and Check 1252 labels (entry 25): the
// code-page refusal, else the check, its report shown from its file. True
// when the store changed.
bool check_labels(model::Store& s, platform::Prompt& ui, platform::Launcher& launcher,
                  const std::string& data_folder, int codepage);

}  // namespace korvex::workbench
