// What a user does with a map family's TYP file: open it as the project,
// or put the project into the family (replacing the family's TYP, with a
// backup, or pointing a family without one at the open file).
#pragma once

#include <string>

#include "integration/map_families.h"
#include "model/store.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/map_platform.h"
#include "platform/prompt.h"
#include "workbench/session.h"

namespace korvex::integration {

// Everything the flows work on; the caller owns it all.
struct FamilyTools {
    model::Store& s;
    workbench::Session& session;
    platform::Prompt& ui;
    platform::MapPlatform& sys;
    const platform::Clock& clock;
    std::string reg_folder;  // where "tmp.reg" is written
    platform::FileSystem& fs = platform::real_file_system();
};

// Open TYP: loads the family's TYP as the project, named after the family.
// False (and the project as it was) when the row cannot be opened.
bool open_family_typ(FamilyTools& t, const Family& f);

enum class Upload { none, replaced, added };
// Add or Replace TYP. A family with a TYP of its own has it replaced by the
// project, saved with the family's FID and PID (the project keeps its own);
// the old file is backed up first. A family without one is pointed at the
// open TYP file where it lies. f.typ follows what was done.
Upload add_or_replace_typ(FamilyTools& t, Family& f);

// The first free backup name of a TYP file: name_copy.typ, then name_1.typ,
// name_2.typ and so on.
std::string backup_name(const std::string& typ_path);

// The REGEDIT4 text that points a family's entry at a TYP (a Windows path).
std::string addreg_text(const Family& f, const std::string& windows_typ, bool bit64);

// True while a map program runs: a window title (lower case) holds
// "basecamp", "mapsource" or "garmin".
bool map_running(const platform::MapPlatform& sys);

// The warning that a map program holds the file, Yes/No/Cancel.
platform::Answer mapsource(workbench::Session& session, platform::Prompt& ui);

}  // namespace korvex::integration
