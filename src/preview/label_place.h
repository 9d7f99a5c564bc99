// Where labels go: the middle of a polygon, halfway along a line.
#pragma once

#include <vector>

#include "preview/scene.h"

namespace korvex::preview {

// Space between a point's picture and its label, in scene units.
inline constexpr double k_label_gap = 3;

// The centroid of the area; the middle of the bounding box when the area is
// (nearly) zero.
Pt polygon_centre(const std::vector<Pt>& outline);

struct Placement {
    Pt at;
    double angle = 0;  // degrees clockwise, within -90 .. 90
};

// Halfway along the line's length, turned as the segment there runs.
Placement line_label_place(const std::vector<Pt>& points);

// Distance from p to the segment a-b.
double segment_distance(Pt p, Pt a, Pt b);

// Even-odd rule.
bool inside_polygon(const std::vector<Pt>& outline, Pt p);

}  // namespace korvex::preview
