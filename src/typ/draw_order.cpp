#include "typ/draw_order.h"
// STUB: to be implemented
namespace korvex::typ {
void read_draworder(Store&, int64_t, int64_t, int) {}
void assign_level(Store&, int32_t) {}
std::string polygon_level(const Store&, int32_t) { return {}; }
std::vector<std::vector<std::string>> getdraworder(Store&, platform::Prompt&, bool) { return {}; }
int64_t save_draworder(Store&, platform::Prompt&, int64_t offset, bool) { return offset; }
void complete_draworder(Store&) {}
void sort_drwlist(Store&) {}
}
