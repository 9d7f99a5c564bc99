// Colours of the logic (red in the low byte, blue in the third) as Qt colours.
#pragma once

#include <QColor>
#include <cstdint>

namespace korvex::gui {

inline QColor qcolour(uint32_t c) {
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF));
}

}  // namespace korvex::gui
