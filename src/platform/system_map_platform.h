// The installed-map system of the machine the program runs on.
#pragma once

#include <memory>

#include "platform/environment.h"
#include "platform/map_platform.h"

namespace korvex::platform {

// Windows: its registry; macOS: its Maps folders; elsewhere the Wine prefix
// of $WINEPREFIX or ~/.wine.
std::unique_ptr<MapPlatform> system_map_platform(const Environment& env);

}  // namespace korvex::platform
