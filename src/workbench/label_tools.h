// Label tools of the Tools menu: the "NOT in STYLE" tag, the grey
// "=nolabel" mark and the extra label data of a file.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
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

}  // namespace korvex::workbench
