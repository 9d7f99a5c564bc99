// Tools entries that hand over to something else: the style editor and the
// order of the types in the file.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/file_dialog.h"
#include "platform/launcher.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// Load Style Editor (entry 10): starts the editor at path (settings), or asks
// where it is when the path does not name "Forvane.exe"; the path found is
// stored back. False when nothing was started.
bool load_style_editor(std::string& path, platform::Prompt& ui, platform::FileDialog& dialogs,
                       platform::Launcher& launcher);

// Sort TYPES into Garmin Search Categories (entry 18): each class's rows in
// index order, as a device groups them. Returns true when the order changed
// (dirty is then set).
bool sort_search_categories(model::Store& s, platform::Prompt& ui);

}  // namespace korvex::workbench
