// The editor's Filters menu and adjustment panel driven as a user drives
// them: a filter from the menu reaches the element on Apply; the open panel
// blocks the canvas and the editor's Apply, its sliders preview and come
// back to the start, and a selection switches the filters off.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <cstdio>

#include <gtest/gtest.h>

#include "editor/colour_count.h"
#include "editor/element_open.h"
#include "gui/canvas_widget.h"
#include "gui/editor_filters.h"
#include "gui/editor_window.h"
#include "gui/qt_colour.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "typ/decoder.h"
#include "support/harness.h"

namespace {

using korvex::gui::EditorFilters;
using korvex::gui::EditorWindow;

// The first point of the sample with a picture of at least 4 x 4 and a few colours.
int32_t filterable_point(const korvex::model::Store& s) {
    for (int32_t r = 0; r < s.pt_n; ++r) {
        int w = 0, h = 0, n = 0;
        const std::string& x = s.pt_xpm[static_cast<size_t>(r)];
        if (std::sscanf(x.c_str() + x.find('"') + 1, "%d %d %d", &w, &h, &n) == 3 && w >= 4 && h >= 4 && n >= 2 && n < 30)
            return r;
    }
    return -1;
}

// The widget position of the centre of picture pixel (x, y).
QPoint filters_pixel_centre(korvex::gui::CanvasWidget* c, int x, int y) {
    int px = 0, py = 0;
    for (int sy = 0; sy < c->height(); ++sy)
        for (int sx = 0; sx < c->width(); ++sx)
            if (c->pixel_at(QPoint(sx, sy), px, py) && px == x && py == y) return QPoint(sx + c->zoom() / 2, sy + c->zoom() / 2);
    return {};
}

struct FiltersFixture {
    korvex::model::Store s;
    korvex::platform::ScriptedPrompt prompt{korvex::platform::Answer::yes};
    std::unique_ptr<EditorWindow> ed;
    int32_t row = -1;

    FiltersFixture() {
        korvex::model::newproject(s);
        const std::string path = korvex::testing::source_dir() + "/data/samples/sample.typ";
        korvex::typ::open_typ_bytes(s, prompt, korvex::platform::read_file(path).value_or(""), path);
        row = filterable_point(s);
        korvex::editor::OpenRequest r;
        r.curclass = 2;
        r.row = row;
        ed = std::make_unique<EditorWindow>(s, korvex::editor::open_element(s, r), prompt, korvex::gui::EditorEnvironment{});
        ed->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(ed.get()));
    }
    QAction* action(const char* caption) {
        EditorFilters* f = ed->filters();
        emit f->menu()->aboutToShow();  // shwfilt runs as the menu opens
        return f->action(caption);
    }
};

