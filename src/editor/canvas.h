// The picture of the working copy kept twice: `pixels` (palette indices,
// the data) and `surface` (colours, what the tools paint on). painticon
// draws the surface from the data; translate reads the surface back into the
// data and makes a new undo level. A true-colour icon has only the surface.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "editor/selection.h"
#include "platform/prompt.h"

namespace korvex::editor {

// Sizes pixels, opacity and surface for width x height (all cleared) and
// starts a fresh history.
void resize_picture(EditorSession& e, int width, int height);

// Redraws the surface from pixels and the palette; rebuilds pixeltext.
void painticon(EditorSession& e);

// Reads the surface into pixels: each pixel takes the first palette entry
// of its colour; a colour of no entry takes the entry of the pixel before
// it (classes below 4) or entry 1. The surface is then repainted in the
// exact entry colours, and the picture is stored as a new undo level.
void translate(EditorSession& e);

// The history's level for the picture: its size, mode and palette, then the
// plane (indices, or colours for true colour), so that a step that brought
// a new palette or size (an import, a paste, a reduction, a filter) is
// taken back whole.
std::vector<uint32_t> undo_picture(const EditorSession& e);
// The picture becomes the history's level shown.
void show_undo_level(EditorSession& e);
// Level 0 becomes the picture as it stands; earlier levels are gone.
void start_history(EditorSession& e);
// Ctrl+Z and Ctrl+Y: false when there is nothing to step to.
bool undo_step(EditorSession& e);
bool redo_step(EditorSession& e);

// Pixel rows in the symbols of the element's colour lines, CR LF after each
// row: "0"/"1" for a polygon or line, canonical point symbols for a point.
std::string pixel_rows(const EditorSession& e);
// The symbol of palette index n (from 0) in a point picture of ncols colours.
std::string point_symbol(int n, int ncols);

// clearicon: every pixel takes the current colour after "This clears the
// whole icon using current colour. Are you sure?"; "No bitmap to clear."
// without a picture, "Untick Colormode32." in opacity mode. The history
// starts again from the cleared picture.
bool clearicon(EditorSession& e, platform::Prompt& ui, bool opacity_panel = false);

// Before a palette change: the palette and the picture are kept so that
// Ctrl+Z can take the change back (save_curpalette). load_lastpalette swaps
// the kept and the current ones, so a second Ctrl+Z brings the change
// again; false when nothing is kept.
void save_curpalette(EditorSession& e);
bool load_lastpalette(EditorSession& e);

// A solid line (colours and widths only) becomes a bitmap line before a
// drawing tool can work on it: "Using this tool you will not be able to
// alter border or line heights." and "Continue?" must be answered yes. The
// bitmap is 32 wide and 2 x border + lwidth( high: border rows in the
// second colour (transparent when the line has none), the line between.
bool convert_to_bitmap(EditorSession& e, platform::Prompt& ui);
// The conversion itself, without the question.
bool line_bitmap(EditorSession& e);

// Cuts the picture to the frame (a point's crop); the history starts again.
void crop_picture(EditorSession& e, const Rect& frame);

}  // namespace korvex::editor
