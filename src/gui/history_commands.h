// Undo, Redo and History… of the Edit menu: they run the session's history
// and make the window follow what a step concerned — its class in view, its
// elements selected, the current one in the code panel.
#pragma once

#include <QObject>
#include <QString>
#include <cstddef>
#include <functional>
#include <string>

#include "workbench/history.h"

class QAction;
class QDialog;
class QMenu;

namespace korvex::gui {

class MainWindow;

class HistoryCommands : public QObject {
    Q_OBJECT
public:
    explicit HistoryCommands(MainWindow& w);

    // Puts Undo, Redo and History… at the head of the Edit menu.
    void add_entries(QMenu* edit);
    // Names and enables the entries after the history moved.
    void refresh();
    // The same once the event loop runs again: a step closes only when its
    // operation returns, after the window has refreshed for the change.
    void refresh_soon();

    // False when nothing was undone (none left, text kept in the code panel).
    bool undo();
    bool redo();
    // Goes to the state after the first position steps (0: before all).
    bool jump(size_t position);
    // The list of steps; a double click or OK jumps to the chosen one.
    void show_history();

    QAction* undo_action() const { return undo_; }
    QAction* redo_action() const { return redo_; }
    QAction* history_action() const { return list_; }

    // How the list runs: modally by default; tests pick and close it instead.
    std::function<int(QDialog&)> exec_dialog;

private:
    // Text typed in the code panel and not applied is asked about first.
    bool may_move() const;
    void follow(const workbench::Follow& f);
    QString entry_text(const char* english, const std::string& step) const;

    MainWindow& w_;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QAction* list_ = nullptr;
    bool refresh_pending_ = false;
};

}  // namespace korvex::gui
