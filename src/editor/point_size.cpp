#include "editor/point_size.h"

#include <algorithm>

#include "editor/canvas.h"
#include "editor/night_option.h"
#include "editor/palette_edit.h"
#include "editor/image_raster.h"

namespace korvex::editor {

namespace {

// Palette trims after a change of size are housekeeping: their reports
// ("Unused colours have been removed.") would only puzzle the user here.
void trim_quietly(EditorSession& e) {
    if (e.truecolour || e.ncols() < 2) return;
    platform::QuietPrompt quiet;
    trimcols(e, quiet);
}

void size_changed(EditorSession& e) {
    e.width_box = e.width;
    e.height_box = e.height;
    e.eddirty = true;
    e.changes1 |= ch_dimensions;
}

void drop_night(EditorSession& e) {
    drop_point_night(e);
    e.changes1 |= ch_night;
}

// The night picture of a point takes the same frame as the day one, so both
// keep one size.
void crop_other(PointPicture& p, const Rect& f) {
    if (p.empty()) return;
    PixelGrid idx(f.w, f.h), op(f.w, f.h);
    Raster surface(f.w, f.h);
    for (int y = 0; y < f.h; ++y)
        for (int x = 0; x < f.w; ++x) {
            idx.set(x, y, p.pixels.at(f.x + x, f.y + y));
            op.set(x, y, p.opacity.at(f.x + x, f.y + y));
            surface.set(x, y, p.surface.at(f.x + x, f.y + y));
        }
    if (!p.pixels.empty()) p.pixels = std::move(idx);
    if (!p.opacity.empty()) p.opacity = std::move(op);
    if (!p.surface.empty()) p.surface = std::move(surface);
}

bool valid_side(int v) { return v >= 1 && v <= k_max_point_side; }

}  // namespace

void savebmp(EditorSession& e, int n) {
    SizeSnapshot& s = e.sizeundo.slot[static_cast<size_t>(n != 0)];
    s.valid = true;
    s.width = e.width;
    s.height = e.height;
    s.truecolour = e.truecolour;
    s.palette = e.palette;
    s.pixels = e.pixels;
    s.opacity = e.opacity;
    s.surface = e.surface;
    s.other = e.other;
    s.bmpmode = e.bmpmode;
    s.has_night_bitmap = e.has_night_bitmap;
}

bool size_undo_step(EditorSession& e, int n) {
    const SizeSnapshot& s = e.sizeundo.slot[static_cast<size_t>(n != 0)];
    if (!s.valid) return false;
    e.width = s.width;
    e.height = s.height;
    e.truecolour = s.truecolour;
    e.palette = s.palette;
    e.pixels = s.pixels;
    e.opacity = s.opacity;
    e.surface = s.surface;
    e.other = s.other;
    e.bmpmode = s.bmpmode;
    e.has_night_bitmap = s.has_night_bitmap;
    if (!e.truecolour) painticon(e);
    trim_quietly(e);
    if (!e.palette.valid(e.curcol)) e.curcol = e.ncols() >= 1 ? 1 : -1;
    if (!e.palette.valid(e.curcol2)) e.curcol2 = e.curcol;
    // Level 0 and level 1 both hold the picture brought back.
    start_history(e);
    e.undo.store(undo_picture(e));
    size_changed(e);
    return true;
}

bool check4up(EditorSession& e, platform::Prompt& ui) {
    if (e.truecolour) {
        ui.message("Convert to 256 Colours first.");
        e.newbmp = 0;
        return false;
    }
    if (e.newbmp) {
        if (!ui.yes_no("Continue?")) return false;
        drop_night(e);
        return true;
    }
    if (!ui.yes_no("Points with night bmp cannot be resized.\r\nContinue?")) return false;
    drop_night(e);
    return true;
}

bool changepoisize(EditorSession& e, platform::Prompt& ui, int width, int height, bool stretch) {
    if (!valid_side(width) || !valid_side(height)) {
        ui.message("Please enter valid bitmap sizes (1 - 128)");
        return false;
    }
    savebmp(e, 0);
    if (width == e.width && height == e.height) return true;
    if (stretch) {
        e.pixels = stretch_grid(e.pixels, width, height);
        e.opacity = stretch_grid(e.opacity, width, height);
        e.surface = stretch_raster(e.surface, width, height);
    } else {
        // The picture keeps its place at the top left; the rest is transparent.
        uint8_t pad = 0;
        if (!e.truecolour) {
            int t = e.palette.first_transparent(e.transparentcolour);
            if (t == 0 && e.ncols() < k_max_colours) {
                e.palette.colours.push_back(e.transparentcolour);
                if (!e.palette.alpha.empty()) e.palette.alpha.push_back(k_no_alpha);
                t = e.ncols();
                e.changes1 |= ch_ncols;
            }
            pad = static_cast<uint8_t>(std::max(t, 1) - 1);
        }
        PixelGrid px(width, height, pad), op(width, height);
        Raster surface(width, height, e.transparentcolour);
        for (int y = 0; y < std::min(height, e.height); ++y)
            for (int x = 0; x < std::min(width, e.width); ++x) {
                px.set(x, y, e.pixels.at(x, y));
                op.set(x, y, e.opacity.at(x, y));
                surface.set(x, y, e.surface.at(x, y));
            }
        e.pixels = std::move(px);
        e.opacity = std::move(op);
        e.surface = std::move(surface);
    }
    e.width = width;
    e.height = height;
    if (!e.truecolour) painticon(e);
    trim_quietly(e);
    start_history(e);
    size_changed(e);
    savebmp(e, 1);
    return true;
}

void procnobitmap(EditorSession& e) {
    e.width = e.height = 0;
    e.pixels = {};
    e.opacity = {};
    e.surface = {};
    e.pixeltext.clear();
    start_history(e);
    size_changed(e);
}

bool resize_point(EditorSession& e, platform::Prompt& ui, int width, int height, bool stretch) {
    // Levels are kept a pixel; a stretch would have to invent them.
    if (e.alpha && (width != e.width || height != e.height)) {
        ui.message("Untick Opacity first.");
        return false;
    }
    if (width > k_max_point_side || height > k_max_point_side) {
        ui.message("maximum length=128");
        return false;
    }
    const bool night = e.has_night_bitmap || e.bmpmode != 0 || e.newbmp;
    if (width == 0 && height == 0) {
        if (e.width == 0 && e.height == 0) return true;
        if (!ui.yes_no("This may cause problems on Mapsource & some devices.\r\nBitmap will be removed.\r\nContinue?"))
            return false;
        // A night picture cannot keep a size the day no longer has.
        if (night && !check4up(e, ui)) return false;
        savebmp(e, 0);
        procnobitmap(e);
        savebmp(e, 1);
        return true;
    }
    const bool changes = width != e.width || height != e.height;
    if (changes && valid_side(width) && valid_side(height) && night && !check4up(e, ui))
        return false;
    return changepoisize(e, ui, width, height, stretch);
}

bool changebmp(EditorSession& e, platform::Prompt& ui, int height) {
    if (height < 1 || height > 32) {
        ui.message("Please enter a valid size between 1 & 32.");
        return false;
    }
    constexpr int k_line_width = 32;
    if (height == e.height && e.width == k_line_width) return true;
    savebmp(e, 0);
    PixelGrid px(k_line_width, height);
    for (int y = 0; y < std::min(height, e.height); ++y)
        for (int x = 0; x < std::min(k_line_width, e.width); ++x) px.set(x, y, e.pixels.at(x, y));
    e.width = k_line_width;
    e.height = height;
    e.pixels = std::move(px);
    e.opacity = PixelGrid(k_line_width, height);
    painticon(e);
    start_history(e);
    size_changed(e);
    savebmp(e, 1);
    return true;
}

bool crop(EditorSession& e, platform::Prompt& ui, const Rect& frame, bool opacity_panel) {
    if (opacity_panel) {
        ui.message("Untick Opacity first.");
        return false;
    }
    const Rect f = frame_between(frame.x, frame.y, frame.x + frame.w - 1, frame.y + frame.h - 1, e.width, e.height);
    if (frame.empty() || f.empty()) return false;
    if ((e.has_night_bitmap || e.newbmp) && !ui.yes_no("Night bmp will be cropped as well: Continue?")) return false;
    if (f == Rect{0, 0, e.width, e.height}) return true;
    savebmp(e, 0);
    crop_picture(e, f);
    crop_other(e.other, f);
    savebmp(e, 1);
    return true;
}

}  // namespace korvex::editor
