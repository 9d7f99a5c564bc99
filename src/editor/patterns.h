// Pattern generators: bars and waves in the current colour, painted over
// the picture (or the selection) from a random start.
#pragma once

#include <random>

#include "editor/editor_session.h"
#include "editor/selection.h"
#include "platform/prompt.h"

namespace korvex::editor {

// kind 0: horizontal, 1: vertical.
// stripes: bars `width` pixels wide (1 or more) with gaps as wide, the
// first at a random offset. waves: lines of wave segments, each line
// shifted by a uniform random number scaled by 10. Both paint within area
// (the whole picture when it is empty) and end in translate. A palette
// icon without a chosen colour refuses with "Please load a TYP file.".
bool stripes(EditorSession& e, int kind, int width, const Rect& area, std::mt19937& random, platform::Prompt& ui);
bool waves(EditorSession& e, int kind, const Rect& area, std::mt19937& random, platform::Prompt& ui);

}  // namespace korvex::editor
