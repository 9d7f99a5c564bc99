#include "gui/main_window.h"
#include "gui/map_typ_dialog.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QThread>
#include <QTimer>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include "gui/cell_delegate.h"
#include "gui/editor_variants.h"
#include "gui/editor_window.h"
#include "editor/element_open.h"
#include "gui/draworder_view.h"
#include "gui/element_commands.h"
#include "gui/errors_window.h"
#include "gui/grid_model.h"
#include "gui/grid_view.h"
#include "gui/history_commands.h"
#include "gui/preferences_dialog.h"
#include "gui/preview_dock.h"
#include "gui/qt_clipboard.h"
#include "gui/qt_file_dialog.h"
#include "gui/qt_fonts.h"
#include "gui/qt_launcher.h"
#include "gui/qt_prompt.h"
#include "gui/source_tree.h"
#include "gui/tool_menus.h"
#include "gui/workbench_menus.h"
#include "integration/map_save_guard.h"
#include "text/text_writer.h"
#include "workbench/data_folder.h"
#include "workbench/step_names.h"
#include "workbench/panel_notes.h"
#include "workbench/type_key.h"

namespace korvex::gui {

namespace {

// Message numbers the window itself shows.
constexpr int m_show_code_panel = 155;
constexpr int m_return_to_icons = 273;
constexpr int m_hide_code_panel = 156;

const char* const k_class_keys[5] = {"btnpolygons", "btnpolylines", "btnpois", "btnactiver", ""};
const char* const k_class_names[5] = {"Polygons", "Lines", "Points", "Active Routing", "Extra Points"};
const char* const k_size_keys[6] = {"mvsmall", "msmall", "mmedium", "mlarge", "mxlarge", "mcustom"};
const char* const k_size_names[6] = {"Very Small", "Small", "Medium", "Large", "X Large", "Custom"};
const char* const k_header_entries[5] = {" 5B", " 6E", " 9C", " A4", " AE"};

// The settings keep colours with red in the low byte.
uint32_t settings_colour_to_rgb(double v) {
    const auto c = static_cast<uint32_t>(static_cast<int64_t>(v) & 0xFFFFFF);
    return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
}

// The leading number of a code-page entry ("1252 West European" is 1252); 0 when none.
int leading_number(const QString& text) {
    const QString t = text.trimmed();
    int n = 0;
    while (n < t.size() && t[n].isDigit()) ++n;
    return n == 0 ? 0 : t.left(n).toInt();
}

}  // namespace

MainWindow::MainWindow(WindowServices services, QWidget* parent)
    : QMainWindow(parent), services_(std::move(services)) {
    if (!services_.env) {
        own_env_ = std::make_unique<platform::SystemEnvironment>();
        services_.env = own_env_.get();
    }
    if (services_.program_folder.empty()) services_.program_folder = to_path(QApplication::applicationDirPath());
    const workbench::DataFolder d = workbench::prepare_data_folder(*services_.env, services_.program_folder);
    data_folder_ = d.path;
    settings_ = workbench::default_settings(data_folder_);
    settings_file_ = workbench::settings_path(data_folder_, services_.program_folder);
    const QtFontList fonts;
    workbench::loaddata(settings_file_, settings_, &fonts);
    if (!settings_.language_file.empty()) msgs_.apply_lang(settings_.language_file);
    workbench::settings_to_store(settings_, s_);
    s_.curclass = std::clamp(settings_.class_in_view, 0, 4);

    settings_to_browser();
    browser_.set_class(s_.curclass);

    if (services_.prompt) {
        prompt_ = services_.prompt;
    } else {
        own_prompt_ = std::make_unique<QtPrompt>(this);
        prompt_ = own_prompt_.get();
    }
    if (!services_.dialogs) {
        own_dialogs_ = std::make_unique<QtFileDialog>(this);
        services_.dialogs = own_dialogs_.get();
    }
    if (!services_.launcher) {
        own_launcher_ = std::make_unique<QtLauncher>();
        services_.launcher = own_launcher_.get();
    }
    if (!services_.clock) {
        own_clock_ = std::make_unique<platform::SystemClock>();
        services_.clock = own_clock_.get();
    }

    commands_ = std::make_unique<ElementCommands>(*this, services_.element_dialogs);
    build_widgets();
    build_menus();
    if (own_prompt_) {
        own_prompt_->set_progress_bar(progress_);
    }
    setAcceptDrops(true);
    resize(std::max<int64_t>(640, settings_.window_width / workbench::k_twips_per_pixel),
           std::max<int64_t>(480, settings_.window_height / workbench::k_twips_per_pixel));

    session_ = std::make_unique<workbench::Session>(s_, settings_, msgs_, *prompt_, *services_.dialogs,
                                                     *services_.launcher, *services_.clock, data_folder_, *this);
    commands_->ops().set_history(&session_->history());
    {
        // The theme table: installed beside the program, else the source tree's.
        std::vector<std::string> tables = {
            to_path(QApplication::applicationDirPath() + "/../share/korvex/themes/tdat")};
        tables.push_back(source_tree_data() + "/themes/tdat");
        session_->set_theme_tables(tables);
    }
    // A map program may hold the file a save goes over: warn, then wait for
    // it with the window inert.
    session_->set_save_guard([this](const std::string& path) {
        const auto sys = tools_->map_platform ? tools_->map_platform() : nullptr;
        if (!sys) return true;
        return integration::map_save_guard(*sys, *session_, *prompt_, path, [](int ms) {
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            QThread::msleep(static_cast<unsigned long>(ms));
        });
    });
    s_.curfile = "untitled.typ";
    browser_.chg_icn(settings_.icon_size, label_text_height());
    session_->start();
    history_->refresh();
    // The top fields make steps that need not touch the caption.
    for (QLineEdit* field : {fid_, pid_})
        connect(field, &QLineEdit::textChanged, history_, [this] { history_->refresh(); });
    connect(header_, &QComboBox::activated, history_, [this] { history_->refresh(); });
    connect(codepage_, &QComboBox::activated, history_, [this] { history_->refresh(); });
    refresh_geometry();
    rebuild_grid();
    apply_captions();
    grid_->setFocus(Qt::OtherFocusReason);
}

MainWindow::~MainWindow() = default;

void MainWindow::settings_to_browser() {
    browser_.opt.label_option = settings_.label_options;
    browser_.opt.show_font_colours = settings_.show_font_colors;
    browser_.opt.nolabel_grey = settings_.nolabel_grey;
    browser_.opt.show_not_in_style = settings_.show_not_in_style != 0;
    browser_.opt.edit_text_on_dblclick = settings_.dblclick_edit_text != 0;
    browser_.opt.extra_hex = settings_.extra_hex != 0;
    browser_.opt.extra_page_size = settings_.extra_page_size;
    browser_.opt.polygon_seed = settings_.polygon_seed;
    browser_.opt.line_seed = settings_.line_seed;
    browser_.opt.point_seed = settings_.point_seed;
    browser_.opt.draworder_view = settings_.draworder_view != 0;
    browser_.set_custom_size(settings_.custom_icon_size);
}

QString MainWindow::cap(const char* key, const char* english) const {
    const std::string c = msgs_.caption(key);
    return from_message(c.empty() ? std::string(english) : c);
}

int MainWindow::label_text_height() const {
    QFont f(QString::fromStdString(settings_.label_font), std::max(1, settings_.label_font_size));
    return QFontMetrics(f).height() * workbench::k_twips_per_pixel;
}

// ---- widgets ----------------------------------------------------------------

void MainWindow::build_widgets() {
    auto* central = new QWidget(this);
    auto* outer = new QVBoxLayout(central);
    outer->setContentsMargins(4, 4, 4, 2);

    // The header fields of the project.
    auto* top = new QHBoxLayout;
    fid_ = new QLineEdit(central);
    fid_->setObjectName("fid");
    fid_->setMinimumWidth(64);
    fid_->setMaximumWidth(90);
    pid_ = new QLineEdit(central);
    pid_->setObjectName("pid");
    pid_->setMinimumWidth(48);
    pid_->setMaximumWidth(70);
    pid_->setToolTip("Product code");
    codepage_ = new QComboBox(central);
    codepage_->setObjectName("codepage");
    codepage_->setEditable(true);
    for (const auto& e : workbench::codepage_entries()) codepage_->addItem(QString::fromStdString(e));
    header_ = new QComboBox(central);
    header_->setObjectName("header");
    for (const char* h : k_header_entries) header_->addItem(h);
    top->addWidget(new QLabel("FID", central));
    top->addWidget(fid_);
    top->addWidget(new QLabel("PID", central));
    top->addWidget(pid_);
    top->addWidget(new QLabel("Codepage", central));
    top->addWidget(codepage_);
    top->addWidget(new QLabel("Header", central));
    top->addWidget(header_);
    top->addSpacing(12);

    auto* group = new QButtonGroup(this);
    group->setExclusive(true);
    for (int c = 0; c < 5; ++c) {
        auto* b = new QPushButton(central);
        b->setCheckable(true);
        b->setObjectName(QString("class%1").arg(c));
        set_caption_key(b, k_class_keys[c][0] ? std::string(k_class_keys[c]) : caption_key(k_class_names[c]));
        group->addButton(b, c);
        class_buttons_[c] = b;
        top->addWidget(b);
    }
    connect(group, &QButtonGroup::idClicked, this, [this](int c) {
        if (c != s_.curclass && !leave_panel_text()) {
            class_buttons_[std::clamp(s_.curclass, 0, 4)]->setChecked(true);
            return;
        }
        show_class(c);
    });
    // The pages of extra points sit above the grid: in the row of the class
    // buttons they would widen the window and push the code panel off screen.
    pages_ = new QComboBox(central);
    pages_->setObjectName("pages");
    pages_->setVisible(false);
    pages_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    pages_->setMinimumContentsLength(9);
    top->addStretch(1);
    outer->addLayout(top);

    connect(fid_, &QLineEdit::textChanged, this, [this](const QString& t) {
        if (!filling_) session_->set_fid(t.trimmed().toStdString());
    });
    connect(pid_, &QLineEdit::textChanged, this, [this](const QString& t) {
        if (!filling_) session_->set_pid(t.trimmed().toStdString());
    });
    connect(codepage_, &QComboBox::activated, this, [this](int) { codepage_chosen(); });
    connect(codepage_->lineEdit(), &QLineEdit::editingFinished, this, [this] { codepage_chosen(); });
    connect(header_, &QComboBox::activated, this, [this](int) {
        if (filling_) return;
        session_->set_header_length(header_->currentText().trimmed().toLower().toStdString());
    });
    connect(pages_, &QComboBox::activated, this, [this](int page) {
        browser_.set_extra_page(page);
        rebuild_grid();
    });

    // The grid and, beside it, the code panel with the search.
    splitter_ = new QSplitter(Qt::Horizontal, central);
    grid_ = new GridView(splitter_);
    grid_->setObjectName("grid");
    model_ = new GridModel(s_, browser_, this);
    delegate_ = new CellDelegate(s_, browser_, *model_, this);
    grid_->setModel(model_);
    grid_->setItemDelegate(delegate_);
    connect(grid_, &GridView::cell_pressed, this,
            [this](int cell, bool ctrl, bool shift, bool right) { click_cell(cell, ctrl, shift, right); });
    connect(grid_, &GridView::cell_double_clicked, this,
            [this](int cell, bool ctrl, bool shift) { double_click_cell(cell, ctrl, shift); });
    connect(grid_, &GridView::context_menu, this,
            [this](int cell, const QPoint& at) { show_context_menu(cell, at); });
    layers_ = new DrawOrderView(s_, browser_, *model_, *delegate_, splitter_);
    layers_->setVisible(false);
    connect(layers_, &DrawOrderView::cell_pressed, this,
            [this](int cell, bool ctrl, bool shift, bool right) { click_cell(cell, ctrl, shift, right); });
    connect(layers_, &DrawOrderView::cell_double_clicked, this,
            [this](int cell, bool ctrl, bool shift) { double_click_cell(cell, ctrl, shift); });
    connect(layers_, &DrawOrderView::context_menu, this,
            [this](int cell, const QPoint& at) { show_context_menu(cell, at); });
    connect(layers_, &DrawOrderView::columns_changed, this, [this](int) {
        if (browser_.layer_view() && !session_->loading()) rebuild_grid();
    });
    // Right-clicking the Polygons button switches between icons and draw orders.
    class_buttons_[model::k_polygons]->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(class_buttons_[model::k_polygons], &QWidget::customContextMenuRequested, this, [this] {
        if (!session_->loading()) menus_->show_draworders();
    });

    // The buttons of the element operations under the grid.
    auto* grid_box = new QWidget(splitter_);
    auto* grid_lay = new QVBoxLayout(grid_box);
    grid_lay->setContentsMargins(0, 0, 0, 0);
    grid_lay->setSpacing(0);
    grid_lay->addWidget(pages_, 0, Qt::AlignLeft);
    grid_lay->addWidget(grid_, 1);
    grid_lay->addWidget(layers_, 1);
    grid_lay->addWidget(commands_->build_buttons(grid_box));

    side_ = new QWidget(splitter_);
    auto* side = new QVBoxLayout(side_);
    side->setContentsMargins(0, 0, 0, 0);
    auto* search_row = new QHBoxLayout;
    search_box_ = new QLineEdit(side_);
    search_box_->setObjectName("search");
    search_button_ = new QPushButton(side_);
    search_button_->setObjectName("searchButton");
    set_caption_key(search_button_, "btnsearch");
    search_count_ = new QLabel(side_);
    search_row->addWidget(search_box_, 1);
    search_row->addWidget(search_button_);
    search_row->addWidget(search_count_);
    side->addLayout(search_row);
    search_types_ = new QCheckBox("Check box to search types", side_);
    search_garmin_ = new QCheckBox("Search Garmin Default TYPES ONLY ", side_);
    side->addWidget(search_types_);
    side->addWidget(search_garmin_);
    connect(search_button_, &QPushButton::clicked, this, [this] { search(); });
    connect(search_box_, &QLineEdit::returnPressed, this, [this] { search(); });

    panel_ = new QPlainTextEdit(side_);
    panel_->setObjectName("codePanel");
    panel_->setLineWrapMode(QPlainTextEdit::NoWrap);
    QFont code_font(QString::fromStdString(settings_.editor_text_font), settings_.editor_text_size);
    code_font.setStyleHint(QFont::Monospace);
    panel_->setFont(code_font);
    side->addWidget(panel_, 1);
    apply_ = new QPushButton(side_);
    apply_->setObjectName("applyChanges");
    set_caption_key(apply_, "btnapplyX");
    apply_->setVisible(false);
    side->addWidget(apply_);
    connect(panel_, &QPlainTextEdit::textChanged, this, [this] {
        if (!filling_ && !session_->text_pending()) session_->set_text_pending(true);
    });
    connect(apply_, &QPushButton::clicked, this, [this] { apply_changes(); });

    splitter_->addWidget(grid_box);
    splitter_->addWidget(side_);
    splitter_->setStretchFactor(0, 3);
    splitter_->setStretchFactor(1, 2);
    outer->addWidget(splitter_, 1);
    setCentralWidget(central);

    status_ = new QLabel(this);
    status_->setObjectName("status");
    report_ = new QToolButton(this);
    report_->setObjectName("report");
    report_->setAutoRaise(true);
    report_->setToolTip("Errors");
    no_caption(report_);
    connect(report_, &QToolButton::clicked, this, [this] { show_errors(); });
    progress_ = new QProgressBar(this);
    progress_->setMaximumWidth(200);
    progress_->setTextVisible(false);
    progress_->setRange(0, 100);
    progress_->setValue(0);
    // The bar shows only while something reports progress.
    progress_->setVisible(false);
    connect(progress_, &QProgressBar::valueChanged, this, [this](int v) { progress_->setVisible(v > 0); });
    statusBar()->addWidget(status_);
    statusBar()->addWidget(report_);
    statusBar()->addPermanentWidget(progress_);
}

void MainWindow::build_menus() {
    auto menu = [this](const char* key, const char* english) {
        QMenu* m = menuBar()->addMenu(english);
        captions_.add(m, key, english);
        return m;
    };
    // key "" : a caption no language file replaces.
    auto add = [this](QMenu* m, const char* key, const QString& english, auto fn) {
        QAction* a = m->addAction(english);
        connect(a, &QAction::triggered, this, fn);
        named_.emplace_back(english, a);
        if (*key) captions_.add(a, key, english);
        return a;
    };
    QMenu* file = menu("mfile", "File");
    add(file, "mnewtyp", "New", [this] { session_->file_new(); });
    open_actions_.push_back(add(file, "mopentyp", "Open TYP", [this] { session_->open_typ(); }));
    open_actions_.push_back(add(file, "mopentxt", "Open TXT/KMTF", [this] { session_->open_txt(); }));
    open_actions_.push_back(add(file, "mopenutf8txt", "Open UTF-8 TXT", [this] { session_->open_utf8_txt(); }));
    open_actions_.push_back(
        add(file, "mopenmap", "Open TYP in Map…", [this] { open_typ_in_map(*this, exec_map_dialog); }));
    QMenu* recent = file->addMenu("Open Recent");
    captions_.add(recent, "mrecent", "Open Recent");
    for (int i = 0; i < workbench::k_recent_count; ++i) {
        recent_[i] = recent->addAction(QString());
        recent_[i]->setVisible(false);
        no_caption(recent_[i]);
        connect(recent_[i], &QAction::triggered, this, [this, i] { session_->open_recent(i); });
    }
    recent->addSeparator();
    clear_recent_ = add(recent, "mclr", "Clear Recent", [this] { session_->clear_recent(); });
    open_actions_.push_back(recent->menuAction());
    file->addSeparator();
    // Ctrl+S is the entry's own key, so the menu shows it and it works only
    // while the entry is enabled; a load in progress ignores it.
    save_ = add(file, "msave", "Save", [this] {
        if (session_->loading()) return;
        session_->save_in_place();
        progress_->setValue(0);
    });
    save_->setShortcut(QKeySequence::Save);
    // A save reports its progress without a busy phase: the bar empties when it ends.
    auto save_entry = [this](int entry) {
        return [this, entry] {
            session_->save(entry);
            progress_->setValue(0);
        };
    };
    add(file, "msaveas", "Save TYP As", save_entry(workbench::k_save_as));
    add(file, "msavecopy", "Save a Copy As", save_entry(workbench::k_save_copy));
    add(file, "msaveastxt", "Save as Text", save_entry(workbench::k_save_text));
    add(file, "msaveasutf8txt", "Save as Text (Utf8)", save_entry(workbench::k_save_text_utf8));
    file->addSeparator();
    commands_->add_import_entry(file);
    add(file, "", "Open Preview Scene…", [this] { map_preview()->choose_scene_file(); });
    file->addSeparator();
    add(file, "mexit", "Exit", [this] { close(); });

    QMenu* edit = commands_->build_edit_menu(menuBar());
    history_ = new HistoryCommands(*this);
    history_->add_entries(edit);

    QMenu* icons = menu("micons", "Icons");
    sizes_ = new QActionGroup(this);
    for (int i = 0; i < 6; ++i) {
        QAction* a = add(icons, k_size_keys[i], k_size_names[i], [this, i] { set_icon_size(i); });
        a->setCheckable(true);
        a->setData(i);
        sizes_->addAction(a);
    }
    icons->addSeparator();
    QAction* edit_icon = add(icons, "", "Edit Icon", [this] {
        if (browser_.current_row() >= 0) open_icon_editor(browser_.selected_rows());
    });
    edit_icon->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));

    QMenu* settings = menu("msettings", "Settings");
    add(settings, "mpreferences", "Preferences", [this] { preferences(); });
    add(settings, "mreset", "Reset All Values",
        [this] { workbench::mreset(settings_file_, reset_done_, msgs_, *prompt_); });

    QMenu* language = menu("mlanguages", "Language");
    // The user's languages, then the installed ones, or those of the source
    // tree for a program run from its build folder.
    const QString installed = QApplication::applicationDirPath() + "/../share/korvex/languages";
    std::vector<std::string> folders = {workbench::under(data_folder_, "languages"), to_path(installed)};
    if (!QFileInfo::exists(installed)) folders.back() = source_tree_data() + "/languages";
    languages_ = new LanguageMenu(language, msgs_, folders, [this] { apply_captions(); }, this);
    connect(languages_, &LanguageMenu::language_changed, this,
            [this](const QString& lanfile) { settings_.language_file = to_path(lanfile); });
    languages_->rebuild();

    QMenu* window = menu("mwindow", "Window");
    toggle_panel_ = add(window, "", "Hide Code Panel", [this] { toggle_code_panel(); });
    set_caption_key(toggle_panel_, "");  // worded by messages 155 and 156
    add(window, "", "Errors", [this] { show_errors(); });
    add(window, "", "Map Preview", [this] { map_preview()->open(); });

    QMenu* logs = menu("mlogs", "Logs");
    add(logs, "mreadlogs", "Read Logs", [this] { session_->open_log(); });
    add(logs, "mclearlogs", "Clear Main Log", [this] { session_->clear_main_log(); });

    menus_ = new WorkbenchMenus(*this);
    QMenu* draworder = menus_->build_draworder_menu(menuBar());
    QMenu* fonts = menus_->build_fonts_menu(menuBar());
    tools_ = new ToolMenus(*this);
    tools_->build(menuBar());

    top_menus_ = {file, edit,  icons, settings, language, window, logs, draworder, fonts,
                  tools_->tools(), tools_->colours(), tools_->canvas()};

    auto* ctrl_a = new QShortcut(QKeySequence::SelectAll, grid_);
    ctrl_a->setContext(Qt::WidgetWithChildrenShortcut);
    connect(ctrl_a, &QShortcut::activated, this, [this] { select_all(); });
    auto* layers_all = new QShortcut(QKeySequence::SelectAll, layers_);
    layers_all->setContext(Qt::WidgetWithChildrenShortcut);
    connect(layers_all, &QShortcut::activated, this, [this] { select_all(); });
    // Esc ends a Ctrl/Shift selection, as the selection hints say.
    for (QWidget* view : {static_cast<QWidget*>(grid_), static_cast<QWidget*>(layers_)}) {
        commands_->add_view_keys(view);
        auto* esc = new QShortcut(QKeySequence(Qt::Key_Escape), view);
        esc->setContext(Qt::WidgetWithChildrenShortcut);
        connect(esc, &QShortcut::activated, this, [this] { clear_selection(); });
    }
    // Delete is the Edit menu's: in the draw-order view it removes entries.
    auto* ctrl_b = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_B), this);
    connect(ctrl_b, &QShortcut::activated, this, [this] {
        settings_.background = workbench::k_white;
        model_->set_background(0xFFFFFF);
        grid_->viewport()->update();
    });
}

