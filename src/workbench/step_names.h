// The names of history steps as the Edit menu shows them after "Undo " and
// "Redo ": "Delete 3 Points", "Paste Line", "Apply 0x2a0e".
#pragma once

#include <cstdint>
#include <string>

namespace korvex::workbench {

// verb and the class's element count: "Delete Point", "Delete 3 Points".
std::string step_name(const std::string& verb, int64_t count, int cls);

// verb and a type code without leading zeros: "Apply 0x2a0e".
std::string step_name_of_code(const std::string& verb, int32_t code);

}  // namespace korvex::workbench
