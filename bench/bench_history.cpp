// The project history on a file of 20,000 elements: one undo or redo step
// (the window's grid not included) well under 50 ms; recording adds under
// 10% to an operation (each pair below runs with and without a history);
// 200 single-element edits held in under 5 MB (the "history_bytes"
// counter); Select All + Delete of every point and its undo under 1 s.
#include <benchmark/benchmark.h>

#include <numeric>

#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/file_dialog.h"
#include "platform/launcher.h"
#include "platform/prompt.h"
#include "support/large_projects.h"
#include "support/ops_host.h"
#include "support/sample_builder.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "workbench/draw_order_ops.h"
#include "workbench/element_ops.h"
#include "workbench/history.h"
#include "workbench/session.h"
#include "workbench/type_key.h"

using namespace korvex;

namespace {

using platform::QuietPrompt;

constexpr int k_polygons = samples::k_ops_polygons;
constexpr int k_lines = samples::k_ops_lines;
constexpr int k_points = samples::k_ops_points;  // 20,000 elements in all

using Host = samples::BenchHost;
using Accept = samples::AcceptForms;

struct NullView : workbench::SessionView {
    void rebuild_grid() override {}
    void update_cell(int, int32_t) override {}
    void set_caption(const std::string&) override {}
    void fill_code_panel(const std::string&) override {}
    void menu_enable(bool) override {}
    void enable_open(bool) override {}
    void show_apply(bool) override {}
    void paint_report(bool) override {}
    void focus_field(workbench::TopField) override {}
    void select_codepage(int) override {}
    void set_status(const std::string&) override {}
    void set_icon_size(int) override {}
    void show_recent(const std::vector<workbench::RecentEntry>&) override {}
    void busy(bool) override {}
};

const model::Store& large_store() { return samples::element_ops_project(); }

struct Bench {
    model::Store s = large_store();
    workbench::AppSettings settings;
    integration::Messages msgs;
    QuietPrompt ui;
    platform::MemoryClipboard clip;
    platform::ScriptedFileDialog files;
    platform::RecordingLauncher launcher;
    platform::FixedClock clock{{2026, 1, 2, 3, 4, 5}};
    NullView view;
    workbench::Session session{s, settings, msgs, ui, files, launcher, clock, "/tmp", view};
    Accept dialogs;
    Host host;
    workbench::ElementOps ops{s, ui, clip, msgs, settings, dialogs, host};
    explicit Bench(int cls, bool recorded = true) {
        host.s = &s;
        s.curclass = cls;
        if (recorded) ops.set_history(&session.history());
    }
    workbench::History& history() { return session.history(); }
};

// One step each way (an iteration is an undo and a redo): Delete of a point
// in the middle, Apply of a label.
void BM_UndoRedoDelete(benchmark::State& state) {
    Bench b(model::k_points);
    b.ops.mdelete({k_points / 2});
    for (auto _ : state) {
        b.session.undo();
        b.session.redo();
    }
}
BENCHMARK(BM_UndoRedoDelete)->Unit(benchmark::kMillisecond);

void BM_UndoRedoApply(benchmark::State& state) {
    Bench b(model::k_points);
    b.s.curel = k_points / 2;
    std::string panel = text::convert(b.s, text::create_code(b.s, b.s.curel, model::k_points, false));
    panel.replace(panel.find("String1=0x04,") + 13, 5, "Edited");
    b.session.apply_code_panel(panel);
    for (auto _ : state) {
        b.session.undo();
        b.session.redo();
    }
}
BENCHMARK(BM_UndoRedoApply)->Unit(benchmark::kMillisecond);

// Create Copy of a point and Delete of the copy, with (1) and without (0)
// the history recording them.
void BM_CopyAndDelete(benchmark::State& state) {
    const bool recorded = state.range(0) != 0;
    Bench b(model::k_points, recorded);
    const int32_t middle = k_points / 2;
    for (auto _ : state) {
        const int32_t row = b.ops.mcreatecopy(middle);
        if (row < 0 || !b.ops.mdelete({row})) {
            state.SkipWithError("no copy");
            break;
        }
    }
}
BENCHMARK(BM_CopyAndDelete)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// A level for three polygons, with and without the history.
void BM_SetLevels(benchmark::State& state) {
    const bool recorded = state.range(0) != 0;
    Bench b(model::k_polygons, recorded);
    int level = 1;
    const std::vector<workbench::LevelTarget> targets = {{10, -1}, {3000, -1}, {5990, -1}};
    for (auto _ : state) {
        workbench::mlev(b.s, b.ui, b.msgs, model::k_polygons, targets, level, recorded ? &b.history() : nullptr);
        level = level % 9 + 1;
    }
}
BENCHMARK(BM_SetLevels)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// 200 single-element edits: Apply of a label on 200 points, and Create
// Copy of 200 points; the bytes the history holds afterwards.
void BM_History200Edits(benchmark::State& state) {
    const bool copies = state.range(0) != 0;
    size_t bytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Bench b(model::k_points);
        state.ResumeTiming();
        for (int i = 0; i < 200; ++i) {
            const int32_t row = (i * 47) % k_points;
            if (copies) {
                b.ops.mcreatecopy(row);
                continue;
            }
            b.s.curclass = model::k_points;
            b.s.curel = row + 1;
            std::string panel = text::convert(b.s, text::create_code(b.s, b.s.curel, model::k_points, false));
            panel.replace(panel.find("String1=0x04,") + 13, 5, "Edit" + std::to_string(i));
            b.session.apply_code_panel(panel);
        }
        bytes = b.history().bytes();
        if (b.history().size() != 200) state.SkipWithError("not 200 steps");
    }
    state.counters["history_bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_History200Edits)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(1);

// Select All + Delete of the 10,000 points, then Undo.
void BM_SelectAllDeleteAndUndo(benchmark::State& state) {
    Bench b(model::k_points);
    std::vector<int32_t> all(k_points);
    std::iota(all.begin(), all.end(), 0);
    for (auto _ : state) {
        b.ops.mdelete(all);
        b.session.undo();
        if (b.s.pt_n != k_points) {
            state.SkipWithError("not all back");
            break;
        }
    }
}
BENCHMARK(BM_SelectAllDeleteAndUndo)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
