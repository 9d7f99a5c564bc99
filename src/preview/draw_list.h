// What the preview draws, in order, worked out from the project and a scene
// without a screen: the window paints the items front to back as they stand.
//
// Geometry is in device pixels (scene units times zoom); a picture pixel of a
// raster covers `zoom` device pixels. Colours are 0xAARRGGBB; alpha 0 is
// transparent.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/store.h"
#include "preview/scene.h"
#include "workbench/icon_painter.h"

namespace korvex::preview {

using workbench::Raster;

struct DrawOptions {
    bool night = false;
    int language = 0;   // preferred label language (as Settings::langid)
    double zoom = 1.0;  // device pixels a scene unit; clamped to 0.25 .. 8
    // The part of the scene on show, in device pixels: features wholly
    // outside it are left out of the list (and their elements unpainted),
    // so that a large scene costs what the window shows. Empty (the
    // default): the whole scene.
    double view_x = 0, view_y = 0, view_w = 0, view_h = 0;
};

// Where an item comes from, for naming it on hover and selecting it.
struct ItemSource {
    FeatureClass cls = FeatureClass::polygon;
    int store_class = 0;  // model::ElementClass of row (3 and 4 for active lines, extra points)
    int32_t row = -1;     // store row; -1 when the project lacks the type
    int32_t code = 0;
    std::string label;    // UTF-8, as the label item shows it ("" for none)
    int feature = -1;     // index in the scene's features
};

// The thin outline of a type the project lacks (drawn in grey).
inline constexpr uint32_t k_missing_outline = 0xFF8C8C8C;

enum class FontStyle : uint8_t { small, normal, large };

struct PolygonItem {
    std::vector<Pt> outline;
    bool solid = true;
    uint32_t colour = 0;                   // the fill when solid
    std::shared_ptr<const Raster> tile;    // the pattern when not: 32 x 32, tiled from the
                                           // view's origin; alpha-0 pixels show what lies below
    bool missing = false;                  // grey with a thin outline: the project lacks the type
};

struct LineItem {
    std::vector<Pt> points;
    bool bitmap = false;
    // Without a bitmap: a line of `width` with `border` on each side (device
    // pixels); a colour of alpha 0 is not drawn.
    double width = 0, border = 0;
    uint32_t fill = 0, border_colour = 0;
    // With one: rows (32 wide) repeated along the line, row 0 on the left of
    // the direction of travel. Turned with the line when oriented; otherwise
    // the rows keep their upright look (a steep line's pattern is not turned
    // upside down).
    std::shared_ptr<const Raster> rows;
    bool oriented = false;
    bool missing = false;
};

struct PointItem {
    Pt centre;
    std::shared_ptr<const Raster> picture;  // true colour, opacity in alpha
    bool missing = false;
};

enum class LabelAnchor : uint8_t {
    centre,  // polygon: centred on `at`
    along,   // line: centred on `at`, turned by `angle`
    beside,  // point: left middle of the text at `at`
};

struct LabelItem {
    std::string text;    // UTF-8
    Pt at;
    double angle = 0;    // degrees clockwise, kept within -90 .. 90 so text stays upright
    LabelAnchor anchor = LabelAnchor::centre;
    FontStyle style = FontStyle::normal;
    uint32_t colour = 0xFF000000;
};

enum class ItemKind : uint8_t { polygon, line, point, label };

// One entry of the drawing order: the kind and the index in its vector.
struct DrawStep {
    ItemKind kind = ItemKind::polygon;
    int32_t index = 0;
    int32_t source = 0;  // index in DrawList::sources
};

struct DrawList {
    double width = 0, height = 0;  // the scene in device pixels
    double zoom = 1.0;
    uint32_t background = 0;       // the map's ground, day or night
    std::vector<PolygonItem> polygons;
    std::vector<LineItem> lines;
    std::vector<PointItem> points;
    std::vector<LabelItem> labels;
    std::vector<ItemSource> sources;
    std::vector<DrawStep> order;   // polygons, lines, points, labels: back to front
    // Polygon types of the scene that are in the project and have no draw
    // order; with notes() they make the note the view shows.
    std::vector<int32_t> invisible_types;
    std::vector<std::string> notes() const;
};

// Builds the list. The painters may add a line to the load report for an
// element with bad colour data, as the grid's do.
DrawList build_draw_list(model::Store& s, const Scene& scene, const DrawOptions& options);

// The topmost step under a device pixel (labels aside), -1 when none.
int hit_step(const DrawList& list, Pt at);

// The hover text of a source: the type and the label ("0x2a06 Pizza Roma"),
// and "(not in the project)" behind a missing type.
std::string source_text(const ItemSource& source);

}  // namespace korvex::preview
