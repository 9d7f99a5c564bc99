#include "workbench/unused_colours.h"

namespace korvex::workbench {

ColourCheck unused_colour_check(const model::Store&, int) { return {}; }
std::string checkcols(const model::Store&, int) { return {}; }
int32_t redun(model::Store&, int) { return 0; }
bool fix_unused_colours(model::Store&, platform::Prompt&, const std::string&, bool) { return false; }
std::string finchk_text(const model::Store&, const std::string&) { return {}; }

}  // namespace korvex::workbench
