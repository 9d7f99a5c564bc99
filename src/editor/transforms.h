// Whole-picture turns: the quarter turn and the two mirror images. Both
// work on the palette indexes (and the opacity plane with them), or on the
// colours of a true-colour icon.
#pragma once

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

// rotate: a quarter turn clockwise; width and height change places.
// Polygons and lines refuse it ("Rotation not permitted."), and so does a
// picture with a selection ("Cannot apply to selections."). A square
// picture gets an undo level; any other starts the history again.
bool rotate(EditorSession& e, bool selection_active, platform::Prompt& ui);

// flip: axis 0 mirrors left and right, axis 1 top and bottom. A selection
// refuses it ("Invert selection first."). One undo level.
bool flip(EditorSession& e, int axis, bool selection_active, platform::Prompt& ui);

}  // namespace korvex::editor
