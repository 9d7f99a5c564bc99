// The element browser without a screen: the grid's geometry, the table of
// visible cells, what each cell shows, the two selection lists, the clicks,
// the context menu's switches, the double-click decision and the search.
//
// The window owns one Browser and asks it what to show; a view draws cells
// 0 .. cell_count() - 1 and reports clicks by cell index. Painting the icons
// is icon_painter.h's business. All sizes are twips unless a name says px.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "workbench/draw_order_layers.h"

namespace korvex::workbench {

constexpr int k_twips_per_pixel = 15;
constexpr int k_scroll_limit = 32766;
constexpr int k_custom_min = 250, k_custom_max = 1500, k_custom_default = 660;
constexpr int k_extra_page_min = 10;
// Above this many elements of the class in view a load drops to icon size 0.
constexpr int32_t k_many_elements = 1200;

// The settings the browser reads. Fill it from the saved settings; every
// field has the value of a first start.
struct BrowserOptions {
    int label_option = 0;                 // 0 "Type & Text", 1 "Text only", 2 "Type only"
    bool show_font_colours = false;       // "Show Font Colors": label in the day custom colour
    bool nolabel_grey = false;            // a "=nolabel" element's label shows grey
    bool show_night = false;              // a night element gets a second cell with its night form
    bool show_not_in_style = false;       // "Show 'NOT in STYLE'": red X on such elements
    bool edit_text_on_dblclick = false;   // "Edit text when dbl clicking an icon "
    bool extra_hex = false;               // search takes extra point numbers in hexadecimal
    int extra_page_size = 100;            // Extra Points shown a page at a time, at least 10
    bool draworder_view = false;          // the polygon draw-order view (wider left margin)
    std::string polygon_seed = "00100";   // new-element numbers for the Create Copy caption
    std::string line_seed = "00100";
    std::string point_seed = "060";
};

// One cell's box: side S, label height H, row pitch P = S + H + 50, left
// margin L, top margin.
struct Geometry {
    int S = 0, H = 0, P = 0, L = 0, top = 0;
};

// What the label under a cell shows.
struct CellLabel {
    std::string text;
    uint32_t colour = 0x000000;  // 0xRRGGBB
    bool grey = false;           // "=nolabel" with the grey option; colour is then grey (0x808080)
};

// Highlight of a cell.
enum class Mark : uint8_t { none = 0, primary = 1, secondary = 2 };

// Switches of the right-click menu.
struct MenuFlags {
    bool create_copy = false;
    bool paste = false;
    bool search_poi_type = false;
    bool mkgmap_code = false;
    bool subtypes = false;
    std::string create_copy_caption;  // "Create Copy Next Type From 0x" + number + ")"
};

// What a double-click opens.
enum class OpenWhat { nothing, text_editor, icon_editor, multi_edit, refused };

struct DoubleClick {
    OpenWhat what = OpenWhat::nothing;
    int32_t row = -1;             // the element (text or icon editor)
    std::vector<int32_t> rows;    // the elements of a multi edit, in list order
    int msg = 0;                  // message number when refused (113, 114, 213)
    std::string before;           // text in front of the message (the type for 213)
};

// The outcome of one search click.
struct SearchResult {
    bool found = false;
    int cell = -1;                // the hit, now current
    int msg = 0;                  // 247 "Search requires at least 2 characters", 14 "Not Found.", 0
    std::string count;            // "(" + n + ")" on a hit
    std::string garmin_type;      // the type found in Garmin's default names; none ship, so ""
};

// Cells of the class in view and their selection. Not copyable on purpose:
// the window keeps exactly one.
class Browser {
public:
    // Starts at the first-start state: Points, icon size 2, custom 660.
    Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    BrowserOptions opt;

    // ---- class, size and geometry ----

    // The class in view; outside 0..4 it becomes 0. Does not rebuild.
    void set_class(int cls);
    int cls() const { return cls_; }

    // Sets the icon size index (0..5, outside gives 0) and the label text
    // height T (the height of "WW" in the label font, twips), and works out
    // the geometry. Call build_grid afterwards to redraw.
    void chg_icn(int index, int text_height);
    int icon_index() const { return icon_; }
    // The custom size value, limited to 250..1500; index 5 uses 3 x this.
    void set_custom_size(int value);
    int custom_size() const { return custom_; }

    const Geometry& geometry() const { return geo_; }
    // The geometry in device pixels: 15 twips a pixel times the device-pixel
    // ratio (1.0 for logical pixels), rounded.
    Geometry geometry_px(double device_pixel_ratio) const;
    static int to_px(int twips, double device_pixel_ratio);

    // Columns of a row for a canvas width in twips: round(width / (S + 3 px) - 1), at least 1.
    int columns(int width) const;
    // Grid rows for that width: the cells over C, rounded up, at least 1.
    int rows(int width) const;
    // Canvas height for that width: (count / C + 2) x P with count at least 1.
    int canvas_height(int width) const;
    // Scroll range: canvas height - visible height, 0 if negative, at most 32766.
    int scroll_range(int width, int visible_height) const;

    // ---- the cell table ----

