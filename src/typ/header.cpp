#include "typ/header.h"
// STUB
namespace korvex::typ {
std::string created_line(Store&) { return {}; }
void write_date(Store&, const platform::Stamp&) {}
std::string header_caption(int32_t) { return {}; }
int32_t caption_value(const std::string&) { return 0; }
int32_t end_of_standard_data(Store& s) { return static_cast<int32_t>(s.curf.size()); }
bool get_blocks(Store&, platform::Prompt&) { return true; }
bool choose_header_length(Store&, platform::Prompt&, bool) { return true; }
}
