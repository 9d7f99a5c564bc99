// The drawing order of a device: polygons by draw-order level (higher over
// lower, ties in the project's order), then lines, then points, then the
// labels over everything. A feature takes the look of the first element of
// its type, or of its own row when the sampler bound it to one.
#include "preview/draw_list.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unordered_set>

#include "preview/element_look.h"
#include "preview/label_place.h"
#include "workbench/type_key.h"

namespace korvex::preview {

namespace {

constexpr double k_min_zoom = 0.25, k_max_zoom = 8.0;
constexpr uint32_t k_day_ground = 0xFFF8F6F0, k_night_ground = 0xFF15181C;
constexpr uint32_t k_day_label = 0xFF000000, k_night_label = 0xFFE8E8E8;
// Greys of the types the project lacks: light by day, dark by night, so
// that labels in the default colour stay readable on them.
constexpr uint32_t k_missing_fill = 0xFFCDCDCD, k_missing_line = 0xFF9A9A9A;
constexpr uint32_t k_missing_fill_night = 0xFF4A4A4A, k_missing_line_night = 0xFF7A7A7A;
constexpr int k_missing_side = 9;   // picture of a missing point type
constexpr double k_missing_width = 2;
// Scene units a feature's drawing may reach beyond its points: half the
// largest point picture, or a label beside a point.
constexpr double k_view_reach = 256;

// The store class and row a feature is drawn as; row -1 when the project has
// no element of its type.
struct Binding {
    int store_class = model::k_polygons;
    int32_t row = -1;
};

class Binder {
public:
    explicit Binder(const model::Store& s)
        : s_(s), polygons_(s, model::k_polygons), lines_(s, model::k_lines), active_(s, model::k_active_lines),
          points_(s, model::k_points) {}

