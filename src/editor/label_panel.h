// The label panel's logic: the language texts of an element, its font style
// and label colours, read from and written to the element's key lines; the
// code page of a language; and the two canvas helpers that live beside it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "editor/label_state.h"
#include "platform/prompt.h"

namespace korvex::editor {

// "Default,Nolabel,SmallFont,Normal,Large".
const std::vector<std::string>& font_styles();
// The style word of a text, found whatever its case; index 0's word when
// it is not found.
std::string fncombo3(const std::string& text);
// Index of a style text in font_styles(), -1 when it is none of them.
int font_style_index(const std::string& text);

// The value of the two hex digits behind "0x" in text; -1 when there are none.
int fndlang(const std::string& text);
// The code page of a language number; file_codepage for 0 and for a UTF-8 project.
int language_codepage(int language, int file_codepage);

// A caption colour for a box of colour hex (text order, padded): 0xFFFFFF
// (white) when the colour is dark, else 0.
uint32_t chktxt4(const std::string& hex);

// Reads the String, ExtendedLabels, FontStyle and custom colour lines of an
// element's text.
LabelState read_labels(const std::string& element_text);
// The key lines of the labels, as the commit writes them: String lines, then
// ExtendedLabels (and FontStyle, CustomColor, the two colours) when
// extended labels are on; "ExtendedLabels=N" for lines without them.
std::string string_lines(const LabelState& l);
std::string font_lines(const LabelState& l, bool line_class);

// A text for the box from a slot: "|" back to line ends; a long single line
// broken at the first blank from position 27 when it comes before 34, else
// at position 31.
std::string slot_to_box(const std::string& stored);
// The box's text for its slot: line ends to "|".
std::string box_to_slot(const std::string& box);

// The shown text (line ends as in the box, bytes in the slot's code page)
// goes to the current slot, only when it was edited: an untouched label
// keeps its exact bytes, even those the code page cannot show.
void store_label(EditorSession& e, const std::string& shown_box);

// Choosing another language slot: the shown text goes to its slot when it
// was changed, and the new slot's text is returned for the box.
std::string choose_language(EditorSession& e, int slot, const std::string& shown_box);

// The "Font Colours" tick: refused with "Font colours require the extended
// option ticked." while extended labels are off. Returns the tick's state.
bool set_font_colours(EditorSession& e, bool on, platform::Prompt& ui);
// A click on a label colour cell ("fntcol"), day or night. It is dropped
// while a filter panel waits for its Apply or Cancel. The colour is the one
// picked in the chooser palette when one is, else the colour dialog's
// (dialog gets the current colour and returns -1 for Cancel). True when the
// colour was set.
bool set_label_colour(EditorSession& e, bool night, bool panel_open, std::optional<uint32_t> chooser_pick,
                      const std::function<int64_t(uint32_t)>& dialog);
// The "Extended Labels" tick; off sets the style back to Default.
void set_extended_labels(EditorSession& e, bool on);

// mut8 ("Pasted UTF-8"): the clipboard's Unicode text, trimmed, as bytes of
// the label's page (UTF-8 in a 65001 file). "No text to paste" when empty;
// characters the page lacks stay "?", and a "??" in the result warns
// " Clipboard Text does not match language?" with "Change " and the
// language's name. False when there was nothing to paste.
bool mut8(const std::string& clipboard_utf8, int file_codepage, int language, const std::string& language_name,
          platform::Prompt& ui, std::string& bytes);

// adb: a transparent margin around the picture. "No transp. Please add a
// transparent color" without a transparent entry; "Too big> " and the size
// over 128.
bool adb(EditorSession& e, int margin, platform::Prompt& ui);
// adcvs: doubles the canvas on side "L", "R", "U" or "D", the picture at the
// far side. "Please add a transparent color", "Too big >", "Deselect night bitmap.".
bool adcvs(EditorSession& e, char side, platform::Prompt& ui);
// The add-canvas dialog's answer: "M" and a margin runs adb, a side letter
// adcvs; anything else does nothing.
bool add_canvas(EditorSession& e, const std::string& answer, platform::Prompt& ui);

}  // namespace korvex::editor
