#include "text/point_reader.h"
// STUB: to be implemented
namespace korvex::text {
void poiparse(Store&, platform::Prompt&, const std::string&, int32_t, bool) {}
}  // namespace korvex::text
