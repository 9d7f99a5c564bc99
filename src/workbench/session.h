// The application session: one open project, its identity, the dirty and
// text-pending flags, the recent list, the log, and the flows New, Open,
// Save, Save As, Save as Text and Exit. The window owns the widgets and only
// calls these; the session tells it what to show through SessionView, asks
// through Prompt and FileDialog, and never touches a widget itself.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/clock.h"
#include "platform/file_dialog.h"
#include "platform/file_system.h"
#include "platform/launcher.h"
#include "platform/prompt.h"
#include "workbench/history.h"
#include "workbench/log.h"
#include "workbench/recent.h"
#include "workbench/save_checks.h"
#include "workbench/settings_file.h"

namespace korvex::workbench {


// What the session asks of the window. Tests record the calls instead.
class SessionView {
public:
    virtual ~SessionView() = default;
    // Builds the grid of the class in view (s.curclass) from the store.
    virtual void rebuild_grid() = 0;
    // Repaints the cell of one element (row from 1 within its class).
    virtual void update_cell(int cls, int32_t row) = 0;
    virtual void set_caption(const std::string& text) = 0;
    // The code panel's text ("" empties it), already in the panel's UTF-8.
    virtual void fill_code_panel(const std::string& text) = 0;
    // The top-level menus and the search button, as one group.
    virtual void menu_enable(bool on) = 0;
    // The Open entries of the File menu (off while a load runs).
    virtual void enable_open(bool on) = 0;
    virtual void show_apply(bool visible) = 0;
    // The label of the report panel: red while loadrep is not empty.
    virtual void paint_report(bool red) = 0;
    virtual void focus_field(TopField f) = 0;
    // Selects entry index of codepage_entries() in the code-page list.
    virtual void select_codepage(int index) = 0;
    // The bar below the grid ("Text Codepage " + code page).
    virtual void set_status(const std::string& text) = 0;
    // Switches the icon size (0 very small ... 5 custom); this redraws.
    virtual void set_icon_size(int size) = 0;
    // The recent entries of the File menu (always twelve).
    virtual void show_recent(const std::vector<RecentEntry>& entries) = 0;
    virtual void busy(bool on) = 0;
    // Moves an unfinished edit of the draw-order box into the store.
    virtual void commit_draworder_edit() {}
    // Page size of the Extra Points list.
    virtual void set_page_size(int /*size*/) {}
};

// For tests: every call as one line ("grid", "cell 2 5", "caption ...").
class RecordingView : public SessionView {
public:
    void rebuild_grid() override { calls.push_back("grid"); }
    void update_cell(int cls, int32_t row) override {
        calls.push_back("cell " + std::to_string(cls) + " " + std::to_string(row));
    }
    void set_caption(const std::string& text) override {
        caption = text;
        calls.push_back("caption " + text);
    }
    void fill_code_panel(const std::string& text) override {
        panel = text;
        calls.push_back("panel");
    }
    void menu_enable(bool on) override { calls.push_back(on ? "menus on" : "menus off"); }
    void enable_open(bool on) override { calls.push_back(on ? "open on" : "open off"); }
    void show_apply(bool visible) override {
        apply_visible = visible;
        calls.push_back(visible ? "apply shown" : "apply hidden");
    }
    void paint_report(bool red) override {
        report_red = red;
        calls.push_back(red ? "report red" : "report black");
    }
    void focus_field(TopField f) override {
        calls.push_back(f == TopField::fid ? "focus fid" : f == TopField::pid ? "focus pid" : "focus codepage");
    }
    void select_codepage(int index) override { calls.push_back("codepage " + std::to_string(index)); }
    void set_status(const std::string& text) override { calls.push_back("status " + text); }
    void set_icon_size(int size) override {
        icon_size = size;
        calls.push_back("icon size " + std::to_string(size));
    }
    void show_recent(const std::vector<RecentEntry>& entries) override { recent = entries; }
    void busy(bool) override {}
    void set_page_size(int size) override { calls.push_back("page size " + std::to_string(size)); }

