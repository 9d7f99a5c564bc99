// The text stamp's glyphs drawn by Qt, without anti-aliasing.
#pragma once

#include "platform/text_raster.h"

namespace korvex::gui {

class QtTextRasteriser : public platform::TextRasteriser {
public:
    platform::TextMask render(const std::string& utf8, const platform::TextStyle& style) const override;
};

}  // namespace korvex::gui
