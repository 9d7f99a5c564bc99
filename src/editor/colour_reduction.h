// Colour reduction: a picture on the surface that holds many colours (an
// imported or pasted image, a true-colour point turned back into a palette
// icon, the result of a filter) becomes a palette picture of at most
// k_max_colours entries. histogram picks a few levels a channel from the
// channel histograms, merges near colours and maps every pixel to the new
// palette; reducecols repaints the surface from a palette.
#pragma once

#include "editor/editor_session.h"

namespace korvex::editor {

// Who asks for the reduction: a full reduction (64 level groups a channel),
// the rebuild after a colour was removed, or a paste or import that brings
// the palette down to a target count (both 8 level groups a channel).
enum class ReduceMode { full = 0, remove_colour = 1, paste = 2 };

struct ReduceOutcome {
    int before = 0;             // distinct colours on the surface
    int after = 0;              // entries of the palette now
    bool palette_kept = false;  // too many colours: the old palette stays
};

// Reads e.surface (a width or height of 0 counts as 1), derives the palette,
// writes e.palette and e.pixels, then repaints the surface with reducecols
// (classes other than points) or painticon (points). `target` is the colour
// count of the paste mode; 0 means 2.
ReduceOutcome histogram(EditorSession& e, ReduceMode mode, int target = 0);

// Each surface pixel takes the palette entry nearest to its colour (the
// lowest entry keeps a tie), the surface is repainted in the entry colours
// and pixeltext rebuilt.
void reducecols(EditorSession& e);

}  // namespace korvex::editor
