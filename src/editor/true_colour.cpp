#include "editor/true_colour.h"

#include "editor/canvas.h"
#include "editor/colour_reduction.h"
#include "editor/night_option.h"
#include "editor/opacity.h"
#include "editor/palette_edit.h"

namespace korvex::editor {

namespace {

bool has_unused_entries(const EditorSession& e) {
    std::vector<bool> used(static_cast<size_t>(e.ncols()), false);
    for (uint8_t v : e.pixels.values())
        if (v < used.size()) used[v] = true;
    for (bool u : used)
        if (!u) return true;
    return false;
}

}  // namespace

int colour_count(const EditorSession& e) { return e.truecolour ? e.width * e.height : e.ncols(); }

void transtruecol(EditorSession& e) {
    if (!e.truecolour) painticon(e);
    e.truecolour = true;
    e.palette = {};
    e.pixeltext.clear();
    e.curcol = e.curcol2 = -1;
    start_history(e);
}

bool truecol(EditorSession& e, bool on, platform::Prompt& ui) {
    if (!is_point(e) || on == e.truecolour) return false;
    if (e.alpha && !chk1col(e, ui)) return false;
    if (on) {
        if (e.width <= 0 || e.height <= 0) {
            ui.message("Change Width and Height.");
            return false;
        }
        if (e.ncols() == 0) {
            ui.message("Add color.");
            return false;
        }
        if (has_unused_entries(e)) {
            ui.message("Please Trim Colours.");
            return false;
        }
        if (!resetnight(e, ui)) return false;
        const bool first_transparent = e.palette.transparent(1, e.transparentcolour);
        transtruecol(e);
        if (!e.alpha) e.colormode = first_transparent ? 16 : 0;
    } else {
        histogram(e, ReduceMode::full);
        e.truecolour = false;
        // The levels stay with the pixels; each colour takes its pixels' level.
        if (e.alpha) {
            e.palette.alpha.assign(e.palette.colours.size(), k_no_alpha);
            for (int y = 0; y < e.height; ++y)
                for (int x = 0; x < e.width; ++x) {
                    uint8_t& a = e.palette.alpha[static_cast<size_t>(e.pixels.at(x, y))];
                    if (a == k_no_alpha) a = e.opacity.at(x, y);
                }
        } else {
            e.colormode = e.palette.first_transparent(e.transparentcolour) != 0 ? 16 : 0;
        }
        painticon(e);
        start_history(e);
        e.curcol = e.ncols() >= 1 ? 1 : -1;
        e.curcol2 = e.ncols() >= 2 ? 2 : e.curcol;
    }
    e.changes1 |= ch_mode;
    e.eddirty = true;
    return true;
}

}  // namespace korvex::editor
