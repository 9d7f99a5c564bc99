// Any bytes as a settings file (6.dat) or fonts listing.
#include "support/fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    korvex::fuzzing::settings_file(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
