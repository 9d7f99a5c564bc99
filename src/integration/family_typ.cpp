#include "integration/family_typ.h"

#include <algorithm>
#include <filesystem>

#include "platform/files.h"
#include "platform/environment.h"
#include "platform/reg_text.h"
#include "typ/encoder.h"

namespace korvex::integration {

namespace fs = std::filesystem;

namespace {

constexpr int k_msg_file_exists = 24;
constexpr int k_msg_replace = 25;
constexpr int k_msg_in_use = 33;
constexpr int k_msg_close_down = 34;
constexpr int k_msg_save_as_typ = 195;

std::string lower_of(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

bool ends_with_typ(const std::string& path) { return lower_of(path).ends_with(".typ"); }

bool project_empty(const model::Store& s) { return s.pg_n == 0 && s.ln_n == 0 && s.pt_n == 0; }

// The section of the registry a family's tag names.
const char* reg_section(const Family& f) {
    if (f.tag == "NT:") return "FamiliesNT";
    if (f.tag == "P:") return "Products";
    if (f.tag == "I:") return "Installed";
    return "Families";
}

bool under(const std::string& path, const std::string& folder) {
    const std::string p = lower_of(fs::path(path).lexically_normal().string());
    std::string f = lower_of(fs::path(folder).lexically_normal().string());
    if (!f.empty() && f.back() != '/' && f.back() != '\\') f += '/';
    return p.rfind(f, 0) == 0;
}

// Writes the project to the family's TYP with the family's numbers in the
// header; the project's own numbers are back in place whatever happened.
bool save_with_family_ids(FamilyTools& t, const Family& f) {
    const std::string fid = t.s.fid, pid = t.s.pid;
    if (f.fid >= 0) t.s.fid = std::to_string(f.fid);
    if (f.pid >= 0) t.s.pid = std::to_string(f.pid);
    const bool ok = typ::save_typ(t.s, t.ui, t.clock, true) && typ::SaveFile(t.s, t.ui, f.typ, t.fs);
    t.s.fid = fid;
    t.s.pid = pid;
    return ok;
}

Upload replace_typ(FamilyTools& t, Family& f, bool caches) {
    if (!platform::file_exists(f.typ)) {
        t.ui.message("Cannot locate " + f.typ);
        return Upload::none;
    }
    if (!t.ui.yes_no(t.session.msg(k_msg_file_exists) + "\r\n\r\n" + f.typ + "\r\n\r\n" + t.session.msg(k_msg_replace)))
        return Upload::none;
    if (t.s.dirty) {
        const platform::Answer a = t.session.fnsave_yn();
        if (a == platform::Answer::cancel) return Upload::none;
        if (a == platform::Answer::yes && !t.session.save(workbench::k_save)) return Upload::none;
    }
    if (map_running(t.sys) && mapsource(t.session, t.ui) != platform::Answer::yes) return Upload::none;

    std::string error;
    const auto old = platform::read_file(f.typ, &error);
    const std::string backup = backup_name(f.typ);
    if (!old || !platform::write_file_atomic(backup, *old, &error, t.fs)) {
        t.ui.message("Cannot save " + backup + ": " + error);
        return Upload::none;
    }
    t.ui.message("Backed up " + f.typ + " as " + backup);
    if (!save_with_family_ids(t, f)) return Upload::none;
    t.session.set_dirty(false);
    t.ui.message("TYP file has been replaced.");
    if (t.ui.yes_no("Make this your current TYP file?")) {
        t.s.curfile = f.typ;
        t.session.updatmff(f.typ);
        t.session.set_map_tag(f.name);
        t.session.update_title(f.typ);
    }
    if (caches) clearcache(t.sys);
    t.ui.message("Click on Mapsource/Basecamp , then CTRL G 2x.");
    return Upload::replaced;
}

Upload add_typ(FamilyTools& t, Family& f) {
    if (t.s.dirty || !platform::file_exists(t.s.curfile)) {
        t.ui.message("Please save TYP file.");
        return Upload::none;
    }
    const std::string typ = fs::absolute(t.s.curfile).lexically_normal().string();
    // A map under ProgramData is found by its folder, not the registry.
    std::vector<std::string> roots = t.sys.map_folders();
    if (const std::string data = t.sys.env("ProgramData"); !data.empty()) roots.push_back(t.sys.local_path(data));
    const std::string folder = f.folder.empty() ? fs::path(f.tdb).parent_path().string() : f.folder;
    const bool in_maps_folder =
        f.source == k_maps_folder_source ||
        (!folder.empty() && std::any_of(roots.begin(), roots.end(), [&](const std::string& m) { return under(folder, m); }));
    if (!in_maps_folder) {
        const std::string reg = platform::join_path(t.reg_folder, "tmp.reg");
        std::string error;
        if (!platform::write_file_atomic(reg, addreg_text(f, t.sys.windows_path(typ), t.sys.bit64()), &error, t.fs)) {
            t.ui.message("Cannot save " + reg + ": " + error);
            return Upload::none;
        }
        if (!t.sys.import_confirms() && !t.ui.yes_no("Add " + typ + " to the family " + f.name + " in the registry?"))
            return Upload::none;
        if (!t.sys.import_reg(reg)) {
            t.ui.message("Cannot import " + reg);
            return Upload::none;
        }
    }
    f.typ = typ;
    return Upload::added;
}

}  // namespace

bool open_family_typ(FamilyTools& t, const Family& f) {
    if (f.tdb == k_no_tdb) {
        t.ui.message("Map has no tdb file and needs to be reinstalled.");
        return false;
    }
    if (f.typ.empty()) {
        t.ui.message("No TYP file found.\r\nUse 'Mossbit' to create a TYP file.");
        return false;
    }
    if (!ends_with_typ(f.typ)) {
        t.ui.message(f.typ + " not a TYP file.");
        return false;
    }
    if (t.s.dirty && t.session.fnsave_yn() != platform::Answer::no) return false;
    if (!platform::file_exists(f.typ)) {
        t.ui.message("Cannot locate " + f.typ);
        return false;
    }
    t.session.updatmff(f.typ);
    if (!t.session.loadfile(f.typ)) return false;
    t.session.set_map_tag(f.name);
    t.s.from_family = true;
    t.session.update_title(f.typ);
    return true;
}

Upload add_or_replace_typ(FamilyTools& t, Family& f) {
    if (f.tag == "I:") {
        t.ui.message("No current support.");
        return Upload::none;
    }
    if (project_empty(t.s)) {
        t.ui.message("Please open the TYP file you want to upload to this Family.");
        return Upload::none;
    }
    if (!ends_with_typ(t.s.curfile)) {
        t.ui.message(t.session.msg(k_msg_save_as_typ));
        return Upload::none;
    }
    // The caches are looked for before the upload and cleared after it
    // only when one was found.
    const bool caches = !upload_tile_caches(t.sys).empty();
    if (!f.typ.empty()) return replace_typ(t, f, caches);
    const Upload done = add_typ(t, f);
    if (done == Upload::added && caches) clearcache(t.sys);
    return done;
}

std::string backup_name(const std::string& typ_path) {
    const std::string stem = ends_with_typ(typ_path) ? typ_path.substr(0, typ_path.size() - 4) : typ_path;
    std::string name = stem + "_copy.typ";
    for (int n = 1; platform::file_exists(name); ++n) name = stem + "_" + std::to_string(n) + ".typ";
    return name;
}

std::string addreg_text(const Family& f, const std::string& windows_typ, bool bit64) {
    std::string text = "REGEDIT4\r\n\r\n";
    text += bit64 ? "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Garmin\\MapSource\\"
                  : "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Garmin\\MapSource\\";
    text += std::string(reg_section(f)) + "\\" + f.name + "]\r\n";
    text += "\"TYP\"=" + platform::reg_quote(windows_typ) + "\r\n";
    return text;
}

bool map_running(const platform::MapPlatform& sys) {
    for (const std::string& title : sys.window_titles()) {
        const std::string low = lower_of(title);
        if (low.find("basecamp") != std::string::npos || low.find("mapsource") != std::string::npos ||
            low.find("garmin") != std::string::npos)
            return true;
    }
    return false;
}

platform::Answer mapsource(workbench::Session& session, platform::Prompt& ui) {
    return ui.yes_no_cancel(session.msg(k_msg_in_use) + "\r\n\r\n" + session.msg(k_msg_close_down));
}

}  // namespace korvex::integration
