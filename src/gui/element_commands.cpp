#include "gui/element_commands.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTextCursor>
#include <filesystem>

#include "gui/element_dialogs.h"
#include "gui/grid_model.h"
#include "gui/main_window.h"
#include "gui/workbench_menus.h"
#include "gui/qt_prompt.h"
#include "workbench/selection.h"
#include "workbench/type_key.h"

namespace korvex::gui {

namespace {

const char* const k_new_captions[5] = {"New Polygon", "New Line", "New Point", "New Active Line", "New Extra Point"};

// The window's clipboard, asked again at each use so that plain text
// follows the project's code page of the moment.
class WindowClipboard : public platform::Clipboard {
public:
    explicit WindowClipboard(MainWindow& w) : w_(w) {}
    std::string text() override { return w_.clipboard().text(); }
    std::string unicode_text() override { return w_.clipboard().unicode_text(); }
    std::optional<platform::ClipImage> image() override { return w_.clipboard().image(); }
    void set_text(const std::string& bytes) override { w_.clipboard().set_text(bytes); }
    void set_unicode_text(const std::string& utf8) override { w_.clipboard().set_unicode_text(utf8); }
    void set_image(const platform::ClipImage& picture) override { w_.clipboard().set_image(picture); }

private:
    MainWindow& w_;
};

}  // namespace

ElementCommands::ElementCommands(MainWindow& w, workbench::ElementDialogs* dialogs)
    : QObject(&w), w_(w), clipboard_(std::make_unique<WindowClipboard>(w)) {
    if (!dialogs) {
        own_dialogs_ = std::make_unique<QtElementDialogs>(FormChecks{w.store(), w.messages(), w.prompt()}, &w);
        dialogs = own_dialogs_.get();
    }
    ops_ = std::make_unique<workbench::ElementOps>(w.store(), w.prompt(), *clipboard_, w.messages(), w.settings(),
                                                   *dialogs, *this);
}

ElementCommands::~ElementCommands() = default;

QAction* ElementCommands::add(QMenu* menu, const QString& name, std::function<void()> fn) {
    QAction* a = menu->addAction(name);
    connect(a, &QAction::triggered, this, std::move(fn));
    actions_.emplace_back(name, a);
    return a;
}

QMenu* ElementCommands::build_edit_menu(QMenuBar* bar) {
    QMenu* edit = bar->addMenu("Edit");
    add(edit, "Cut", [this] { cut(); })->setShortcut(QKeySequence::Cut);
    add(edit, "Copy", [this] { copy(); })->setShortcut(QKeySequence::Copy);
    add(edit, "Paste", [this] { paste(0); })->setShortcut(QKeySequence::Paste);
    add(edit, "Paste UTF-8", [this] { paste(8); })->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V));
    add(edit, "Paste Plain Text", [this] { paste(3); });
    edit->addSeparator();
    add(edit, "Create Copy", [this] { create_copy(); })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
    add(edit, "Delete", [this] { remove(); })->setShortcut(QKeySequence::Delete);
    edit->addSeparator();
    QMenu* make = edit->addMenu("New");
    for (int c = 0; c < 5; ++c) add(make, k_new_captions[c], [this, c] { new_element(c); });
    add(edit, "New Element", [this] { new_element(w_.store().curclass); })->setShortcut(QKeySequence(Qt::Key_Insert));
    // Keys of the grid work wherever the focus is, unless a text box takes them first.
    for (auto& [name, a] : actions_) a->setShortcutContext(Qt::WindowShortcut);
    // A text box does not take Insert: there it is no new element (see add_view_keys).
    action("New Element")->setShortcutContext(Qt::WidgetShortcut);
    return edit;
}

void ElementCommands::add_view_keys(QWidget* view) {
    auto* insert = new QShortcut(QKeySequence(Qt::Key_Insert), view);
    insert->setContext(Qt::WidgetWithChildrenShortcut);
    connect(insert, &QShortcut::activated, this, [this] { new_element(w_.store().curclass); });
}

void ElementCommands::add_import_entry(QMenu* file) {
    add(file, "Import Style (KRVX)", [this] { import_style(); });
}

QWidget* ElementCommands::build_buttons(QWidget* parent) {
    auto* row = new QWidget(parent);
    auto* lay = new QHBoxLayout(row);
    lay->setContentsMargins(0, 2, 0, 0);
    auto button = [&](const QString& name, std::function<void()> fn) {
        auto* b = new QPushButton(name, row);
        b->setFocusPolicy(Qt::NoFocus);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, std::move(fn));
        lay->addWidget(b);
        buttons_.emplace_back(name, b);
    };
    for (int c = 0; c < 5; ++c) button(k_new_captions[c], [this, c] { new_element(c); });
    lay->addSpacing(12);
    button("Copy", [this] { copy(); });
    button("Paste", [this] { paste(1); });
    button("Create Copy", [this] { create_copy(); });
    button("Delete", [this] { remove(); });
    lay->addStretch(1);
    return row;
}

