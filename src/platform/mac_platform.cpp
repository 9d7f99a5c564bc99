#include "platform/mac_platform.h"

namespace korvex::platform {

std::vector<std::string> MacMapPlatform::map_folders() const {
    const std::string tail = "/Library/Application Support/Garmin/Maps";
    return {root_ + home_ + tail, root_ + tail};
}

}  // namespace korvex::platform
