// Any bytes as the element-text panel.
#include "support/fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    korvex::fuzzing::panel_text(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
