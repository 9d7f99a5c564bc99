// The entries of the Tools, Colours and Canvas menus for borders, canvas, white space, label pixels and night points.
#include <QAction>
#include <QMenu>

#include "gui/batch_canvas_dialog.h"
#include "gui/main_window.h"
#include "gui/tool_menus.h"
#include "workbench/canvas_tools.h"
#include "workbench/label_pixel.h"
#include "workbench/night_points.h"

namespace korvex::gui {

namespace {

// The window's side of a batch tool: its selection box and limits.
workbench::BatchRequest batch_request(MainWindow& w) {
    workbench::BatchRequest r;
    r.max_size = workbench::max_size(w.settings());
    r.data_folder = w.session().data_folder();
    return r;
}

}  // namespace

void ToolMenus::add_canvas_entries() {
    // Each tool runs on the window's store and selection; a change ends with
    // dirty flag, caption and grid refreshed.
    // Each run is one step of the history over the points in view, named as its entry.
    auto run = [this](const char* name, auto tool) {
        return [this, name, tool] {
            MainWindow& w = w_;
            const int n = w.session().history().record(name, workbench::Scope::whole_class(w.browser().cls()), [&] {
                return tool(w.store(), w.prompt(), w.messages(), w.browser(), batch_request(w));
            });
            if (n > 0) changed();
        };
    };
    auto dialog = [this](char preset) {
        return [this, preset] {
            BatchCanvasDialog d(preset, &w_);
            if (exec_dialog(d) != QDialog::Accepted) return;
            MainWindow& w = w_;
            const char* name = preset == 'M' ? "Add Border" : "Add Canvas";
            const int n = w.session().history().record(name, workbench::Scope::whole_class(w.browser().cls()), [&] {
                return workbench::canvas(w.store(), w.prompt(), w.messages(), w.browser(), batch_request(w), d.choice(),
                                         d.amount());
            });
            if (n > 0) changed();
        };
    };
    auto entry = [this](QMenu* m, const char* text, const char* name, auto handler) {
        QAction* a = m->addAction(text);
        a->setObjectName(name);
        connect(a, &QAction::triggered, this, handler);
    };
    canvas_->addSeparator();
    entry(canvas_, "Add Border", "adborder", dialog('M'));
    entry(canvas_, "Add Canvas", "adcanvas", dialog('\0'));
    entry(canvas_, "Remove White Space", "remborder", run("Remove White Space", workbench::remborder));
    tools_->addSeparator();
    entry(tools_, "Add POI Label Pixel", "adpixel", run("Add POI Label Pixel", workbench::adpixel));
    entry(tools_, "Remove POI Label Pixel", "rempxl", run("Remove POI Label Pixel", workbench::rempxl));
    entry(tools_, "Add Night POIs", "add_nightpois", run("Add Night POIs", workbench::add_nightpois));
}

void ToolMenus::add_canvas_grid_entries(QMenu& menu) {
    // On points the tools are at hand where the selection is made: the
    // grid's entries run the menu bar's.
    if (!workbench::points_in_view(w_.browser())) return;
    // With nothing selected the cell under the mouse is the selection.
    auto same_as = [this](QMenu* into, QMenu* from, const char* text, const char* name) {
        QAction* original = from->findChild<QAction*>(name);
        if (!original) return;
        connect(into->addAction(text), &QAction::triggered, this, [this, original] {
            workbench::Browser& b = w_.browser();
            if (b.sel1().empty() && b.sel2().empty() && b.current_cell() >= 0) b.click(b.current_cell(), true, false);
            original->trigger();
        });
    };
    menu.addSeparator();
    QMenu* sub = menu.addMenu("Canvas");
    same_as(sub, canvas_, "Add Border", "adborder");
    same_as(sub, canvas_, "Add Canvas", "adcanvas");
    same_as(sub, canvas_, "Remove White Space", "remborder");
    same_as(&menu, tools_, "Add POI Label Pixel", "adpixel");
    same_as(&menu, tools_, "Remove POI Label Pixel", "rempxl");
    same_as(&menu, tools_, "Add Night POIs", "add_nightpois");
}

}  // namespace korvex::gui
