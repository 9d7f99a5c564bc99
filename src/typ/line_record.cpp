#include "typ/line_record.h"
// STUB: to be implemented
namespace korvex::typ {
void line_no_bmp(Store&, int64_t, int32_t, int, int32_t) {}
void line_bmp(Store&, int64_t, int32_t, int, int32_t) {}
std::string line_type_text(int32_t) { return {}; }
std::string encode_line_record(Store&, int32_t) { return {}; }
int64_t save_polylines(Store&, int64_t offset) { return offset; }
}
