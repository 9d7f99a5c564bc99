#include "typ/encoder.h"
// STUB
namespace korvex::typ {
bool save_typ(Store&, platform::Prompt&, const platform::Clock&, bool) { return false; }
bool SaveFile(Store&, platform::Prompt&, const std::string&) { return false; }
}
