// Any bytes as a MapTK project.
#include "support/fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    korvex::fuzzing::maptk_project(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
