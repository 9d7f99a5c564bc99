// The draw-order workbench on a file with every polygon type a TYP can give a
// level (4,223 of them over 40 levels): setting the level of 1,000 selected
// polygons, from the icon view and from the layer view, must stay under
// 100 ms; laying out the layer cells is part of every rebuild of the view.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "integration/messages.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "workbench/draw_order_layers.h"
#include "workbench/draw_order_ops.h"

using namespace korvex;

namespace {

constexpr int k_levels = 40;
constexpr int k_selected = 1000;

const model::Store& many_polygons() {
    static const model::Store s = [] {
        model::Store built;
        samples::new_project(built, "1", 0x9c);
        int n = 0;
        auto add = [&](int type, int sub) {
            samples::PolygonSpec p;
            p.type = type;
            p.subtype = sub;
            p.colours = {"#204060"};
            samples::add_polygon(built, p);
            // samples::add_level renews every polygon each time: one token
            // here and one renewal at the end.
            char code[8];
            std::snprintf(code, sizeof code, type < 0x100 ? "00%02X" : "1%02X%02X", type & 0xff, sub);
            built.drwlist += " " + std::string(code) + "," + std::to_string(1 + n++ % k_levels);
        };
        for (int t = 1; t < 0x80; ++t) add(t, 0);
        for (int t = 0x100; t < 0x180; ++t)
            for (int sub = 0; sub < 32; ++sub) add(t, sub);
        workbench::refresh_levels(built);
        return built;
    }();
    return s;
}

// Every fourth polygon, as a Ctrl selection spreads over the file.
std::vector<workbench::LevelTarget> icon_targets() {
    std::vector<workbench::LevelTarget> t;
    for (int32_t k = 0; static_cast<int>(t.size()) < k_selected; k += 4) t.push_back({k, -1});
    return t;
}

std::vector<workbench::LevelTarget> layer_targets(const model::Store& s) {
    const workbench::LayerLayout l = workbench::refresh_draworders(s, 12);
    std::vector<workbench::LevelTarget> t;
    for (size_t k = 0; k < l.cells.size() && static_cast<int>(t.size()) < k_selected; k += 3)
        if (l.cells[k].kind == workbench::LayerCellKind::polygon) t.push_back({l.cells[k].row, l.cells[k].entry});
    return t;
}

void set_level(benchmark::State& state, const std::vector<workbench::LevelTarget>& targets) {
    const model::Store& base = many_polygons();
    const integration::Messages msgs;
    platform::ScriptedPrompt ui;
    for (auto _ : state) {
        state.PauseTiming();
        model::Store s = base;
        state.ResumeTiming();
        if (!workbench::mlev(s, ui, msgs, model::k_polygons, targets, 7)) state.SkipWithError("nothing changed");
        benchmark::DoNotOptimize(s.drwlist.data());
    }
    state.counters["polygons"] = base.pg_n;
    state.counters["selected"] = static_cast<double>(targets.size());
}

void BM_SetLevelOf1000FromIcons(benchmark::State& state) { set_level(state, icon_targets()); }

void BM_SetLevelOf1000FromLayers(benchmark::State& state) { set_level(state, layer_targets(many_polygons())); }

void BM_LayOutTheLayerCells(benchmark::State& state) {
    const model::Store& s = many_polygons();
    for (auto _ : state) benchmark::DoNotOptimize(workbench::refresh_draworders(s, 12).cells.size());
    state.counters["polygons"] = s.pg_n;
}

}  // namespace

BENCHMARK(BM_SetLevelOf1000FromIcons)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SetLevelOf1000FromLayers)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LayOutTheLayerCells)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