void MainWindow::apply_captions() {
    captions_.apply(msgs_);
    translate_tree(this, msgs_);
    if (errors_) errors_->close_button()->setText(cap("close", "Close"));
    search_button_->setText(cap("btnsearch", "Search"));
    apply_->setText(cap("btnapplyX", "Apply Changes"));
    toggle_panel_->setText(from_message(msgs_.get_msg(side_->isHidden() ? m_show_code_panel : m_hide_code_panel)));
    if (preview_) preview_->recaption();
    refresh_counters();
    if (session_) history_->refresh();
}

QAction* MainWindow::action(const QString& name) const {
    for (const auto& [n, a] : named_)
        if (n == name) return a;
    return nullptr;
}

QString MainWindow::class_button_text(int cls) const { return class_buttons_[cls]->text(); }

// ---- geometry and refreshes ---------------------------------------------------

void MainWindow::refresh_geometry() {
    const workbench::Geometry g = browser_.geometry_px(1.0);
    const int width = g.S + 3;
    QFont f(QString::fromStdString(settings_.label_font), std::max(1, settings_.label_font_size));
    delegate_->set_label_font(f);
    delegate_->set_geometry(g.S, g.H, g.P, width);
    model_->set_icon_side(g.S, devicePixelRatioF());
    model_->set_background(settings_colour_to_rgb(settings_.background));
    grid_->set_cell_size(QSize(width, g.P), g.L, g.top);
    layers_->set_cell_size(QSize(width, g.P), g.L, g.top);
    QPalette pal = grid_->viewport()->palette();
    pal.setColor(QPalette::Base, QColor::fromRgb(model_->background()));
    grid_->viewport()->setPalette(pal);
    layers_->viewport()->setPalette(pal);
    for (QAction* a : sizes_->actions()) a->setChecked(a->data().toInt() == browser_.icon_index());
}

