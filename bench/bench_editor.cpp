// The icon editor's logic on a 128 x 128 picture: a pencil stroke, a flood
// fill and an undo step, each with its translate; and opening the editor on
// the corpus element that takes longest.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "editor/canvas.h"
#include "editor/element_open.h"
#include "editor/tools.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "support/striped_point.h"
#include "typ/decoder.h"

using namespace korvex;
using namespace korvex::editor;

namespace {

using platform::QuietPrompt;

// The striped point of 200 colours, its history started.
EditorSession big_point() {
    EditorSession e = samples::striped_point();
    start_history(e);
    e.curcol = 3;
    e.curcol2 = 4;
    return e;
}

void BM_PencilStroke(benchmark::State& state) {
    QuietPrompt ui;
    EditorSession e = big_point();
    ToolEngine t(e, ui);
    int k = 0;
    for (auto _ : state) {
        // A diagonal stroke across the picture, 64 pointer moves.
        t.press(0, k % 128, (k & 1) != 0);
        for (int i = 1; i <= 64; ++i) t.move(i * 2 - 1, (k + i) % 128);
        t.release(127, (k + 64) % 128);
        ++k;
    }
}
BENCHMARK(BM_PencilStroke)->Unit(benchmark::kMillisecond);

void BM_FloodFill(benchmark::State& state) {
    QuietPrompt ui;
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = {0xFFFFFF, 0, 0xFF};
    resize_picture(e, 128, 128);
    painticon(e);
    start_history(e);
    ToolEngine t(e, ui);
    t.set_tool(t_fill);
    int k = 0;
    for (auto _ : state) {
        // The whole picture changes colour each time.
        e.curcol = 1 + (k % 2);
        t.press(64, 64, false);
        ++k;
    }
}
BENCHMARK(BM_FloodFill)->Unit(benchmark::kMillisecond);

void BM_UndoStep(benchmark::State& state) {
    QuietPrompt ui;
    EditorSession e = big_point();
    ToolEngine t(e, ui);
    t.set_tool(t_fill);
    for (int i = 0; i < 300; ++i) {
        e.curcol = 1 + i % 5;
        t.press(i % 128, (i * 3) % 128, false);
    }
    bool back = true;
    for (auto _ : state) {
        if (back ? !undo_step(e) : !redo_step(e)) back = !back;
    }
}
BENCHMARK(BM_UndoStep)->Unit(benchmark::kMillisecond);

// Every corpus element is opened once an iteration; the counter reports
// the slowest single opening.
void BM_OpenCorpusElements(benchmark::State& state) {
    std::vector<std::unique_ptr<model::Store>> stores;
    QuietPrompt ui;
    const std::filesystem::path dir = std::filesystem::path(KORVEX_SOURCE_DIR).parent_path() / "shared" / "corpus" / "typ";
    if (std::filesystem::is_directory(dir))
        for (const auto& f : std::filesystem::directory_iterator(dir)) {
            auto s = std::make_unique<model::Store>();
            model::newproject(*s);
            typ::open_typ_bytes(*s, ui, platform::read_file(f.path().string()).value_or(""), f.path().string());
            stores.push_back(std::move(s));
        }
    double slowest = 0;
    for (auto _ : state) {
        for (const auto& s : stores) {
            auto open = [&](int cls, int32_t row) {
                const auto t0 = std::chrono::steady_clock::now();
                OpenRequest r;
                r.curclass = cls;
                r.row = row;
                benchmark::DoNotOptimize(open_element(*s, r));
                slowest = std::max(slowest, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count());
            };
            for (int32_t i = 0; i < s->pg_n; ++i) open(0, i);
            for (int32_t i = 0; i < s->ln_n; ++i) open(1, i);
            for (int32_t i = 0; i < s->ln_nact; ++i) open(3, s->ln_n + i);
            for (int32_t i = 0; i < s->pt_n; ++i) open(2, i);
            for (int32_t i = 0; i < s->pt_nx; ++i) open(4, s->pt_n + i);
        }
    }
    state.counters["slowest_ms"] = slowest;
}
BENCHMARK(BM_OpenCorpusElements)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
