// Font conversion over many elements (fontconv): the font form and the
// colour form of the dialog run on the selection of the class in view or on
// whole classes, rewrite the elements' font lines and report the counts.
// Also the Create Font List report and the "Add String (= 0 x language)"
// insertion of the code panel.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "integration/font_section.h"
#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::integration {

// The dialog's mode as its caller sets it.
enum FontMode : int {
    k_fonts_classes = 13,    // Font Conversion: whole classes by the boxes
    k_fonts_selection = 14,  // Edit  Fonts of Selected Elements: the class in view
    k_fonts_colours = 16,    // the colour form
};

// The entries of the font combo, "Default" first.
const std::vector<std::string>& font_styles();
// The captions of the options of a mode (four in the font form, two in the colour form).
std::vector<std::string> font_option_captions(int mode);

// What the dialog holds when OK is pressed.
struct FontRequest {
    int mode = k_fonts_selection;
    int option = k_font_add_if_none;
    std::string style = "Default";
    bool polygons = false, lines = false, points = false;  // the class boxes
    bool select_all = false;
    std::string day = "000000", night = "FFFF00";          // RRGGBB
};

// The day and night colours of the dialog from the settings: a day value
// shorter than 2 characters is black ("0"), a night one yellow.
std::string font_day_colour(const std::string& saved);
std::string font_night_colour(const std::string& saved);

struct FontCounts {
    int polygons = 0, lines = 0, points = 0;  // elements changed
    int visited = 0;                           // elements looked at
    int had = 0;                               // of them, with a style (or colours)
    int total() const { return polygons + lines + points; }
};

// The elements of one table class (0 polygons, 1 lines with the active ones,
// 2 points) by store row. Rows outside the table are skipped.
FontCounts convert_rows(model::Store& s, int table, const std::vector<int32_t>& rows, const FontRequest& r);

// com1, the dialog's OK. curclass is the class in view and selected its
// selected store rows. Refusals: "Tick Select All" with the selection hint
// when nothing is selected and Select All is not ticked; "No Font selected".
// Otherwise runs (fontconvsel on the class in view in mode 14, fontconvert
// in the order polygons, lines, points otherwise), sets dirty when anything
// changed and shows the report. False when refused.
bool fontconv(model::Store& s, platform::Prompt& ui, const Messages& m, const FontRequest& r, int curclass,
              const std::vector<int32_t>& selected, FontCounts* counts = nullptr);

// The report text of a run.
std::string font_report(const FontCounts& c, const FontRequest& r);

// Create Font List (mfnt(2)) of the class in view: "FONTLIST for " and the
// class name, then a line a row: its type as the grid shows it ("0x02a00"),
// "," and its style, or " - " without one.
std::string font_list(const model::Store& s, int cls);

// mads: text with the next free "String" line put where the selection
// [from, to) stood, holding the selected text behind "=0x" + the language in
// two hex digits + ",". caret is where the insertion ends. Positions are
// byte offsets into text.
struct StringInsertion {
    std::string text;
    size_t caret = 0;
};
StringInsertion mads(const std::string& text, size_t from, size_t to, int language);

}  // namespace korvex::integration
