// The sampler's grid: cell k holds the k-th polygon patch in draw order, the
// k-th line as a wave across it and the k-th point on it. A patch reaches
// into the next cell of its row, where the next patch (of the same or a
// higher level) covers it: the overlap shows the order.
#include "preview/sampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>

#include "typ/draw_order.h"
#include "workbench/type_key.h"

namespace korvex::preview {

namespace {

constexpr double k_cell_w = 144, k_cell_h = 104, k_margin = 16;
constexpr double k_overlap = 28;                 // of a patch into the next cell
constexpr double k_patch_top = 4, k_patch_h = 72;
constexpr double k_wave_y = 62, k_wave_amp = 12;  // the line's middle and swing
constexpr int k_wave_points = 17;
constexpr double k_point_x = 20, k_point_y = 20;
constexpr int k_min_columns = 4, k_max_columns = 16;

// Polygon rows in draw order: by level, ties in row order; rows without a
// level last.
std::vector<int32_t> polygons_in_order(const model::Store& s) {
    std::unordered_map<std::string, int> levels;
    for (const typ::DrawToken& t : typ::parse_drwlist(s.drwlist)) levels.emplace(t.code, t.level);
    struct Ranked {
        bool none;
        int level;
        int32_t row;
    };
    std::vector<Ranked> ranked;
    ranked.reserve(static_cast<size_t>(std::max(0, s.pg_n)));
    for (int32_t r = 0; r < s.pg_n; ++r) {
        bool can_have = false;
        const std::string code = typ::polygon_drw_code(s, r, can_have);
        const auto it = can_have ? levels.find(code) : levels.end();
        ranked.push_back({it == levels.end(), it == levels.end() ? 0 : it->second, r});
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](const Ranked& a, const Ranked& b) {
        return a.none != b.none ? b.none : a.level < b.level;
    });
    std::vector<int32_t> rows;
    rows.reserve(ranked.size());
    for (const Ranked& r : ranked) rows.push_back(r.row);
    return rows;
}

Feature bound(FeatureClass cls, const model::Store& s, int store_class, int32_t row) {
    Feature f;
    f.cls = cls;
    f.code = workbench::row_type_code(s, store_class, row);
    f.row = row;
    return f;
}

}  // namespace

Scene make_sampler(const model::Store& s) {
    Scene scene;
    scene.name = "Sampler";
    const std::vector<int32_t> polygons = polygons_in_order(s);
    const int32_t lines = std::max(0, s.ln_n + s.ln_nact), points = std::max(0, s.pt_n + s.pt_nx);
    const auto cells = std::max({static_cast<int32_t>(polygons.size()), lines, points, 1});
    const int columns = std::clamp(static_cast<int>(std::ceil(std::sqrt(static_cast<double>(cells)))), k_min_columns,
                                   k_max_columns);
    const int rows = (cells + columns - 1) / columns;
    scene.width = 2 * k_margin + columns * k_cell_w + k_overlap;
    scene.height = 2 * k_margin + rows * k_cell_h;
    scene.features.reserve(polygons.size() + static_cast<size_t>(lines) + static_cast<size_t>(points));

    const auto origin = [&](int32_t k) {
        return Pt{k_margin + (k % columns) * k_cell_w, k_margin + (k / columns) * k_cell_h};
    };
    for (size_t k = 0; k < polygons.size(); ++k) {
        const Pt o = origin(static_cast<int32_t>(k));
        Feature f = bound(FeatureClass::polygon, s, model::k_polygons, polygons[k]);
        const double x0 = o.x, x1 = o.x + k_cell_w + k_overlap, y0 = o.y + k_patch_top, y1 = y0 + k_patch_h;
        f.points = {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
        scene.features.push_back(std::move(f));
    }
    for (int32_t k = 0; k < lines; ++k) {
        const Pt o = origin(k);
        Feature f = bound(FeatureClass::line, s, k < s.ln_n ? model::k_lines : model::k_active_lines, k);
        f.points.reserve(k_wave_points);
        for (int i = 0; i < k_wave_points; ++i) {
            const double t = static_cast<double>(i) / (k_wave_points - 1);
            f.points.push_back({o.x + 4 + t * (k_cell_w - 8), o.y + k_wave_y + k_wave_amp * std::sin(t * 2 * std::numbers::pi)});
        }
        scene.features.push_back(std::move(f));
    }
    for (int32_t k = 0; k < points; ++k) {
        const Pt o = origin(k);
        Feature f = bound(FeatureClass::point, s, k < s.pt_n ? model::k_points : model::k_extra_points, k);
        f.points = {{o.x + k_point_x, o.y + k_point_y}};
        scene.features.push_back(std::move(f));
    }
    return scene;
}

}  // namespace korvex::preview
