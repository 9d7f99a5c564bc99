// The sampler scene: every element of the project on one grid, so that any
// TYP can be seen whole. Polygon patches come in draw order and overlap
// their neighbours, so the higher level shows on top; each cell also holds a
// curved line across its patch and a point on it.
#pragma once

#include "model/store.h"
#include "preview/scene.h"

namespace korvex::preview {

// One feature per element: polygons (in draw order, the ones without a level
// last), lines and active lines, points and extra points, each bound to its
// row. Labels are left to the draw list (the element's label).
Scene make_sampler(const model::Store& s);

}  // namespace korvex::preview
