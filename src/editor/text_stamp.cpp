#include "editor/text_stamp.h"

namespace korvex::editor {

bool can_add_text(const EditorSession& e, platform::Prompt& ui) {
    if (e.width <= 0 || e.height <= 0 || e.solid) return false;
    if (!e.truecolour && !e.palette.valid(e.curcol)) {
        ui.message("Please select a colour.");
        return false;
    }
    if (e.height < 6) {
        ui.message("Bitmap Height should be at least 6");
        return false;
    }
    return true;
}

void draw_text(Raster& surface, const platform::TextMask& mask, int x, int y, uint32_t colour) {
    for (int my = 0; my < mask.height; ++my)
        for (int mx = 0; mx < mask.width; ++mx)
            if (mask.covered(mx, my)) surface.set(x + mx, y + my, colour);
}

}  // namespace korvex::editor
