#include "gui/history_commands.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QTimer>

#include "gui/grid_model.h"
#include "gui/history_dialog.h"
#include "gui/language_menu.h"
#include "gui/main_window.h"
#include "gui/qt_prompt.h"

namespace korvex::gui {

HistoryCommands::HistoryCommands(MainWindow& w) : QObject(&w), w_(w) {
    exec_dialog = [](QDialog& d) { return d.exec(); };
}

void HistoryCommands::add_entries(QMenu* edit) {
    QAction* first = edit->actions().isEmpty() ? nullptr : edit->actions().front();
    undo_ = new QAction("Undo", edit);
    redo_ = new QAction("Redo", edit);
    list_ = new QAction("History…", edit);
    undo_->setObjectName("undo");
    redo_->setObjectName("redo");
    list_->setObjectName("history");
    // The captions carry the step's name: worded here, from the language's "Undo" and "Redo".
    set_caption_key(undo_, caption_key("Undo"));
    set_caption_key(redo_, caption_key("Redo"));
    undo_->setShortcut(QKeySequence::Undo);
    redo_->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
    // Window-wide like the other Edit keys; a text box with the focus takes
    // Ctrl+Z and Ctrl+Y first (it claims them as its own edit keys), so
    // typing is undone in the box, and the project only outside it.
    undo_->setShortcutContext(Qt::WindowShortcut);
    redo_->setShortcutContext(Qt::WindowShortcut);
    edit->insertAction(first, undo_);
    edit->insertAction(first, redo_);
    edit->insertAction(first, list_);
    edit->insertSeparator(first);
    connect(undo_, &QAction::triggered, this, [this] { undo(); });
    connect(redo_, &QAction::triggered, this, [this] { redo(); });
    connect(list_, &QAction::triggered, this, [this] { show_history(); });
    connect(edit, &QMenu::aboutToShow, this, [this] { refresh(); });
    // Off until the session's history is there to name the steps (refresh).
    undo_->setEnabled(false);
    redo_->setEnabled(false);
    list_->setEnabled(false);
}

QString HistoryCommands::entry_text(const char* english, const std::string& step) const {
    const QString word = caption_for(english, w_.messages());
    return step.empty() ? word : word + ' ' + from_message(step);
}

void HistoryCommands::refresh() {
    if (!undo_) return;
    const workbench::History& h = w_.session().history();
    undo_->setText(entry_text("Undo", h.can_undo() ? h.undo_name() : std::string()));
    redo_->setText(entry_text("Redo", h.can_redo() ? h.redo_name() : std::string()));
    undo_->setEnabled(h.can_undo());
    redo_->setEnabled(h.can_redo());
    list_->setEnabled(h.size() > 0);
}

void HistoryCommands::refresh_soon() {
    if (refresh_pending_) return;
    refresh_pending_ = true;
    QTimer::singleShot(0, this, [this] {
        refresh_pending_ = false;
        refresh();
    });
}

bool HistoryCommands::may_move() const {
    if (w_.session().loading()) return false;
    return w_.leave_panel_text();
}

bool HistoryCommands::undo() {
    if (!w_.session().history().can_undo() || !may_move()) return false;
    follow(w_.session().undo());
    return true;
}

bool HistoryCommands::redo() {
    if (!w_.session().history().can_redo() || !may_move()) return false;
    follow(w_.session().redo());
    return true;
}

bool HistoryCommands::jump(size_t position) {
    const workbench::History& h = w_.session().history();
    if (position > h.size() || position == h.position() || !may_move()) return false;
    follow(w_.session().history_jump(position));
    return true;
}

void HistoryCommands::show_history() {
    const workbench::History& h = w_.session().history();
    HistoryDialog d(h.names(), h.position(), w_.messages(), &w_);
    if (exec_dialog(d) != QDialog::Accepted) return;
    jump(d.chosen());
}

void HistoryCommands::follow(const workbench::Follow& f) {
    if (f.done) {
        model::Store& s = w_.store();
        workbench::Browser& b = w_.browser();
        if (f.cls >= 0 && f.cls != s.curclass) {
            // The draw-order view shows polygons only.
            if (b.layer_view() && f.cls != model::k_polygons) w_.set_draworder_view(false);
            w_.show_class(f.cls);
        } else {
            b.no_multi();
            w_.rebuild_grid();
        }
        // Extra points show a page at a time: the one holding the step's first.
        if (s.curclass == model::k_extra_points && !f.rows.empty() && b.cell_of_row(f.rows.front()) < 0) {
            b.set_extra_page((f.rows.front() - s.pt_n) / b.extra_page_size());
            w_.rebuild_grid();
        }
        // The elements of the step are selected; the first is the current one.
        b.no_multi();
        if (f.rows.size() > 1)
            for (const int32_t row : f.rows) {
                const int cell = b.cell_of_row(row);
                if (cell >= 0) b.click(cell, true, false);
            }
        // A step of no element (a header field) keeps the current one.
        w_.show_row(f.rows.empty() ? b.current_row() : f.rows.front());
    }
    refresh();
}

}  // namespace korvex::gui
