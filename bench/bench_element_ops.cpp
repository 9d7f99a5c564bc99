// The element operations on a file of 20,000 elements: one element created,
// pasted or deleted, with the re-sort of its class, each well under 50 ms;
// Select All + Delete of 5,000 elements under 1 s. Logic only: the host does
// what the window would, less the grid.
#include <benchmark/benchmark.h>

#include <numeric>

#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/prompt.h"
#include "support/large_projects.h"
#include "support/ops_host.h"
#include "support/sample_builder.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "workbench/element_ops.h"
#include "workbench/element_rows.h"
#include "workbench/type_key.h"

using namespace korvex;

namespace {

using platform::QuietPrompt;

constexpr int k_polygons = samples::k_ops_polygons;
constexpr int k_lines = samples::k_ops_lines;
constexpr int k_points = samples::k_ops_points;  // 20,000 elements in all

using Host = samples::BenchHost;
using Accept = samples::AcceptForms;

const model::Store& large_store() { return samples::element_ops_project(); }

struct Bench {
    model::Store s = large_store();
    workbench::AppSettings settings;
    integration::Messages msgs;
    QuietPrompt ui;
    platform::MemoryClipboard clip;
    Accept dialogs;
    Host host;
    workbench::ElementOps ops{s, ui, clip, msgs, settings, dialogs, host};
    explicit Bench(int cls) {
        host.s = &s;
        s.curclass = cls;
        // The seeds start where the file is full, so the walk to a free number is long.
        settings.polygon_seed = "10000";
        settings.line_seed = "10000";
        settings.point_seed = "001";
    }
};

void BM_NewElement(benchmark::State& state) {
    const int cls = static_cast<int>(state.range(0));
    Bench b(cls);
    for (auto _ : state) {
        const int32_t row = b.ops.new_element(cls);
        if (row < 0) {
            state.SkipWithError("nothing made");
            break;
        }
        state.PauseTiming();
        workbench::remove_elements(b.s, cls, {row});
        state.ResumeTiming();
    }
}
BENCHMARK(BM_NewElement)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void BM_PasteOne(benchmark::State& state) {
    const int cls = static_cast<int>(state.range(0));
    Bench b(cls);
    // A copy of the first element under the number Create Copy would take.
    b.ops.mcopy({0});
    std::string text = b.clip.unicode_text();
    const std::string digits = cls == 2 ? workbench::next_point_type(b.s, "001")
                                        : workbench::nwtypnumber(b.s, cls == 0 ? "10000" : "10000", cls);
    text = text.substr(0, text.find("[_")) + workbench::replacetype(text.substr(text.find("[_")), digits);
    b.clip.set_unicode_text(text);
    for (auto _ : state) {
        const int32_t row = b.ops.mpaste();
        if (row < 0) {
            state.SkipWithError("nothing pasted");
            break;
        }
        state.PauseTiming();
        workbench::remove_elements(b.s, cls, {row});
        state.ResumeTiming();
    }
}
BENCHMARK(BM_PasteOne)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void BM_DeleteOne(benchmark::State& state) {
    const int cls = static_cast<int>(state.range(0));
    Bench b(cls);
    const int32_t middle = workbench::end_row(b.s, cls) / 2;
    for (auto _ : state) {
        state.PauseTiming();
        b.ops.mcopy({middle});
        state.ResumeTiming();
        b.ops.mdelete({middle});
        state.PauseTiming();
        b.ops.mpaste();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DeleteOne)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// 5,000 selected points of a file of 20,000 elements, then Delete.
void BM_SelectAllDelete5000(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Bench b(model::k_points);
        std::vector<int32_t> all(5000);
        std::iota(all.begin(), all.end(), 2500);
        state.ResumeTiming();
        b.ops.mdelete(all);
        if (b.s.pt_n != k_points - 5000) {
            state.SkipWithError("not all deleted");
            break;
        }
    }
}
BENCHMARK(BM_SelectAllDelete5000)->Unit(benchmark::kMillisecond);

// Ctrl+A, Copy and Paste of every polygon into an empty project.
void BM_CopyPasteAllPolygons(benchmark::State& state) {
    Bench from(model::k_polygons);
    std::vector<int32_t> all(static_cast<size_t>(from.s.pg_n));
    std::iota(all.begin(), all.end(), 0);
    for (auto _ : state) {
        from.ops.mcopy(all);
        state.PauseTiming();
        Bench to(model::k_polygons);
        model::newproject(to.s);
        to.clip.set_unicode_text(from.clip.unicode_text());
        state.ResumeTiming();
        to.ops.mpaste();
    }
}
BENCHMARK(BM_CopyPasteAllPolygons)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
