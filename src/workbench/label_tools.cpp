#include "workbench/label_tools.h"

namespace korvex::workbench {

bool chk_nolabel(const model::Store&, int, int32_t) { return false; }
int32_t remnotis(model::Store&, platform::Prompt&) { return 0; }
void extra_poi_labels(const model::Store&, platform::Prompt&, const std::string&) {}
bool check_labels(model::Store&, platform::Prompt&, platform::Launcher&, const std::string&, int) { return false; }

}  // namespace korvex::workbench
