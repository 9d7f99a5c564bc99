#include "editor/night_option.h"

#include "editor/canvas.h"
#include "editor/label_panel.h"
#include "editor/point_pictures.h"

namespace korvex::editor {

namespace {

constexpr uint32_t k_white = 0xFFFFFF;

// A solid polygon keeps its night colour as its second entry.
bool solid_polygon(const EditorSession& e) { return e.store_class() == 0 && e.solid; }

void mark(EditorSession& e) {
    e.changes1 |= ch_night;
    e.eddirty = true;
}

}  // namespace

void drop_point_night(EditorSession& e) {
    if (e.bmpmode == 2) cmd19(e);
    e.other = {};
    e.bmpmode = 0;
    e.has_night_bitmap = false;
    e.night_shares_day = false;
    e.newbmp = 0;
}

bool has_night(const EditorSession& e) { return is_point(e) ? e.bmpmode != 0 : e.hasnight != 0; }

bool set_night(EditorSession& e, bool on, platform::Prompt& ui) {
    if (on == has_night(e)) return false;
    if (is_point(e)) {
        if (on) {
            // The night starts as the day picture with the day palette.
            e.other = canvas_picture(e);
            e.bmpmode = 1;
            e.has_night_bitmap = true;
            e.night_shares_day = false;
            e.newbmp = 1;
        } else {
            if (!ui.yes_no("This will delete current night colours . Continue?")) return false;
            drop_point_night(e);
        }
        mark(e);
        return true;
    }
    if (on) {
        Palette night = e.palette;
        if (solid_polygon(e)) night.colours.resize(1);
        bool whitened = false;
        for (uint32_t& c : night.colours)
            if (c == e.transparentcolour) {
                c = k_white;
                whitened = true;
            }
        if (whitened) ui.message("Transparent colour changed to 'white'.");
        if (solid_polygon(e))
            e.palette.colours.push_back(night.colours.empty() ? k_white : night.colours.front());
        else
            e.nightpal = night;
        if (!e.labels.extendedlabels) {
            set_extended_labels(e, true);
            ui.message("Font colours require the extended option ticked.");
        }
        ui.message("To Edit colours Click Edit Night Colours.");
        e.hasnight = 1;
    } else {
        if (solid_polygon(e) && e.nightpal.ncols() == 0 && e.palette.ncols() > 1) e.palette.colours.resize(1);
        e.nightpal = {};
        e.hasnight = 0;
    }
    if (!e.solid) painticon(e);
    mark(e);
    return true;
}

bool resetnight(EditorSession& e, platform::Prompt& ui) {
    if (e.curclass != 4 || e.bmpmode == 0 || e.truecolour) return true;
    if (e.bmpmode == 2) {
        ui.message("Revert to day colours before changing transparency option.");
        return false;
    }
    if (!ui.yes_no("This requires removing night option. Continue?")) return false;
    drop_point_night(e);
    mark(e);
    return true;
}

bool reverse_pair(EditorSession& e, platform::Prompt& ui) {
    const int cls = e.store_class();
    if (cls != 0 && cls != 1 && cls != 3) return false;
    if (e.solid || e.pixels.empty() || e.ncols() < 2) return false;
    const uint32_t m = e.transparentcolour;
    const bool transparent = e.palette.first_transparent(m) != 0 || e.nightpal.first_transparent(m) != 0;
    if (e.hasnight && transparent && !ui.yes_no("Both day & night colours are reversed due to transparency. Continue?")) return false;
    for (uint8_t& v : e.pixels.values()) v = v == 0 ? 1 : v == 1 ? 0 : v;
    painticon(e);
    e.undo.store(undo_picture(e));
    e.eddirty = true;
    e.changes1 |= ch_colour;
    return true;
}

Raster nightvers(const EditorSession& e) {
    if (is_point(e)) {
        if (e.bmpmode == 0) return {};
        const PointPicture night = night_picture(e);
        if (night.truecolour) return night.surface;
        Raster r(e.width, e.height);
        for (int y = 0; y < e.height; ++y)
            for (int x = 0; x < e.width; ++x) r.set(x, y, night.palette.colour(night.pixels.at(x, y) + 1));
        return r;
    }
    if (!e.hasnight) return {};
    const int cls = e.store_class();
    if (e.solid) {
        if (cls == 0) {
            const uint32_t c = e.nightpal.ncols() > 0 ? e.nightpal.colour(1) : e.palette.colour(2);
            return Raster(32, 32, c);
        }
        // Border rows, line rows, border rows, 32 wide.
        const int h = std::max(1, 2 * e.border + e.lwidth);
        Raster r(32, h, e.nightpal.colour(1));
        for (int y = 0; y < h; ++y)
            if (y < e.border || y >= e.border + e.lwidth)
                for (int x = 0; x < 32; ++x) r.set(x, y, e.nightpal.colour(std::min(2, e.nightpal.ncols())));
        return r;
    }
    Raster r(e.width, e.height);
    for (int y = 0; y < e.height; ++y)
        for (int x = 0; x < e.width; ++x) {
            const int entry = e.pixels.at(x, y) + 1;
            r.set(x, y, e.nightpal.valid(entry) ? e.nightpal.colour(entry) : e.palette.colour(entry));
        }
    return r;
}

}  // namespace korvex::editor
