// The true-colour tick of a point (truecol): a palette icon becomes a
// picture of colours, each pixel its own, and back.
#pragma once

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

// truecol(on). Opacity mode needs chk1col first. On refuses a point without
// a picture ("Change Width and Height."), without colours ("Add color.") and
// with colours no pixel uses ("Please Trim Colours."); an extended point
// needs resetnight. The picture becomes its colours (transtruecol) and
// takes colormode 16 when its first colour was transparent. Off: histogram
// derives a palette from the colours (opacity levels stay with their
// pixels). False when refused or when nothing changed.
bool truecol(EditorSession& e, bool on, platform::Prompt& ui);

// transtruecol: the surface, drawn from the picture, is the data from now
// on; the history starts again from it.
void transtruecol(EditorSession& e);

// The count the "Colours:" label shows: the entries of a palette, or one a
// pixel for a true-colour icon.
int colour_count(const EditorSession& e);

}  // namespace korvex::editor
