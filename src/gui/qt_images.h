// Image files through Qt's image readers: every format the installed
// plugins know (PNG, BMP, JPEG, GIF, XPM, ICO; no WMF). The BMP of a saved
// icon is made by Qt too and written atomically.
#pragma once

#include "platform/images.h"

namespace korvex::gui {

class QtImageCodec : public platform::ImageCodec {
public:
    platform::ImageRead read(const std::string& path) override;
    bool write_bmp(const std::string& path, const platform::Image& image, std::string* error = nullptr) override;
};

}  // namespace korvex::gui
