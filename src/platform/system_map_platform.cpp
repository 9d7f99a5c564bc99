#include "platform/system_map_platform.h"

#include "platform/mac_platform.h"
#include "platform/windows_platform.h"
#include "platform/wine_platform.h"

namespace korvex::platform {

std::unique_ptr<MapPlatform> system_map_platform(const Environment& env) {
#if defined(_WIN32)
    (void)env;
    return std::make_unique<WindowsMapPlatform>();
#elif defined(__APPLE__)
    return std::make_unique<MacMapPlatform>(env.get("HOME"));
#else
    return std::make_unique<WinePlatform>(default_wine_prefix(env));
#endif
}

}  // namespace korvex::platform
