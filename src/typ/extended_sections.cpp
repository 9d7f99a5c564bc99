#include "typ/extended_sections.h"
// STUB: to be implemented
namespace korvex::typ {
int32_t extra_point_count(Store&) { return 0; }
int32_t active_line_count(Store&) { return 0; }
void poiextra_read(Store&) {}
void polylinesactive(Store&) {}
void save_extra_points(Store&) {}
std::string fnblk0(const std::string&, int) { return {}; }
std::string chkactivity(const std::string&) { return {}; }
void noactive(Store&) {}
}
