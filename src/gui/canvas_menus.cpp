// The entries of the Tools, Colours and Canvas menus for borders, canvas, white space, label pixels and night points.
#include <QMenu>

#include "gui/main_window.h"
#include "gui/tool_menus.h"

namespace korvex::gui {

void ToolMenus::add_canvas_entries() {}

void ToolMenus::add_canvas_grid_entries(QMenu& /*menu*/) {}

}  // namespace korvex::gui
