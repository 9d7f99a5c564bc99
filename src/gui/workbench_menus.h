// The Draworder and Fonts menus, the draw-order view's context menu and the
// Mkgmap Code entry: each runs a flow of the Qt-free logic on the window's
// store and selection and then lets the window refresh.
#pragma once

#include <QObject>
#include <functional>

class QDialog;
class QMenu;
class QMenuBar;
class QAction;

namespace korvex::gui {

class MainWindow;

class WorkbenchMenus : public QObject {
    Q_OBJECT
public:
    explicit WorkbenchMenus(MainWindow& w);

    QMenu* build_draworder_menu(QMenuBar* bar);
    QMenu* build_fonts_menu(QMenuBar* bar);
    // The context menu of the draw-order view for the cell under the mouse (-1 for none).
    void fill_layer_menu(QMenu& menu, int cell);
    // The grid's context menu entry Mkgmap Code, enabled in classes 0 to 2.
    void add_grid_entries(QMenu& menu);
    // The caption of the view switch: "Show Draworders" or "Show Polygons".
    void refresh_captions();
    QAction* show_draworders_action() const { return show_; }

    // Menu Draworder, by entry.
    void show_draworders();                 // 0, and Label3's right click
    void extra_draworders();                // 1
    void add_separate(int32_t edit_entry = -1);  // 2
    void set_level(int level);              // 3, and the view's menu
    void check_duplicates();                // 4
    void give_selected();                   // 6
    // The view's menu.
    void insert_lower_layer(int cell);
    void delete_entries();                  // mdred in the view
    // Menu Fonts.
    void font_dialog(int mode);
    void font_list();
    void add_string();
    // The grid's menu.
    void mkgmap_code();

    // How a dialog runs: modally by default; tests fill and close it instead.
    std::function<int(QDialog&)> exec_dialog;

private:
    void changed();

    MainWindow& w_;
    QAction* show_ = nullptr;
};

}  // namespace korvex::gui
