#include "gui/workbench_menus.h"

#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QVBoxLayout>

#include "gui/draworder_dialogs.h"
#include "gui/font_dialog.h"
#include "gui/main_window.h"
#include "gui/mkgmap_dialog.h"
#include "gui/qt_prompt.h"
#include "integration/font_conversion.h"
#include "workbench/draw_order_model.h"
#include "workbench/draw_order_ops.h"

namespace korvex::gui {

namespace {

int max_level(const model::Store& s) {
    int top = 0;
    for (const auto& t : typ::parse_drwlist(s.drwlist)) top = std::max(top, t.level);
    return top;
}

// The levels the Set Draworders to Same Level menu offers.
void fill_levels(QMenu* menu, const model::Store& s, WorkbenchMenus* menus) {
    menu->clear();
    const int last = std::min(workbench::level_limit(s), max_level(s) + 1);
    for (int level = 1; level <= last; ++level)
        QObject::connect(menu->addAction(QString::number(level)), &QAction::triggered, menus,
                         [menus, level] { menus->set_level(level); });
}

}  // namespace

WorkbenchMenus::WorkbenchMenus(MainWindow& w) : QObject(&w), w_(w) {
    exec_dialog = [](QDialog& d) { return d.exec(); };
}

void WorkbenchMenus::changed() { w_.after_change(); }

QMenu* WorkbenchMenus::build_draworder_menu(QMenuBar* bar) {
    QMenu* m = bar->addMenu("Draworder");
    m->setObjectName("draworderMenu");
    CaptionTable& caps = w_.captions();
    show_ = m->addAction("Show Draworders");
    connect(show_, &QAction::triggered, this, [this] { show_draworders(); });
    QAction* extra = m->addAction("Show/Remove Extra Draworders");
    caps.add(extra, "mextradraworder", extra->text());
    connect(extra, &QAction::triggered, this, [this] { extra_draworders(); });
    QAction* add = m->addAction("Add Separate Draworder");
    caps.add(add, "madddraw", add->text());
    connect(add, &QAction::triggered, this, [this] { add_separate(); });
    QMenu* levels = m->addMenu("Set Draworders to Same Level");
    caps.add(levels, "msetdraworder", levels->title());
    connect(levels, &QMenu::aboutToShow, this, [this, levels] { fill_levels(levels, w_.store(), this); });
    QAction* dup = m->addAction("Check Duplicated Draworders");
    caps.add(dup, "mduplicates", dup->text());
    connect(dup, &QAction::triggered, this, [this] { check_duplicates(); });
    m->addSeparator();
    connect(m->addAction("Give Selected Polygons Draworder"), &QAction::triggered, this, [this] { give_selected(); });
    return m;
}

QMenu* WorkbenchMenus::build_fonts_menu(QMenuBar* bar) {
    QMenu* m = bar->addMenu("Fonts");
    m->setObjectName("fontsMenu");
    connect(m->addAction("Edit  Fonts of Selected Elements"), &QAction::triggered, this,
            [this] { font_dialog(integration::k_fonts_selection); });
    connect(m->addAction("Font Conversion"), &QAction::triggered, this,
            [this] { font_dialog(integration::k_fonts_classes); });
    connect(m->addAction("Font Colours"), &QAction::triggered, this,
            [this] { font_dialog(integration::k_fonts_colours); });
    connect(m->addAction("Create Font List"), &QAction::triggered, this, [this] { font_list(); });
    m->addSeparator();
    connect(m->addAction("Add String (= 0 x language)"), &QAction::triggered, this, [this] { add_string(); });
    return m;
}

void WorkbenchMenus::refresh_captions() {
    if (!show_) return;
    const QString english = w_.browser().layer_view() ? "Show Polygons" : "Show Draworders";
    set_caption_key(show_, caption_key(english));
    show_->setText(caption_for(english, w_.messages()));
}

void WorkbenchMenus::fill_layer_menu(QMenu& menu, int cell) {
    const workbench::Browser& b = w_.browser();
    const bool placeholder = cell >= 0 && static_cast<size_t>(cell) < b.layers().cells.size() &&
                             b.layers().cells[static_cast<size_t>(cell)].kind == workbench::LayerCellKind::placeholder;
    connect(menu.addAction("Insert Lower Layer"), &QAction::triggered, this, [this, cell] { insert_lower_layer(cell); });
    QMenu* levels = menu.addMenu("Set Draworders to Same Level");
    fill_levels(levels, w_.store(), this);
    menu.addSeparator();
    connect(menu.addAction("Add Separate Draworder"), &QAction::triggered, this, [this] { add_separate(); });
    QAction* edit = menu.addAction("Edit Draworder");
    edit->setEnabled(placeholder);
    connect(edit, &QAction::triggered, this,
            [this, cell] { add_separate(w_.browser().layers().cells[static_cast<size_t>(cell)].entry); });
    connect(menu.addAction("Delete"), &QAction::triggered, this, [this] { delete_entries(); });
    menu.addSeparator();
    connect(menu.addAction("Show Polygons"), &QAction::triggered, this, [this] { show_draworders(); });
}

void WorkbenchMenus::add_grid_entries(QMenu& menu) {
    QAction* a = menu.addAction("Mkgmap Code");
    a->setEnabled(w_.browser().menu_flags(w_.store()).mkgmap_code);
    connect(a, &QAction::triggered, this, [this] { mkgmap_code(); });
}

// ---- Draworder ------------------------------------------------------------

void WorkbenchMenus::show_draworders() {
    if (w_.browser().layer_view()) {
        w_.set_draworder_view(false);
        return;
    }
    if (!workbench::can_show_draworders(w_.store(), w_.prompt(), w_.messages())) return;
    w_.set_draworder_view(true);
}

void WorkbenchMenus::extra_draworders() {
    auto items = workbench::redund(w_.store(), w_.prompt(), w_.messages(), 0);
    if (items.empty()) return;
    RedundDialog d(0, items, &w_);
    if (exec_dialog(d) != QDialog::Accepted) return;
    if (workbench::remove_entries(w_.store(), w_.prompt(), w_.messages(), d.ticked(), &w_.session().history())) changed();
}

void WorkbenchMenus::delete_entries() {
    const auto targets = workbench::get_mdrw(w_.browser(), w_.store());
    auto items = workbench::redund(w_.store(), w_.prompt(), w_.messages(), 1, targets);
    if (items.empty()) return;
    RedundDialog d(1, items, &w_);
    if (exec_dialog(d) != QDialog::Accepted) return;
    if (workbench::remove_entries(w_.store(), w_.prompt(), w_.messages(), d.ticked(), &w_.session().history())) changed();
}

void WorkbenchMenus::add_separate(int32_t edit_entry) {
    model::Store& s = w_.store();
    bool done = false;
    EdpolDialog d(workbench::level_limit(s), [&](const workbench::EdpolRequest& r) {
        done = workbench::edpol(s, w_.prompt(), w_.messages(), r, &w_.session().history());
        return done;
    }, &w_);
    if (edit_entry >= 0) {
        const auto entries = workbench::view_entries(s);
        if (static_cast<size_t>(edit_entry) < entries.size())
            d.edit(entries[static_cast<size_t>(edit_entry)].code, entries[static_cast<size_t>(edit_entry)].level, edit_entry);
    }
    exec_dialog(d);
    if (done) changed();
}

void WorkbenchMenus::set_level(int level) {
    const auto targets = workbench::get_mdrw(w_.browser(), w_.store());
    if (workbench::mlev(w_.store(), w_.prompt(), w_.messages(), w_.browser().cls(), targets, level, &w_.session().history())) changed();
}

void WorkbenchMenus::insert_lower_layer(int cell) {
    const workbench::Browser& b = w_.browser();
    if (cell < 0 || static_cast<size_t>(cell) >= b.layers().cells.size()) return;
    const int layer = b.layers().cells[static_cast<size_t>(cell)].level;
    const auto targets = workbench::get_mdrw(b, w_.store());
    if (workbench::insert_lower_layer(w_.store(), w_.prompt(), w_.messages(), layer, targets, &w_.session().history())) changed();
}

void WorkbenchMenus::check_duplicates() {
    if (workbench::check_duplicates(w_.store(), w_.prompt(), &w_.session().history())) changed();
}

void WorkbenchMenus::give_selected() {
    const auto targets = workbench::get_mdrw(w_.browser(), w_.store());
    const int cls = w_.browser().cls();
    if (!workbench::drawsel_allowed(w_.prompt(), w_.messages(), cls, targets)) return;
    DrawselDialog d(workbench::level_limit(w_.store()), &w_);
    if (exec_dialog(d) != QDialog::Accepted) return;
    if (workbench::drawsel(w_.store(), w_.prompt(), w_.messages(), cls, targets, d.mode(), d.start(), &w_.session().history())) changed();
}

// ---- Fonts ------------------------------------------------------------------

void WorkbenchMenus::font_dialog(int mode) {
    model::Store& s = w_.store();
    workbench::AppSettings& st = w_.settings();
    const int cls = w_.browser().cls();
    const std::vector<int32_t> rows = w_.browser().selected_rows();
    integration::FontRequest start;
    start.mode = mode;
    start.day = integration::font_day_colour(st.font_day_colour);
    start.night = integration::font_night_colour(st.font_night_colour);
    const int table = cls == model::k_active_lines ? model::k_lines : cls;
    start.polygons = table == model::k_polygons;
    start.lines = table == model::k_lines;
    start.points = table == model::k_points;
    start.select_all = mode == integration::k_fonts_classes || (mode == integration::k_fonts_colours && rows.empty());
    bool ran = false;
    // Each OK is one step: the selection's class, or every class.
    const char* step = mode == integration::k_fonts_selection ? "Edit Fonts of Selected Elements"
                       : mode == integration::k_fonts_colours ? "Font Colours"
                                                              : "Font Conversion";
    const workbench::Scope scope = mode == integration::k_fonts_selection ? workbench::Scope::whole_class(cls)
                                                                          : workbench::Scope::whole_project();
    FontDialog d(mode, start, [&](const integration::FontRequest& r) {
        const bool now = w_.session().history().record(
            step, scope, [&] { return integration::fontconv(s, w_.prompt(), w_.messages(), r, cls, rows); });
        ran = ran || now;
        if (mode == integration::k_fonts_colours) {
            st.font_day_colour = r.day;
            st.font_night_colour = r.night;
        }
        return now;
    }, &w_);
    exec_dialog(d);
    // Fonts change label heights: the grid is built again.
    if (ran) changed();
}

void WorkbenchMenus::font_list() {
    const std::string list = integration::font_list(w_.store(), w_.browser().cls());
    if (list.empty()) return;
    QDialog d(&w_);
    d.setWindowTitle("Create Font List");
    auto* v = new QVBoxLayout(&d);
    auto* text = new QPlainTextEdit(&d);
    text->setObjectName("fontList");
    text->setReadOnly(true);
    text->setPlainText(from_message(list));
    v->addWidget(text);
    d.resize(360, 420);
    exec_dialog(d);
}

void WorkbenchMenus::add_string() {
    QPlainTextEdit* panel = w_.code_panel();
    const QString all = panel->toPlainText();
    QTextCursor cur = panel->textCursor();
    const auto bytes = [&](int pos) { return static_cast<size_t>(all.left(pos).toUtf8().size()); };
    const QByteArray utf8 = all.toUtf8();
    const integration::StringInsertion in =
        integration::mads(std::string(utf8.constData(), static_cast<size_t>(utf8.size())), bytes(cur.selectionStart()),
                          bytes(cur.selectionEnd()), w_.store().opt.langid);
    const QString text = QString::fromUtf8(in.text.data(), static_cast<qsizetype>(in.text.size()));
    // Written as an edit, not a new text, so that Ctrl+Z in the panel takes
    // it back like typing; Apply makes it a step of the project's history.
    cur.select(QTextCursor::Document);
    cur.insertText(text);
    cur = panel->textCursor();
    cur.setPosition(static_cast<int>(QString::fromUtf8(in.text.data(), static_cast<qsizetype>(in.caret)).size()));
    panel->setTextCursor(cur);
    panel->setFocus(Qt::OtherFocusReason);
}

// ---- Mkgmap Code -------------------------------------------------------------

void WorkbenchMenus::mkgmap_code() {
    const int cls = w_.browser().cls();
    if (cls > model::k_points) return;
    MkgmapDialog d(w_.store(), w_.prompt(), w_.clipboard(), cls, w_.browser().selected_rows(), &w_);
    exec_dialog(d);
}

}  // namespace korvex::gui
