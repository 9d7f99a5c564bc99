#include "text/load_driver.h"
// STUB: to be implemented
namespace korvex::text {
bool load_txt(Store&, platform::Prompt&, const std::string&, std::string, bool, bool) { return false; }
void polgon_txt(Store&, platform::Prompt&, const std::string&) {}
void polline_txt(Store&, platform::Prompt&, const std::string&) {}
void poi_txt(Store&, platform::Prompt&, const std::string&) {}
bool chktxt(Store&, platform::Prompt&, int, int32_t, const std::string&) { return false; }
std::string chksemicolon(const std::string& text) { return text; }
std::string fnchkstringtxt(Store&, const std::string& line, int) { return line; }
void draworder_fromtxt(Store&, platform::Prompt&, const std::string&) {}
std::string sorttxt(const std::string& text) { return text; }
}  // namespace korvex::text
