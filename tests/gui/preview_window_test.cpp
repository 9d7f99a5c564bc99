// The map preview as a user meets it: every file of the corpus drawn in
// both scenes, the command line's picture, and the dock in the window
// (redrawn by the window's changes, naming and selecting what it shows).
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QPlainTextEdit>
#include <QTest>
#include <unordered_set>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "gui/main_window.h"
#include "gui/preview_canvas.h"
#include "gui/preview_command.h"
#include "gui/preview_dock.h"
#include "gui/preview_painter.h"
#include "gui/preview_scenes.h"
#include "platform/files.h"
#include "preview/draw_list.h"
#include "support/harness.h"

using namespace korvex;
namespace kt = korvex::testing;

namespace {

const std::string k_invisible_note = "no draw order and are invisible";
const std::string k_invisible_note_one = "no draw order and is invisible";

std::vector<std::string> preview_files() {
    std::vector<std::string> files = {kt::source_dir() + "/data/samples/sample.typ"};
    const std::string dir = kt::corpus_dir();
    if (dir.empty()) return files;
    for (const std::string& f : kt::files_with(dir + "/typ", ".typ")) files.push_back(f);
    for (const std::string& f : kt::corpus_texts()) files.push_back(f);
    return files;
}

std::unordered_set<uint32_t> colours_of(const QImage& img) {
    std::unordered_set<uint32_t> out;
    for (int y = 0; y < img.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < img.width(); ++x) out.insert(line[x] & 0xFFFFFF);
    }
    return out;
}

// The opaque colours a styled polygon may show: its fill or its pattern's.
std::vector<uint32_t> polygon_colours(const preview::PolygonItem& item) {
    std::vector<uint32_t> out;
    if (item.solid && (item.colour >> 24) == 0xFF) out.push_back(item.colour & 0xFFFFFF);
    if (!item.solid && item.tile)
        for (const uint32_t px : item.tile->px)
            if ((px >> 24) == 0xFF) out.push_back(px & 0xFFFFFF);
    return out;
}

}  // namespace

class PreviewCorpus : public ::testing::TestWithParam<std::string> {};

// Each file draws in both scenes without a word beyond the note of invisible
// polygon types, and the picture shows the style's own colours: in the
// sampler every styled polygon's (its patch has a part no other covers),
// in the Town those of at least one type the style defines.
TEST_P(PreviewCorpus, DrawsInBothScenesWithTheStylesColours) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    model::Store s;
    model::newproject(s);
    platform::ScriptedPrompt ui(platform::Answer::no);
    std::string error;
    ASSERT_TRUE(gui::load_preview_project(s, ui, GetParam(), &error)) << error;
    // What the load itself says is the reader's business, not the preview's.
    const std::string loaded = s.loadrep;
    const size_t said = ui.messages.size();
    for (const gui::SceneChoice choice : {gui::SceneChoice::town, gui::SceneChoice::sampler}) {
        const bool town = choice == gui::SceneChoice::town;
        const preview::SceneRead scene = gui::load_preview_scene(choice, "", s);
        EXPECT_TRUE(scene.report.empty()) << scene.report.front();
        gui::PreparedPreview prep(preview::build_draw_list(s, scene.scene, {}));
        const preview::DrawList& list = prep.list();
        EXPECT_EQ(s.loadrep, loaded) << (town ? "town" : "sampler");
        for (const std::string& note : list.notes())
            EXPECT_TRUE(note.find(k_invisible_note) != std::string::npos ||
                        note.find(k_invisible_note_one) != std::string::npos)
                << note;

        // The sampler's patches come first; a picture down to the last of
        // them is enough, however many lines and points follow.
        double bottom = town ? list.height : 0;
        for (const preview::PolygonItem& p : list.polygons)
            for (const preview::Pt& pt : p.outline) bottom = std::max(bottom, pt.y + 1);
        QImage img(static_cast<int>(list.width), std::max(1, static_cast<int>(bottom)), QImage::Format_RGB32);
        QPainter painter(&img);
        gui::paint_preview(painter, prep, QPointF(0, 0), QRectF(img.rect()));
        painter.end();
        const std::unordered_set<uint32_t> shown = colours_of(img);

        int styled = 0, found = 0;
        for (const preview::DrawStep& step : list.order) {
            std::vector<uint32_t> colours;
            if (step.kind == preview::ItemKind::polygon && !list.polygons[static_cast<size_t>(step.index)].missing)
                colours = polygon_colours(list.polygons[static_cast<size_t>(step.index)]);
            else if (town && step.kind == preview::ItemKind::line) {
                const preview::LineItem& l = list.lines[static_cast<size_t>(step.index)];
                if (!l.missing && !l.bitmap && l.width > 0 && (l.fill >> 24) == 0xFF) colours = {l.fill & 0xFFFFFF};
            }
            if (colours.empty()) continue;
            ++styled;
            const bool seen = std::any_of(colours.begin(), colours.end(), [&](uint32_t c) { return shown.count(c) > 0; });
            found += seen;
            if (!town) {
                EXPECT_TRUE(seen) << "polygon " << preview::source_text(list.sources[static_cast<size_t>(step.source)]);
            }
        }
        if (town && styled > 0) {
            EXPECT_GT(found, 0) << "the Town shows none of the style's colours";
        }
    }
    EXPECT_EQ(ui.messages.size(), said) << ui.messages.back();
}

