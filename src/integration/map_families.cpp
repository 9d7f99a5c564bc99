#include "integration/map_families.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform/native_path.h"

namespace korvex::integration {

namespace fs = std::filesystem;

namespace {

std::string lower_text(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

bool ends_ci(const std::string& s, std::string_view tail) {
    return s.size() >= tail.size() && lower_text(s.substr(s.size() - tail.size())) == tail;
}

std::string read_head(const std::string& path, size_t n) {
    std::ifstream in(platform::native_path(path), std::ios::binary);
    if (!in) return {};
    std::string out(n, '\0');
    in.read(out.data(), static_cast<std::streamsize>(n));
    out.resize(static_cast<size_t>(in.gcount()));
    return out;
}

bool is_file(const std::string& path) {
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(platform::native_path(path), ec);
}

// Regular files of folder, sorted by name.
std::vector<fs::path> files_of(const std::string& folder) {
    std::vector<fs::path> out;
    std::error_code ec;
    for (fs::directory_iterator it(platform::native_path(folder), ec), end; !ec && it != end; it.increment(ec))
        if (it->is_regular_file(ec)) out.push_back(it->path());
    std::sort(out.begin(), out.end());
    return out;
}

std::string first_with(const std::string& folder, std::string_view ext) {
    for (const auto& p : files_of(folder))
        if (ends_ci(platform::utf8_path(p.filename()), ext)) return platform::utf8_path(p);
    return {};
}

// The text between the first open and the next close tag behind from.
std::optional<std::string> between(std::string_view text, std::string_view open, std::string_view close, size_t from = 0) {
    const size_t a = text.find(open, from);
    if (a == std::string_view::npos) return std::nullopt;
    const size_t b = text.find(close, a + open.size());
    if (b == std::string_view::npos) return std::nullopt;
    return std::string(text.substr(a + open.size(), b - a - open.size()));
}

std::optional<int> number_of(const std::optional<std::string>& t) {
    if (!t) return std::nullopt;
    try {
        size_t used = 0;
        const int v = std::stoi(*t, &used);
        return v;
    } catch (...) {
        return std::nullopt;
    }
}

// A relative TYP path lies beside the TDB.
std::string resolve_typ(const std::string& typ, const std::string& tdb_or_folder, bool is_folder) {
    if (typ.empty() || fs::path(typ).is_absolute()) return typ;
    const fs::path base = is_folder ? fs::path(tdb_or_folder) : fs::path(tdb_or_folder).parent_path();
    return (base / typ).string();
}

// A shortcut in place of a TDB leads to the TDB.
std::string follow_tdb(const platform::MapPlatform& sys, const std::string& path) {
    return ends_ci(path, ".lnk") ? sys.shortcut_target(path) : path;
}

void read_registry_source(const platform::MapPlatform& sys, int index, FamilyList& list) {
    const std::string key = k_family_keys[index];
    for (const std::string& sub : sys.reg_subkeys(platform::Hive::local_machine, key)) {
        // The family's own values, then those of its products' sub-keys,
        // where the TDB usually is.
        platform::RegValues values = sys.reg_values(platform::Hive::local_machine, key + sub);
        for (const std::string& product : sys.reg_subkeys(platform::Hive::local_machine, key + sub)) {
            const auto more = sys.reg_values(platform::Hive::local_machine, key + sub + "\\" + product);
            values.insert(values.end(), more.begin(), more.end());
        }
        Family f;
        f.source = index;
        f.tag = k_family_tags[index];
        f.name = sub;
        std::string tdb, typ;
        for (const auto& [name, data] : values) {
            const std::string low = lower_text(name);
            if (tdb.empty() && (low.find(".tdb") != std::string::npos || lower_text(data).find(".tdb") != std::string::npos ||
                                (low == "tdb" && !data.empty())))
                tdb = low.find(".tdb") != std::string::npos ? name : data;
            else if (low == "typ" || low.starts_with("typ "))
                typ = low == "typ" ? data : name.substr(4);
        }
        if (!tdb.empty()) tdb = follow_tdb(sys, sys.local_path(tdb));
        const auto header = tdb.empty() ? std::nullopt : get_tdb(tdb);
        if (header) {
            f.pid = header->pid;
            f.fid = header->fid;
            f.tdb = tdb;
        } else {
            f.tdb = k_no_tdb;
        }
        if (!typ.empty()) {
            f.typ = sys.local_path(typ);
            if (header) f.typ = resolve_typ(f.typ, tdb, false);
        } else if (header) {
            f.typ = typ_in_folder(fs::path(tdb).parent_path().string());
        }
        list.add(std::move(f));
    }
}

void read_maps_folder(const platform::MapPlatform& sys, FamilyList& list) {
    for (const std::string& root : sys.map_folders()) {
        std::vector<fs::path> maps;
        std::error_code ec;
        for (fs::directory_iterator it(platform::native_path(root), ec), end; !ec && it != end; it.increment(ec))
            if (it->is_directory(ec)) maps.push_back(it->path());
        std::sort(maps.begin(), maps.end());
        for (const fs::path& folder : maps) {
            Family f;
            f.source = k_maps_folder_source;
            f.name = platform::utf8_path(folder.filename());
            if (ends_ci(f.name, ".gmap")) f.name.resize(f.name.size() - 5);
            f.folder = platform::utf8_path(folder);
            const std::string xml_path = first_with(f.folder, ".xml");
            const MapXml xml = xml_path.empty() ? MapXml{} : get_xml(xml_path);
            std::string tdb = first_with(f.folder, ".tdb");
            if (tdb.empty()) {
                const std::string lnk = first_with(f.folder, ".lnk");
                if (!lnk.empty()) tdb = sys.shortcut_target(lnk);
            }
            const auto header = is_file(tdb) ? get_tdb(tdb) : std::nullopt;
            f.tdb = is_file(tdb) ? tdb : k_cant_find_tdb;
            f.fid = xml.fid.value_or(header ? header->fid : -1);
            f.pid = xml.pid.value_or(header ? header->pid : -1);
            f.typ = xml.typ.empty() ? typ_in_folder(f.folder) : resolve_typ(sys.local_path(xml.typ), f.folder, true);
            list.add(std::move(f));
        }
    }
}

}  // namespace

std::optional<TdbHeader> tdb_header(std::string_view head) {
    if (head.size() < 9 || head[0] != 'P') return std::nullopt;
    auto u16 = [&](size_t at) { return static_cast<uint8_t>(head[at]) | static_cast<uint8_t>(head[at + 1]) << 8; };
    TdbHeader h;
    h.pid = u16(3);
    h.fid = u16(5);
    for (size_t i = 9; i < head.size() && head[i] != '\0'; ++i) h.name += head[i];
    return h;
}

std::optional<TdbHeader> get_tdb(const std::string& path) {
    if (!is_file(path)) return std::nullopt;
    return tdb_header(read_head(path, 500));
}

MapXml map_xml_text(std::string_view text) {
    MapXml x;
    x.fid = number_of(between(text, "<ID>", "</ID>"));
    if (const size_t sub = text.find("<SUBPRODUCT>"); sub != std::string_view::npos)
        x.pid = number_of(between(text, "<ID>", "</ID>", sub));
    x.typ = between(text, "<TYP>", "</TYP>").value_or("");
    return x;
}

MapXml get_xml(const std::string& path) {
    std::ifstream in(platform::native_path(path), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return map_xml_text(text);
}

std::string row_text(const Family& f) {
    return std::string(f.current ? "(*)" : "") + f.tag + f.name + "," + f.tdb + "," + f.typ;
}

bool FamilyList::add(Family f) {
    if (f.pid >= 0 && f.fid >= 0) {
        const std::string key = "#" + std::to_string(f.pid) + "#" + std::to_string(f.fid) + "#";
        if (!seen_.insert(key).second) return false;
    }
    rows_.push_back(std::move(f));
    return true;
}

void get_regvals(const platform::MapPlatform& sys, int index, FamilyList& list) {
    if (index < 0 || index > k_maps_folder_source) return;
    if (index == k_maps_folder_source)
        read_maps_folder(sys, list);
    else
        read_registry_source(sys, index, list);
}

FamilyList read_families(const platform::MapPlatform& sys) {
    FamilyList list;
    for (int i = 0; i <= k_maps_folder_source; ++i) get_regvals(sys, i, list);
    const std::pair<const char*, const char*> programs[] = {
        {"SOFTWARE\\Garmin\\Mapsource\\Settings\\", "Mapsource:"},
        {"SOFTWARE\\Garmin\\Basecamp\\Settings\\", "Basecamp"},
    };
    for (const auto& [key, label] : programs) {
        const auto mru = sys.reg_value(platform::Hive::current_user, key, "MRUProduct");
        if (!mru || mru->empty()) continue;
        list.current += std::string(list.current.empty() ? "" : "  ") + label + " " + *mru;
        for (Family& f : list.rows())
            if (lower_text(f.name) == lower_text(*mru) || (f.pid >= 0 && std::to_string(f.pid) == *mru))
                f.current = true;
    }
    return list;
}

std::string typ_in_folder(const std::string& folder) {
    std::string any;
    for (const auto& p : files_of(folder)) {
        const std::string name = lower_text(platform::utf8_path(p.filename()));
        if (!name.ends_with(".typ")) continue;
        if (name.starts_with("i0")) return platform::utf8_path(p);
        if (any.empty()) any = platform::utf8_path(p);
    }
    return any;
}

namespace {

// MapSource's tile cache under %AppData% (mapsource_part names it), and
// BaseCamp's under the local AppData: lower-cased, "\\roaming" taken out.
std::vector<std::string> tile_cache_folders(const platform::MapPlatform& sys, const std::string& mapsource_part) {
    const std::string app = sys.env("AppData");
    if (app.empty()) return {};
    std::string local = lower_text(app);
    if (const size_t at = local.find("\\roaming"); at != std::string::npos) local.erase(at, 8);
    return {sys.local_path(app + mapsource_part), sys.local_path(local + "\\local\\Garmin\\BaseCamp\\TileCache\\")};
}

}  // namespace

std::vector<std::string> upload_tile_caches(const platform::MapPlatform& sys) {
    std::vector<std::string> found;
    for (const std::string& folder : tile_cache_folders(sys, "\\Garmin\\Mapource\\TileCache")) {
        std::error_code ec;
        if (fs::is_directory(platform::native_path(folder), ec)) found.push_back(folder);
    }
    return found;
}

int clearcache(const platform::MapPlatform& sys) {
    int removed = 0;
    for (const std::string& folder : tile_cache_folders(sys, "\\Garmin\\Mapsource\\TileCache\\")) {
        for (const auto& p : files_of(folder)) {
            std::error_code ec;
            if (fs::remove(p, ec)) ++removed;
        }
    }
    return removed;
}

}  // namespace korvex::integration
