// The notes the code panel shows above a polygon's text: a new type number
// moves the polygon's draw-order entry with it, and levels are set from the
// Draworder menu. They are the panel's own and never reach the element.
#pragma once

#include <string>

namespace korvex::workbench {

// The panel text of an element: a polygon's text gets the notes behind its
// first line; other classes stay as they are.
std::string with_panel_notes(const std::string& code, int cls);

// The panel text without the notes, as it is applied.
std::string without_panel_notes(const std::string& panel);

}  // namespace korvex::workbench
