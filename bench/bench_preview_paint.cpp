// The map preview's redraws, offscreen: the Town scene of the bundled sample
// on a 1000 x 700 view (made anew after a change, and only repainted for a
// pan), the sampler of a file of 20,000 elements made and drawn, and one
// Apply of the code panel up to the redrawn view.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <cstdio>

#include "gui/preview_canvas.h"
#include "gui/preview_painter.h"
#include "model/store.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "preview/draw_list.h"
#include "preview/sampler.h"
#include "preview/scene.h"
#include "support/large_projects.h"
#include "support/sample_builder.h"
#include "text/panel_apply.h"
#include "text/text_writer.h"
#include "typ/decoder.h"

using namespace korvex;

namespace {

constexpr int k_view_w = 1000, k_view_h = 700;

model::Store& sample() {
    static model::Store s = [] {
        model::Store built;
        model::newproject(built);
        platform::QuietPrompt ui;
        auto bytes = platform::read_file(std::string(KORVEX_SOURCE_DIR) + "/data/samples/sample.typ");
        if (bytes) typ::open_typ_bytes(built, ui, std::move(*bytes), "sample.typ");
        return built;
    }();
    return s;
}

const preview::Scene& town() {
    static const preview::Scene scene =
        preview::load_scene(std::string(KORVEX_SOURCE_DIR) + "/data/" + preview::k_town_scene).scene;
    return scene;
}

model::Store& large() { return samples::large_project(); }

// The options of the canvas for a view at the scene's top left.
preview::DrawOptions view_options() {
    const QRect r = gui::built_region(QRect(0, 0, k_view_w, k_view_h));
    preview::DrawOptions o;
    o.view_x = r.x();
    o.view_y = r.y();
    o.view_w = r.width();
    o.view_h = r.height();
    return o;
}

// One frame of the view: the scene's ground, then what reaches into the view.
void paint_view(QImage& view, const gui::PreparedPreview& prep) {
    view.fill(Qt::gray);
    QPainter p(&view);
    gui::paint_preview(p, prep, QPointF(0, 0), QRectF(view.rect()));
}

// A change of the project: the list made again from the tables, then painted.
void BM_TownRedraw(benchmark::State& state) {
    model::Store& s = sample();
    QImage view(k_view_w, k_view_h, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        const gui::PreparedPreview prep(preview::build_draw_list(s, town(), view_options()));
        paint_view(view, prep);
    }
    state.counters["features"] = static_cast<double>(town().features.size());
}

// A pan: the same list painted at another place.
void BM_TownRepaint(benchmark::State& state) {
    const gui::PreparedPreview prep(preview::build_draw_list(sample(), town(), {}));
    QImage view(k_view_w, k_view_h, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) paint_view(view, prep);
}

// The sampler of every element of a large file: its scene, its list of what
// the view and a view's size around it show, and the first view of it.
void BM_LargeSamplerBuiltAndDrawn(benchmark::State& state) {
    model::Store& s = large();
    QImage view(k_view_w, k_view_h, QImage::Format_ARGB32_Premultiplied);
    size_t steps = 0;
    for (auto _ : state) {
        const preview::Scene scene = preview::make_sampler(s);
        const gui::PreparedPreview prep(preview::build_draw_list(s, scene, view_options()));
        paint_view(view, prep);
        steps = prep.list().order.size();
    }
    state.counters["elements"] = s.pg_n + s.ln_n + s.ln_nact + s.pt_n + s.pt_nx;
    state.counters["steps"] = static_cast<double>(steps);
}

// Its parts: the list alone, and the images and the view from a ready list.
void BM_LargeSamplerList(benchmark::State& state) {
    model::Store& s = large();
    const preview::Scene scene = preview::make_sampler(s);
    for (auto _ : state) benchmark::DoNotOptimize(preview::build_draw_list(s, scene, view_options()).order.size());
}

void BM_LargeSamplerPrepareAndPaint(benchmark::State& state) {
    model::Store& s = large();
    const preview::DrawList list = preview::build_draw_list(s, preview::make_sampler(s), view_options());
    QImage view(k_view_w, k_view_h, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        const gui::PreparedPreview prep(list);
        paint_view(view, prep);
    }
}

// The code panel's Apply of a polygon whose colour changed, up to the Town
// drawn again with it.
void BM_ApplyToRedraw(benchmark::State& state) {
    model::Store& s = sample();
    platform::QuietPrompt ui;
    const int32_t row = 0;
    const std::string text = text::create_code(s, row + 1, model::k_polygons, false);
    QImage view(k_view_w, k_view_h, QImage::Format_ARGB32_Premultiplied);
    bool ok = true;
    for (auto _ : state) {
        ok = text::parsetext(s, ui, text, model::k_polygons, row, false).ok && ok;
        const gui::PreparedPreview prep(preview::build_draw_list(s, town(), view_options()));
        paint_view(view, prep);
    }
    if (!ok) state.SkipWithError("the Apply was refused");
}

}  // namespace

BENCHMARK(BM_TownRedraw)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TownRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LargeSamplerBuiltAndDrawn)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LargeSamplerList)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LargeSamplerPrepareAndPaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ApplyToRedraw)->Unit(benchmark::kMillisecond);

// Label text needs the fonts of a GUI application; no display is used.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
