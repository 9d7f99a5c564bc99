#include "gui/tool_menus.h"

#include <QDialog>
#include <QMenu>
#include <QMenuBar>

#include "gui/main_window.h"

namespace korvex::gui {

ToolMenus::ToolMenus(MainWindow& w) : QObject(&w), w_(w) {
    exec_dialog = [](QDialog& d) { return d.exec(); };
}

void ToolMenus::build(QMenuBar* bar) {
    tools_ = bar->addMenu("Tools");
    w_.captions().add(tools_, "mtools", "Tools");
    colours_ = bar->addMenu("Colours");
    w_.captions().add(colours_, "c_colours", "Colours");
    canvas_ = bar->addMenu("Canvas");
    w_.captions().add(canvas_, "c_canvas", "Canvas");
    add_check_entries();
    add_canvas_entries();
    add_colour_entries();
    add_family_entries();
}

void ToolMenus::add_grid_entries(QMenu& menu) {
    add_check_grid_entries(menu);
    add_canvas_grid_entries(menu);
    add_colour_grid_entries(menu);
}

void ToolMenus::changed() { w_.after_change(); }

}  // namespace korvex::gui
