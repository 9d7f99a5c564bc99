// Edit > Undo and Redo in the window on a generated file of 20,000 points,
// offscreen: each step timed with what the user waits for — the history
// applied, the grid rebuilt, the elements selected, the code panel filled and
// the cells in view painted. Target: under 50 ms a step.
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <memory>

#include "gui/element_commands.h"
#include "gui/grid_view.h"
#include "gui/history_commands.h"
#include "gui/main_window.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/file_dialog.h"
#include "platform/files.h"
#include "platform/launcher.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "typ/encoder.h"

using namespace korvex;

namespace {

constexpr int k_points = 20000;

std::string large_typ() {
    model::Store s;
    samples::new_project(s, "9999", 156);
    for (int i = 0; i < k_points; ++i) {
        samples::PointSpec p;
        p.type = 0x100 + i / 32;
        p.subtype = i % 32;
        p.width = 16 + i % 9;
        p.height = 16 + i % 7;
        p.colours = 2 + i % 14;
        p.seed = static_cast<unsigned>(i + 1);
        p.labels = {{0x04, "Point " + std::to_string(i)}};
        samples::add_point(s, p);
    }
    platform::QuietPrompt ui;
    const platform::FixedClock clock({2026, 1, 2, 3, 4, 5});
    typ::save_typ(s, ui, clock, false);
    return s.curf;
}

// One window on the large file for every benchmark of the run.
struct Window {
    QTemporaryDir home;
    platform::MapEnvironment env;
    platform::ScriptedPrompt prompt{platform::Answer::yes};
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    std::unique_ptr<gui::MainWindow> w;

    Window() {
        const std::string path = home.filePath("large.typ").toStdString();
        platform::write_file_atomic(path, large_typ());
        env.set("HOME", home.path().toStdString());
        env.set("XDG_DATA_HOME", home.path().toStdString() + "/data");
        gui::WindowServices sv;
        sv.prompt = &prompt;
        sv.dialogs = &dialogs;
        sv.launcher = &launcher;
        sv.env = &env;
        sv.program_folder = home.path().toStdString();
        w = std::make_unique<gui::MainWindow>(sv);
        w->resize(1280, 800);
        w->show();
        QApplication::processEvents();
        w->show_class(model::k_points);
        w->open_file(path);
        QApplication::processEvents();
    }
    // The step, then what the window shows of it.
    double timed(bool (gui::HistoryCommands::*step)()) {
        QElapsedTimer t;
        t.start();
        const bool done = (w->history_commands()->*step)();
        QApplication::processEvents();
        w->grid()->viewport()->repaint();
        const double s = static_cast<double>(t.nsecsElapsed()) / 1e9;
        return done ? s : -1;
    }
};

// Made at the first benchmark, gone before the application is.
std::unique_ptr<Window> g_window;

Window& window() {
    if (!g_window) g_window = std::make_unique<Window>();
    return *g_window;
}

// arg 0: one point deleted; arg 1: 500 points deleted in one step.
void BM_UndoRedoStep(benchmark::State& state) {
    Window& win = window();
    gui::MainWindow& w = *win.w;
    w.show_class(model::k_points);
    w.clear_selection();
    const int n = state.range(0) == 0 ? 1 : 500;
    for (int c = 0; c < n; ++c) w.click_cell(1000 + c * 7, true, false);
    w.commands().remove();
    QApplication::processEvents();
    for (auto _ : state) {
        const double undo = win.timed(&gui::HistoryCommands::undo);
        const double redo = win.timed(&gui::HistoryCommands::redo);
        if (undo < 0 || redo < 0) {
            state.SkipWithError("nothing to undo or redo");
            break;
        }
        // A step is the mean of the two.
        state.SetIterationTime((undo + redo) / 2);
    }
    state.counters["points"] = w.store().pt_n;
}
BENCHMARK(BM_UndoRedoStep)->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);

// The history's share of a step: the session's undo and redo of a one-point
// delete without the window following.
void BM_HistoryShare(benchmark::State& state) {
    gui::MainWindow& w = *window().w;
    w.show_class(model::k_points);
    w.clear_selection();
    w.click_cell(2000, false, false);
    w.commands().remove();
    QApplication::processEvents();
    for (auto _ : state) {
        QElapsedTimer t;
        t.start();
        const bool done = w.session().undo().done && w.session().redo().done;
        state.SetIterationTime(static_cast<double>(t.nsecsElapsed()) / 2e9);
        if (!done) {
            state.SkipWithError("nothing to undo or redo");
            break;
        }
    }
}
BENCHMARK(BM_HistoryShare)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    g_window.reset();
    return 0;
}
