// Which type numbers each class may take.
#pragma once

#include <string>
#include <vector>

namespace korvex::typ {

// The refusal messages for a type text ("0x2b00", "2b00", "0x10f03", "0x2b")
// of a class (0 polygons, 1 lines, 2 points, 3 active lines), in the order
// they are shown; empty when the type is valid. With four or more digits the
// last two are the subtype. Extra points (class 4) are numbered by id, which
// only the store can check: always empty here.
std::vector<std::string> chktype(const std::string& type_text, int cls);

}  // namespace korvex::typ
