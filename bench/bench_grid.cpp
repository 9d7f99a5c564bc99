// The grid with many elements, offscreen: opening a generated file of 20,000
// points and showing its grid, switching the icon size, and scrolling page by
// page. Prints the times and how many cells each step painted, so that a
// grid that paints more than the visible cells shows at once.
#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTemporaryDir>
#include <cstdio>

#include "gui/cell_delegate.h"
#include "gui/element_commands.h"
#include "gui/grid_model.h"
#include "gui/grid_view.h"
#include "gui/main_window.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "typ/encoder.h"

using namespace korvex;

namespace {

constexpr int k_points = 20000;

class QuietPrompt : public platform::Prompt {
public:
    void message(const std::string&) override {}
    bool yes_no(const std::string&) override { return true; }
    platform::Answer yes_no_cancel(const std::string&) override { return answer; }
    platform::Answer answer = platform::Answer::no;
};

// Small pictures of a few colours with a label each, as a large real
// point set has them.
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
        p.mode = i % 3 == 0 ? 16 : 0;
        p.seed = static_cast<unsigned>(i + 1);
        p.labels = {{0x04, "Point " + std::to_string(i)}};
        samples::add_point(s, p);
    }
    QuietPrompt ui;
    const platform::FixedClock clock({2026, 1, 2, 3, 4, 5});
    typ::save_typ(s, ui, clock, false);
    return s.curf;
}

double ms(const QElapsedTimer& t) { return static_cast<double>(t.nsecsElapsed()) / 1e6; }

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir home;
    const std::string path = home.filePath("large.typ").toStdString();
    if (!platform::write_file_atomic(path, large_typ())) {
        std::fprintf(stderr, "bench_grid: cannot write %s\n", path.c_str());
        return 1;
    }

    platform::MapEnvironment env;
    env.set("HOME", home.path().toStdString());
    env.set("XDG_DATA_HOME", home.path().toStdString() + "/data");
    QuietPrompt prompt;
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    gui::WindowServices sv;
    sv.prompt = &prompt;
    sv.dialogs = &dialogs;
    sv.launcher = &launcher;
    sv.env = &env;
    sv.program_folder = home.path().toStdString();
    gui::MainWindow w(sv);
    w.resize(1280, 800);
    w.show();
    QApplication::processEvents();
    gui::GridView* grid = w.grid();
    gui::GridModel* model = w.grid_model();
    gui::CellDelegate* cells = w.delegate();

    // Open and show: the decode, the grid build and the first paint.
    QElapsedTimer t;
    t.start();
    w.show_class(2);
    const bool opened = w.open_file(path);
    QApplication::processEvents();
    cells->clear_paints();
    grid->viewport()->repaint();
    const double open_ms = ms(t);
    std::printf("open %d points and show the grid: %.0f ms (%s), icon size %d, %d cells, %d painted, %d icons drawn\n",
                w.store().pt_n, open_ms, opened ? "ok" : "FAILED", w.browser().icon_index(), model->rowCount(),
                cells->paints(), model->painted());

    // The largest standard size: a rebuild and a paint.
    t.restart();
    w.set_icon_size(4);
    QApplication::processEvents();
    cells->clear_paints();
    grid->viewport()->repaint();
    std::printf("switch to X Large and show: %.0f ms, %d painted, %d icons drawn\n", ms(t), cells->paints(),
                model->painted());

    // Scrolling a page at a time paints the cells that come into view.
    QScrollBar* bar = grid->verticalScrollBar();
    const int pages = 40;
    int painted = 0;
    t.restart();
    for (int i = 0; i < pages; ++i) {
        cells->clear_paints();
        bar->setValue(bar->value() + bar->pageStep());
        grid->viewport()->repaint();
        painted += cells->paints();
    }
    std::printf("scroll %d pages: %.2f ms a page, %.0f cells painted a page of %d cells\n", pages, ms(t) / pages,
                static_cast<double>(painted) / pages, model->rowCount());
    // One element made and one deleted from the window: the operation, the
    // grid rebuilt and the cells in view painted again.
    auto op_and_paint = [&](const char* what, auto&& op) {
        QElapsedTimer o;
        o.start();
        op();
        QApplication::processEvents();
        grid->viewport()->repaint();
        std::printf("%s in the window: %.1f ms\n", what, ms(o));
    };
    w.click_cell(100, false, false);
    op_and_paint("Create Copy of a point", [&] { w.commands().create_copy(); });
    prompt.answer = platform::Answer::yes;
    op_and_paint("Delete of a point", [&] { w.commands().remove(); });
    std::printf("target: open and show under 1000 ms: %s\n", open_ms < 1000 ? "met" : "MISSED");
    return opened ? 0 : 1;
}