void MainWindow::refresh_counters() {
    const int32_t counts[5] = {s_.pg_n, s_.ln_n, s_.pt_n, s_.ln_nact, s_.pt_nx};
    for (int c = 0; c < 5; ++c) {
        const QString name = k_class_keys[c][0] ? cap(k_class_keys[c], k_class_names[c])
                                                : caption_for(k_class_names[c], msgs_);
        class_buttons_[c]->setText(QString("%1 (%2)").arg(name).arg(counts[c]));
        class_buttons_[c]->setChecked(c == s_.curclass);
    }
    // The count under the grid follows every change, not only loads.
    report_->setText(QString("%1 elements").arg(s_.pg_n + s_.ln_n + s_.pt_n + s_.ln_nact + s_.pt_nx));
}

void MainWindow::refresh_top_fields() {
    filling_ = true;
    fid_->setText(QString::fromStdString(s_.fid));
    pid_->setText(QString::fromStdString(s_.pid));
    const QString hdr = QString(" %1").arg(s_.hdr_len, 0, 16).toUpper();
    const int h = header_->findText(hdr);
    if (h >= 0) header_->setCurrentIndex(h);
    if (leading_number(codepage_->currentText()) != s_.codepage) {
        const int i = workbench::codepage_entry_index(s_.codepage);
        if (i >= 0)
            codepage_->setCurrentIndex(i);
        else
            codepage_->setEditText(QString::number(s_.codepage));
    }
    filling_ = false;
}

