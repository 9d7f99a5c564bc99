// The Canvas menu's tools and the Tools menu's point tools over 10,000
// selected points, each well under 1 s: Add Canvas, Add Border, Remove White
// Space, Add and Remove POI Label Pixel, Add Night POIs. Logic only, as a
// menu entry runs it, without the grid.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "integration/messages.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "workbench/batch_frame.h"
#include "workbench/browser.h"
#include "workbench/canvas_tools.h"
#include "workbench/label_pixel.h"
#include "workbench/night_points.h"

using namespace korvex;

namespace {

constexpr int k_points = 10000;

// Transparent 24 x 24 points of 3 to 30 colours, the kind the tools take.
model::Store make_points() {
    model::Store s;
    samples::new_project(s, "9999", 156);
    for (int i = 0; i < k_points; ++i) {
        samples::PointSpec p;
        p.type = 0x2f + i / 32 % 64;
        p.subtype = i % 32;
        p.width = 24;
        p.height = 24;
        p.colours = 3 + i % 28;
        p.mode = 16;
        p.seed = static_cast<unsigned>(i + 1);
        p.labels = {{0x04, "Point " + std::to_string(i)}};
        samples::add_point(s, p);
    }
    return s;
}

const std::string& report_folder() {
    static const std::string folder = [] {
        const auto f = std::filesystem::temp_directory_path() / "korvex-bench-point-tools";
        std::filesystem::create_directories(f);
        return f.string();
    }();
    return folder;
}

// A fresh copy of base with every cell selected.
struct Run {
    model::Store s;
    workbench::Browser b;
    platform::QuietPrompt ui;
    integration::Messages m;
    workbench::BatchRequest req;
    explicit Run(const model::Store& base) : s(base) {
        b.set_class(model::k_points);
        b.build_grid(s);
        b.select_all();
        req.data_folder = report_folder();
        req.max_size = 64;
    }
};

const model::Store& plain_points() {
    static const model::Store s = make_points();
    return s;
}

// The points after Add Border (a free last column for the label pixel, and
// margins for Remove White Space to cut), and after Add POI Label Pixel on
// top (a pixel for Remove POI Label Pixel to take back).
const model::Store& bordered_points() {
    static const model::Store s = [] {
        Run r(plain_points());
        workbench::adborder(r.s, r.ui, r.m, r.b, r.req, 2);
        return r.s;
    }();
    return s;
}
const model::Store& pixelled_points() {
    static const model::Store s = [] {
        Run r(bordered_points());
        workbench::adpixel(r.s, r.ui, r.m, r.b, r.req);
        return r.s;
    }();
    return s;
}

template <class Tool>
void each(benchmark::State& state, const model::Store& base, Tool tool) {
    int changed = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Run r(base);
        state.ResumeTiming();
        changed = tool(r);
        benchmark::DoNotOptimize(r.s.pt_bmp.data());
    }
    state.counters["points"] = base.pt_n;
    state.counters["changed"] = changed;
}

void BM_AddCanvasLeft(benchmark::State& state) {
    each(state, plain_points(), [](Run& r) { return workbench::adcanvas(r.s, r.ui, r.m, r.b, r.req, 'L'); });
}
void BM_AddBorder2(benchmark::State& state) {
    each(state, plain_points(), [](Run& r) { return workbench::adborder(r.s, r.ui, r.m, r.b, r.req, 2); });
}
void BM_RemoveWhiteSpace(benchmark::State& state) {
    each(state, bordered_points(), [](Run& r) { return workbench::remborder(r.s, r.ui, r.m, r.b, r.req); });
}
void BM_AddLabelPixel(benchmark::State& state) {
    each(state, bordered_points(), [](Run& r) { return workbench::adpixel(r.s, r.ui, r.m, r.b, r.req); });
}
void BM_RemoveLabelPixel(benchmark::State& state) {
    each(state, pixelled_points(), [](Run& r) { return workbench::rempxl(r.s, r.ui, r.m, r.b, r.req); });
}
void BM_AddNightPois(benchmark::State& state) {
    each(state, plain_points(), [](Run& r) { return workbench::add_nightpois(r.s, r.ui, r.m, r.b, r.req); });
}

}  // namespace

BENCHMARK(BM_AddCanvasLeft)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_AddBorder2)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RemoveWhiteSpace)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_AddLabelPixel)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RemoveLabelPixel)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_AddNightPois)->Unit(benchmark::kMillisecond)->Iterations(3);

BENCHMARK_MAIN();