    std::vector<std::string> calls;
    std::string caption, panel;
    bool apply_visible = false;
    bool report_red = false;
    int icon_size = -1;
    std::vector<RecentEntry> recent;
};

// Where the project's TYP lives when it was opened out of another file (a
// map container): Save puts the encoded bytes back there. The container code
// lies above the workbench and implements it.
class TypHolder {
public:
    virtual ~TypHolder() = default;
    // What the caption names: ".../gmapsupp.img:0000XMAP.TYP".
    virtual std::string label() const = 0;
    // The TYP file Save As proposes: ".../0000XMAP.typ".
    virtual std::string typ_name() const = 0;
    // Writes typ in the place of the held TYP; it may first set the
    // holder's family id in typ when the user agrees. False when nothing was
    // written: error says why ("" when the user cancelled).
    virtual bool put(std::string& typ, std::string& error) = 0;
};

// The entries of the File menu's save flow, by their menu numbers.
enum SaveEntry : int {
    k_save = 9,
    k_save_as = 10,
    k_save_copy = 11,
    k_save_text = 13,
    k_save_text_utf8 = 14,
};

// The code-page list of the window, in its order.
const std::vector<std::string>& codepage_entries();
// The first entry that holds the code page's number; -1 when none does.
int codepage_entry_index(int codepage);

class Session {
public:
    // data_folder is D, already prepared (its sub-folders exist).
    Session(model::Store& s, AppSettings& settings, const integration::Messages& msgs, platform::Prompt& ui,
            platform::FileDialog& dialogs, platform::Launcher& launcher, const platform::Clock& clock,
            std::string data_folder, SessionView& view);

    // Start-up, after the settings were read: the defaults of the session,
    // the log's start line, the status line, the caption, the recent menu.
    void start();
    // The window's first activation: the pending file, else the auto-load
    // path, is opened by its extension. True when something was opened.
    bool first_activation();
    // Opens path by its extension (.typ, .txt, .prj): the command line, a
    // dropped file. False when nothing was loaded.
    bool open_path(const std::string& path);

    // File > New, after the dirty prompt. False when the user kept the project.
    bool file_new();
    // Resets the project and the window to empty (no prompt).
    void newproject();

    // Opens a TYP file as the project. False (loadfail -1) when the path does
    // not exist or a load is running; the caller then stops its flow.
    bool loadfile(const std::string& path);

    // Opens the TYP bytes that holder holds as the project: the caption
    // names the holder, Save writes back into it, Save As makes the project
    // a plain TYP file. The caller asked the dirty prompt (ready_to_open).
    bool open_held_typ(std::unique_ptr<TypHolder> holder, std::string bytes);
    const TypHolder* typ_holder() const { return holder_.get(); }
    // The dirty prompt and the load-options check before an open: false
    // when the open is not to go on.
    bool ready_to_open();

    // File menu: the open entries, Open Recent (index 0 to 11), Clear Recent.
    void open_typ();
    void open_txt();        // Open TXT/KMTF
    void open_utf8_txt();   // Open UTF-8 TXT
    void open_recent(int index);
    void clear_recent();
    // Moves or inserts path at the head of the recent list; refreshes the menu.
    void updatmff(const std::string& path);
    // The recent menu as it is to be shown.
    std::vector<RecentEntry> recent_menu() const;

    // The save flow of entries 9, 10, 11, 13 and 14. True when a file was written.
    bool save(int entry);
    // Ctrl+S: save in place (the window checks that Save is enabled).
    bool save_in_place();

    // The close request. True when the window may close (settings are then
    // the caller's to write).
    bool close_request();

    // "No data." when the project is empty; true then.
    bool nodat();
    // "Save changes before exiting?" with Yes, No, Cancel.
    platform::Answer fnsave_yn();
    // The load-options check; false cancels the load.
    bool chkldop();

    void set_dirty(bool dirty);
    void update_title(const std::string& path);
    // The caption: "Korvex " + version + " " + path, " [" + tag + "]" when a
    // map-name tag is set, "+" when dirty.
    std::string caption(const std::string& path) const;

    // The code panel was edited (true) or refilled (false): "Apply Changes"
    // shows while edits are pending.
    void set_text_pending(bool pending);
    bool text_pending() const { return text_pending_; }
    // Apply Changes: panel (UTF-8, as the widget holds it) is read into the
    // element on show: class s.curclass, s.curel counting from 1 within the
    // class (active lines and extra points too); night for the point's night
    // picture. On success the cell and caption are refreshed.
    bool apply_code_panel(const std::string& panel, bool night = false);

