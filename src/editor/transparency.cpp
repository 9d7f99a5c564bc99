#include "editor/transparency.h"

#include "editor/canvas.h"
#include "editor/night_option.h"
#include "editor/palette_edit.h"

namespace korvex::editor {

namespace {

void settle(EditorSession& e) {
    if (!e.alpha) e.colormode = e.palette.first_transparent(e.transparentcolour) != 0 ? 16 : 0;
    painticon(e);
    e.eddirty = true;
    e.changes1 |= ch_colour;
}

}  // namespace

int transp_entry_of(const EditorSession& e) {
    if (e.curclass == k_polygon_group) return 1;
    if (e.curclass == k_line_group) return 2;
    return e.curcol;
}

bool transp(EditorSession& e, bool on, platform::Prompt& ui) {
    const int entry = transp_entry_of(e);
    const uint32_t m = e.transparentcolour;
    if (e.truecolour || !e.palette.valid(entry) || on == e.palette.transparent(entry, m)) return false;
    if (e.alpha) {
        ui.message("Please set opacity of one color to 15");
        return false;
    }
    if (!resetnight(e, ui)) return false;
    if (!on) {
        if (e.transp_entry != entry) {
            ui.message("Can't make transparent solid");
            return false;
        }
        e.palette.set(entry, e.transp_colour);
        e.transp_entry = 0;
        settle(e);
        return true;
    }
    if (!is_point(e) && !e.is_group()) {
        const std::string why = transparency_refusal(e, entry);
        if (!why.empty()) {
            ui.message(why);
            return false;
        }
    }
    const int old = e.palette.first_transparent(m);
    int at = entry;
    if (old != 0) {
        if (e.curclass == 4 && e.curcol == 1) {
            // The old entry stays where it is, solid again.
            e.palette.set(old, e.transp_entry == old ? e.transp_colour : 0xFFFFFF);
        } else {
            // Its pixels go to the new transparent entry, and it leaves.
            const int gone = old - 1;
            if (entry > old) --at;
            for (uint8_t& v : e.pixels.values()) {
                if (v == gone)
                    v = static_cast<uint8_t>(at - 1);
                else if (v > gone)
                    --v;
            }
            e.palette.colours.erase(e.palette.colours.begin() + gone);
            if (static_cast<size_t>(gone) < e.palette.alpha.size()) e.palette.alpha.erase(e.palette.alpha.begin() + gone);
            if (e.curcol2 == old) e.curcol2 = -1;
            else if (e.curcol2 > old) --e.curcol2;
            e.changes1 |= ch_ncols;
        }
    }
    e.transp_entry = at;
    e.transp_colour = e.palette.colour(at);
    e.palette.set(at, m);
    e.curcol = at;
    settle(e);
    if (old != 0) start_history(e);
    return true;
}

}  // namespace korvex::editor
