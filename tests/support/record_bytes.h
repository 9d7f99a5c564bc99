// Records written out byte by byte for the tests of the TYP record codecs.
#pragma once

#include <initializer_list>
#include <string>

namespace korvex::testing {

inline std::string bytes(std::initializer_list<int> v) {
    std::string out;
    for (int b : v) out += static_cast<char>(b);
    return out;
}

// Four colours as a record holds them (blue, green, red); no two bytes are
// alike, so a colour taken from the wrong place shows.
namespace record_colours {
inline const std::string A = bytes({0x10, 0x20, 0x30});  // #302010
inline const std::string B = bytes({0x40, 0x50, 0x60});  // #605040
inline const std::string C = bytes({0x70, 0x80, 0x90});  // #908070
inline const std::string D = bytes({0xa0, 0xb0, 0xc0});  // #C0B0A0
}  // namespace record_colours

}  // namespace korvex::testing
