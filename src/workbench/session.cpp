#include "workbench/session.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/codepage.h"
#include "platform/files.h"
#include "text/codepage_check.h"
#include "text/file_kind.h"
#include "text/load_driver.h"
#include "text/maptk_project.h"
#include "text/panel_apply.h"
#include "text/string_lines.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "typ/decoder.h"
#include "typ/draw_order.h"
#include "typ/encoder.h"
#include "typ/encoding.h"
#include "typ/header.h"
#include "workbench/draw_order_model.h"
#include "workbench/load_options.h"
#include "workbench/message_ids.h"
#include "workbench/panel_notes.h"
#include "workbench/pending.h"
#include "workbench/step_names.h"
#include "workbench/theme.h"
#include "workbench/type_key.h"
#include "workbench/unused_colours.h"

namespace korvex::workbench {

using platform::Answer;

namespace {

// The grid turns to the smallest icons above this many elements.
constexpr int32_t k_small_icons_above = 1200;
// Files from this size on get the decoder's caution, and a short page list.
constexpr size_t k_large_typ = 70000001;
constexpr int k_large_page_size = 10;

// Parts of a message that the user reads as paragraphs.
std::string paragraphs(const std::string& a, const std::string& b) { return a + "\r\n\r\n" + b; }

std::string lower_copy(std::string t) {
    for (char& c : t) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return t;
}

bool ends_with_ci(const std::string& path, const std::string& ext) {
    return path.size() >= ext.size() && lower_copy(path.substr(path.size() - ext.size())) == ext;
}

std::string trim(const std::string& t) { return trim_field(t); }

std::string folder_of(const std::string& path) {
    if (path.empty()) return {};
    return std::filesystem::path(path).parent_path().string();
}

// Replaces the last occurrence of ext (any case) at the end of path.
std::string with_extension(const std::string& path, const std::string& from, const std::string& to) {
    if (ends_with_ci(path, from)) return path.substr(0, path.size() - from.size()) + to;
    return path;
}

// The last path of a dialog seeds the next one. Windows paths compare
// without case, so the path is kept lower-cased there; elsewhere that would
// name another folder.
std::string dialog_path(const std::string& path) {
#ifdef _WIN32
    return lower_copy(path);
#else
    return path;
#endif
}

}  // namespace

const std::vector<std::string>& codepage_entries() {
    static const std::vector<std::string> list = {
        "1250 Cent.European", "1251 Russian/Slavic", "1252 West European", "1253 Greek", "1254 Turkish",
        "1255 Hebrew",        "1256 Arabic",         "1257 Baltic",        "1258 Vietnamese", "874 Thai",
        "932 Japanese",       "936 Chinese",         "949 Korean",         "950 Trad Chinese", "65001"};
    return list;
}

int codepage_entry_index(int codepage) {
    const std::string n = std::to_string(codepage);
    const auto& list = codepage_entries();
    for (size_t i = 0; i < list.size(); ++i)
        if (list[i].find(n) != std::string::npos) return static_cast<int>(i);
    return -1;
}

Session::Session(model::Store& s, AppSettings& settings, const integration::Messages& msgs, platform::Prompt& ui,
                 platform::FileDialog& dialogs, platform::Launcher& launcher, const platform::Clock& clock,
                 std::string data_folder, SessionView& view)
    : s_(s),
      settings_(settings),
      msgs_(msgs),
      ui_(ui),
      dialogs_(dialogs),
      launcher_(launcher),
      clock_(clock),
      data_folder_(std::move(data_folder)),
      view_(view),
      history_(s, static_cast<size_t>(std::max(1, settings.history_limit))) {}

// ---- start-up -------------------------------------------------------------

void Session::start() {
    if (s_.curfile.empty()) s_.curfile = "untitled.typ";
    s_.curclass = std::clamp(settings_.class_in_view, 0, 4);
    log_line(-1, log_header(clock_.now()));
    view_.set_status("Text Codepage " + std::to_string(s_.codepage));
    paint_report();
    update_title(s_.curfile);
    show_recent_menu();
}

bool Session::first_activation() {
    std::string path = take_pending(data_folder_);
    if (path.empty()) {
        const std::string& auto_load = settings_.auto_load_path;
        if (auto_load.empty() || !platform::file_exists(auto_load)) return false;
        path = auto_load;
    }
    return open_path(path);
}

bool Session::open_path(const std::string& path) {
    if (ends_with_ci(path, ".kmtf")) return open_theme(path);
    if (ends_with_ci(path, ".txt")) {
        if (!load_text_file(path, false)) return false;
        after_text_load(path);
        return true;
    }
    if (ends_with_ci(path, ".prj")) {
        if (!load_project_file(path)) return false;
        view_.menu_enable(true);
        update_title(s_.curfile);
        return true;
    }
    updatmff(path);
    if (!loadfile(path)) return false;
    finchk();
    return true;
}

// ---- new and load ---------------------------------------------------------

void Session::newproject() {
    history_.clear();
    model::newproject(s_);
    s_.curel = 0;
    set_text_pending(false);
    view_.fill_code_panel("");
    view_.rebuild_grid();
    paint_report();
}

bool Session::file_new() {
    if (!dirty_prompt_goes_on()) return false;
    newproject();
    s_.curfile = "untitled";
    map_tag_.clear();
    holder_.reset();
    save_as_forced_ = false;
    text_utf8_ = false;
    codepage_utf8_ = s_.codepage == 65001;
    view_.menu_enable(true);
    view_.set_status("Text Codepage " + std::to_string(s_.codepage));
    update_title(s_.curfile);
    return true;
}

bool Session::loadfile(const std::string& raw_path) {
    const std::string path = trim(raw_path);
    if (loading_ || !platform::file_exists(path)) {
        loadfail_ = -1;
        return false;
    }
    // Read and judged before anything is cleared: a file that cannot be
    // opened leaves the open project as it was.
    std::string data;
    if (!read_openable(path, data, true)) {
        loadfail_ = -1;
        return false;
    }
    return load_typ_data(std::move(data), path);
}

bool Session::load_typ_data(std::string data, const std::string& path) {
    loadfail_ = 0;
    view_.set_caption(caption(path));
    newproject();
    save_as_forced_ = false;
    map_tag_.clear();
    holder_.reset();
    text_utf8_ = false;

    view_.enable_open(false);
    loading_ = true;
    s_.dirty = false;
    view_.busy(true);
    if (data.size() >= k_large_typ) view_.set_page_size(k_large_page_size);
    ui_.progress(5);
    typ::open_typ_bytes(s_, ui_, std::move(data), path);
    codepage_utf8_ = s_.codepage == 65001;

    show_loaded();

    ui_.progress(0);
    paint_report();
    view_.menu_enable(true);
    view_.enable_open(true);
    view_.set_status("Text Codepage " + std::to_string(s_.codepage));
    s_.curfile = path;
    update_title(path);
    view_.busy(false);
    log_line(-1, "Loaded:" + path);
    return true;
}

bool Session::load_text_file(const std::string& path, bool utf8) {
    if (loading_) {
        loadfail_ = -1;
        return false;
    }
    std::string data;
    if (!read_openable(path, data, false)) {
        loadfail_ = -1;
        return false;
    }
    loadfail_ = 0;
    newproject();
    save_as_forced_ = false;
    map_tag_.clear();
    holder_.reset();
    loading_ = true;
    view_.busy(true);
    const bool ok = text::load_txt(s_, ui_, path, std::move(data), true, false);
    text_utf8_ = utf8;
    codepage_utf8_ = s_.codepage == 65001;
    show_loaded();
    ui_.progress(0);
    paint_report();
    view_.set_status("Text Codepage " + std::to_string(s_.codepage));
    view_.busy(false);
    if (!ok) loadfail_ = -1;
    return ok;
}

bool Session::load_project_file(const std::string& path) {
    std::string data;
    if (loading_ || !read_openable(path, data, false)) {
        loadfail_ = -1;
        return false;
    }
    newproject();
    save_as_forced_ = false;
    map_tag_.clear();
    holder_.reset();
    text_utf8_ = false;
    loading_ = true;
    view_.busy(true);
    const bool ok = text::load_prj_data(s_, ui_, path, data);
    codepage_utf8_ = s_.codepage == 65001;
    view_.select_codepage(codepage_entry_index(s_.codepage));
    view_.rebuild_grid();
    loading_ = false;
    paint_report();
    view_.set_status("Text Codepage " + std::to_string(s_.codepage));
    view_.busy(false);
    loadfail_ = ok ? 0 : -1;
    return ok;
}

// The file's bytes, or one message naming the file and why it cannot be
// opened: unreadable, empty, or none of ours (as korvex-cli refuses it).
bool Session::read_openable(const std::string& path, std::string& data, bool as_typ) {
    if (!platform::file_exists(path)) {
        ui_.message(path + " doesn't exist");
        return false;
    }
    std::string error;
    auto bytes = platform::read_file(path, &error);
    if (!bytes) {
        ui_.message(path + ": " + error);
        return false;
    }
    const std::string why = as_typ ? text::not_typ_reason(*bytes) : text::not_text_reason(*bytes, path);
    if (!why.empty()) {
        ui_.message(path + ": " + why);
        return false;
    }
    data = std::move(*bytes);
    return true;
}

void Session::after_text_load(const std::string& path) {
    view_.menu_enable(true);
    updatmff(path);
    update_title(s_.curfile);
    finchk();
}

// The joint warning after a load, with the preference on: waste the repair
// tools can take, and the points the load had to repair.
void Session::finchk() {
    if (settings_.unused_colour_check != 1) return;
    std::string fixed;
    const std::string_view mark = " Fixed incorrect poi xpm.";
    typ::for_each_line(s_.loadrep, [&](std::string_view line) {
        if (line.ends_with(mark)) fixed += std::string(line.substr(0, line.size() - mark.size())) + "\r\n";
    });
    const std::string text = finchk_text(s_, fixed);
    if (!text.empty()) ui_.message(text);
}

// ---- open flows -----------------------------------------------------------

bool Session::dirty_prompt_goes_on() {
    view_.commit_draworder_edit();
    if (!s_.dirty) return true;
    // Only No goes on: Yes does not save here, the user saves and tries again.
    return fnsave_yn() == Answer::no;
}

void Session::open_typ() {
    if (!dirty_prompt_goes_on()) return;
    if (!chkldop()) return;
    const std::string name =
        dialogs_.open_file("Open File", {"Typ files (*.typ)"}, folder_of(settings_.last_typ_path));
    if (name.empty() || name.find('*') != std::string::npos) return;
    settings_.last_typ_path = dialog_path(name);
    if (!ends_with_ci(name, ".typ")) {
        ui_.message("Not a TYP file:" + name);
        return;
    }
    if (!loadfile(name)) return;
    updatmff(name);
    finchk();
}

bool Session::ready_to_open() { return dirty_prompt_goes_on() && chkldop(); }

bool Session::open_held_typ(std::unique_ptr<TypHolder> holder, std::string bytes) {
    if (loading_ || !holder) return false;
    if (const std::string why = text::not_typ_reason(bytes); !why.empty()) {
        ui_.message(holder->label() + ": " + why);
        return false;
    }
    const std::string label = holder->label();
    if (!load_typ_data(std::move(bytes), label)) return false;
    holder_ = std::move(holder);
    finchk();
    return true;
}

// A theme is a new project of its own, which loadtheme starts: beside extra
// points the points stay. Save asks for a name until the next load or save.
// A theme that cannot be read leaves the project as it was.
bool Session::open_theme(const std::string& path) {
    std::vector<std::string> tables = {(std::filesystem::path(data_folder_) / "tdat").string()};
    tables.insert(tables.end(), theme_tables_.begin(), theme_tables_.end());
    // The theme merges into the project (its points may stay): one step
    // takes the project back to what it was before.
    if (!history_.record("Load Theme " + std::filesystem::path(path).filename().string(), Scope::whole_project(),
                         [&] { return loadtheme(s_, ui_, path, tables, data_folder_); }))
        return false;
    s_.curel = 0;
    set_text_pending(false);
    view_.fill_code_panel("");
    paint_report();
    map_tag_.clear();
    holder_.reset();
    save_as_forced_ = true;
    text_utf8_ = false;
    view_.rebuild_grid();
    update_title(s_.curfile);
    view_.menu_enable(true);
    return true;
}

void Session::open_txt() { open_text_flow(false); }
void Session::open_utf8_txt() { open_text_flow(true); }

void Session::open_text_flow(bool utf8) {
    if (!dirty_prompt_goes_on()) return;
    if (!chkldop()) return;
    std::vector<std::string> filters = {"Txt files (*.txt)", "Themes (*.kmtf)"};
    if (!utf8) filters.push_back("MapTK (*.prj)");
    const std::string name = dialogs_.open_file("Open File", filters, folder_of(settings_.last_text_path));
    if (name.empty() || name.find('*') != std::string::npos) return;
    settings_.last_text_path = name;
    if (ends_with_ci(name, ".kmtf")) {
        open_theme(name);
        return;
    }
    if (ends_with_ci(name, ".txt")) {
        if (!load_text_file(name, utf8)) return;
        after_text_load(name);
        return;
    }
    if (!load_project_file(name)) return;
    view_.menu_enable(true);
    update_title(s_.curfile);
}

void Session::open_recent(int index) {
    if (index < 0 || index >= k_recent_count) return;
    view_.commit_draworder_edit();
    if (s_.dirty && fnsave_yn() != Answer::no) return;
    if (!chkldop()) return;
    const std::string path = normalise_separators(settings_.recent[static_cast<size_t>(index)]);
    if (trim(path).empty()) return;
    updatmff(path);
    // The load clears the project; a file it refuses leaves it as it was,
    // edits and all.
    if (ends_with_ci(path, ".txt"))
        settings_.last_text_path = path;
    else
        settings_.last_typ_path = dialog_path(path);
    if (ends_with_ci(path, ".txt") || ends_with_ci(path, ".prj")) {
        const bool ok = ends_with_ci(path, ".txt") ? load_text_file(path, false) : load_project_file(path);
        view_.menu_enable(true);
        if (!ok) return;
        update_title(s_.curfile);
        finchk();
        return;
    }
    if (!loadfile(path)) return;
    finchk();
}

void Session::clear_recent() {
    const bool any = std::any_of(settings_.recent.begin(), settings_.recent.end(),
                                 [](const std::string& e) { return !trim(e).empty(); });
    if (!any) return;
    if (!ui_.yes_no(paragraphs("Clear Files.", msg(m_are_you_sure)))) return;
    for (auto& e : settings_.recent) e.clear();
    show_recent_menu();
}

void Session::updatmff(const std::string& path) {
    workbench::updatmff(settings_.recent, path);
    show_recent_menu();
}

std::vector<RecentEntry> Session::recent_menu() const { return recent_entries(settings_.recent); }

void Session::show_recent_menu() { view_.show_recent(recent_menu()); }

// ---- save flows -----------------------------------------------------------

bool Session::ask_replace(const std::string& path) {
    if (!platform::file_exists(path)) return true;
    return ui_.yes_no(paragraphs(paragraphs(msg(m_file_exists), path), msg(m_replace)));
}

bool Session::check_ids(bool with_codepage) {
    const IdCheck c = workbench::check_ids(s_, ui_, msgs_, with_codepage);
    if (c.focus != TopField::none) view_.focus_field(c.focus);
    if (c.refused) save_refused_ = true;
    return c.ok;
}

bool Session::save_typ_to(const std::string& path) {
    const bool encoded = typ::save_typ(s_, ui_, clock_, true);
    paint_report();  // what the save dropped or repaired
    if (!encoded) return false;
    if (save_guard_ && platform::file_exists(path) && !save_guard_(path)) return false;
    if (!typ::SaveFile(s_, ui_, path, *fs_)) return false;
    save_as_forced_ = false;
    history_.mark_saved();
    set_dirty(false);
    return true;
}

// The encoder's bytes go back into the file the TYP came out of.
bool Session::save_into_holder() {
    const bool encoded = typ::save_typ(s_, ui_, clock_, true);
    paint_report();
    if (!encoded) return false;
    std::string error;
    const std::string ids_before = s_.curf.substr(typ::hdr::fid, 2);
    if (!holder_->put(s_.curf, error)) {
        if (!error.empty()) ui_.message(error);
        return false;
    }
    // The map's family id went into the file: the field shows it.
    if (s_.curf.substr(typ::hdr::fid, 2) != ids_before) {
        s_.fid = std::to_string(static_cast<uint8_t>(s_.curf[typ::hdr::fid]) |
                                static_cast<uint8_t>(s_.curf[typ::hdr::fid + 1]) << 8);
        view_.rebuild_grid();
    }
    save_as_forced_ = false;
    history_.mark_saved();
    set_dirty(false);
    ui_.message("File: \r\n" + holder_->label() + "\r\n saved.");
    return true;
}

bool Session::save_in_place() {
    save_in_place_ = true;
    return save(k_save);
}

bool Session::save(int entry) {
    const bool done = [&] {
        int e = entry;
        if (e == k_save_text && s_.codepage == 65001) {
            ui_.message(msg(m_save_utf8_or_change));
            return false;
        }
        if (e == k_save && save_as_forced_) e = k_save_as;
        if (e == k_save && ends_with_ci(s_.curfile, ".txt")) {
            e = text_utf8_ ? k_save_text_utf8 : k_save_text;
            save_in_place_ = true;
        }
        // Nothing on disk to save over yet: Save asks for a name.
        if (e == k_save && !typ::getcurf(s_)) e = k_save_as;
        if (text_pending_) {
            if (e == k_save) {
                ui_.message(msg(m_click_apply));
                return false;
            }
            if (!ui_.yes_no(paragraphs("Text Changes have not been saved.", "Continue without saving?")))
                return false;
        }
        if (nodat()) return false;
        const bool as_text = e == k_save_text || e == k_save_text_utf8;
        if (!check_ids(!as_text)) return false;
        if (e == k_save && holder_) return save_into_holder();
        if (e == k_save) {
            if (ends_with_ci(s_.curfile, ".prj")) {
                ui_.message("Use 'save as' .");
                return false;
            }
            return save_typ_to(s_.curfile);
        }
        if (as_text) return save_text(e);

        if (!text::chkcp(s_, ui_, true)) return false;
        const std::string proposed = holder_           ? holder_->typ_name()
                                     : typ::getcurf(s_) ? with_extension(s_.curfile, ".txt", ".typ")
                                                        : std::string("*.typ");
        std::string name = dialogs_.save_file("Save File", {"Typ files (*.typ)"}, proposed);
        if (const size_t at = lower_copy(name).rfind(".typ"); at != std::string::npos) name.resize(at + 4);
        if (name.empty() || name.find('*') != std::string::npos) return false;
        if (!ends_with_ci(name, ".typ")) name += ".typ";
        if (!ask_replace(name)) return false;
        // A copy becomes the open file too: later saves go to the new name.
        // A copy that was not written leaves the project where it was.
        const bool ok = save_typ_to(name);
        if (ok) {
            s_.curfile = name;
            holder_.reset();
        }
        update_title(s_.curfile);
        return ok;
    }();
    save_in_place_ = false;
    return done;
}

bool Session::save_text(int entry) {
    if (!check_text_ids(s_, ui_, msgs_)) return false;
    if (s_.pt_nx > 0) ui_.message(msg(m_extra_not_text));
    if (entry == k_save_text && text_utf8_ && !ui_.yes_no("Save as UTF-8?")) return false;
    std::string path = s_.curfile;
    if (!save_in_place_) {
        const std::string proposed =
            holder_ ? with_extension(holder_->typ_name(), ".typ", ".txt")
            : typ::getcurf(s_) ? with_extension(s_.curfile, ".typ", ".txt")
                               : std::string("*.txt");
        const std::string filter = entry == k_save_text_utf8 ? "Text UTF-8 files (*.txt)" : "Text files (*.txt)";
        path = dialogs_.save_file("Save File", {filter}, proposed);
        if (path.empty() || path.find('*') != std::string::npos) return false;
        if (!ends_with_ci(path, ".txt")) path += ".txt";
        if (!ask_replace(path)) return false;
    }
    platform::AtomicWriter out(path, *fs_);
    if (!out.ok()) {
        ui_.message("Cannot write " + path + ": " + out.error());
        return false;
    }
    const int kind = entry == k_save_text_utf8 ? text::k_kind_utf8 : k_save_text;
    if (!text::save_txt(s_, ui_, clock_, kind, [&](std::string_view piece) { out.write(piece); })) return false;
    if (!out.commit()) {
        ui_.message("Cannot write " + path + ": " + out.error());
        return false;
    }
    settings_.last_text_path = path;
    save_as_forced_ = false;
    // The text is now the open file, as a TYP saved under a new name is: the
    // caption names what holds the edits, and Save writes it again.
    s_.curfile = path;
    holder_.reset();
    text_utf8_ = entry == k_save_text_utf8;
    history_.mark_saved();
    set_dirty(false);
    return true;
}

// ---- exit -----------------------------------------------------------------

bool Session::close_request() {
    save_refused_ = false;
    view_.commit_draworder_edit();
    if (!s_.dirty && !text_pending_) return true;
    const Answer a = fnsave_yn();
    if (a == Answer::cancel) return false;
    if (a == Answer::no) return true;
    // A save that wrote nothing (refused, cancelled or failed) keeps the
    // window open, so the changes are not lost on the way out.
    const bool saved = save(k_save);
    return saved && !save_refused_;
}

// ---- helpers the other flows share ------------------------------------------

bool Session::nodat() {
    if (has_data(s_)) return false;
    ui_.message(msg(m_no_data));
    return true;
}

Answer Session::fnsave_yn() { return ui_.yes_no_cancel(msg(m_save_changes)); }

bool Session::chkldop() { return workbench::chkldop(s_, ui_); }

void Session::set_dirty(bool dirty) {
    s_.dirty = dirty;
    update_title(s_.curfile);
}

void Session::update_title(const std::string& path) { view_.set_caption(caption(path)); }

std::string Session::caption(const std::string& path) const {
    std::string c = "Korvex " + s_.opt.version + " " + path;
    if (!map_tag_.empty()) c += " [" + map_tag_ + "]";
    if (s_.dirty) c += "+";
    return c;
}

void Session::set_map_tag(const std::string& tag) {
    map_tag_ = tag;
    update_title(s_.curfile);
}

int32_t Session::count_in_view() const {
    switch (s_.curclass) {
    case model::k_polygons: return s_.pg_n;
    case model::k_lines: return s_.ln_n;
    case model::k_points: return s_.pt_n;
    case model::k_active_lines: return s_.ln_nact;
    case model::k_extra_points: return s_.pt_nx;
    default: return 0;
    }
}

// A file with many elements of the class in view drops to the smallest icons,
// which rebuilds the grid; else the grid is built at the size in force. The
// loading guard falls with the build.
void Session::show_loaded() {
    // "Auto check Draworder Duplicates": a type listed twice keeps its first level.
    std::string removed;
    if (settings_.no_duplicate_check == 0) {
        removed = typ::find_duplicates(s_, ui_, true);
        if (!removed.empty()) refresh_levels(s_);
    }
    if (count_in_view() > k_small_icons_above && settings_.icon_size >= 2) {
        settings_.icon_size = 0;
        view_.set_icon_size(0);
    } else {
        view_.select_codepage(codepage_entry_index(s_.codepage));
        view_.rebuild_grid();
    }
    loading_ = false;
    // Said over the loaded grid, not an empty one.
    if (!removed.empty()) ui_.message("Found and removed duplicates :\r\n\r\n" + removed);
}

void Session::paint_report() { view_.paint_report(!s_.loadrep.empty()); }

void Session::set_text_pending(bool pending) {
    text_pending_ = pending;
    view_.show_apply(pending);
}

// ---- the code panel ---------------------------------------------------------

namespace {

// A text widget ends its lines with LF alone; the columns keep CR LF.
// The panel shows String texts as UTF-8; a single-byte project keeps them
// as bytes of their language's page.
std::string panel_to_store(const model::Store& s, const std::string& panel) { return text::strings_to_pages(s, panel); }

}  // namespace

bool Session::apply_code_panel(const std::string& panel, bool night) {
    const int cls = s_.curclass;
    int32_t row = s_.curel - 1;
    if (cls == model::k_active_lines) row += s_.ln_n;
    if (cls == model::k_extra_points) row += s_.pt_n;
    const bool was_dirty = s_.dirty;
    auto step = history_.open("Apply", Scope::row_of(cls, row));
    const text::PanelApply r = text::parsetext(s_, ui_, panel_to_store(s_, text::with_crlf(without_panel_notes(panel))), cls, row, night);
    if (!r.caption.empty()) view_.set_status(r.caption);
    if (!r.ok) {
        s_.dirty = was_dirty;
        return false;
    }
    step.rename(step_name_of_code("Apply", row_type_code(s_, cls, row)));
    set_text_pending(false);
    view_.update_cell(cls, s_.curel);
    set_dirty(true);
    return true;
}

// ---- code page ------------------------------------------------------------

bool Session::change_codepage(int codepage) {
    const int old = s_.codepage;
    if (codepage == old) return true;
    const bool crosses_utf8 = codepage == 65001 || old == 65001;
    const bool any_element = s_.pg_n + s_.ln_n + s_.pt_n + s_.ln_nact + s_.pt_nx > 0;
    if (!crosses_utf8 || !any_element) {
        history_.record("Code Page", Scope::state_only(), [&] { s_.codepage = codepage; });
        codepage_utf8_ = codepage == 65001;
        view_.set_status("Text Codepage " + std::to_string(codepage));
        return true;
    }
    if (s_.curf.empty()) {
        ui_.message(msg(m_save_typ_first));
        return false;
    }
    std::string question = msg(m_typ_reload);
    if (codepage != 65001) {
        question += msg(m_labels_may_convert);
        question = paragraphs(question, "0x00 = Codepage " + std::to_string(codepage) + "?");
    }
    if (ui_.yes_no_cancel(paragraphs(question, msg(m_continue))) != Answer::yes) return false;
    if (!check_ids(true)) return false;
    std::string proposed = s_.curfile;
    const std::string tail = "_" + std::to_string(codepage) + ".typ";
    proposed = ends_with_ci(proposed, ".typ") ? proposed.substr(0, proposed.size() - 4) + tail : proposed + tail;
    std::string name = dialogs_.save_file("Save File", {"Typ files (*.typ)"}, proposed);
    if (name.empty() || name.find('*') != std::string::npos) return false;
    if (!ends_with_ci(name, ".typ")) name += ".typ";
    if (!ask_replace(name)) return false;
    s_.codepage = codepage;
    if (!save_typ_to(name)) {
        s_.codepage = old;
        return false;
    }
    return loadfile(name);
}

// ---- top fields and history ------------------------------------------------

// Typing on in one field extends its step: one step a field's edit.
void Session::set_fid(const std::string& fid) {
    history_.record("FID", Scope::state_only(), [&] { s_.fid = fid; }, "fid");
}

void Session::set_pid(const std::string& pid) {
    history_.record("PID", Scope::state_only(), [&] { s_.pid = pid; }, "pid");
}

void Session::set_header_length(const std::string& hex_digits) {
    history_.record("Header Length", Scope::state_only(), [&] {
        s_.hdr_len = static_cast<int32_t>(std::strtol(hex_digits.c_str(), nullptr, 16));
        s_.hdr_caption = " " + hex_digits;
    });
}

Follow Session::undo() { return history_step(history_.undo()); }
Follow Session::redo() { return history_step(history_.redo()); }
Follow Session::history_jump(size_t position) { return history_step(history_.jump(position)); }

Follow Session::history_step(Follow f) {
    if (!f.done) return f;
    // Whatever the panel held belongs to the element as it was.
    set_text_pending(false);
    set_dirty(!history_.at_saved());
    return f;
}

// ---- log ------------------------------------------------------------------

LogOptions Session::log_options() const { return {settings_.logs_on, settings_.daily_log}; }

void Session::log_line(int cls, const std::string& text) {
    workbench::log_line(data_folder_, log_options(), clock_.now(), cls, text);
}

void Session::open_log() {
    const std::string path = log_path(data_folder_, log_options(), clock_.now());
    if (!platform::file_exists(path)) {
        ui_.message(msg(settings_.logs_on ? m_no_log : m_enable_logs));
        return;
    }
    launcher_.open(path);
}

void Session::clear_main_log() {
    if (!ui_.yes_no(msg(m_are_you_sure))) return;
    std::remove(main_log_path(data_folder_).c_str());
}

}  // namespace korvex::workbench
