#include "typ/polygon_record.h"
// STUB: to be implemented
namespace korvex::typ {
void polygon_no_bmp(Store&, int64_t, int64_t, int32_t, int) {}
void polygon_bmp(Store&, int64_t, int64_t, int32_t, int) {}
std::string encode_polygon_record(Store&, int32_t) { return {}; }
int64_t save_polygons(Store&, int64_t offset) { return offset; }
std::string compressbmp(Store&, const std::string&, int, const std::string&) { return {}; }
}
