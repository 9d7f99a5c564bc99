// The editor's night and opacity panel driven as a user drives it: the
// day/night button, drawing on the night picture, the opacity tick, a right
// click for a colour's level and the pink pencil, the night tick of a line,
// and the list of extended points; the element's text is checked after
// Apply.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include "editor/element_open.h"
#include "editor/opacity.h"
#include "gui/canvas_widget.h"
#include "gui/editor_variants.h"
#include "gui/editor_window.h"
#include "gui/label_panel.h"
#include "gui/palette_widget.h"
#include "text/load_driver.h"
#include "text/text_writer.h"
#include "workbench/element_rows.h"

namespace {

using korvex::gui::EditorVariants;
using korvex::gui::EditorWindow;
namespace editor = korvex::editor;

const char* k_variants_project =
    "[_id]\nFID=7\nCodePage=1252\n[end]\n"
    "[_line]\nType=0x05\nXpm=\"32 2 2 1\"\n\"0 c #FF0000\"\n\"1 c #0000FF\"\n"
    "\"00000000111111110000000011111111\"\n\"11111111000000001111111100000000\"\n[end]\n"
    "[_point]\nType=0x2f\nDayXpm=\"4 2 2 1\" Colormode=0\n\"! c #FFFFFF\"\n\"# c #000000\"\n\"!!##\"\n\"##!!\"\n"
    "NightXpm=\"4 2 2 1\" Colormode=0\n\"a c #FF0000\"\n\"b c #00FF00\"\n\"abab\"\n\"baba\"\n[end]\n"
    "[_point]\nType=0x30\nDayXpm=\"3 1 3 1\" Colormode=0\n\"! c #FF0000\"\n\"# c #00FF00\"\n\"% c #0000FF\"\n\"!#%\"\n[end]\n";

struct VariantsFixture {
    korvex::model::Store s;
    korvex::platform::ScriptedPrompt ui{korvex::platform::Answer::yes};
    std::unique_ptr<EditorWindow> w;

    VariantsFixture() {
        korvex::model::newproject(s);
        EXPECT_TRUE(korvex::text::load_txt(s, ui, "t.txt", k_variants_project, false, true));
    }
    EditorWindow* open(int cls, int32_t row) {
        korvex::editor::OpenRequest r;
        r.curclass = cls;
        r.row = row;
        w = std::make_unique<EditorWindow>(s, editor::open_element(s, r), ui, korvex::gui::EditorEnvironment{});
        w->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(w.get()));
        return w.get();
    }
    EditorVariants* v() const { return w->variants(); }
    std::string code(int cls, int32_t row) { return korvex::text::create_code(s, row + 1, cls, false); }
};

// The widget position of a picture pixel.
QPoint pixel(korvex::gui::CanvasWidget* c, int x, int y) {
    constexpr int margin = 8;
    return {margin + x * c->zoom() + c->zoom() / 2, margin + y * c->zoom() + c->zoom() / 2};
}

TEST(EditorVariants, SwapToTheNightDrawApplyAndTheTextHasIt) {
    VariantsFixture f;
    EditorWindow* ed = f.open(2, 0);
    EditorVariants* v = f.v();
    ASSERT_TRUE(v->night_tick()->isChecked());
    EXPECT_EQ(v->day_night_button()->text(), "Edit Night BMP");
    EXPECT_EQ(v->preview()->picture().at(0, 0), editor::rgb(0xFF, 0, 0));

    QTest::mouseClick(v->day_night_button(), Qt::LeftButton);
    EXPECT_EQ(v->day_night_button()->text(), "Edit Day BMP");
    EXPECT_EQ(v->variant_label()->text(), "Night");
    EXPECT_EQ(ed->palette_cells()->count(), 2);
    // The first night colour (red) on the pixel at (1, 0), which was green.
    ed->session().curcol = 1;
    QTest::mouseClick(ed->canvas(), Qt::LeftButton, Qt::NoModifier, pixel(ed->canvas(), 1, 0));
    EXPECT_EQ(ed->session().pixels.at(1, 0), 0);
    EXPECT_EQ(v->preview()->picture().at(1, 0), editor::rgb(0xFF, 0, 0));
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    ASSERT_TRUE(ed->outcome().committed);
    const std::string text = f.code(2, 0);
    EXPECT_NE(text.find("DayXpm=\"4 2 2 1\" Colormode=0\r\n\"$ c #FFFFFF\"\r\n\"% c #000000\"\r\n\"$$%%\"\r\n\"%%$$\""), std::string::npos) << text;
    EXPECT_NE(text.find("NightXpm=\"4 2 2 1\" Colormode=0\r\n\"$ c #FF0000\"\r\n\"% c #00FF00\"\r\n\"$$$%\"\r\n\"%$%$\""), std::string::npos)
        << text;
}

