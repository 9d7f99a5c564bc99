// Any bytes as a text file.
#include "support/fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    korvex::fuzzing::text_file(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