void MainWindow::refresh_pages() {
    const bool extra = s_.curclass == model::k_extra_points;
    pages_->setVisible(extra);
    if (!extra) return;
    filling_ = true;
    pages_->clear();
    for (const auto& p : browser_.extra_pages(s_)) pages_->addItem(QString::fromStdString(p));
    const int page = browser_.extra_page_size() > 0 ? browser_.extra_first() / browser_.extra_page_size() : 0;
    pages_->setCurrentIndex(page);
    filling_ = false;
}

// ---- SessionView ----------------------------------------------------------------

void MainWindow::rebuild_grid() {
    browser_.set_class(s_.curclass);
    s_.curclass = browser_.cls();
    if (browser_.layer_view()) browser_.set_layer_columns(layers_->columns());
    if (!browser_.build_grid(s_)) return;
    model_->set_codepage(s_.codepage);
    refresh_geometry();
    model_->reset();
    refresh_counters();
    refresh_top_fields();
    refresh_pages();
    // Extra points have no text form to apply.
    panel_->setReadOnly(s_.curclass == model::k_extra_points);
    const bool layers = browser_.layer_view();
    grid_->setVisible(!layers);
    layers_->setVisible(layers);
    layers_->refresh();
    if (menus_) menus_->refresh_captions();
    translate_tree(this, msgs_);
    if (browser_.current_cell() >= 0) {
        if (layers)
            layers_->show_cell(browser_.current_cell());
        else
            grid_->show_cell(browser_.current_cell());
    }
    commands_->refresh();
    if (session_) {
        session_->grid_built();
        history_->refresh_soon();
    }
    emit tables_changed();
}

