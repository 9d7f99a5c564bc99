// The benchmarks' generated projects of 20,000 elements, each built once a
// process and shared, so that every benchmark measures the same file.
#pragma once

#include "model/store.h"

namespace korvex::samples {

// build_large's file of more than 20,000 elements: 64 x 64 points of up to
// 255 colours, half of them with night pictures.
model::Store& large_project();

// 6,000 polygons, 4,000 lines and 10,000 points of every type and subtype in
// turn, small pictures, levels on the polygons a TYP gives one: saved and
// read back, as a load leaves its tables. The file of the element operations.
constexpr int k_ops_polygons = 6000;
constexpr int k_ops_lines = 4000;
constexpr int k_ops_points = 10000;
const model::Store& element_ops_project();

}  // namespace korvex::samples
