// The entries of the Tools, Colours and Canvas menus for consistency checks and repairs.
#include <QAction>
#include <QApplication>
#include <QMenu>

#include "gui/main_window.h"
#include "gui/tool_menus.h"
#include "workbench/basecamp_check.h"
#include "workbench/codepage_tools.h"
#include "workbench/label_tools.h"
#include "workbench/line_check.h"
#include "workbench/side_tools.h"
#include "workbench/spelling.h"
#include "workbench/unused_colours.h"

namespace korvex::gui {

namespace {

// Adds an entry with its caption key; f runs when it is chosen.
template <class F>
QAction* check_entry(MainWindow& w, QMenu* menu, const std::string& key, const char* caption, ToolMenus* owner, F f) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(QString::fromStdString(key));
    w.captions().add(a, key, caption);
    QObject::connect(a, &QAction::triggered, owner, f);
    return a;
}

std::string program_folder() { return QApplication::applicationDirPath().toStdString(); }

// A repair as one step of the history, named after its entry.
template <class F>
bool repair_step(MainWindow& w, const char* name, workbench::Scope scope, F f) {
    return w.session().history().record(name, std::move(scope), f);
}

}  // namespace

void ToolMenus::add_check_entries() {
    MainWindow& w = w_;
    auto refresh_if = [this](bool changed) {
        if (changed) this->changed();
    };

    check_entry(w, colours_, "mfixunused", "Fix Unused Colours", this, [&w, refresh_if] {
        refresh_if(repair_step(w, "Fix Unused Colours", workbench::Scope::whole_project(), [&w] {
            return workbench::fix_unused_colours(w.store(), w.prompt(), w.session().data_folder(), w.browser().layer_view());
        }));
    });

    tools_->addSeparator();
    check_entry(w, tools_, "mlinecheck", "Check Lines for Non-Bitmap Conversion", this, [&w, refresh_if] {
        refresh_if(repair_step(w, "Convert Lines to Non-Bitmap", workbench::Scope::whole_class(model::k_lines),
                               [&w] { return workbench::check_lines_flow(w.store(), w.prompt(), w.session().data_folder()); }));
    });
    check_entry(w, tools_, "mcheck65001", "Check 65001 labels", this, [&w, refresh_if] {
        refresh_if(repair_step(w, "Check 65001 labels", workbench::Scope::whole_project(), [&w] {
            return workbench::check_labels_65001(w.store(), w.prompt(), w.launcher(), w.session().data_folder());
        }));
    });
    check_entry(w, tools_, "mcheck1252", "Check 1252 labels", this, [&w, refresh_if] {
        refresh_if(repair_step(w, "Check 1252 labels", workbench::Scope::whole_project(), [&w] {
            return workbench::check_labels_1252(w.store(), w.prompt(), w.launcher(), w.session().data_folder());
        }));
    });
    check_entry(w, tools_, "mremnotis", "Remove 'NOT in STYLE'", this,
                [&w, refresh_if] {
                    refresh_if(repair_step(w, "Remove 'NOT in STYLE'", workbench::Scope::whole_class(w.browser().cls()),
                                           [&w] { return workbench::remnotis(w.store(), w.prompt()) > 0; }));
                });
    check_entry(w, tools_, "mbasecamp", "Visible in Basecamp", this, [&w] {
        workbench::visible_in_basecamp(w.store(), w.prompt(), w.session().data_folder());
    });

    QMenu* spelling = tools_->addMenu("Check Spelling");
    spelling->setObjectName("mspelling");
    w.captions().add(spelling, "mspelling", "Check Spelling");
    const std::pair<const char*, const char*> dictionaries[] = {
        {"mspell_en", "English"}, {"mspell_de", "German"}, {"mspell_custom", "Custom Dictionary"}};
    for (int entry = 0; entry < 3; ++entry) {
        check_entry(w, spelling, dictionaries[entry].first, dictionaries[entry].second, this, [&w, entry] {
            workbench::spelling_flow(w.store(), w.prompt(), entry, w.session().data_folder(), program_folder(),
                                     w.settings().dictionary_path);
        });
    }

    tools_->addSeparator();
    check_entry(w, tools_, "mextralabels", "Extra POI Labels Data", this, [&w] {
        workbench::extra_poi_labels(w.store(), w.prompt(), w.session().data_folder());
    });
    check_entry(w, tools_, "msorttypes", "Sort TYPES into Garmin Search Categories", this, [&w, refresh_if] {
        refresh_if(repair_step(w, "Sort TYPES into Garmin Search Categories", workbench::Scope::whole_project(),
                               [&w] { return workbench::sort_search_categories(w.store(), w.prompt()); }));
    });
    check_entry(w, tools_, "mstyleeditor", "Load Style Editor", this, [&w] {
        workbench::load_style_editor(w.settings().style_editor_path, w.prompt(), w.file_dialogs(), w.launcher());
    });
}

void ToolMenus::add_check_grid_entries(QMenu& /*menu*/) {}

}  // namespace korvex::gui