void MainWindow::update_cell(int cls, int32_t row) {
    int32_t store_row = row - 1;
    if (cls == model::k_active_lines) store_row += s_.ln_n;
    if (cls == model::k_extra_points) store_row += s_.pt_n;
    if (cls == browser_.cls()) model_->update_row(store_row);
    if (session_) history_->refresh_soon();
    emit tables_changed();
}

void MainWindow::set_caption(const std::string& text) {
    setWindowTitle(from_path(text));
    // The caption follows each change of the project, and so does the Edit menu.
    if (session_) history_->refresh_soon();
}

void MainWindow::fill_code_panel(const std::string& text) {
    filling_ = true;
    panel_->setPlainText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    filling_ = false;
}

void MainWindow::menu_enable(bool on) {
    for (QMenu* m : top_menus_) m->menuAction()->setEnabled(on);
    search_button_->setEnabled(on);
}

void MainWindow::enable_open(bool on) {
    for (QAction* a : open_actions_) a->setEnabled(on);
}

void MainWindow::show_apply(bool visible) { apply_->setVisible(visible); }

void MainWindow::paint_report(bool red) {
    refresh_counters();
    report_->setStyleSheet(red ? "color: red;" : "color: black;");
    if (errors_ && errors_->isVisible()) errors_->show_report(s_.loadrep);
}