TEST(EditorVariants, OpacityTickLevelsAndThePinkPencilReachTheText) {
    VariantsFixture f;
    EditorWindow* ed = f.open(2, 1);
    EditorVariants* v = f.v();
    ASSERT_FALSE(v->level_box()->isEnabled());
    v->opacity_tick()->setChecked(true);
    EXPECT_EQ(f.ui.messages.back(), "With Opacity (colormode 32) only 'pink opacity tools' can be used.");
    ASSERT_TRUE(ed->session().alpha);
    EXPECT_TRUE(v->level_box()->isEnabled());
    EXPECT_EQ(ed->palette_cells()->toolTip(), "Double Click to change Color / Right Click to change Opacity");

    // A right click on the second cell gives it the chooser's level.
    v->level_box()->setCurrentIndex(7);
    emit v->level_box()->activated(7);
    korvex::gui::PaletteWidget* pal = ed->palette_cells();
    QTest::mouseClick(pal, Qt::RightButton, Qt::NoModifier, pal->cell_rect(1).center());
    EXPECT_EQ(ed->session().palette.alpha[1], 7);
    EXPECT_EQ(ed->session().curcol2, 2);  // the right button's colour stays

    // The pink pencil sets one pixel; the rubber turns to the pencil.
    QTest::mouseClick(v->opacity_tool_button(editor::t_opacity_pencil), Qt::LeftButton);
    EXPECT_EQ(ed->session().tool, editor::t_opacity_pencil);
    v->level_box()->setCurrentIndex(3);
    emit v->level_box()->activated(3);
    QTest::mouseClick(ed->canvas(), Qt::LeftButton, Qt::NoModifier, pixel(ed->canvas(), 2, 0));
    EXPECT_EQ(ed->session().opacity.at(2, 0), 3);
    ed->choose_tool(editor::t_rubber);
    EXPECT_EQ(f.ui.messages.back(), "Set one colour's opacity to 15 (right click on color)");
    EXPECT_EQ(ed->session().tool, editor::t_pencil);

    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    ASSERT_TRUE(ed->outcome().committed);
    const std::string text = f.code(2, 1);
    EXPECT_NE(text.find("DayXpm=\"3 1 3 1\" Colormode=32\r\n\"$ c #FF0000\" alpha=0\r\n\"% c #00FF00\" alpha=7\r\n\"& c #0000FF\" alpha=3\r\n"),
              std::string::npos)
        << text;
}

TEST(EditorVariants, ANightLineTicksTheExtendedLabelsAndShowsItsNightColours) {
    VariantsFixture f;
    EditorWindow* ed = f.open(1, 0);
    EditorVariants* v = f.v();
    ASSERT_FALSE(ed->labels()->extended_tick()->isChecked());
    EXPECT_FALSE(v->night_cells()->isVisibleTo(v->panel()));
    v->night_tick()->setChecked(true);
    EXPECT_TRUE(ed->labels()->extended_tick()->isChecked());
    EXPECT_TRUE(v->night_cells()->isVisibleTo(v->panel()));
    EXPECT_EQ(v->night_cells()->count(), 2);
    QTest::mouseClick(v->night_cells(), Qt::LeftButton, Qt::NoModifier, v->night_cells()->cell_rect(0).center());
    EXPECT_EQ(f.ui.messages.back(), "To Edit colours Click Edit Night Colours.");
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    ASSERT_TRUE(ed->outcome().committed);
    const std::string text = f.code(1, 0);
    EXPECT_NE(text.find("ExtendedLabels=Y"), std::string::npos) << text;
    EXPECT_NE(text.find("\"2 c #FF0000\"\r\n\"3 c #0000FF\""), std::string::npos) << text;
}

TEST(EditorVariants, TheListOfExtendedPointsKeepsTheEditsAndNamesTheNext) {
    VariantsFixture f;
    const std::string icon = "[_point]\r\nType=0x10\r\nDayXpm=\"2 1 2 1\" Colormode=0\r\n\"$ c #FF0000\"\r\n\"% c #00FF00\"\r\n\"$%\"\r\n[end]\r\n";
    ASSERT_GE(korvex::workbench::new_extrapoi(f.s, f.ui, icon), 0);
    ASSERT_GE(korvex::workbench::new_extrapoi(f.s, f.ui, icon), 0);
    EditorWindow* ed = f.open(4, f.s.pt_n);
    EditorVariants* v = f.v();
    ASSERT_EQ(v->extra_list()->count(), 2);
    EXPECT_EQ(v->extra_list()->currentRow(), 0);
    ed->session().curcol = 2;
    QTest::mouseClick(ed->canvas(), Qt::LeftButton, Qt::NoModifier, pixel(ed->canvas(), 0, 0));
    ASSERT_TRUE(ed->session().eddirty);
    v->go_to_extra_point(1);
    EXPECT_EQ(f.ui.questions.back(), "Wish to keep these changes?");
    EXPECT_EQ(v->next_row(), f.s.pt_n + 1);
    EXPECT_FALSE(ed->isVisible());
    EXPECT_TRUE(ed->outcome().committed);
    EXPECT_NE(f.code(4, 0).find("\"%%\""), std::string::npos);
}

}  // namespace
