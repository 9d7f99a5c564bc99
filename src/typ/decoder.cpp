#include "typ/decoder.h"
// STUB
namespace korvex::typ {
std::string loadbinary(Store&, platform::Prompt&, const std::string&) { return {}; }
void chk_typ(Store&, platform::Prompt&) {}
bool loadfile(Store&, platform::Prompt&, const std::string&) { return false; }
std::string polygon_type_text(int32_t) { return {}; }
std::string garmin_comment(const Store&, const std::string&, int) { return {}; }
bool getcurf(const Store&) { return false; }
}