void MainWindow::focus_field(workbench::TopField f) {
    QWidget* w = f == workbench::TopField::fid ? static_cast<QWidget*>(fid_)
                 : f == workbench::TopField::pid ? static_cast<QWidget*>(pid_)
                                                 : static_cast<QWidget*>(codepage_);
    w->setFocus(Qt::OtherFocusReason);
}

void MainWindow::select_codepage(int index) {
    if (index < 0 || index >= codepage_->count()) return;
    filling_ = true;
    codepage_->setCurrentIndex(index);
    filling_ = false;
}

void MainWindow::set_status(const std::string& text) { status_->setText(from_message(text)); }

void MainWindow::show_recent(const std::vector<workbench::RecentEntry>& entries) {
    bool any = false;
    for (size_t i = 0; i < recent_.size(); ++i) {
        const workbench::RecentEntry e = i < entries.size() ? entries[i] : workbench::RecentEntry{};
        recent_[i]->setText(from_path(e.path));
        recent_[i]->setVisible(e.visible);
        recent_[i]->setEnabled(!e.greyed);
        any = any || e.visible;
    }
    clear_recent_->setEnabled(any);
}

void MainWindow::busy(bool on) {
    if (on) {
        if (busy_depth_++ == 0) QApplication::setOverrideCursor(Qt::WaitCursor);
        menu_enable(false);
    } else if (busy_depth_ > 0 && --busy_depth_ == 0) {
        QApplication::restoreOverrideCursor();
        // A failed load ends here too: the commands come back either way.
        menu_enable(true);
        progress_->setValue(0);
    }
}

void MainWindow::set_page_size(int size) {
    browser_.opt.extra_page_size = size;
    settings_.extra_page_size = size;
}

void MainWindow::set_icon_size(int size) {
    settings_.icon_size = std::clamp(size, 0, 5);
    browser_.chg_icn(settings_.icon_size, label_text_height());
    rebuild_grid();
}

// ---- commands -------------------------------------------------------------------

void MainWindow::show_class(int cls) {
    if (session_->loading()) return;
    s_.curclass = cls;
    settings_.class_in_view = cls;
    browser_.no_multi();
    browser_.set_class(cls);
    browser_.set_current(-1);
    s_.curel = 0;
    session_->set_text_pending(false);
    fill_code_panel("");
    rebuild_grid();
}

void MainWindow::fill_panel_for_current() {
    const int32_t row = browser_.current_row();
    const int cls = browser_.cls();
    if (row < 0) {
        s_.curel = 0;
        fill_code_panel("");
        return;
    }
    int32_t local = row;
    if (cls == model::k_active_lines) local -= s_.ln_n;
    if (cls == model::k_extra_points) local -= s_.pt_n;
    s_.curel = local + 1;
    const std::string code = text::create_code(s_, s_.curel, cls, false);
    fill_code_panel(workbench::with_panel_notes(text::convert(s_, code), cls));
    session_->set_text_pending(false);
}

void MainWindow::click_cell(int cell, bool ctrl, bool shift, bool right) {
    if (session_->loading()) return;
    if (!ctrl && !shift && cell != browser_.current_cell() && !leave_panel_text()) return;
    if (browser_.click(cell, ctrl, shift, right)) fill_panel_for_current();
    model_->marks_changed();
}

bool MainWindow::leave_panel_text() {
    if (!session_->text_pending()) return true;
    if (!prompt_->yes_no(msgs_.get_msg(m_return_to_icons))) return false;
    session_->set_text_pending(false);
    return true;
}

void MainWindow::double_click_cell(int cell, bool ctrl, bool shift) {
    // Its first click asked about the text not applied and was answered No:
    // the text and the element stay, without a second question.
    if (session_->text_pending() && cell != browser_.current_cell()) return;
    // A placeholder of the draw-order view opens its entry.
    if (browser_.layer_view() && !ctrl && !shift && cell >= 0 &&
        static_cast<size_t>(cell) < browser_.layers().cells.size() &&
        browser_.layers().cells[static_cast<size_t>(cell)].kind == workbench::LayerCellKind::placeholder) {
        menus_->add_separate(browser_.layers().cells[static_cast<size_t>(cell)].entry);
        return;
    }
    const workbench::DoubleClick d = browser_.double_click(s_, cell, ctrl, shift);
    switch (d.what) {
    case workbench::OpenWhat::refused:
        prompt_->message(d.before + msgs_.get_msg(d.msg));
        return;
    case workbench::OpenWhat::icon_editor:
        open_icon_editor({d.row});
        return;
    case workbench::OpenWhat::text_editor:
        if (d.row >= 0 && d.row != browser_.current_row()) browser_.set_current(browser_.cell_of_row(d.row));
        fill_panel_for_current();
        if (side_->isHidden()) toggle_code_panel();
        panel_->setFocus(Qt::OtherFocusReason);
        return;
    case workbench::OpenWhat::multi_edit:
        open_icon_editor(d.rows);
        return;
    case workbench::OpenWhat::nothing:
        return;
    }
}

EditorWindow* MainWindow::icon_editor() const { return icon_editor_.data(); }

ErrorsWindow* MainWindow::errors_window() const { return errors_.data(); }

