#include "workbench/side_tools.h"

namespace korvex::workbench {

bool load_style_editor(std::string&, platform::Prompt&, platform::FileDialog&, platform::Launcher&) { return false; }
bool sort_search_categories(model::Store&, platform::Prompt&) { return false; }

}  // namespace korvex::workbench
