// The installed font families, as the desktop's font database lists them.
#pragma once

#include "platform/fonts.h"

namespace korvex::gui {

class QtFontList : public platform::FontList {
public:
    // Needs a running QGuiApplication.
    std::vector<std::string> families() const override;
};

}  // namespace korvex::gui
