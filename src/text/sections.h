// The section writers of the three tables, behind create_textfile and
// create_code. Each returns the whole section, "[end]" CR LF included, or ""
// for an element without text.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "text/writer_lines.h"

namespace korvex::text::detail {

// r is the table row (0-based, extra rows already offset).
std::string polygon_section(const Store& s, int32_t r, LineOptions& opt);
std::string line_section(const Store& s, int32_t r, LineOptions& opt);
std::string point_section(const Store& s, int32_t r, bool extended, LineOptions& opt);

}  // namespace korvex::text::detail
