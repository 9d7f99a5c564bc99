// Any bytes as a TYP file. Records may overlap, so a small file could name
// the same bytes over and over: a printed text beyond what the replay of the
// kept findings allows is a finding too.
#include <cstdlib>

#include "support/fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const size_t printed = korvex::fuzzing::typ_file(std::string_view(reinterpret_cast<const char*>(data), size));
    if (printed > korvex::fuzzing::printed_limit(size)) std::abort();
    return 0;
}