INSTANTIATE_TEST_SUITE_P(Files, PreviewCorpus, ::testing::ValuesIn(kt::corpus_params(preview_files())),
                         [](const auto& info) {
                             // A style comes as a TYP and as a text of one name.
                             const std::string& p = info.param;
                             return kt::file_param_name(p) + (p.size() > 4 ? "_" + p.substr(p.size() - 3) : "");
                         });

TEST(PreviewCommand, ArgumentsAtTheirLimits) {
    struct Case {
        std::vector<std::string> args;
        bool ok;
        int zoom;
    };
    const std::string in = "--render-preview", out = "-o";
    const Case cases[] = {
        {{in, "a.typ", out, "a.png"}, true, 1},
        {{in, "a.typ", "--zoom", "3", "--night", "--scene", "sampler", out, "a.png"}, true, 3},
        {{in, "a.typ", "--zoom", "4", out, "a.png"}, false, 0},
        {{in, "a.typ", "--zoom", "0", out, "a.png"}, false, 0},
        {{in, "a.typ", "--zoom", "12", out, "a.png"}, false, 0},
        {{in, "a.typ"}, false, 0},
        {{in, "a.typ", out}, false, 0},
        {{in}, false, 0},
        {{in, "a.typ", "--dpi", "2", out, "a.png"}, false, 0},
    };
    for (const Case& c : cases) {
        const gui::RenderArgs a = gui::parse_render_args(c.args);
        std::string joined;
        for (const std::string& s : c.args) joined += s + " ";
        EXPECT_EQ(a.error.empty(), c.ok) << joined << ": " << a.error;
        if (c.ok) {
            EXPECT_EQ(a.zoom, c.zoom) << joined;
        }
    }
}

TEST(PreviewCommand, WritesTheSceneAtItsZoomAndNothingForABadFile) {
    QTemporaryDir dir;
    const std::string bad = dir.filePath("bad.typ").toStdString();
    ASSERT_TRUE(platform::write_file_atomic(bad, "not a TYP at all"));
    struct Case {
        std::string input, scene;
        int zoom;
        int status;
    };
    const std::string sample = kt::source_dir() + "/data/samples/sample.typ";
    const Case cases[] = {{sample, "town", 2, 0},
                          {sample, "sampler", 1, 0},
                          {bad, "town", 1, 1},
                          {dir.filePath("absent.typ").toStdString(), "town", 1, 1},
                          {sample, dir.filePath("absent.txt").toStdString(), 1, 1}};
    int k = 0;
    for (const Case& c : cases) {
        gui::RenderArgs a;
        a.input = c.input;
        a.scene = c.scene;
        a.zoom = c.zoom;
        a.output = dir.filePath(QString("out%1.png").arg(k++)).toStdString();
        EXPECT_EQ(gui::render_preview(a), c.status) << c.input << " " << c.scene;
        QImage img(QString::fromStdString(a.output));
        EXPECT_EQ(img.isNull(), c.status != 0) << c.input << " " << c.scene;
        if (c.scene == "town" && c.status == 0) {
            const preview::SceneRead town = preview::load_scene(gui::town_scene_path());
            EXPECT_EQ(img.size(), QSize(static_cast<int>(town.scene.width) * c.zoom, static_cast<int>(town.scene.height) * c.zoom));
        }
    }
}