bool MainWindow::open_icon_editor(const std::vector<int32_t>& rows) {
    if (icon_editor_ || rows.empty() || rows.front() < 0 || session_->loading()) return false;
    editor::OpenRequest r;
    r.curclass = browser_.cls();
    r.row = rows.front();
    if (rows.size() > 1) r.group = rows;
    r.transparentcolour = settings_.magenta_transparency ? editor::k_transparent_magenta : editor::k_transparent_grey;
    if (browser_.cell_of_row(r.row) >= 0 && r.row != browser_.current_row()) browser_.set_current(browser_.cell_of_row(r.row));
    fill_panel_for_current();
    EditorEnvironment env;
    env.palette_folder = workbench::under(data_folder_, "pal");
    env.custom_palette = &custom_palette_;
    env.default_colour1 = static_cast<uint32_t>(settings_.icon_colour1) & 0xFFFFFF;
    env.default_colour2 = static_cast<uint32_t>(settings_.icon_colour2) & 0xFFFFFF;
    env.dialogs = services_.dialogs;
    env.magenta = &settings_.magenta_transparency;
    env.clipboard = &clipboard();
    env.pastedfile = &pasted_file_;
    // The Apply is one step: the class's table, as a new type or level may move rows.
    const std::string step = rows.size() > 1
                                 ? workbench::step_name("Edit", static_cast<int64_t>(rows.size()), r.curclass)
                                 : workbench::step_name_of_code("Edit Icon", workbench::row_type_code(s_, r.curclass, r.row));
    env.as_step = [this, step, cls = r.curclass](const std::function<void()>& apply) {
        session_->history().record(step, workbench::Scope::whole_class(cls), apply);
    };
    icon_editor_ = new EditorWindow(s_, editor::open_element(s_, r), *prompt_, env, this);
    icon_editor_->setAttribute(Qt::WA_DeleteOnClose);
    translate_tree(icon_editor_, msgs_);
    // The editor opens where and as large as it was last closed.
    if (!editor_geometry_.isEmpty()) icon_editor_->restoreGeometry(editor_geometry_);
    connect(icon_editor_, &QDialog::finished, this, [this](int result) { editor_closed(result); });
    icon_editor_->open();
    return true;
}

void MainWindow::editor_closed(int result) {
    if (icon_editor_) {
        editor_geometry_ = icon_editor_->saveGeometry();
        // The extended points' checks go to the log; a point chosen from the
        // editor's list opens once this editor is gone.
        for (const std::string& line : icon_editor_->variants()->log_lines()) session_->log_line(model::k_extra_points, line);
        const int32_t next = icon_editor_->variants()->next_row();
        if (next >= 0)
            QTimer::singleShot(0, this, [this, next] {
                if (icon_editor_ && !icon_editor_->isVisible()) icon_editor_.clear();
                open_icon_editor({next});
            });
    }
    // The closed editor hands activation back: without it no window is
    // active and the keys of this one (Ctrl+S) reach nobody.
    activateWindow();
    if (!icon_editor_ || result != QDialog::Accepted) return;
    const editor::ApplyOutcome& out = icon_editor_->outcome();
    const int cls = icon_editor_->session().store_class();
    if (!out.note.empty()) {
        session_->set_dirty(true);
        session_->log_line(cls, out.note);
    }
    if (out.others_changed) session_->set_dirty(true);
    // A new type or level moves the element in the grid or the layers; a repaint is not enough.
    if (out.type_changed || out.drawdirty || out.others_changed || icon_editor_->session().is_group()) {
        rebuild_grid();
        const int cell = browser_.cell_of_row(out.row);
        if (cell >= 0) browser_.set_current(cell);
    } else {
        model_->update_row(icon_editor_->session().row);
        emit tables_changed();
    }
    fill_panel_for_current();
}

void MainWindow::select_all() {
    if (session_->loading()) return;
    browser_.select_all();
    model_->marks_changed();
}

void MainWindow::clear_selection() {
    if (session_->loading()) return;
    browser_.no_multi();
    model_->marks_changed();
}

void MainWindow::search() {
    const workbench::SearchResult r = browser_.search(s_, search_box_->text().toStdString(),
                                                      search_types_->isChecked(), search_garmin_->isChecked());
    if (r.msg != 0) prompt_->message(msgs_.get_msg(r.msg));
    if (!r.garmin_type.empty()) search_count_->setText(QString::fromStdString(r.garmin_type));
    if (!r.found) return;
    search_count_->setText(QString::fromStdString(r.count));
    grid_->show_cell(r.cell);
    fill_panel_for_current();
    model_->marks_changed();
}

void MainWindow::apply_changes() {
    const QByteArray text = panel_->toPlainText().toUtf8();
    // A new type number in the text moves the element to its place.
    const int cls = browser_.cls();
    const int32_t row = browser_.current_row();
    const int32_t old_code = row >= 0 ? workbench::row_type_code(s_, cls, row) : -1;
    // The apply and the move to the new type's place are one step.
    const auto step = session_->history().open("", workbench::Scope::row_of(cls, row));
    if (!session_->apply_code_panel(std::string(text.constData(), static_cast<size_t>(text.size())))) return;
    if (row >= 0 && workbench::row_type_code(s_, cls, row) != old_code) commands_->ops().renumbered(cls, row, old_code);
}

void MainWindow::show_row(int32_t row) {
    const int cell = row >= 0 ? browser_.cell_of_row(row) : -1;
    browser_.set_current(cell);
    if (cell >= 0) grid_->show_cell(cell);
    fill_panel_for_current();
    model_->marks_changed();
}

