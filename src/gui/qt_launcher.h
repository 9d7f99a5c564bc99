// Opens a file with the program the desktop associates with it.
#pragma once

#include "platform/launcher.h"

namespace korvex::gui {

class QtLauncher : public platform::Launcher {
public:
    // A path, or an address with a scheme ("https://..."). False when the
    // desktop found nothing to open it with.
    bool open(const std::string& path) override;
};

}  // namespace korvex::gui