namespace {

struct PreviewFixture : kt::WindowFixture {
    PreviewFixture() : WindowFixture(platform::Answer::no) {
        show(services(), 1400, 800);
        EXPECT_TRUE(w->open_file(kt::k_samples + "sample.typ"));
        QAction* entry = nullptr;
        for (QAction* m : w->menuBar()->actions())
            if (m->text() == "Window")
                for (QAction* a : m->menu()->actions())
                    if (a->text() == "Map Preview") entry = a;
        EXPECT_NE(entry, nullptr);
        if (entry) entry->trigger();
        dock = w->map_preview();
        dock->canvas()->resize(700, 600);
        QApplication::processEvents();
    }
    QImage shot() { return dock->canvas()->grab().toImage(); }
    // The canvas position of an item's source: the first step of it that
    // holds a bound row of the class, and where it lies.
    QPoint point_of(preview::ItemKind kind, int32_t* row) {
        const preview::DrawList& list = dock->canvas()->prepared().list();
        for (const preview::DrawStep& st : list.order) {
            const preview::ItemSource& src = list.sources[static_cast<size_t>(st.source)];
            if (st.kind != kind || src.row < 0) continue;
            *row = src.row;
            QPoint at;
            if (kind == preview::ItemKind::point) {
                const preview::Pt c = list.points[static_cast<size_t>(st.index)].centre;
                at = QPoint(static_cast<int>(c.x), static_cast<int>(c.y));
            } else {
                // The middle of a sampler patch's own part, left of the next patch.
                const preview::Pt c = list.polygons[static_cast<size_t>(st.index)].outline[0];
                at = QPoint(static_cast<int>(c.x) + 80, static_cast<int>(c.y) + 8);
            }
            return at + dock->canvas()->offset();
        }
        return {-1, -1};
    }
    gui::PreviewDock* dock = nullptr;
};

}  // namespace

// A change reaches the map by either road the window's changes take: the
// code panel's Apply (one element) and a tool ending in after_change.
TEST(PreviewDock, RedrawsAfterTheCodePanelsApplyAndAfterATool) {
    PreviewFixture f;
    f.dock->set_scene(gui::SceneChoice::sampler);
    int32_t row = -1;
    const QPoint at = f.point_of(preview::ItemKind::polygon, &row);
    ASSERT_GE(row, 0);
    const QRgb before = f.shot().pixel(at);

    f.w->show_class(model::k_polygons);
    f.w->show_row(row);
    QString text = f.w->code_panel()->toPlainText();
    const QString old_colour = QColor(before).name().mid(1).toUpper();
    ASSERT_TRUE(text.contains(old_colour, Qt::CaseInsensitive)) << text.toStdString();
    text.replace(old_colour, "123456", Qt::CaseInsensitive);
    f.w->code_panel()->setPlainText(text);
    f.w->apply_changes();
    EXPECT_EQ(f.shot().pixel(at) & 0xFFFFFF, 0x123456u);

    // Without draw order no polygon shows: the patch is gone and the line
    // under the map says why.
    const int builds = f.dock->canvas()->builds();
    f.w->store().drwlist.clear();
    f.w->after_change();
    EXPECT_NE(f.shot().pixel(at) & 0xFFFFFF, 0x123456u);
    EXPECT_GT(f.dock->canvas()->builds(), builds);
    EXPECT_NE(f.dock->info_label()->text().toStdString().find(k_invisible_note), std::string::npos)
        << f.dock->info_label()->text().toStdString();
}

