// The map families the map programs know: read from the registry's four
// family keys and from the maps folder, one row each, a family listed
// twice shown once.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/map_platform.h"

namespace korvex::integration {

// What a TDB file's header record holds.
struct TdbHeader {
    std::string name;
    int pid = 0;
    int fid = 0;
};
// The header of the TDB at path (its first 500 bytes); nothing when the
// file is absent or its first byte is not 'P'.
std::optional<TdbHeader> get_tdb(const std::string& path);
// The same for the bytes of a file.
std::optional<TdbHeader> tdb_header(std::string_view head);

// What a map's XML says (each optional); read as plain text.
struct MapXml {
    std::optional<int> fid, pid;
    std::string typ;
};
MapXml get_xml(const std::string& path);
MapXml map_xml_text(std::string_view text);

// The registry keys of the sources 0 to 3 (source 4 is the maps folder).
inline constexpr const char* k_family_keys[4] = {
    "SOFTWARE\\Garmin\\mapsource\\families\\",
    "SOFTWARE\\Garmin\\mapsource\\familiesnt\\",
    "SOFTWARE\\Garmin\\mapsource\\Products\\",
    "SOFTWARE\\Garmin\\Installed\\",
};
inline constexpr const char* k_family_tags[5] = {"", "NT:", "P:", "I:", ""};
inline constexpr int k_maps_folder_source = 4;
inline constexpr const char* k_no_tdb = "???";
inline constexpr const char* k_cant_find_tdb = "Can't find tdb";

// One row of the list.
struct Family {
    int source = 0;
    std::string tag;   // "", "NT:", "P:", "I:"
    std::string name;  // the key's or the folder's name
    std::string tdb;   // local path, "???" or "Can't find tdb"
    std::string typ;   // local path, "" when the family has none
    int pid = -1, fid = -1;
    bool current = false;
    std::string folder;  // the map's folder (source 4 only)
};

// The text of a row: "(*)" for a current map, then tag and name, the TDB
// and the TYP, separated by ",".
std::string row_text(const Family& f);

class FamilyList {
public:
    // Adds a row unless a row with the same PID and FID is listed.
    bool add(Family f);
    const std::vector<Family>& rows() const { return rows_; }
    std::vector<Family>& rows() { return rows_; }
    // The current maps as the header shows them ("Mapsource:" ..., "Basecamp" ...).
    std::string current;

private:
    std::vector<Family> rows_;
    std::set<std::string> seen_;  // "#pid#fid#"
};

// Fills the list from one source, 0 to 4.
void get_regvals(const platform::MapPlatform& sys, int index, FamilyList& list);
// Every source in order, then the current maps marked.
FamilyList read_families(const platform::MapPlatform& sys);

// The family TYP file of a folder: files matching "i0*.typ" first, else any
// "*.typ"; "" when there is none.
std::string typ_in_folder(const std::string& folder);

// Removes the files of the map programs' tile caches (their folders stay).
// Returns how many files went.
int clearcache(const platform::MapPlatform& sys);

// The tile-cache folders (local paths) that exist, as the family dialog
// looks for them before an upload. It spells MapSource's folder
// "\Garmin\Mapource\TileCache", so only BaseCamp's is ever found.
std::vector<std::string> upload_tile_caches(const platform::MapPlatform& sys);

}  // namespace korvex::integration
