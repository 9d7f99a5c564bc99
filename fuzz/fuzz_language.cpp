// Any bytes as a language file (.lan).
#include "support/fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    korvex::fuzzing::language_file(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