TEST(PreviewDock, HoverNamesAndDoubleClickSelectsThePointInTheGrid) {
    PreviewFixture f;
    f.w->show_class(model::k_polygons);
    int32_t row = -1;
    const QPoint at = f.point_of(preview::ItemKind::point, &row);
    ASSERT_GE(row, 0);
    const int step = f.dock->canvas()->step_at(at);
    ASSERT_GE(step, 0);
    const preview::DrawList& list = f.dock->canvas()->prepared().list();
    const std::string name = preview::source_text(list.sources[static_cast<size_t>(list.order[static_cast<size_t>(step)].source)]);

    QMouseEvent move(QEvent::MouseMove, QPointF(at), QPointF(f.dock->canvas()->mapToGlobal(at)), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(f.dock->canvas(), &move);
    EXPECT_EQ(f.dock->info_label()->text().toStdString(), name);
    QTest::mouseDClick(f.dock->canvas(), Qt::LeftButton, {}, at);
    EXPECT_EQ(f.w->browser().cls(), model::k_points);
    EXPECT_EQ(f.w->browser().current_row(), row);
    EXPECT_FALSE(f.w->code_panel()->toPlainText().isEmpty());
}

TEST(PreviewDock, AFeaturelessSceneFileLeavesTheSceneAndAWideOneIsDrawnWhereDragged) {
    PreviewFixture f;
    const std::string empty = f.path("empty.txt"), good = f.path("mine.txt");
    ASSERT_TRUE(platform::write_file_atomic(empty, "scene Nothing 100 100\npolygon nonsense\n"));
    // Wider than three views: its lake at the far end is listed only once
    // the view has been dragged there.
    preview::Scene mine;
    mine.name = "Mine";
    mine.width = 6000;
    mine.height = 200;
    preview::Feature lake;
    lake.code = 0x3c00;
    lake.points = {{5000, 10}, {5150, 10}, {5150, 150}, {5000, 150}};
    mine.features = {lake};
    ASSERT_TRUE(platform::write_file_atomic(good, preview::write_scene(mine)));

    f.dialogs.script(empty);
    EXPECT_FALSE(f.dock->choose_scene_file());
    EXPECT_EQ(f.prompt.messages.size(), 1u);
    EXPECT_EQ(f.dock->scene(), gui::SceneChoice::town);
    EXPECT_EQ(f.dock->scene_box()->count(), 2);
    EXPECT_EQ(f.dock->canvas()->prepared().list().width, preview::load_scene(gui::town_scene_path()).scene.width);

    f.dialogs.script(good);
    EXPECT_TRUE(f.dock->choose_scene_file());
    EXPECT_EQ(f.dock->scene(), gui::SceneChoice::file);
    EXPECT_EQ(f.dock->scene_box()->currentText(), "mine.txt");
    EXPECT_EQ(f.dock->canvas()->prepared().list().width, 6000);
    const QRgb ground = f.shot().pixel(100, 100);
    f.dock->canvas()->set_offset(QPoint(-4900, f.dock->canvas()->offset().y()));
    const QPoint in_lake = QPoint(5075, 80) + f.dock->canvas()->offset();
    EXPECT_NE(f.shot().pixel(in_lake), ground);
    EXPECT_GE(f.dock->canvas()->step_at(in_lake), 0);
}

// The preview takes room from the grid or from the screen beside the
// window; where neither has enough it floats, and the window keeps its width
// rather than growing past the screen's edge.
TEST(PreviewDock, DocksWhereThereIsRoomAndFloatsWhereThereIsNone) {
    for (const bool wide : {true, false}) {
        SCOPED_TRACE(wide ? "wide window" : "window at its least width, filling the screen");
        kt::WindowFixture f(platform::Answer::no);
        f.show(f.services(), wide ? 1400 : 200, 600);
        if (!wide) {
            const QRect screen = f.w->screen()->availableGeometry();
            f.w->move(screen.right() - f.w->frameGeometry().width() + 1, screen.top());
        }
        QApplication::processEvents();
        const int width = f.w->width();
        f.w->map_preview()->open();
        QApplication::processEvents();
        EXPECT_EQ(f.w->map_preview()->isFloating(), !wide);
        EXPECT_EQ(f.w->width(), width);
        EXPECT_TRUE(f.w->map_preview()->isVisible());
    }
}
