// The Tools, Colours and Canvas menus: checks, repairs and the batch bitmap
// tools. Each group of entries is filled by its own file (check_menus.cpp,
// canvas_menus.cpp, colour_menus.cpp); every entry runs a flow of the
// Qt-free logic on the window's store and selection, then lets the window
// refresh.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "platform/map_platform.h"

class QDialog;
class QMenu;
class QMenuBar;

namespace korvex::gui {

class MainWindow;

class ToolMenus : public QObject {
    Q_OBJECT
public:
    explicit ToolMenus(MainWindow& w);

    // Adds the three menus to the bar, in the order Tools, Colours, Canvas.
    void build(QMenuBar* bar);
    QMenu* tools() const { return tools_; }
    QMenu* colours() const { return colours_; }
    QMenu* canvas() const { return canvas_; }
    // The grid's context menu: the entries of the three groups that act on
    // the cell under the mouse or the selection.
    void add_grid_entries(QMenu& menu);

    // How a dialog runs: modally by default; tests fill and close it instead.
    std::function<int(QDialog&)> exec_dialog;
    // Where the installed maps are found (the system's own by default).
    std::function<std::unique_ptr<platform::MapPlatform>()> map_platform;

private:
    // check_menus.cpp: consistency checks and repairs.
    void add_check_entries();
    void add_check_grid_entries(QMenu& menu);
    // canvas_menus.cpp: borders, canvas, white space, label pixels, night points.
    void add_canvas_entries();
    void add_canvas_grid_entries(QMenu& menu);
    // colour_menus.cpp: transparency, opacity, palettes.
    void add_colour_entries();
    void add_colour_grid_entries(QMenu& menu);
    // families_menus.cpp: installed map families.
    void add_family_entries();
    // The store changed: dirty, caption, grid.
    void changed();

    MainWindow& w_;
    QMenu* tools_ = nullptr;
    QMenu* colours_ = nullptr;
    QMenu* canvas_ = nullptr;
};

}  // namespace korvex::gui
