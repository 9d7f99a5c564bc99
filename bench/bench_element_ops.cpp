// The element operations on a file of 20,000 elements: one element created,
// pasted or deleted, with the re-sort of its class, each well under 50 ms;
// Select All + Delete of 5,000 elements under 1 s. Logic only: the host does
// what the window would, less the grid.
#include <benchmark/benchmark.h>

#include <numeric>

#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "workbench/element_ops.h"
#include "workbench/element_rows.h"
#include "workbench/type_key.h"

using namespace korvex;

namespace {

using platform::QuietPrompt;

constexpr int k_polygons = 6000;
constexpr int k_lines = 4000;
constexpr int k_points = 10000;  // 20,000 elements in all

struct Host : workbench::OpsHost {
    model::Store* s = nullptr;
    bool loading() const override { return false; }
    void show_class(int cls) override { s->curclass = cls; }
    void tables_changed(int32_t) override { s->dirty = true; }
    void log_line(int, const std::string&) override {}
};

struct Accept : workbench::ElementDialogs {
    bool poisizes(workbench::NewElementForm&) override { return true; }
    bool new_line(workbench::NewElementForm&) override { return true; }
};

// The generated file, as a load leaves its tables: encoded and decoded.
const model::Store& large_store() {
    static const model::Store store = [] {
        model::Store s;
        samples::new_project(s, "9999", 156);
        // Types 0x01 .. 0x7f, then 0x100 on, each with every subtype; those
        // a TYP file gives a level have one of nine.
        for (int i = 0; i < k_polygons; ++i) {
            samples::PolygonSpec p;
            p.type = i < 127 * 32 ? 1 + i / 32 : 0x100 + (i - 127 * 32) / 32;
            p.subtype = i % 32;
            p.colours = {"#40A040"};
            p.labels = {{0x04, "Area " + std::to_string(i)}};
            samples::add_polygon(s, p);
            const std::string code = workbench::drw_code(p.type << 8 | p.subtype);
            if (p.type >= 0x100 || p.subtype == 0) s.drwlist += " " + code + "," + std::to_string(1 + i % 9);
        }
        for (int i = 0; i < k_lines; ++i) {
            samples::LineSpec l;
            l.type = i < 47 * 32 ? 1 + i / 32 : 0x100 + (i - 47 * 32) / 32;
            l.subtype = i % 32;
            l.colours = {"#202020", "#FFFFFF"};
            l.labels = {{0x04, "Road " + std::to_string(i)}};
            samples::add_line(s, l);
        }
        for (int i = 0; i < k_points; ++i) {
            samples::PointSpec p;
            p.type = 1 + i / 32;
            p.subtype = i % 32;
            p.colours = 2 + i % 6;
            p.seed = static_cast<unsigned>(i + 1);
            p.labels = {{0x04, "Point " + std::to_string(i)}};
            samples::add_point(s, p);
        }
        QuietPrompt ui;
        const platform::FixedClock clock({2026, 1, 2, 3, 4, 5});
        typ::save_typ(s, ui, clock, false);
        model::Store back;
        typ::open_typ_bytes(back, ui, s.curf, "/bench/large.typ");
        return back;
    }();
    return store;
}

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