void MainWindow::codepage_chosen() {
    if (filling_) return;
    const int cp = leading_number(codepage_->currentText());
    if (cp == s_.codepage) return;
    if (cp <= 0 || !session_->change_codepage(cp)) {
        if (cp <= 0) prompt_->message(msgs_.get_msg(19));
        refresh_top_fields();
        filling_ = true;
        const int i = workbench::codepage_entry_index(s_.codepage);
        if (i >= 0) codepage_->setCurrentIndex(i);
        filling_ = false;
        return;
    }
    model_->set_codepage(s_.codepage);
    grid_->viewport()->update();
}

void MainWindow::show_context_menu(int cell, const QPoint& global) {
    QMenu menu(this);
    if (browser_.layer_view()) {
        menus_->fill_layer_menu(menu, cell);
        translate_tree(&menu, msgs_);
        menu.exec(global);
        return;
    }
    // The press of the right button has already selected the cell.
    QAction* edit = menu.addAction("Edit Text");
    connect(edit, &QAction::triggered, this, [this] {
        if (side_->isHidden()) toggle_code_panel();
        panel_->setFocus(Qt::OtherFocusReason);
    });
    QAction* icon = menu.addAction("Edit Icon");
    connect(icon, &QAction::triggered, this, [this] { open_icon_editor(browser_.selected_rows()); });
    QAction* all = menu.addAction("Select All");
    connect(all, &QAction::triggered, this, [this] { select_all(); });
    commands_->fill_context_menu(menu);
    menus_->add_grid_entries(menu);
    tools_->add_grid_entries(menu);
    translate_tree(&menu, msgs_);
    menu.exec(global);
}

platform::Clipboard& MainWindow::clipboard() {
    if (services_.clipboard) return *services_.clipboard;
    if (!own_clipboard_) own_clipboard_ = std::make_unique<QtClipboard>(s_.codepage);
    own_clipboard_->set_codepage(s_.codepage);
    return *own_clipboard_;
}

void MainWindow::set_draworder_view(bool on) {
    if (on == browser_.layer_view() && (!on || s_.curclass == model::k_polygons)) return;
    settings_.draworder_view = on ? 1 : 0;
    browser_.opt.draworder_view = on;
    // Leaving or entering the view, the cells mean other things.
    browser_.no_multi();
    browser_.set_current(-1);
    if (on && s_.curclass != model::k_polygons)
        show_class(model::k_polygons);
    else
        rebuild_grid();
    // The view opens at its first layer, not where it was last left.
    if (on) layers_->verticalScrollBar()->setValue(0);
}

PreviewDock* MainWindow::map_preview() {
    if (!preview_) preview_ = new PreviewDock(*this);
    return preview_;
}

void MainWindow::after_change() {
    session_->set_dirty(s_.dirty);
    // A change moves the layer cells: a selection of cells would name others.
    if (browser_.layer_view()) {
        browser_.no_multi();
        browser_.set_current(-1);
    }
    rebuild_grid();
    if (!session_->text_pending()) fill_panel_for_current();
}

void MainWindow::preferences() {
    const QtFontList fonts;
    PreferencesDialog dlg(settings_, fonts, *services_.dialogs, *prompt_, this);
    if (dlg.exec() != QDialog::Accepted) return;
    settings_ = dlg.settings();
    workbench::settings_to_store(settings_, s_);
    session_->history().set_limit(static_cast<size_t>(std::max(1, settings_.history_limit)));
    settings_to_browser();
    browser_.chg_icn(settings_.icon_size, label_text_height());
    rebuild_grid();
}

void MainWindow::show_errors() {
    if (!errors_) {
        errors_ = new ErrorsWindow(cap("close", "Close"), this);
        errors_->setWindowFlag(Qt::Window, true);
    }
    errors_->show_report(s_.loadrep);
    errors_->show();
    errors_->raise();
}

void MainWindow::toggle_code_panel() {
    side_->setVisible(side_->isHidden());
    toggle_panel_->setText(from_message(msgs_.get_msg(side_->isHidden() ? m_show_code_panel : m_hide_code_panel)));
}

// ---- files, activation, exit ------------------------------------------------------

bool MainWindow::open_file(const std::string& path) {
    if (session_->loading()) return false;
    if ((s_.dirty || session_->text_pending()) && session_->fnsave_yn() != platform::Answer::no) return false;
    s_.dirty = false;
    const QString ext = QFileInfo(QString::fromStdString(path)).suffix().toLower();
    if (ext == "img") return open_map_file(*this, path, exec_map_dialog);
    return session_->open_path(path);
}

void MainWindow::first_activation() {
    if (activated_) return;
    activated_ = true;
    session_->first_activation();
}

void MainWindow::showEvent(QShowEvent* e) {
    QMainWindow::showEvent(e);
    refresh_geometry();
}

void MainWindow::closeEvent(QCloseEvent* e) {
    if (session_->loading() || !session_->close_request()) {
        e->ignore();
        return;
    }
    settings_.window_width = static_cast<int64_t>(width()) * workbench::k_twips_per_pixel;
    settings_.window_height = static_cast<int64_t>(height()) * workbench::k_twips_per_pixel;
    settings_.class_in_view = s_.curclass;
    workbench::savedata(settings_file_, settings_, reset_done_, msgs_, *prompt_);
    browser_.no_multi();
    e->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* e) {
    if (e->mimeData()->hasUrls() && !e->mimeData()->urls().isEmpty() && e->mimeData()->urls().first().isLocalFile())
        e->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* e) {
    const QList<QUrl> urls = e->mimeData()->urls();
    if (urls.isEmpty() || !urls.first().isLocalFile()) return;
    e->acceptProposedAction();
    const std::string path = to_path(urls.first().toLocalFile());
    // Open after the drop has finished, so the source is not kept waiting by
    // a question or a long load.
    QMetaObject::invokeMethod(this, [this, path] { open_file(path); }, Qt::QueuedConnection);
}

}  // namespace korvex::gui
