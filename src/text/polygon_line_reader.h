// Reading one polygon or line section of the text form into a table row.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

// Reads a "[_polygon]" section into row (which must exist). batch false also
// feeds the section to draworder_fromtxt and sorts drwlist.
void pgonparse_txt(Store& s, platform::Prompt& ui, const std::string& section, int32_t row, bool batch);

// Reads a "[_line]" section into row (ln_n + k for an active line).
void pollineparse(Store& s, platform::Prompt& ui, const std::string& section, int32_t row, bool batch);

// The first n lines of a CR LF colour-line list.
std::string reducl(const std::string& colours, int n);

// Activity code ("40".."52") of an Activity= value; "40" when no name matches.
std::string activity_code(const std::string& value);

}  // namespace korvex::text
