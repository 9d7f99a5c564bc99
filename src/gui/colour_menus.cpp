// The entries of the Tools, Colours and Canvas menus for transparency, day opacity and palettes.
#include <QMenu>

#include "gui/main_window.h"
#include "gui/tool_menus.h"

namespace korvex::gui {

void ToolMenus::add_colour_entries() {}

void ToolMenus::add_colour_grid_entries(QMenu& /*menu*/) {}

}  // namespace korvex::gui
