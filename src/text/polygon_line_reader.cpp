#include "text/polygon_line_reader.h"
// STUB: to be implemented
namespace korvex::text {
void pgonparse_txt(Store&, platform::Prompt&, const std::string&, int32_t, bool) {}
void pollineparse(Store&, platform::Prompt&, const std::string&, int32_t, bool) {}
std::string reducl(const std::string& colours, int) { return colours; }
std::string activity_code(const std::string&) { return "40"; }
}  // namespace korvex::text
