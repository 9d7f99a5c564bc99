// Builds a whole TYP file in curf from the tables.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/prompt.h"

namespace korvex::typ {

using model::Store;

// Largest file the encoder builds.
constexpr int64_t k_max_typ_size = 72900000;

// save_typ: rebuilds curf. tofile true asks the questions of a save to disk.
// False when the save was refused (curf may then be reset: reload).
bool save_typ(Store& s, platform::Prompt& ui, const platform::Clock& clock, bool tofile);

// Writes curf to path atomically; false with a message naming the file and
// the reason on failure, the old file then untouched.
bool SaveFile(Store& s, platform::Prompt& ui, const std::string& path,
              platform::FileSystem& fs = platform::real_file_system());

}  // namespace korvex::typ