    Binding bind(const Feature& f) const {
        switch (f.cls) {
            case FeatureClass::polygon:
                if (f.row >= 0) return {model::k_polygons, f.row < s_.pg_n ? f.row : -1};
                return {model::k_polygons, polygons_.row(f.code)};
            case FeatureClass::line:
                if (f.row >= 0)
                    return f.row < s_.ln_n                ? Binding{model::k_lines, f.row}
                           : f.row < s_.ln_n + s_.ln_nact ? Binding{model::k_active_lines, f.row}
                                                          : Binding{model::k_lines, -1};
                if (const int32_t r = lines_.row(f.code); r >= 0) return {model::k_lines, r};
                if (const int32_t r = active_.row(f.code); r >= 0) return {model::k_active_lines, r};
                return {model::k_lines, -1};
            case FeatureClass::point:
                if (f.row >= 0)
                    return f.row < s_.pt_n               ? Binding{model::k_points, f.row}
                           : f.row < s_.pt_n + s_.pt_nx ? Binding{model::k_extra_points, f.row}
                                                        : Binding{model::k_points, -1};
                return {model::k_points, points_.row(f.code)};
        }
        return {};
    }

private:
    const model::Store& s_;
    workbench::TypeIndex polygons_, lines_, active_, points_;
};

std::shared_ptr<const Raster> missing_picture(uint32_t fill) {
    auto r = std::make_shared<Raster>();
    r->w = r->h = k_missing_side;
    r->fit = workbench::IconFit::picture;
    r->px.assign(static_cast<size_t>(k_missing_side * k_missing_side), fill);
    for (int k = 0; k < k_missing_side; ++k) {
        r->px[static_cast<size_t>(k)] = r->px[static_cast<size_t>((k_missing_side - 1) * k_missing_side + k)] =
            k_missing_outline;
        r->px[static_cast<size_t>(k * k_missing_side)] = r->px[static_cast<size_t>(k * k_missing_side + k_missing_side - 1)] =
            k_missing_outline;
    }
    return r;
}

std::vector<Pt> scaled(const std::vector<Pt>& pts, double zoom) {
    std::vector<Pt> out(pts.size());
    std::transform(pts.begin(), pts.end(), out.begin(), [zoom](Pt p) { return Pt{p.x * zoom, p.y * zoom}; });
    return out;
}

// A polygon waiting for its place in the order.
struct PolygonRank {
    bool missing = false;
    int level = 0;
    int32_t row = -1;
    int32_t item = 0;
    int32_t source = 0;
};

}  // namespace

std::vector<std::string> DrawList::notes() const {
    const size_t n = invisible_types.size();
    if (n == 0) return {};
    if (n == 1) return {"1 polygon type has no draw order and is invisible"};
    return {std::to_string(n) + " polygon types have no draw order and are invisible"};
}

DrawList build_draw_list(model::Store& s, const Scene& scene, const DrawOptions& options) {
    DrawList out;
    const double zoom = std::clamp(std::isfinite(options.zoom) ? options.zoom : 1.0, k_min_zoom, k_max_zoom);
    out.zoom = zoom;
    out.width = scene.width * zoom;
    out.height = scene.height * zoom;
    out.background = options.night ? k_night_ground : k_day_ground;
    const uint32_t default_label = options.night ? k_night_label : k_day_label;

    // Features are kept when their box, widened by what may stick out of it
    // (pictures, line widths, labels), meets the view.
    const bool culling = options.view_w > 0 && options.view_h > 0;
    const double reach = k_view_reach * zoom;
    const auto in_view = [&](const std::vector<Pt>& pts) {
        double x0 = pts.front().x, x1 = x0, y0 = pts.front().y, y1 = y0;
        for (const Pt& p : pts) {
            x0 = std::min(x0, p.x);
            x1 = std::max(x1, p.x);
            y0 = std::min(y0, p.y);
            y1 = std::max(y1, p.y);
        }
        return x1 * zoom + reach >= options.view_x && x0 * zoom - reach <= options.view_x + options.view_w &&
               y1 * zoom + reach >= options.view_y && y0 * zoom - reach <= options.view_y + options.view_h;
    };

    LookCache looks(s, options);
    const Binder binder(s);
    const uint32_t missing_fill = options.night ? k_missing_fill_night : k_missing_fill;
    const uint32_t missing_line = options.night ? k_missing_line_night : k_missing_line;
    const std::shared_ptr<const Raster> missing_point = missing_picture(missing_fill);
    std::unordered_set<int32_t> invisible_seen;
    std::vector<PolygonRank> ranks;
    std::vector<DrawStep> line_steps, point_steps, label_steps;

    for (size_t fi = 0; fi < scene.features.size(); ++fi) {
        const Feature& f = scene.features[fi];
        if (f.points.empty()) continue;
        const Binding b = binder.bind(f);
        int level = 0;
        if (f.cls == FeatureClass::polygon && b.row >= 0 && !looks.level(b.row, level)) {
            if (invisible_seen.insert(f.code).second) out.invisible_types.push_back(f.code);
            continue;
        }
        if (culling && !in_view(f.points)) continue;
        const ElementLook* look = b.row >= 0 ? &looks.look(b.store_class, b.row) : nullptr;

        ItemSource src;
        src.cls = f.cls;
        src.store_class = b.store_class;
        src.row = b.row;
        src.code = f.code;
        src.feature = static_cast<int>(fi);
        const bool shows_label = look ? !look->no_label : true;
        if (shows_label) src.label = f.row >= 0 && look ? look->label : f.label;
        const auto source = static_cast<int32_t>(out.sources.size());
        std::vector<Pt> pts = scaled(f.points, zoom);

        LabelItem label;
        label.text = src.label;
        label.style = look ? look->style : FontStyle::normal;
        label.colour = look && look->has_label_colour ? look->label_colour : default_label;

        switch (f.cls) {
            case FeatureClass::polygon: {
                PolygonItem item;
                if (look) {
                    item.solid = look->raster == nullptr;
                    item.colour = look->colour;
                    item.tile = look->raster;
                } else {
                    item.colour = missing_fill;
                    item.missing = true;
                }
                label.at = polygon_centre(pts);
                label.anchor = LabelAnchor::centre;
                item.outline = std::move(pts);
                ranks.push_back({look == nullptr, look ? look->level : 0, b.row, static_cast<int32_t>(out.polygons.size()), source});
                out.polygons.push_back(std::move(item));
                break;
            }
            case FeatureClass::line: {
                LineItem item;
                if (look) {
                    item.bitmap = look->bitmap;
                    item.rows = look->raster;
                    item.oriented = look->oriented;
                    item.width = look->width * zoom;
                    item.border = look->border * zoom;
                    item.fill = look->fill;
                    item.border_colour = look->border_colour;
                } else {
                    item.width = k_missing_width * zoom;
                    item.fill = missing_line;
                    item.missing = true;
                }
                const Placement p = line_label_place(pts);
                label.at = p.at;
                label.angle = p.angle;
                label.anchor = LabelAnchor::along;
                item.points = std::move(pts);
                line_steps.push_back({ItemKind::line, static_cast<int32_t>(out.lines.size()), source});
                out.lines.push_back(std::move(item));
                break;
            }
            case FeatureClass::point: {
                PointItem item;
                item.centre = pts.front();
                item.picture = look ? look->raster : missing_point;
                item.missing = look == nullptr;
                const double half = item.picture ? item.picture->w * zoom / 2 : 0;
                label.at = {item.centre.x + half + k_label_gap * zoom, item.centre.y};
                label.anchor = LabelAnchor::beside;
                point_steps.push_back({ItemKind::point, static_cast<int32_t>(out.points.size()), source});
                out.points.push_back(std::move(item));
                break;
            }
        }
        if (!label.text.empty()) {
            label_steps.push_back({ItemKind::label, static_cast<int32_t>(out.labels.size()), source});
            out.labels.push_back(std::move(label));
        }
        out.sources.push_back(std::move(src));
    }

    // Missing types lie under the styled ones; then levels upward, ties in
    // row order and, within a row, in scene order.
    std::stable_sort(ranks.begin(), ranks.end(), [](const PolygonRank& a, const PolygonRank& b) {
        if (a.missing != b.missing) return a.missing;
        if (a.level != b.level) return a.level < b.level;
        return a.row < b.row;
    });
    out.order.reserve(ranks.size() + line_steps.size() + point_steps.size() + label_steps.size());
    for (const PolygonRank& r : ranks)
        out.order.push_back({ItemKind::polygon, r.item, r.source});
    out.order.insert(out.order.end(), line_steps.begin(), line_steps.end());
    out.order.insert(out.order.end(), point_steps.begin(), point_steps.end());
    out.order.insert(out.order.end(), label_steps.begin(), label_steps.end());
    return out;
}

std::string source_text(const ItemSource& source) {
    std::string text = scene_type_text(source.code);
    if (!source.label.empty()) text += " " + source.label;
    if (source.row < 0) text += " (not in the project)";
    return text;
}

}  // namespace korvex::preview
