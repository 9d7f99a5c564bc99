// Changes of a bitmap's size: a point's new width and height (stretched or
// padded), a point without bitmap, a line's bitmap height, the crop to a
// frame, and the undo of a change of size, which keeps the picture before
// and after the change.
#pragma once

#include "editor/editor_session.h"
#include "editor/selection.h"
#include "platform/prompt.h"

namespace korvex::editor {

// The largest side of a point's bitmap.
constexpr int k_max_point_side = 128;

// savebmp: the picture as it stands goes to slot n, 0 before a change of
// size and 1 after it.
void savebmp(EditorSession& e, int n);
// The button " Undo Bitmap Change of Size ": slot 0 steps back, slot 1
// forward. The picture, palette and size of the slot come back, the
// history starts from them at level 1 over level 0, and a palette icon
// loses its unused entries. False when the slot holds nothing.
bool size_undo_step(EditorSession& e, int n);

// check4up, before a point with a night bitmap changes size: a true-colour
// icon refuses ("Convert to 256 Colours first."); a night bitmap still
// waiting to be confirmed goes after "Continue?"; a night bitmap goes after
// "Points with night bmp cannot be resized." and "Continue?". True when the
// resize may go on (the night bitmap is then gone).
bool check4up(EditorSession& e, platform::Prompt& ui);

// changepoisize: both sides 1 to 128 ("Please enter valid bitmap sizes
// (1 - 128)"). The picture is stretched to the new size, or kept at the
// top left and padded at the right and bottom with the transparent entry
// (which a palette without one gains). A palette icon then drops unused
// entries. The history starts again; the size undo holds both states.
bool changepoisize(EditorSession& e, platform::Prompt& ui, int width, int height, bool stretch);

// procnobitmap: the point has no bitmap (0 x 0); the palette stays.
void procnobitmap(EditorSession& e);

// The size button of a point, and Apply with changed size boxes: sides
// above 128 refuse with "maximum length=128"; 0 x 0 removes the bitmap
// after "This may cause problems on Mapsource & some devices.", "Bitmap will
// be removed." and "Continue?"; a night bitmap asks check4up first.
bool resize_point(EditorSession& e, platform::Prompt& ui, int width, int height, bool stretch);

// changebmp: a line's bitmap takes a new height (1 to 32, else "Please
// enter a valid size between 1 & 32."); the width stays 32. The rows that
// remain keep their pixels; new rows take the first entry.
bool changebmp(EditorSession& e, platform::Prompt& ui, int height);

// crop: the bitmap becomes the frame. Refused with "Untick Opacity first."
// in opacity mode; with a night bitmap "Night bmp will be cropped as well:
// Continue?" must be answered yes. The size undo holds both states.
bool crop(EditorSession& e, platform::Prompt& ui, const Rect& frame, bool opacity_panel);

}  // namespace korvex::editor
