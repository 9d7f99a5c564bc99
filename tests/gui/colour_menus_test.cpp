// The Colours menu's batch tools from the window: real menu entries on the
// bundled sample, their dialogs filled as a user fills them, the store and
// the caption afterwards.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSpinBox>
#include <QTimer>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "editor/standard_palettes.h"
#include "gui/grid_view.h"
#include "gui/main_window.h"
#include "gui/palette_panel_dialog.h"
#include "gui/tool_menus.h"
#include "text/palette_file.h"
#include "workbench/colour_line_hex.h"

namespace {

using korvex::platform::Answer;
using korvex::testing::k_samples;

struct ColourFixture : korvex::testing::WindowFixture {
    ColourFixture() : WindowFixture(Answer::yes) {
        show(services(), 1000, 650);
        EXPECT_TRUE(w->open_file(k_samples + "sample.typ"));
    }
    korvex::model::Store& s() { return w->store(); }
    QAction* entry(const QString& text) {
        for (QAction* a : w->tool_menus()->colours()->actions())
            if (a->text() == text) return a;
        ADD_FAILURE() << "no entry " << text.toStdString();
        return nullptr;
    }
    void trigger(const QString& text) {
        if (QAction* a = entry(text)) a->trigger();
        QApplication::processEvents();
    }
    // The next dialog is filled by fill instead of a modal loop.
    template <class F>
    void next_dialog(F fill) {
        w->tool_menus()->exec_dialog = [fill](QDialog& d) {
            d.show();
            fill(d);
            return d.result();
        };
    }
    bool dirty_caption() const { return w->windowTitle().endsWith("+"); }
};

TEST(ColourMenus, MakeTransparentChangesTheSelectedPointOnlyAndCancelNothing) {
    ColourFixture f;
    f.w->show_class(2);
    f.w->click_cell(0, true, false);
    const std::vector<std::string> before = f.s().pt_col;
    f.prompt.script(Answer::cancel);
    f.trigger("Make Transparent");
    EXPECT_EQ(f.s().pt_col, before);
    EXPECT_FALSE(f.dirty_caption());
    f.trigger("Make Transparent");
    // Its first colour joins the transparent colour it had.
    EXPECT_EQ(f.s().pt_col[0], "\"$ c #FFFFFF\"\r\n\"% c none\"\r\n");
    EXPECT_EQ(f.s().pt_col[1], before[1]);
    EXPECT_TRUE(f.dirty_caption());
}

// The grid's menu: Make Transparent on every class, the opacity tools on
// points; with nothing selected they act on the right-clicked cell.
TEST(ColourMenus, TheGridMenuMakesTheClickedCellTransparent) {
    ColourFixture f;
    for (const int cls : {0, 2}) {
        f.w->show_class(cls);
        QStringList seen;
        QTimer::singleShot(0, [&] {
            QWidget* menu = QApplication::activePopupWidget();
            if (!menu) return;
            for (QAction* a : menu->actions()) {
                seen << a->text();
                if (a->text() == "Make Transparent") a->trigger();
            }
            menu->close();
        });
        const std::vector<std::string> pg = f.s().pg_col, pt = f.s().pt_col;
        const int32_t row = f.w->browser().row_of(3);
        f.w->browser().click(3, false, false, true);
        f.w->grid()->context_menu(3, QPoint(10, 10));
        QApplication::processEvents();
        EXPECT_TRUE(seen.contains("Make Transparent")) << cls;
        EXPECT_EQ(seen.contains("Add POI Day Opacity"), cls == 2);
        for (int32_t r = 0; r < f.s().pg_n; ++r)
            EXPECT_EQ(f.s().pg_col[r] == pg[r], cls != 0 || r != row) << cls << " " << r;
        for (int32_t r = 0; r < f.s().pt_n; ++r)
            EXPECT_EQ(f.s().pt_col[r] == pt[r], cls != 2 || r != row) << cls << " " << r;
    }
}

TEST(ColourMenus, AddOpacityAsksItsValueOnlyForPointsAndReplaceTakesItAway) {
    ColourFixture f;
    f.w->show_class(0);
    int dialogs = 0;
    f.next_dialog([&](QDialog& d) {
        ++dialogs;
        d.findChild<QSpinBox*>("opacity")->setValue(11);
        d.accept();
    });
    f.trigger("Add POI Day Opacity");
    EXPECT_EQ(dialogs, 0);
    EXPECT_EQ(f.prompt.messages.back(), "Select Points");

    f.w->show_class(2);
    f.w->select_all();
    const std::vector<std::string> bmp = f.s().pt_bmp;
    f.trigger("Add POI Day Opacity");
    EXPECT_EQ(dialogs, 1);
    EXPECT_NE(f.s().pt_col[0].find("alpha=11"), std::string::npos) << f.s().pt_col[0];
    EXPECT_TRUE(f.dirty_caption());
    f.trigger("Replace POI Day Opacity");
    for (int32_t r = 0; r < f.s().pt_n; ++r) EXPECT_EQ(f.s().pt_col[r].find("alpha"), std::string::npos) << r;
    EXPECT_EQ(f.s().pt_bmp, bmp);
}

TEST(ColourMenus, ConvertTo16TakesTheBundledPaletteForEverySelectedPolygon) {
    ColourFixture f;
    f.w->show_class(0);
    f.w->select_all();
    f.trigger("Convert to 16 Colours");
    const std::vector<uint32_t> pal = korvex::editor::palette_16();
    for (int32_t r = 0; r < f.s().pg_n; ++r)
        korvex::workbench::for_each_colour_line(f.s().pg_col[r], [&](uint32_t rgb, std::string_view line) {
            uint32_t c = 0;
            ASSERT_TRUE(korvex::text::from_hex(korvex::workbench::rgb_hex(rgb), c));
            EXPECT_NE(std::find(pal.begin(), pal.end(), c), pal.end()) << line;
        });
    EXPECT_TRUE(f.dirty_caption());
}

TEST(ColourMenus, TwoColourPanelStaysOpenOnABadCountAndSavesUnderPal) {
    ColourFixture f;
    std::vector<bool> accepted;
    std::string saved;
    f.next_dialog([&](QDialog& d) {
        auto& p = dynamic_cast<korvex::gui::PalettePanelDialog&>(d);
        p.colour1()->setText("FF0000");
        p.colour2()->setText("0000FF");
        p.name()->setText("redblue");
        for (const char* count : {"128", "3"}) {
            p.count()->setText(count);
            p.ok();
            accepted.push_back(d.result() == QDialog::Accepted);
        }
        saved = p.saved_path();
    });
    f.trigger("Create 2 Colour Palette");
    EXPECT_EQ(accepted, (std::vector<bool>{false, true}));
    EXPECT_EQ(f.prompt.messages.back(), "Colours  >2 <128");
    EXPECT_NE(saved.find("/pal/redblue.tpal"), std::string::npos);
    EXPECT_EQ(korvex::text::tpal_text(*korvex::text::read_tpal(saved)), "FF0000,800080,0000FF,");
}

TEST(ColourMenus, CreatePaletteFromTheFileAndConvertToIt) {
    ColourFixture f;
    std::string saved;
    f.next_dialog([&](QDialog& d) {
        auto& p = dynamic_cast<korvex::gui::PalettePanelDialog&>(d);
        p.name()->setText("sample");
        p.ok();
        saved = p.saved_path();
    });
    f.trigger("Create Palette");
    ASSERT_FALSE(saved.empty());
    // The file's own colours are their own nearest: converting to them
    // changes nothing, and the custom dialog offers the palette filter.
    f.w->show_class(1);
    f.w->select_all();
    const std::vector<std::string> before = f.s().ln_col;
    f.dialogs.script(saved);
    f.trigger("Convert to Custom Palette");
    ASSERT_FALSE(f.dialogs.calls.empty());
    EXPECT_EQ(f.dialogs.calls.back().filters, "Korvex Palette files (*.tpal|*.tpal");
    EXPECT_EQ(f.s().ln_col, before);
}

}  // namespace