    // Rebuilds the cell table for the class in view (build_grid without the
    // painting). Returns false and does nothing while a build runs. Keeps the
    // selection lists and the current cell when they still fit.
    bool build_grid(const model::Store& s);
    bool building() const { return building_; }
    // The grid-build flag; no_multi lowers it so that a stuck build cannot block the grid.
    void set_building(bool on) { building_ = on; }

    int cell_count() const { return static_cast<int>(cells_.size()); }

    // The draw-order view is on and polygons are in view: the cells are the
    // layer cells of layers(), laid out for layer_columns() columns.
    bool layer_view() const { return opt.draworder_view && cls_ == model::k_polygons; }
    const LayerLayout& layers() const { return layers_; }
    // Columns the layer rows are padded to; takes effect at the next build.
    void set_layer_columns(int columns) { layer_columns_ = columns < 1 ? 1 : columns; }
    int layer_columns() const { return layer_columns_; }
    // Store row of a cell (already offset for active lines and extra
    // points), -1 outside the table.
    int32_t row_of(int cell) const;
    // True for the second cell of a night element: paint it with night = true.
    bool night_cell(int cell) const;
    // The first cell that shows a store row, -1 if none.
    int cell_of_row(int32_t row) const;

    // Extra Points paging, kept across rebuilds: the first row of the page
    // on show (counted within the extra points), the page size (at least
    // 10) and the page list of " - " ranges ("1 - 100", "101 - 200", ...).
    void set_extra_page(int page);
    int extra_first() const { return extra_first_; }
    int extra_page_size() const;
    std::vector<std::string> extra_pages(const model::Store& s) const;

    // ---- what a cell shows (asked lazily per visible cell) ----

    CellLabel label(const model::Store& s, int cell) const;                 // setlab
    std::string tooltip(const model::Store& s, int cell) const;             // " Dbl Click to edit " / active line text
    bool not_in_style(const model::Store& s, int cell) const;               // red X when the option is on
    std::string layer_text(const model::Store& s, int cell) const;          // draw-order level of a polygon, "" if none

    // ---- selection ----

    const std::string& sel1() const { return sel1_; }
    const std::string& sel2() const { return sel2_; }
    Mark mark(int cell) const;
    bool multi() const { return multi_; }
    int current_cell() const { return current_; }   // -1 when none
    int32_t current_row() const;                     // -1 when none
    // Sets the current cell without touching the lists (search, new element).
    void set_current(int cell);

    // A click on a cell. Plain (left or right): both lists clear, the cell
    // becomes current and the Shift anchor. Ctrl: toggles the cell in sel1
    // (sel2 with right) and moves the anchor. Shift: sel1 becomes the range
    // from the anchor to the cell, listed upward, and the range leaves sel2;
    // the anchor stays for the next Shift range. In Extra Points only the
    // current element changes. Returns true when the current element
    // changed, so the code panel must be filled again.
    bool click(int cell, bool ctrl, bool shift, bool right = false);
    // Ctrl+A: every visible cell into the primary list.
    void select_all();
    // Clears both lists and the multi mark, lowers the grid-build flag.
    void no_multi();
    // The store rows of the primary list in list order (night cells give
    // their element once); the current row when the list is empty.
    std::vector<int32_t> selected_rows() const;

    // The context menu after a right click (call click(cell, false, false, true) first).
    MenuFlags menu_flags(const model::Store& s) const;

    // The double-click decision; ctrl or shift held blocks it, as does a build.
    DoubleClick double_click(const model::Store& s, int cell, bool ctrl, bool shift) const;

    // ---- search ----

    // One click of the search button: text as typed, types_only the "Check
    // box to search types" box, garmin_only "Search Garmin Default TYPES ONLY ".
    SearchResult search(const model::Store& s, const std::string& text, bool types_only, bool garmin_only);

private:
    struct Cell {
        int32_t row;
        bool night;
    };
    int cls_ = model::k_points;
    int icon_ = 2;
    int custom_ = k_custom_default;
    int text_height_ = 195;
    Geometry geo_;
    std::vector<Cell> cells_;
    LayerLayout layers_;
    int layer_columns_ = 1;
    std::vector<uint8_t> marks_;
    std::string sel1_, sel2_;
    bool multi_ = false;
    bool building_ = false;
    int current_ = -1;
    int anchor_ = -1;
    int extra_first_ = 0;
    int last_hit_ = -1;
    int hits_ = 0;
    std::string last_search_;
};

// The class in view has more than 1200 elements and the icon size is 2 or
// larger: the load switches to icon size 0. Returns true when it switched
// (the caller rebuilds).
bool drop_size_for_many(Browser& b, const model::Store& s, int text_height);

// Number of elements of a class (extra points and active lines counted alone).
int32_t class_count(const model::Store& s, int cls);

// The element list print of a class: one line a row, the type, a tab and
// the label, CR LF ended.
std::string list_elements(const model::Store& s, int cls);
// The class's name in that print: "polygons", "lines", "points",
// "activeroutes", "extrapois".
std::string list_class_name(int cls);

}  // namespace korvex::workbench
