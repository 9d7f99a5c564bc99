// Garmin's default names of types, for the ";" comment ahead of an element
// when "Show Garmin Types in text" is on.
#pragma once

#include <string>

namespace korvex::typ {

// code: "0x" and hex digits. cls 0 polygons, 1 lines, 2 points.
// "Garmin:" and the name, " -" when unknown, "CUSTOM ICON" for custom points.
std::string fnbd(const std::string& code, int cls);

}  // namespace korvex::typ