    // The code-page list changed to codepage; false when the change was
    // refused and the window is to show the old value again.
    bool change_codepage(int codepage);

    // The top fields as typed: each is a step of the history; typing on in
    // the same field extends its step.
    void set_fid(const std::string& fid);
    void set_pid(const std::string& pid);
    // The header-length list: the length in hex digits as the list shows it.
    void set_header_length(const std::string& hex_digits);

    // The project's history. undo, redo and jump apply a step and set the
    // dirty flag and caption from the saved-state marker; the window then
    // follows the returned class and rows.
    History& history() { return history_; }
    Follow undo();
    Follow redo();
    Follow history_jump(size_t position);

    // The log, written only while the settings say so.
    void log_line(int cls, const std::string& text);
    void open_log();
    void clear_main_log();

    // Where the theme table may be, in the order to look (the data folder's
    // "tdat" is looked at first anyway).
    void set_theme_tables(std::vector<std::string> tables) { theme_tables_ = std::move(tables); }

    // The name of the installed map the project came from ("" for none).
    void set_map_tag(const std::string& tag);
    const std::string& map_tag() const { return map_tag_; }

    // Count of the elements of the class in view.
    int32_t count_in_view() const;
    void show_loaded();
    // Paints the report label from loadrep.
    void paint_report();

    // Flags the window and the other flows read.
    bool loading() const { return loading_; }
    // The loading guard is lowered once rebuild_grid (or set_icon_size)
    // has returned; a window that builds the grid later lowers it here.
    void grid_built() { loading_ = false; }
    int loadfail() const { return loadfail_; }
    bool save_refused() const { return save_refused_; }
    bool save_as_forced() const { return save_as_forced_; }
    // A theme was loaded: Save becomes Save As until the next load or save.
    void force_save_as() { save_as_forced_ = true; }
    bool text_utf8() const { return text_utf8_; }
    // The loaded file's code page is 65001.
    bool codepage_utf8() const { return codepage_utf8_; }

    const std::string& data_folder() const { return data_folder_; }
    // Every save of the project writes through fs (the real one by default);
    // tests hand in one that fails the way a full disk does.
    void set_file_system(platform::FileSystem& fs) { fs_ = &fs; }
    // Asked before a TYP save writes over a file that exists: false stops
    // the save with nothing written. The window hands in the check for map
    // programs that may hold the file.
    void set_save_guard(std::function<bool(const std::string& path)> guard) { save_guard_ = std::move(guard); }
    // The message of number n in the current language.
    std::string msg(int n) const { return msgs_.get_msg(n); }

private:
    bool dirty_prompt_goes_on();
    Follow history_step(Follow f);
    bool ask_replace(const std::string& path);
    bool check_ids(bool with_codepage);
    bool save_typ_to(const std::string& path);
    bool save_into_holder();
    bool load_typ_data(std::string data, const std::string& path);
    bool save_text(int entry);
    bool load_text_file(const std::string& path, bool utf8);
    bool load_project_file(const std::string& path);
    bool read_openable(const std::string& path, std::string& data, bool as_typ);
    void open_text_flow(bool utf8);
    bool open_theme(const std::string& path);
    void after_text_load(const std::string& path);
    void show_recent_menu();
    void finchk();
    LogOptions log_options() const;

    model::Store& s_;
    AppSettings& settings_;
    const integration::Messages& msgs_;
    platform::Prompt& ui_;
    platform::FileDialog& dialogs_;
    platform::Launcher& launcher_;
    const platform::Clock& clock_;
    std::string data_folder_;
    SessionView& view_;
    platform::FileSystem* fs_ = &platform::real_file_system();

    bool text_pending_ = false;
    bool save_as_forced_ = false;
    bool save_in_place_ = false;
    bool save_refused_ = false;
    bool loading_ = false;
    int loadfail_ = 0;
    bool text_utf8_ = false;     // the open text was opened as UTF-8
    bool codepage_utf8_ = false; // the loaded code page is 65001
    std::string map_tag_;
    std::unique_ptr<TypHolder> holder_;
    std::vector<std::string> theme_tables_;
    std::function<bool(const std::string&)> save_guard_;
    History history_;
};

}  // namespace korvex::workbench
