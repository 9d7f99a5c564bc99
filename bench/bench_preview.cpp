// The preview's draw list: the Town scene against the bundled sample, as
// each redraw after an edit builds it, and the sampler of a generated file of
// more than 20,000 elements, built and listed (each element painted once).
// The painting of the list is the window's and measured there.
#include <benchmark/benchmark.h>

#include "model/store.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "preview/draw_list.h"
#include "preview/sampler.h"
#include "support/large_projects.h"
#include "support/sample_builder.h"
#include "text/load_driver.h"
#include "typ/decoder.h"

using namespace korvex;

namespace {


model::Store& large_store() { return samples::large_project(); }

model::Store& sample_store() {
    static model::Store s = [] {
        model::Store built;
        model::newproject(built);
        platform::ScriptedPrompt ui;
        const std::string path = std::string(KORVEX_SOURCE_DIR) + "/data/samples/sample.txt";
        text::load_txt(built, ui, path, platform::read_file(path).value_or(""), false, false);
        return built;
    }();
    return s;
}

const preview::Scene& town() {
    static const preview::Scene scene =
        preview::load_scene(std::string(KORVEX_SOURCE_DIR) + "/data/" + preview::k_town_scene).scene;
    return scene;
}

void BM_TownDrawList(benchmark::State& state) {
    model::Store& s = sample_store();
    preview::DrawOptions o;
    o.night = state.range(0) != 0;
    size_t steps = 0;
    for (auto _ : state) steps = preview::build_draw_list(s, town(), o).order.size();
    if (steps == 0) state.SkipWithError("the Town scene drew nothing");
    state.counters["steps"] = static_cast<double>(steps);
}

// Arg 1: the whole scene; 0: what a 1000 x 700 view shows of it.
void BM_SamplerOfLargeFile(benchmark::State& state) {
    model::Store& s = large_store();
    preview::DrawOptions o;
    if (state.range(0) == 0) {
        o.view_w = 1000;
        o.view_h = 700;
    }
    size_t steps = 0;
    for (auto _ : state) {
        const preview::Scene scene = preview::make_sampler(s);
        steps = preview::build_draw_list(s, scene, o).order.size();
    }
    state.counters["elements"] = s.pg_n + s.ln_n + s.ln_nact + s.pt_n + s.pt_nx;
    state.counters["steps"] = static_cast<double>(steps);
}

}  // namespace

BENCHMARK(BM_TownDrawList)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SamplerOfLargeFile)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
