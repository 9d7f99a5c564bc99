// The data folder of the source tree the program was built from: where a
// program run from its build folder finds the files an install puts beside it.
#pragma once

#include <string>

namespace korvex::gui {

// The build writes its definition, so that no other file depends on where
// the checkout lies.
std::string source_tree_data();

}  // namespace korvex::gui
