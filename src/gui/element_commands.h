// The element operations in the window: the Edit menu, the grid's context
// menu entries, the buttons under the grid and their keys. The operations
// themselves are workbench::ElementOps; this only forwards and refreshes.
#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <utility>
#include <vector>

#include "platform/clipboard.h"
#include "workbench/element_ops.h"

class QAction;
class QMenu;
class QMenuBar;
class QPushButton;
class QWidget;

namespace korvex::gui {

class MainWindow;
class QtElementDialogs;

class ElementCommands : public QObject, public workbench::OpsHost {
    Q_OBJECT
public:
    // The clipboard is the window's; dialogs null for the window's own.
    ElementCommands(MainWindow& w, workbench::ElementDialogs* dialogs);
    ~ElementCommands() override;

    workbench::ElementOps& ops() { return *ops_; }

    // The Edit menu, behind the File menu.
    QMenu* build_edit_menu(QMenuBar* bar);
    // The import entry of the File menu.
    void add_import_entry(QMenu* file);
    // Insert makes a new element while the focus is in a view of cells (view).
    void add_view_keys(QWidget* view);
    // The buttons under the grid.
    QWidget* build_buttons(QWidget* parent);
    // The entries of the grid's context menu for the cell just clicked.
    void fill_context_menu(QMenu& menu);
    // Which commands the class in view allows.
    void refresh();

    // An entry by its English caption ("Copy", "Paste UTF-8", "New Point").
    QAction* action(const QString& name) const;
    QPushButton* button(const QString& name) const;

    // The commands.
    void copy();
    void cut();
    void paste(int entry);  // 0 mpaste, 1 mpaste1, 2 mpaste2, 3 mpaste3, 8 mpasteu8
    void remove();
    void create_copy(int subtype = -1);
    void new_element(int cls);
    void import_style();

    // OpsHost
    bool loading() const override;
    bool draworder_view() const override;
    void show_class(int cls) override;
    void tables_changed(int32_t row) override;
    void log_line(int cls, const std::string& text) override;

private:
    // The rows of both selection lists in list order; the current one when
    // both are empty.
    std::vector<int32_t> selection() const;
    QAction* add(QMenu* menu, const QString& name, std::function<void()> fn);

    MainWindow& w_;
    std::unique_ptr<platform::Clipboard> clipboard_;
    std::unique_ptr<QtElementDialogs> own_dialogs_;
    std::unique_ptr<workbench::ElementOps> ops_;
    std::vector<std::pair<QString, QAction*>> actions_;
    std::vector<std::pair<QString, QPushButton*>> buttons_;
};

}  // namespace korvex::gui
