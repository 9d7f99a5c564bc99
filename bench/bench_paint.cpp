// Painting every element of a generated file of more than 20,000 elements
// (64x64 points of up to 255 colours, half with night pictures, every polygon
// and line scheme): all icons at their own size, and all as grid cells. A
// grid build paints each element once, so the whole must stay well under a
// second.
#include <benchmark/benchmark.h>

#include "model/store.h"
#include "support/large_projects.h"
#include "support/sample_builder.h"
#include "workbench/icon_painter.h"

using namespace korvex;

namespace {

constexpr uint32_t k_background = 0xFFFFFFFF;
constexpr int k_cell_px = 41;  // the Small icon size at 15 twips a pixel

model::Store& large_store() { return samples::large_project(); }

int32_t element_count(const model::Store& s) { return s.pg_n + s.ln_n + s.ln_nact + s.pt_n + s.pt_nx; }

// Calls paint for every element with its class and row; returns the pixels.
template <class Paint>
int64_t paint_all(model::Store& s, Paint paint) {
    int64_t pixels = 0;
    for (int32_t k = 0; k < s.pg_n; ++k) pixels += static_cast<int64_t>(paint(model::k_polygons, k).px.size());
    for (int32_t k = 0; k < s.ln_n + s.ln_nact; ++k) pixels += static_cast<int64_t>(paint(model::k_lines, k).px.size());
    for (int32_t k = 0; k < s.pt_n + s.pt_nx; ++k) pixels += static_cast<int64_t>(paint(model::k_points, k).px.size());
    return pixels;
}

void BM_PaintAllElements(benchmark::State& state) {
    model::Store& s = large_store();
    int64_t pixels = 0;
    for (auto _ : state)
        pixels = paint_all(s, [&s](int cls, int32_t k) { return workbench::paint_element(s, cls, k, k_background); });
    if (!s.loadrep.empty()) state.SkipWithError(("painters reported: " + s.loadrep).c_str());
    state.counters["elements"] = element_count(s);
    state.counters["Mpixels"] = static_cast<double>(pixels) / 1e6;
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * element_count(s));
}

void BM_PaintAllCells(benchmark::State& state) {
    model::Store& s = large_store();
    for (auto _ : state)
        benchmark::DoNotOptimize(paint_all(
            s, [&s](int cls, int32_t k) { return workbench::paint_cell(s, cls, k, k_cell_px, k_background); }));
    state.counters["elements"] = element_count(s);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * element_count(s));
}

void BM_PaintAllNight(benchmark::State& state) {
    model::Store& s = large_store();
    for (auto _ : state)
        benchmark::DoNotOptimize(paint_all(
            s, [&s](int cls, int32_t k) { return workbench::paint_element(s, cls, k, k_background, true); }));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * element_count(s));
}

}  // namespace

BENCHMARK(BM_PaintAllElements)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PaintAllCells)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PaintAllNight)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
