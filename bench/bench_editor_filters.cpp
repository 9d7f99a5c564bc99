// Colour reduction and filters on 128 x 128 pictures: histogram turning a
// true-colour icon into a palette icon (a smooth picture and a noisy,
// photograph-like one: both fill the colour list, so the icon takes 254
// colours by median cut), the paste mode down to two colours, every filter
// with its re-import on a point of 200 colours, and one move of the
// adjustment sliders on a true-colour icon.
#include <benchmark/benchmark.h>

#include <random>

#include "editor/canvas.h"
#include "editor/colour_adjust.h"
#include "editor/colour_reduction.h"
#include "editor/image_filters.h"
#include "support/striped_point.h"

using namespace korvex;
using namespace korvex::editor;

namespace {

using platform::QuietPrompt;

constexpr int k_side = 128;

// A true-colour point: gradients in red and green, blue in bands, and
// noise of +-`noise` on each channel.
EditorSession true_colour(int noise) {
    EditorSession e;
    e.curclass = 2;
    e.truecolour = true;
    e.width = e.height = k_side;
    e.surface = Raster(k_side, k_side);
    std::mt19937 random(42);
    std::uniform_int_distribution<int> jitter(-noise, noise);
    for (int y = 0; y < k_side; ++y)
        for (int x = 0; x < k_side; ++x) {
            auto ch = [&](int v) { return static_cast<uint32_t>(std::clamp(v + (noise ? jitter(random) : 0), 0, 255)); };
            e.surface.set(x, y, rgb(ch(x * 2), ch(y * 2), ch(((x + y) / 32) * 60)));
        }
    return e;
}

void BM_HistogramTrueColour(benchmark::State& state) {
    const EditorSession start = true_colour(static_cast<int>(state.range(0)));
    int after = 0;
    for (auto _ : state) {
        state.PauseTiming();
        EditorSession e = start;
        state.ResumeTiming();
        const ReduceOutcome r = histogram(e, ReduceMode::full);
        benchmark::DoNotOptimize(e.pixels.values().data());
        after = r.after;
        state.counters["before"] = r.before;
        state.counters["kept_old_palette"] = r.palette_kept;
    }
    state.counters["after"] = after;
}
// 0: smooth gradients; 12: the same with noise.
BENCHMARK(BM_HistogramTrueColour)->Arg(0)->Arg(12)->Unit(benchmark::kMillisecond);

void BM_HistogramPaste(benchmark::State& state) {
    const EditorSession start = true_colour(12);
    for (auto _ : state) {
        state.PauseTiming();
        EditorSession e = start;
        e.curclass = 0;
        state.ResumeTiming();
        histogram(e, ReduceMode::paste, 2);
        benchmark::DoNotOptimize(e.pixels.values().data());
    }
}
BENCHMARK(BM_HistogramPaste)->Unit(benchmark::kMillisecond);

// A 128 x 128 point of 200 colours in stripes, with a transparent entry.
EditorSession palette_point() {
    EditorSession e = samples::striped_point();
    e.palette.colours[199] = k_transparent_magenta;
    painticon(e);
    start_history(e);
    return e;
}

void BM_Filter(benchmark::State& state) {
    const int code = static_cast<int>(state.range(0));
    const EditorSession start = palette_point();
    QuietPrompt ui;
    for (auto _ : state) {
        state.PauseTiming();
        EditorSession e = start;
        state.ResumeTiming();
        benchmark::DoNotOptimize(Filter(e, code, ui));
    }
    state.SetLabel(filter_of(code)->caption);
}
BENCHMARK(BM_Filter)->Arg(f_emboss)->Arg(f_extrude)->Arg(f_sharpen_gentle)->Arg(f_sharpen_hard)->Arg(f_soft_outline)
    ->Arg(f_hard_outline)->Arg(f_blur)->Unit(benchmark::kMillisecond);

// One slider move of every adjustment on a true-colour icon: 16,384 colours.
void BM_AdjustTrueColour(benchmark::State& state) {
    EditorSession e = true_colour(12);
    ColourAdjuster a;
    a.open(e);
    Sliders s;
    int k = 0;
    for (auto _ : state) {
        s.brightness = k % 50;
        s.contrast = 10;
        s.hue = 30;
        s.saturation = -20;
        s.red = 5;
        s.vibrance = 20;
        a.move(e, s);
        ++k;
    }
}
BENCHMARK(BM_AdjustTrueColour)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
