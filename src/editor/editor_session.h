// The working copy of the icon editor: one element (or a group of polygons
// or lines) copied out of the tables when the editor opens, edited by the
// tools, palettes, filters and label panel, and written back by Apply.
// Nothing here touches the store; element_open.h fills it and
// editor_apply.h commits it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/label_state.h"
#include "editor/palette.h"
#include "editor/pixel_grid.h"
#include "editor/point_picture.h"
#include "editor/raster.h"
#include "editor/size_undo.h"
#include "editor/undo_history.h"

namespace korvex::editor {

// Editor classes: the store's 0..4, and the two group modes.
constexpr int k_polygon_group = 5;
constexpr int k_line_group = 7;

// Bits of changes1.
enum Changes1 : uint8_t {
    ch_ncols = 1, ch_colour = 2, ch_mode = 4, ch_type = 8, ch_font = 16, ch_font_colours = 32, ch_night = 64,
    ch_dimensions = 128,  // for a polygon: its draw order
};
// Bits of changes2.
enum Changes2 : uint8_t {
    ch_language = 1, ch_text = 2, ch_imported = 4, ch_border = 8, ch_lwidth = 16, ch_brightness = 32, ch_filter = 64,
};

// Tools; the numbers are those of the tool row.
enum Tool : int16_t {
    t_pencil = 0, t_picker = 1, t_fill = 2, t_add_colour = 3, t_line = 4, t_ellipse = 5, t_rectangle = 6,
    t_select = 7, t_text = 8, t_flip_h = 9, t_flip_v = 10, t_rotate = 11, t_filled_ellipse = 13,
    t_filled_rectangle = 14, t_crop_select = 15, t_crop_pending = 16, t_rubber = 20,
};

struct EditorSession {
    // ---- what is edited ----
    int curclass = 0;               // 0..4, or 5 / 7 for a group
    int32_t row = -1;               // store row (ln_n + k, pt_n + k for the extended classes)
    std::vector<int32_t> group;     // store rows of a group, ascending; empty for one element
    std::string sel1;               // the group as ",n,m," (rows from 0)

    // ---- the picture ----
    int width = 0, height = 0;      // bitmap size in pixels; 0 x 0 for a polygon or line without bitmap
    Palette palette;                // ncols() entries; pixels hold entry - 1
    PixelGrid pixels;               // [x][y] palette index from 0; unused for true colour
    PixelGrid opacity;              // [x][y] opacity level, opacity mode only
    bool truecolour = false;        // RGB point icon: `surface` is the data
    Raster surface;                 // the picture in colours, one entry a pixel
    uint32_t transparentcolour = k_transparent_magenta;
    UndoHistory undo;
    Palette saved_palette;          // the palette before the last palette change, for Ctrl+Z
    PixelGrid saved_pixels;         // the picture that went with it (a filter changes both)
    bool lastpalok = false;         // Ctrl+Z takes back that palette change
    SizeUndo sizeundo;              // the picture before and after the last change of size

    int curcol = -1;                // selected entry from 1; 0 none; negative: none chosen yet
    int curcol2 = -1;               // entry of the right button
    uint32_t pen_colour = 0;        // true colour: the colours of the two buttons
    uint32_t pen_colour2 = 0xFFFFFF;
    int16_t tool = t_pencil;

    std::string colourtext;         // colour lines as text (getcurcol)
    std::string pixeltext;          // pixel rows as text (painticon)

    // ---- modes and flags ----
    uint8_t bmpmode = 0;            // 0 day only, 1 day of a point with night, 2 night being edited
    uint8_t hasnight = 0;           // polygon or line: night colours present
    uint8_t nightcols = 0;          // night colour scheme
    uint8_t orient = 0;             // UseOrientation
    uint8_t newbmp = 0;             // a new night bitmap waits to be confirmed
    bool solid = false;             // polygon or line without bitmap: colours only
    bool alpha = false;             // opacity mode: the point's colours carry levels (colormode 32)
    bool has_night_bitmap = false;  // point with a night picture
    Palette nightpal;               // polygon or line night colours

    // ---- night and opacity variants of a point ----
    uint8_t colormode = 0;          // of the picture on the canvas: 0, 16 or 32
    int oplevel = 15;               // the level of the opacity chooser and tools
    int transp_entry = 0;           // entry last made transparent by the tick (0 none)
    uint32_t transp_colour = 0;     // and its colour before
    PointPicture other;             // the picture off the canvas: night in bmpmode 1, day in bmpmode 2
    bool night_shares_day = false;  // the night record has no colours of its own and shows the day pixels

    // ---- fields of the form ----
    std::string type_field;         // up to three hex digits
    std::string subtype_field;      // two hex digits; blank is "00"
    std::string draworder;          // polygon level as text, "" for none
    int lwidth = 0;                 // line height (lwidth(), solid lines
    int border = 0;                 // line border width
    int width_box = 0, height_box = 0;  // the size boxes of a point
    LabelState labels;

    // ---- bookkeeping ----
    bool labelchanged = false;
    bool eddirty = false;
    uint8_t changes1 = 0, changes2 = 0;
    std::string oldtype, olddraw, fontstyle;  // as on entry
    std::string flags_on_entry;               // fnchkbtns' text of all flag bytes on entry

    int ncols() const { return palette.ncols(); }
    bool is_group() const { return curclass == k_polygon_group || curclass == k_line_group; }
    // The store class of the element (groups give 0 or 1).
    int store_class() const { return curclass == k_polygon_group ? 0 : curclass == k_line_group ? 1 : curclass; }
    // Classes with no free icon size: polygons, lines, active lines.
    bool fn013() const { return curclass != 2 && curclass != 4 && curclass < 4; }
};

// Points and extra points.
inline bool is_point(const EditorSession& e) { return e.store_class() == 2 || e.store_class() == 4; }

}  // namespace korvex::editor
