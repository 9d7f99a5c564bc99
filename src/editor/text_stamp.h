// The text stamp: a text rendered by the platform, placed on the surface in
// the current colour where its glyphs cover a pixel.
#pragma once

#include "editor/editor_session.h"
#include "platform/prompt.h"
#include "platform/text_raster.h"

namespace korvex::editor {

// addtext's checks: "Please select a colour." without a current colour,
// "Bitmap Height should be at least 6" for a picture lower than 6 pixels;
// a line or polygon without bitmap has nothing to stamp on.
bool can_add_text(const EditorSession& e, platform::Prompt& ui);

// Draws the covered pixels of mask with its top left at (x, y).
void draw_text(Raster& surface, const platform::TextMask& mask, int x, int y, uint32_t colour);

}  // namespace korvex::editor
