// The data folder D: where settings, logs, languages and working files live.
#pragma once

#include <string>

#include "platform/environment.h"

namespace korvex::workbench {

struct DataFolder {
    std::string path;          // D; the program's folder when no data location is known
    bool first_start = false;  // the marker "flg" was missing and has been written
    bool ok = true;            // every folder could be created
};

// D without touching the disk: the platform's application-data location
// (XDG_DATA_HOME, else HOME/.local/share; AppData on Windows) followed by
// Halden/krv6; the program's folder when the environment gives none.
std::string data_folder_path(const platform::Environment& env, const std::string& program_folder);

// Works out D, creates it and its sub-folders (txt, pal, typ, system,
// system/bin, themes, languages, logs, dictionaries) and writes the marker
// "flg" holding "1001" when it is missing.
DataFolder prepare_data_folder(const platform::Environment& env, const std::string& program_folder);

// The path of a file or folder under D ("system/cc" uses the platform's
// separator).
std::string under(const std::string& d, const std::string& relative);

}  // namespace korvex::workbench
