// One element in or out of the tables, from or to its section text: the
// steps that creating, pasting, importing and deleting share.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// The code (type << 8 | subtype) a section's Type= and SubType= lines give,
// as the readers take them; -1 without a Type= (or ID=) line.
int32_t section_code(const std::string& section);

// The value of a section's Activity= line as an activity code ("40" ..
// "52"); "" without one.
std::string section_activity(const std::string& section);

// Reads section into an existing row of a class (the store row), as the
// text readers do; the night counters lose what the row held before.
void parse_into(model::Store& s, platform::Prompt& ui, int cls, int32_t row, const std::string& section);

// Opens a row at the end of the class (ordinary lines and points in front of
// the active lines and extra points behind them), reads section into it and
// counts it. Returns the store row.
int32_t append_element(model::Store& s, platform::Prompt& ui, int cls, const std::string& section);

// Removes rows (store rows of the class, any order, repeats allowed) from
// every column and the counters; a polygon's draw-order entry goes when no
// polygon of its type is left. Returns the type texts removed, in row order.
std::vector<std::string> remove_elements(model::Store& s, int cls, std::vector<int32_t> rows);

// The type text of a row for messages and the log ("0x02e00").
std::string row_type_text(const model::Store& s, int cls, int32_t row);

}  // namespace korvex::workbench
