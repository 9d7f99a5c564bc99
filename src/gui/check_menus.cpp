// The entries of the Tools, Colours and Canvas menus for consistency checks and repairs.
#include <QMenu>

#include "gui/main_window.h"
#include "gui/tool_menus.h"

namespace korvex::gui {

void ToolMenus::add_check_entries() {}

void ToolMenus::add_check_grid_entries(QMenu& /*menu*/) {}

}  // namespace korvex::gui
