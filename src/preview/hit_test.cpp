// Which drawn feature lies under the mouse: the last one drawn there wins,
// as it is the one the user sees.
#include <algorithm>

#include "preview/draw_list.h"
#include "preview/label_place.h"

namespace korvex::preview {

namespace {

// A thin line is hard to hit; the mouse may miss it by this much.
constexpr double k_line_slack = 3;

bool hits(const DrawList& list, const DrawStep& step, Pt at) {
    const auto i = static_cast<size_t>(step.index);
    switch (step.kind) {
        case ItemKind::polygon: return inside_polygon(list.polygons[i].outline, at);
        case ItemKind::line: {
            const LineItem& l = list.lines[i];
            const double rows = l.bitmap && l.rows ? l.rows->h * list.zoom : l.width + 2 * l.border;
            const double reach = rows / 2 + k_line_slack;
            for (size_t k = 1; k < l.points.size(); ++k)
                if (segment_distance(at, l.points[k - 1], l.points[k]) <= reach) return true;
            return l.points.size() == 1 && segment_distance(at, l.points[0], l.points[0]) <= reach;
        }
        case ItemKind::point: {
            const PointItem& p = list.points[i];
            const double hw = p.picture ? p.picture->w * list.zoom / 2 : k_line_slack;
            const double hh = p.picture ? p.picture->h * list.zoom / 2 : k_line_slack;
            return std::abs(at.x - p.centre.x) <= hw && std::abs(at.y - p.centre.y) <= hh;
        }
        case ItemKind::label: return false;
    }
    return false;
}

}  // namespace

int hit_step(const DrawList& list, Pt at) {
    for (size_t k = list.order.size(); k-- > 0;)
        if (hits(list, list.order[k], at)) return static_cast<int>(k);
    return -1;
}

}  // namespace korvex::preview
