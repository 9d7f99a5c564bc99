#include "text/text_writer.h"
// STUB: to be implemented
namespace korvex::text {
std::string create_textfile(Store&, int32_t, int) { return {}; }
std::string drword(const Store&) { return {}; }
bool save_txt(Store&, platform::Prompt&, const platform::Clock&, int, const TextSink&) { return true; }
std::string create_code(Store&, int32_t, int, bool) { return {}; }
}