TEST(EditorFilters, AFilterFromTheMenuReachesTheElementOnApply) {
    FiltersFixture f;
    ASSERT_GE(f.row, 0);
    const std::string before = f.s.pt_bmp[static_cast<size_t>(f.row)] + f.s.pt_col[static_cast<size_t>(f.row)];
    korvex::editor::EditorSession& e = f.ed->session();
    QAction* emboss = f.action("Emboss");
    ASSERT_NE(emboss, nullptr);
    ASSERT_TRUE(emboss->isEnabled());
    emboss->trigger();
    EXPECT_TRUE(e.changes2 & korvex::editor::ch_filter);
    EXPECT_EQ(e.undo.level(), 1);  // a step that Ctrl+Z takes back
    EXPECT_TRUE(f.ed->position_label()->text().startsWith("Colours: "));
    EXPECT_FALSE(f.prompt.statuses.empty());
    EXPECT_EQ(f.prompt.statuses.back().rfind("Reducing colours from ", 0), 0u);
    // Every pixel of the result names an entry; Emboss gives greys only.
    for (uint8_t v : e.pixels.values()) ASSERT_LT(v, e.ncols());
    for (int i = 1; i <= e.ncols(); ++i) {
        const uint32_t c = e.palette.colour(i);
        if (c != e.transparentcolour) {
            EXPECT_EQ(korvex::editor::red_of(c), korvex::editor::blue_of(c)) << i;
        }
    }

    // The colour count names the rarest entry and blinks it three times, in
    // the view only: a stroke while it blinks leaves the entry's other
    // pixels as they were.
    const korvex::editor::Raster shown = e.surface;
    f.action("Next Rarer Colour")->trigger();
    EXPECT_TRUE(f.ed->position_label()->text().startsWith("Colour Count: ")) << f.ed->position_label()->text().toStdString();
    const int blinking = e.curcol;
    EXPECT_EQ(f.ed->canvas()->blink(), blinking);
    EXPECT_EQ(e.surface, shown);
    {
        int bx = -1, by = -1;
        for (int y = 0; y < e.height && bx < 0; ++y)
            for (int x = 0; x < e.width; ++x)
                if (e.pixels.at(x, y) == blinking - 1) {
                    bx = x;
                    by = y;
                    break;
                }
        ASSERT_GE(bx, 0);
        const QImage look = f.ed->canvas()->grab().toImage();
        const QPoint centre = filters_pixel_centre(f.ed->canvas(), bx, by);
        EXPECT_EQ(QColor(look.pixel(centre)), korvex::gui::qcolour(korvex::editor::k_blink_colour));
    }
    const std::vector<uint8_t> pixels = e.pixels.values();
    const int stroke_x = e.pixels.at(0, 0) == blinking - 1 ? 1 : 0;
    e.curcol = e.pixels.at(stroke_x, 0) + 1;  // a stroke that leaves its pixel as it was
    QTest::mouseClick(f.ed->canvas(), Qt::LeftButton, Qt::NoModifier, filters_pixel_centre(f.ed->canvas(), stroke_x, 0));
    EXPECT_EQ(e.pixels.values(), pixels);
    QTest::qWait(1500);
    EXPECT_EQ(f.ed->canvas()->blink(), 0);
    EXPECT_EQ(e.surface, shown);

    QTest::mouseClick(f.ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_TRUE(f.ed->outcome().committed);
    EXPECT_NE(f.s.pt_bmp[static_cast<size_t>(f.row)] + f.s.pt_col[static_cast<size_t>(f.row)], before);
    EXPECT_TRUE(f.s.dirty);
}

TEST(EditorFilters, ThePanelPreviewsBlocksAndComesBack) {
    FiltersFixture f;
    ASSERT_GE(f.row, 0);
    korvex::editor::EditorSession& e = f.ed->session();
    EditorFilters* filters = f.ed->filters();
    const korvex::editor::Palette start = e.palette;

    f.action("Adjust Colours...")->trigger();
    ASSERT_TRUE(filters->panel_open());
    EXPECT_TRUE(filters->panel()->isVisible());
    EXPECT_FALSE(f.action("Blur")->isEnabled());  // the group is off while the panel is open

    QSlider* bright = filters->slider("Brightness");
    ASSERT_NE(bright, nullptr);
    bright->setValue(40);
    EXPECT_NE(e.palette, start);
    bright->setValue(0);
    EXPECT_EQ(e.palette, start);
    bright->setValue(-30);
    // A picture of the open panel, for a person to look at.
    const QByteArray shot = qgetenv("KORVEX_FILTERS_SCREENSHOT");
    if (!shot.isEmpty()) {
        f.ed->resize(1300, 760);
        QApplication::processEvents();
        EXPECT_TRUE(f.ed->grab().save(QString::fromUtf8(shot)));
    }

    // The canvas and the editor's Apply wait for the panel.
    korvex::gui::CanvasWidget* c = f.ed->canvas();
    const int level = e.undo.level();
    QTest::mouseClick(c, Qt::LeftButton, Qt::NoModifier, QPoint(c->width() / 2, c->height() / 2));
    EXPECT_EQ(f.prompt.messages.back(), "Click Apply or Cancel.");
    EXPECT_EQ(e.undo.level(), level);
    QTest::mouseClick(f.ed->apply_button(), Qt::LeftButton);
    EXPECT_FALSE(f.ed->outcome().committed);
    EXPECT_TRUE(f.ed->isVisible());

    QTest::mouseClick(filters->panel()->findChild<QPushButton*>("adjust_cancel"), Qt::LeftButton);
    EXPECT_FALSE(filters->panel_open());
    EXPECT_EQ(e.palette, start);

    // Apply keeps the result and marks the brightness.
    f.action("Adjust Colours...")->trigger();
    EXPECT_EQ(bright->value(), 0);
    bright->setValue(20);
    QTest::mouseClick(filters->panel()->findChild<QPushButton*>("adjust_apply"), Qt::LeftButton);
    EXPECT_FALSE(filters->panel_open());
    EXPECT_NE(e.palette, start);
    EXPECT_TRUE(e.changes2 & korvex::editor::ch_brightness);

    // A selection switches the filters off; the turns stay to say why not.
    f.ed->tools().select_all();
    EXPECT_FALSE(f.action("Emboss")->isEnabled());
    EXPECT_TRUE(f.action("Rotate")->isEnabled());
    f.ed->cancel_clicked();
}

}  // namespace
