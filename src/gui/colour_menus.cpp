// The entries of the Tools, Colours and Canvas menus for transparency, day opacity and palettes.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QMenu>
#include <QSpinBox>
#include <QVBoxLayout>

#include "gui/main_window.h"
#include "gui/palette_panel_dialog.h"
#include "gui/source_tree.h"
#include "gui/tool_menus.h"
#include "workbench/batch_frame.h"
#include "workbench/data_folder.h"
#include "workbench/day_opacity.h"
#include "workbench/make_transparent.h"
#include "workbench/palette_reduction.h"

namespace korvex::gui {

namespace {

// Where the bundled palettes are looked for: the user's pal/ first, then
// the installed ones, or those of the source tree.
std::vector<std::string> palette_folders(const std::string& data_folder) {
    const QString installed = QApplication::applicationDirPath() + "/../share/korvex/pal";
    std::vector<std::string> folders = {workbench::under(data_folder, "pal"), installed.toStdString()};
    if (!QFileInfo::exists(installed)) folders.back() = source_tree_data() + "/pal";
    return folders;
}

// The opacity Add POI Day Opacity gives, 0 to 15.
class OpacityValueDialog : public QDialog {
public:
    explicit OpacityValueDialog(QWidget* parent) : QDialog(parent) {
        setWindowTitle("Add POI Day Opacity");
        value = new QSpinBox;
        value->setObjectName("opacity");
        value->setRange(0, workbench::k_alpha_clear);
        value->setValue(8);
        auto* form = new QFormLayout;
        form->addRow("Opacity (0 - 15)", value);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto* box = new QVBoxLayout(this);
        box->addLayout(form);
        box->addWidget(buttons);
    }
    QSpinBox* value = nullptr;
};

// A colour tool as one step of the history over the class in view.
template <class F>
auto colour_step(MainWindow& w, const char* name, F f) {
    return w.session().history().record(name, workbench::Scope::whole_class(w.browser().cls()), f);
}

}  // namespace

void ToolMenus::add_colour_entries() {
    CaptionTable& caps = w_.captions();
    auto add = [&](const char* key, const char* text, auto run) {
        QAction* a = colours_->addAction(text);
        a->setObjectName(key);
        caps.add(a, key, a->text());
        connect(a, &QAction::triggered, this, run);
        return a;
    };
    colours_->addSeparator();
    add("c_make_transparent", "Make Transparent", [this] {
        if (colour_step(w_, "Make Transparent", [this] {
                return workbench::make_transp(w_.store(), w_.browser(), w_.prompt(), w_.messages(), false);
            }) > 0)
            changed();
    });
    add("c_replace_day_opacity", "Replace POI Day Opacity", [this] {
        if (colour_step(w_, "Replace POI Day Opacity", [this] {
                return workbench::conv_32(w_.store(), w_.browser(), w_.prompt(), w_.messages(), {false, 0, false});
            }) > 0)
            changed();
    });
    add("c_add_day_opacity", "Add POI Day Opacity", [this] {
        // The value is asked only where the tool can run.
        if (!workbench::points_in_view(w_.browser())) {
            w_.prompt().message("Select Points");
            return;
        }
        OpacityValueDialog d(&w_);
        if (exec_dialog(d) != QDialog::Accepted) return;
        const workbench::Conv32Request r{true, d.value->value(), false};
        if (colour_step(w_, "Add POI Day Opacity",
                        [&] { return workbench::conv_32(w_.store(), w_.browser(), w_.prompt(), w_.messages(), r); }) > 0)
            changed();
    });
    colours_->addSeparator();
    const struct {
        const char* key;
        const char* text;
        const char* step;
        int entry;
    } conversions[] = {
        {"c_convert_bw", "Convert to Black && White", "Convert to Black & White", workbench::k_pal_bw},
        {"c_convert_256", "Convert to 256 Colours", "Convert to 256 Colours", workbench::k_pal_256},
        {"c_convert_64", "Convert to 64 Colours", "Convert to 64 Colours", workbench::k_pal_64},
        {"c_convert_16", "Convert to 16 Colours", "Convert to 16 Colours", workbench::k_pal_16},
        {"c_convert_custom", "Convert to Custom Palette", "Convert to Custom Palette", workbench::k_pal_custom},
    };
    for (const auto& c : conversions) {
        const int entry = c.entry;
        const char* step = c.step;
        add(c.key, c.text, [this, entry, step] {
            workbench::EdpalRequest r;
            r.entry = entry;
            r.folders = palette_folders(w_.session().data_folder());
            r.start = r.folders.front();
            if (colour_step(w_, step, [&] {
                    return workbench::edpal(w_.store(), w_.browser(), w_.prompt(), w_.messages(), w_.file_dialogs(), r);
                }))
                changed();
        });
    }
    colours_->addSeparator();
    for (const bool from_typ : {true, false})
        add(from_typ ? "c_create_palette" : "c_create_2colour_palette",
            from_typ ? "Create Palette" : "Create 2 Colour Palette", [this, from_typ] {
                PalettePanelDialog d(w_.store(), w_.prompt(), w_.messages(), w_.session().data_folder(), from_typ, &w_);
                exec_dialog(d);
            });
}

void ToolMenus::add_colour_grid_entries(QMenu& menu) {
    // The tools that act on the selection, beside the cells they change;
    // with nothing selected the cell under the mouse is the selection.
    std::vector<const char*> keys = {"c_make_transparent"};
    if (workbench::points_in_view(w_.browser())) {
        keys.push_back("c_replace_day_opacity");
        keys.push_back("c_add_day_opacity");
    }
    menu.addSeparator();
    for (const char* key : keys) {
        QAction* original = colours_->findChild<QAction*>(key);
        if (!original) continue;
        // Worded as the menu bar's entry already is in the language on show.
        QAction* a = menu.addAction(original->text());
        set_caption_key(a, key);
        connect(a, &QAction::triggered, this, [this, original] {
            workbench::Browser& b = w_.browser();
            if (b.sel1().empty() && b.sel2().empty() && b.current_cell() >= 0) b.click(b.current_cell(), true, false);
            original->trigger();
        });
    }
}

}  // namespace korvex::gui
