// Changes to the element's palette: adding, deleting and trimming entries,
// making equal entries distinct, two-colour reduction, and the colour lines
// of the palette as text.
#pragma once

#include <cstdint>
#include <string>

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

// getcurcol: quote, index code, tab, "c #", six digits red green blue,
// quote, CR LF for each entry; one index character of code i + 35 below the
// two-character limit, else two.
std::string getcurcol(const Palette& p);

// "Add 1 Color": the lightest grey not yet in the palette (245 when all are
// taken), or while the palette stays below three entries the default colour
// of the new entry's number. The new entry becomes curcol. Refusals:
// "Maximum Colours = 254", "Only two colours allowed." for polygons and
// lines, "With Opacity (colormode 32) only 'pink opacity tools' can be
// used." with the opacity panel on. Returns the new entry, 0 when refused.
int add_colour(EditorSession& e, platform::Prompt& ui, uint32_t default1, uint32_t default2, bool opacity_panel = false);

// Deletes entry (from 1): its pixels take the entry before it (entry 2 when
// it is the first), the entries above move down. Refuses a true-colour icon
// ("Convert to 256 Colours first."), opacity mode ("Untick Opacity first.")
// and the last entry. The history starts again.
bool removecol(EditorSession& e, int entry, platform::Prompt& ui, bool opacity_panel = false);

// Removes entries no pixel uses: the colours in use are ordered as met from
// the last row up (equal entries merge); a used transparent entry keeps its
// place among them. "No colours to trim" for
// fewer than two; "No usused colours found." when none goes; else
// "Unused colours have been removed.". Group edits and opacity mode are
// left alone. Returns the number removed.
int trimcols(EditorSession& e, platform::Prompt& ui, bool opacity_panel = false);

// Later entries equal to an earlier one are moved by 1 (down when up would
// pass white) until all differ.
void fixcols(Palette& p);

// chk1col: with two equal entries, "Fix identical colours?"; yes runs
// fixcols. False when equal entries remain (the caller turns opacity off).
bool chk1col(EditorSession& e, platform::Prompt& ui);

// The transparency marker becomes marker: entries holding the old one take
// the new one, so they stay transparent.
void switch_transparent_marker(EditorSession& e, uint32_t marker);

// Two colours: pixels whose colour, as a number, lies above the middle of
// the lowest and highest colour in use (white and colours below 0x101011
// left out of that range) become entry 2, the others entry 1.
void twocols(EditorSession& e);

// The transparency rule of the class, for a request to make entry
// transparent: polygons and lines only the second entry, one transparent
// entry at most. Returns the refusal's message, "" when allowed.
std::string transparency_refusal(const EditorSession& e, int entry);

// A group of lines needs one transparent entry: "One colour needs to
// become tansparent. Please select." otherwise.
bool ch7transp(const EditorSession& e, platform::Prompt& ui);

}  // namespace korvex::editor
