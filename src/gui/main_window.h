// The editor's main window: the header fields, the class buttons, the grid of
// icons, the code panel and the menus. The flows behind the commands live in
// the Qt-free session and browser; the window calls them and shows their state.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gui/language_menu.h"
#include "integration/messages.h"
#include "model/store.h"
#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/file_dialog.h"
#include "platform/launcher.h"
#include "platform/prompt.h"
#include "workbench/browser.h"
#include "workbench/element_ops.h"
#include "workbench/session.h"
#include "workbench/settings_file.h"

class QAction;
class QActionGroup;
class QCheckBox;
class QComboBox;
class QDialog;
class QLabel;
class QLineEdit;
class QMenu;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QSplitter;
class QToolButton;

namespace korvex::gui {

class CellDelegate;
class EditorWindow;
class DrawOrderView;
class ElementCommands;
class ErrorsWindow;
class GridModel;
class GridView;
class HistoryCommands;
class QtFileDialog;
class QtLauncher;
class QtClipboard;
class QtPrompt;
class PreviewDock;
class WorkbenchMenus;
class ToolMenus;

// What the window talks to outside itself. Anything left null is the
// desktop's own (message boxes, file dialogs, the association launcher, the
// clock, the process environment).
struct WindowServices {
    platform::Prompt* prompt = nullptr;
    platform::FileDialog* dialogs = nullptr;
    platform::Launcher* launcher = nullptr;
    const platform::Clock* clock = nullptr;
    const platform::Environment* env = nullptr;
    platform::Clipboard* clipboard = nullptr;
    // Where 6.dat lives without the data folder's marker; "" is the program's folder.
    std::string program_folder;
    // The New dialogs of the element operations.
    workbench::ElementDialogs* element_dialogs = nullptr;
};

class MainWindow : public QMainWindow, public workbench::SessionView {
    Q_OBJECT
public:
    explicit MainWindow(WindowServices services = {}, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Opens a file as the command line or a drop gives it (.typ, .txt, .prj),
    // after the dirty prompt. False when nothing was loaded.
    bool open_file(const std::string& path);
    // The first activation: the pending file, else the auto-load path.
    void first_activation();

    model::Store& store() { return s_; }
    workbench::Browser& browser() { return browser_; }
    workbench::Session& session() { return *session_; }
    workbench::AppSettings& settings() { return settings_; }
    platform::FileDialog& file_dialogs() { return *services_.dialogs; }
    platform::Launcher& launcher() { return *services_.launcher; }
    const platform::Clock& clock() const { return *services_.clock; }
    const platform::Environment& environment() const { return *services_.env; }
    // The Edit menu, the buttons under the grid and the element operations.
    ElementCommands& commands() { return *commands_; }
    GridView* grid() const { return grid_; }
    GridModel* grid_model() const { return model_; }
    CellDelegate* delegate() const { return delegate_; }
    QPlainTextEdit* code_panel() const { return panel_; }
    QPushButton* apply_button() const { return apply_; }
    QLabel* status_label() const { return status_; }
    QToolButton* report_label() const { return report_; }
    QProgressBar* progress_bar() const { return progress_; }
    ErrorsWindow* errors_window() const;
    QWidget* side_panel() const { return side_; }
    // The File menu's actions by their menu captions (English).
    QAction* action(const QString& name) const;
    const std::array<QAction*, workbench::k_recent_count>& recent_actions() const { return recent_; }
    QString class_button_text(int cls) const;
    platform::Prompt& prompt() { return *prompt_; }
    const integration::Messages& messages() const { return msgs_; }
    platform::Clipboard& clipboard();
    DrawOrderView* draworder_view() const { return layers_; }
    WorkbenchMenus* workbench_menus() const { return menus_; }
    ToolMenus* tool_menus() const { return tools_; }
    // Edit > Undo, Redo and History….
    HistoryCommands* history_commands() const { return history_; }
    // Menu and button captions a language file may replace.
    CaptionTable& captions() { return captions_; }
    // How File > Open TYP in Map… runs its choice of TYP: modally when empty;
    // tests fill and close it instead.
    std::function<int(QDialog&)> exec_map_dialog;

    // Window > Map Preview, made at its first use.
    PreviewDock* map_preview();

    // Switches the polygons between icons and the draw-order view.
    void set_draworder_view(bool on);
    // After a command changed the tables: caption and grid follow.
    void after_change();

    // The commands of the window, as the menus and buttons run them.
    void show_class(int cls);
    void set_icon_size(int size) override;
    void click_cell(int cell, bool ctrl, bool shift, bool right = false);
    // Text typed in the code panel and not applied may be dropped: asks
    // "Return to ICONS without saving changes?". False: keep it.
    bool leave_panel_text();
    void double_click_cell(int cell, bool ctrl, bool shift);
    // Opens the icon editor on store rows of the class in view (two or more
    // polygons or lines make a group edit). False when it cannot open.
    bool open_icon_editor(const std::vector<int32_t>& rows);
    // The editor on show, null when none.
    EditorWindow* icon_editor() const;
    void select_all();
    // Esc: no cell stays selected (the current one stays current).
    void clear_selection();
    void search();
    void apply_changes();
    // Makes a store row of the class in view the current element, shows it
    // and fills the code panel; -1 empties the panel.
    void show_row(int32_t row);

    // SessionView
    void rebuild_grid() override;
    void update_cell(int cls, int32_t row) override;
    void set_caption(const std::string& text) override;
    void fill_code_panel(const std::string& text) override;
    void menu_enable(bool on) override;
    void enable_open(bool on) override;
    void show_apply(bool visible) override;
    void paint_report(bool red) override;
    void focus_field(workbench::TopField f) override;
    void select_codepage(int index) override;
    void set_status(const std::string& text) override;
    void show_recent(const std::vector<workbench::RecentEntry>& entries) override;
    void busy(bool on) override;
    void set_page_size(int size) override;

signals:
    // The tables changed (a load, an apply, an operation, a tool): whatever
    // draws the project draws it again.
    void tables_changed();

protected:
    void closeEvent(QCloseEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void dragEnterEvent(QDragEnterEvent* e) override;
    void dropEvent(QDropEvent* e) override;

private:
    void build_widgets();
    void build_menus();
    void apply_captions();
    void refresh_geometry();
    void refresh_counters();
    void refresh_top_fields();
    void refresh_pages();
    void fill_panel_for_current();
    void show_context_menu(int cell, const QPoint& global);
    void editor_closed(int result);
    void show_errors();
    void toggle_code_panel();
    void codepage_chosen();
    void preferences();
    void settings_to_browser();
    int label_text_height() const;
    QString cap(const char* key, const char* english) const;

    WindowServices services_;
    model::Store s_;
    workbench::AppSettings settings_;
    integration::Messages msgs_;
    workbench::Browser browser_;
    std::string data_folder_;
    std::string settings_file_;
    bool reset_done_ = false;

    std::unique_ptr<QtPrompt> own_prompt_;
    std::unique_ptr<QtFileDialog> own_dialogs_;
    std::unique_ptr<QtLauncher> own_launcher_;
    std::unique_ptr<platform::SystemClock> own_clock_;
    std::unique_ptr<platform::SystemEnvironment> own_env_;
    std::unique_ptr<QtClipboard> own_clipboard_;
    platform::Prompt* prompt_ = nullptr;
    std::unique_ptr<workbench::Session> session_;
    std::unique_ptr<ElementCommands> commands_;

    // widgets
    QLineEdit* fid_ = nullptr;
    QLineEdit* pid_ = nullptr;
    QComboBox* codepage_ = nullptr;
    QComboBox* header_ = nullptr;
    std::array<QPushButton*, 5> class_buttons_{};
    QComboBox* pages_ = nullptr;
    GridView* grid_ = nullptr;
    DrawOrderView* layers_ = nullptr;
    GridModel* model_ = nullptr;
    CellDelegate* delegate_ = nullptr;
    QWidget* side_ = nullptr;
    QSplitter* splitter_ = nullptr;
    QPlainTextEdit* panel_ = nullptr;
    QPushButton* apply_ = nullptr;
    QLineEdit* search_box_ = nullptr;
    QPushButton* search_button_ = nullptr;
    QCheckBox* search_types_ = nullptr;
    QCheckBox* search_garmin_ = nullptr;
    QLabel* search_count_ = nullptr;
    QLabel* status_ = nullptr;
    QToolButton* report_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPointer<ErrorsWindow> errors_;
    QPointer<EditorWindow> icon_editor_;
    QByteArray editor_geometry_;  // the icon editor's place and size when last closed
    std::string custom_palette_;  // the last custom palette of the editor, for the session
    std::string pasted_file_;     // the last picture imported in the editor, for the session

    // menus
    std::vector<QMenu*> top_menus_;
    std::vector<QAction*> open_actions_;
    std::array<QAction*, workbench::k_recent_count> recent_{};
    QAction* clear_recent_ = nullptr;
    QAction* save_ = nullptr;
    QAction* toggle_panel_ = nullptr;
    QActionGroup* sizes_ = nullptr;
    std::vector<std::pair<QString, QAction*>> named_;
    CaptionTable captions_;
    LanguageMenu* languages_ = nullptr;
    WorkbenchMenus* menus_ = nullptr;
    ToolMenus* tools_ = nullptr;
    PreviewDock* preview_ = nullptr;
    HistoryCommands* history_ = nullptr;

    bool filling_ = false;   // the window itself is writing into the widgets
    bool activated_ = false;
    int busy_depth_ = 0;
};

}  // namespace korvex::gui
