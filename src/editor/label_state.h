// The label side of the working copy: a text for each language, the font
// style and the element's own label colours.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korvex::editor {

struct LabelSlot {
    int number = 0;      // the String key's number (String1 = 1); 0 for a plain "String="
    int language = 0;    // language code, the value behind "0x"
    std::string text;    // bytes of the language's code page (UTF-8 in a 65001 project); line ends as "|"
};

struct LabelState {
    std::vector<LabelSlot> labels;  // in the order of the element's text
    int curlang = 0;                // slot shown
    int labelcodepage = 1252;
    std::string fontstyle;          // text behind "FontStyle=" as on entry, "" for none
    int fontstyle_index = 0;        // 0 Default .. 4 Large; 5 keeps an unknown style as it was
    bool extendedlabels = false;    // tick "Extended Labels"
    bool fontcolours = false;       // tick "Font Colours"
    uint32_t daylabelcolour = 0;    // red in the low byte
    uint32_t nightlabelcolour = 0;
    bool has_day = false, has_night = false;  // which of the two colours the element carries

    bool operator==(const LabelState&) const = default;
};

}  // namespace korvex::editor
