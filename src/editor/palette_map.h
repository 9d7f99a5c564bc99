// Mapping a picture onto a chosen palette: each element colour takes the
// nearest palette colour, or, when none is near, the palette colour of the
// highest hue within the colour's hue band.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

struct Hsv {
    int h = 0, s = 0, v = 0;  // degrees 0..360, percent, percent
};
Hsv rgbtohsv(uint32_t colour);
// The reverse: hue, saturation and value (percent) to a colour, red low.
uint32_t HSLToRGB02(int hue, int saturation, int value);

// The palette file's colours as the mapping offers them: white and black
// appended when the text lacks them. A last field of the file that is not
// six digits long is no colour.
std::vector<uint32_t> chooser_colours(const std::string& palette_text);

// The index of the palette colour an element colour takes (palette.size()
// for an empty palette).
size_t nearest_index(uint32_t colour, const std::vector<uint32_t>& palette, const std::vector<Hsv>& hues);

// Maps the element's palette onto palette_text (a .tpal text). Refuses a
// true-colour icon with "Convert to 256 Colours."; with a selection the
// question "Action applies to the whole image." must be answered yes.
// Transparent entries keep their colour. A polygon's or line's colours stay
// distinct: an entry whose colour another entry took keeps its own, and the
// chooser cell of that colour is no longer offered; its index in
// chooser_colours(palette_text) goes to hidden. Returns true when it mapped.
bool apply_palette(EditorSession& e, const std::string& palette_text, bool selection_active, platform::Prompt& ui,
                   std::vector<size_t>* hidden = nullptr);

// The same with the palette file at path, read after the refusals above;
// "Can't find Palette " with the path when it cannot be read, and nothing
// changes.
bool apply_palette_file(EditorSession& e, const std::string& path, bool selection_active, platform::Prompt& ui,
                        std::vector<size_t>* hidden = nullptr);

}  // namespace korvex::editor
