// The font lines of one element's text section: FontStyle=, ExtendedLabels=,
// CustomColor= and the two custom colour keys. These rewrite the lines and
// leave every other line as it stands.
#pragma once

#include <string>

namespace korvex::integration {

// The four options of the font form.
enum FontOption : int {
    k_font_remove = 0,        // "Remove Existing Fonts"
    k_font_add_if_none = 1,   // "Add Font if no Font exists"
    k_font_add = 2,           // "Add Font"
    k_font_replace_only = 3,  // "Replace Existing Fonts Only"
};

// The two options of the colour form.
enum ColourOption : int {
    k_colours_all = 0,        // "Add current Font colours to ALL"
    k_colours_if_none = 1,    // "Add current Font colours if none exist"
};

struct SectionChange {
    bool changed = false;
    bool had = false;  // the section had a style (font form) or custom colours (colour form)
};

// The font form on one section: style is the combo's text ("Default",
// "Nolabel", "SmallFont", "Normal", "Large"). A new style line stands before
// the first picture head, with "ExtendedLabels=Y" in front when the section
// has no ExtendedLabels line; another ExtendedLabels value becomes "Y".
SectionChange convert_font(std::string& section, int option, const std::string& style);

// The colour form on one section: day and night are six hex digits RRGGBB.
// The colours replace what stands (option 0) or go only where none stands
// (option 1, "CustomColor=No" counting as none), as "CustomColor=DayAndNight",
// "DaycustomColor:#" day and "NightcustomColor:#" night; a section without a
// style gets "FontStyle=default" before its picture head.
SectionChange convert_colours(std::string& section, int option, const std::string& day, const std::string& night);

// The style of a section as its FontStyle line says it; "" when it has none.
std::string font_style_of(const std::string& section);

}  // namespace korvex::integration
