// The batch colour tools over 10,000 selected points, each well under 1 s:
// Make Transparent, Add and Replace POI Day Opacity, Convert to 256
// Colours. Logic only, as a menu entry runs it, without the grid.
#include <benchmark/benchmark.h>

#include "integration/messages.h"
#include "platform/file_dialog.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "workbench/browser.h"
#include "workbench/day_opacity.h"
#include "workbench/make_transparent.h"
#include "workbench/palette_reduction.h"

using namespace korvex;

namespace {

constexpr int k_points = 10000;

const model::Store& points_store() {
    static const model::Store store = [] {
        model::Store s;
        samples::new_project(s, "9999", 156);
        for (int i = 0; i < k_points; ++i) {
            samples::PointSpec p;
            p.type = 0x2f + i / 32 % 64;
            p.subtype = i % 32;
            p.width = 24;
            p.height = 24;
            p.colours = 8 + i % 24;
            p.mode = i % 3 == 0 ? 16 : 0;
            p.seed = static_cast<unsigned>(i + 1);
            p.labels = {{0x04, "Point " + std::to_string(i)}};
            samples::add_point(s, p);
        }
        return s;
    }();
    return store;
}

// A fresh copy of the points with every cell selected.
struct Run {
    model::Store s = points_store();
    workbench::Browser b;
    platform::QuietPrompt ui;
    integration::Messages m;
    Run() {
        b.set_class(model::k_points);
        b.build_grid(s);
        b.select_all();
    }
};

template <class Tool>
void each(benchmark::State& state, Tool tool) {
    for (auto _ : state) {
        state.PauseTiming();
        Run r;
        state.ResumeTiming();
        benchmark::DoNotOptimize(tool(r));
    }
}

void BM_MakeTransparent(benchmark::State& state) {
    each(state, [](Run& r) { return workbench::make_transp(r.s, r.b, r.ui, r.m, false); });
}
void BM_AddDayOpacity(benchmark::State& state) {
    each(state, [](Run& r) { return workbench::conv_32(r.s, r.b, r.ui, r.m, {true, 7, false}); });
}
void BM_ReplaceDayOpacity(benchmark::State& state) {
    each(state, [](Run& r) { return workbench::conv_32(r.s, r.b, r.ui, r.m, {false, 0, false}); });
}
void BM_ConvertTo256(benchmark::State& state) {
    each(state, [](Run& r) {
        platform::ScriptedFileDialog dialogs;
        workbench::EdpalRequest q;
        q.entry = workbench::k_pal_256;
        q.folders = {std::string(KORVEX_SOURCE_DIR) + "/data/pal"};
        return workbench::edpal(r.s, r.b, r.ui, r.m, dialogs, q);
    });
}

BENCHMARK(BM_MakeTransparent)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_AddDayOpacity)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReplaceDayOpacity)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ConvertTo256)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
