#include "typ/point_record.h"
// STUB: to be implemented
namespace korvex::typ {
void poi_bmp(Store&, int64_t, int32_t, int, int64_t, int32_t) {}
std::string point_type_text(int32_t) { return {}; }
std::string encode_point_record(Store&, int32_t) { return {}; }
int64_t save_pois(Store&, int64_t offset) { return offset; }
}