void ElementCommands::fill_context_menu(QMenu& menu) {
    const int cls = w_.store().curclass;
    const workbench::MenuFlags flags = w_.browser().menu_flags(w_.store());
    const int32_t row = w_.browser().current_row();
    menu.addSeparator();
    if (cls < model::k_extra_points) menu.addAction("Copy", this, [this] { copy(); });
    if (flags.paste) menu.addAction("Paste", this, [this] { paste(2); });
    if (cls == model::k_active_lines && row >= 0)
        menu.addAction("Paste to this Activity", this, [this, row] { ops_->paste_act(row); });
    if (flags.create_copy && row >= 0) {
        // "Create Copy Next Type From 0x…)": the words are the language's, the type stays.
        const QString english = from_message(flags.create_copy_caption);
        const QString words = QStringLiteral("Create Copy Next Type From");
        QAction* a = menu.addAction(english, this, [this] { create_copy(); });
        if (english.startsWith(words)) {
            set_caption_key(a, caption_key(words));
            a->setText(caption_for(words, w_.messages()) + english.mid(words.size()));
        }
        if (flags.subtypes) {
            QMenu* sub = menu.addMenu("Create Copy as Subtype");
            const int32_t code = workbench::row_type_code(w_.store(), cls, row);
            for (const int s : workbench::subtypes(w_.store(), code, cls))
                sub->addAction(QString("0x%1").arg(s, 2, 16, QChar('0')), this, [this, s] { create_copy(s); });
            sub->setEnabled(!sub->isEmpty());
        }
    }
    if (cls < model::k_extra_points) menu.addAction("Delete", this, [this] { remove(); });
}

void ElementCommands::refresh() {
    const int cls = w_.store().curclass;
    auto enable = [&](const QString& name, bool on) {
        if (QAction* a = action(name)) a->setEnabled(on);
        if (QPushButton* b = button(name)) b->setEnabled(on);
    };
    for (const char* name : {"Cut", "Copy", "Paste", "Paste UTF-8", "Paste Plain Text", "Delete"})
        enable(name, cls < model::k_extra_points);
    enable("Create Copy", cls < model::k_active_lines);
}

QAction* ElementCommands::action(const QString& name) const {
    for (const auto& [n, a] : actions_)
        if (n == name) return a;
    return nullptr;
}

QPushButton* ElementCommands::button(const QString& name) const {
    for (const auto& [n, b] : buttons_)
        if (n == name) return b;
    return nullptr;
}

std::vector<int32_t> ElementCommands::selection() const {
    const workbench::Browser& b = w_.browser();
    std::vector<int32_t> rows = b.selected_rows();
    if (b.sel1().empty() && !b.sel2().empty()) rows.clear();
    workbench::for_each_cell(b.sel2(), [&](int cell) {
        const int32_t r = b.row_of(cell);
        if (r >= 0 && std::find(rows.begin(), rows.end(), r) == rows.end()) rows.push_back(r);
    });
    if (rows.empty() && b.current_row() >= 0) rows.push_back(b.current_row());
    return rows;
}

void ElementCommands::copy() {
    // A selection in the code panel is the panel's own to copy.
    QPlainTextEdit* panel = w_.code_panel();
    if (panel->hasFocus()) {
        const QByteArray t = panel->textCursor().selectedText().replace(QChar(0x2029), '\n').toUtf8();
        ops_->mcop(std::string(t.constData(), static_cast<size_t>(t.size())));
        return;
    }
    ops_->mcopy(selection());
}

void ElementCommands::cut() {
    ops_->cut(selection());
}

void ElementCommands::paste(int entry) {
    switch (entry) {
    case 1: ops_->mpaste1(); break;
    case 2: ops_->mpaste2(); break;
    case 3: ops_->mpaste3(); break;
    case 8: ops_->mpasteu8(); break;
    default: ops_->mpaste(); break;
    }
}

// In the draw-order view Delete takes entries out of the draw order (mdred).
void ElementCommands::remove() {
    if (w_.browser().layer_view()) {
        if (!loading()) w_.workbench_menus()->delete_entries();
        return;
    }
    ops_->mdelete(selection());
}

void ElementCommands::create_copy(int subtype) {
    const int32_t row = w_.browser().current_row();
    if (row >= 0) ops_->mcreatecopy(row, subtype);
}

void ElementCommands::new_element(int cls) { ops_->new_element(cls); }

void ElementCommands::import_style() {
    const std::string last = w_.settings().last_text_path;
    const std::string start = last.empty() ? std::string() : std::filesystem::path(last).parent_path().string();
    // The import makes and marks elements of any class: one step for all of it.
    w_.session().history().record("Import Style", workbench::Scope::whole_project(),
                                  [&] { return ops_->import_krv(w_.file_dialogs(), start); });
}

bool ElementCommands::loading() const { return w_.session().loading(); }

bool ElementCommands::draworder_view() const { return w_.browser().layer_view(); }

void ElementCommands::show_class(int cls) {
    if (w_.store().curclass != cls) w_.show_class(cls);
}

void ElementCommands::tables_changed(int32_t row) {
    w_.session().set_dirty(true);
    w_.browser().no_multi();
    w_.rebuild_grid();
    w_.show_row(row);
}

void ElementCommands::log_line(int cls, const std::string& text) { w_.session().log_line(cls, text); }

}  // namespace korvex::gui
