#include "preview/label_place.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace korvex::preview {

namespace {

constexpr double k_flat_area = 1e-9;

}  // namespace

Pt polygon_centre(const std::vector<Pt>& outline) {
    if (outline.empty()) return {};
    double area = 0, cx = 0, cy = 0;
    for (size_t i = 0; i < outline.size(); ++i) {
        const Pt a = outline[i], b = outline[(i + 1) % outline.size()];
        const double cross = a.x * b.y - b.x * a.y;
        area += cross;
        cx += (a.x + b.x) * cross;
        cy += (a.y + b.y) * cross;
    }
    if (std::abs(area) > k_flat_area) return {cx / (3 * area), cy / (3 * area)};
    const auto [minx, maxx] = std::minmax_element(outline.begin(), outline.end(), [](Pt a, Pt b) { return a.x < b.x; });
    const auto [miny, maxy] = std::minmax_element(outline.begin(), outline.end(), [](Pt a, Pt b) { return a.y < b.y; });
    return {(minx->x + maxx->x) / 2, (miny->y + maxy->y) / 2};
}

Placement line_label_place(const std::vector<Pt>& points) {
    if (points.empty()) return {};
    if (points.size() == 1) return {points.front(), 0};
    double total = 0;
    for (size_t i = 1; i < points.size(); ++i)
        total += std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
    double left = total / 2;
    for (size_t i = 1; i < points.size(); ++i) {
        const Pt a = points[i - 1], b = points[i];
        const double len = std::hypot(b.x - a.x, b.y - a.y);
        if (len < left && i + 1 < points.size()) {
            left -= len;
            continue;
        }
        const double t = len > 0 ? std::min(1.0, left / len) : 0;
        double angle = std::atan2(b.y - a.y, b.x - a.x) * 180 / std::numbers::pi;
        // Text reads left to right: a line running leftwards is labelled
        // as if it ran the other way.
        if (angle > 90) angle -= 180;
        if (angle < -90) angle += 180;
        return {{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t}, angle};
    }
    return {points.back(), 0};
}

double segment_distance(Pt p, Pt a, Pt b) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double len2 = dx * dx + dy * dy;
    const double t = len2 > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / len2, 0.0, 1.0) : 0;
    return std::hypot(p.x - (a.x + t * dx), p.y - (a.y + t * dy));
}

bool inside_polygon(const std::vector<Pt>& outline, Pt p) {
    bool in = false;
    for (size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
        const Pt a = outline[i], b = outline[j];
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) in = !in;
    }
    return in;
}

}  // namespace korvex::preview
