// The Draworder and Fonts menus, the draw-order view and the Mkgmap Code
// entry reach their logic from the window: real menus, real dialogs filled
// as a user fills them, the store and the saved file afterwards.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "gui/draworder_dialogs.h"
#include "gui/draworder_view.h"
#include "gui/font_dialog.h"
#include "gui/grid_model.h"
#include "gui/grid_view.h"
#include "gui/main_window.h"
#include "gui/mkgmap_dialog.h"
#include "gui/workbench_menus.h"
#include "integration/font_section.h"
#include "platform/clipboard.h"
#include "platform/environment.h"
#include "typ/draw_order.h"
#include "support/harness.h"

namespace {

using korvex::gui::MainWindow;
using korvex::platform::Answer;

using korvex::testing::k_samples;

struct MenusFixture : korvex::testing::WindowFixture {
    MenusFixture() : WindowFixture(Answer::no) {
        show(services(), 1000, 650);
        EXPECT_TRUE(w->open_file(k_samples + "sample.typ"));
    }

    korvex::gui::WorkbenchMenus& menus() { return *w->workbench_menus(); }

    QMenu* menu(const QString& title) {
        for (QAction* a : w->menuBar()->actions())
            if (a->text() == title) return a->menu();
        return nullptr;
    }
    static QAction* entry(QMenu* m, const QString& text) {
        if (!m) return nullptr;
        for (QAction* a : m->actions())
            if (a->text() == text) return a;
        return nullptr;
    }
    // Runs the next dialog through fill instead of a modal loop.
    template <class D, class F>
    void next_dialog(F fill) {
        menus().exec_dialog = [fill](QDialog& d) {
            d.show();
            auto* typed = dynamic_cast<D*>(&d);
            EXPECT_NE(typed, nullptr);
            if (typed) fill(*typed);
            return d.result();
        };
    }
    // A real click in the middle of a cell of the draw-order view.
    void click_layer(int cell, Qt::KeyboardModifiers mods = Qt::NoModifier, Qt::MouseButton b = Qt::LeftButton) {
        QApplication::processEvents();
        korvex::gui::DrawOrderView* v = w->draworder_view();
        v->show_cell(cell);
        QTest::mouseClick(v->viewport(), b, mods, v->cell_rect(cell).center());
    }
    void right_click_polygons_button() {
        QPushButton* polygons = w->findChild<QPushButton*>("class0");
        ASSERT_NE(polygons, nullptr);
        emit polygons->customContextMenuRequested(QPoint(2, 2));
        QApplication::processEvents();
    }
    // Saves, reopens and gives the draw order the file holds.
    std::string saved_drwlist() {
        const std::string out = home.filePath("out.typ").toStdString();
        dialogs.script(out);
        EXPECT_TRUE(w->session().save(korvex::workbench::k_save_as));
        EXPECT_TRUE(w->open_file(out));
        return w->store().drwlist;
    }
};

void grab(QWidget* widget, const char* name) {
    // KORVEX_GRABS=dir keeps pictures of the window for a look.
    const QByteArray dir = qgetenv("KORVEX_GRABS");
    if (dir.isEmpty()) return;
    QApplication::processEvents();
    widget->grab().save(QString::fromUtf8(dir) + "/" + name);
}

}  // namespace

TEST(DrawOrderWindow, ThePolygonsButtonSwitchesToTheLayersAndBack) {
    MenusFixture f;
    EXPECT_EQ(f.w->store().drwlist, " 0001,1 000C,1 0017,2 001A,2 004E,2 004F,2 0050,2 003C,3 0051,3 10F03,3 0005,4 0013,4 0014,5");
    f.right_click_polygons_button();
    auto& b = f.w->browser();
    ASSERT_TRUE(b.layer_view());
    EXPECT_TRUE(f.w->draworder_view()->isVisible());
    EXPECT_FALSE(f.w->grid()->isVisible());
    EXPECT_EQ(b.layers().layers.size(), 5u);
    EXPECT_EQ(f.menus().show_draworders_action()->text().toStdString(), "Show Polygons");
    EXPECT_EQ(b.geometry().L, 400);
    // The cells of each layer start a row of the view.
    const int cols = b.layers().columns;
    for (const auto& layer : b.layers().layers) EXPECT_EQ(layer.cell % cols, 0);
    f.click_layer(b.layers().layers[1].cell);
    EXPECT_EQ(b.current_row(), 5);  // the park, first of level 2
    EXPECT_FALSE(f.w->code_panel()->toPlainText().isEmpty());
    grab(f.w.get(), "draworder-view.png");

    f.right_click_polygons_button();
    EXPECT_FALSE(b.layer_view());
    EXPECT_TRUE(f.w->grid()->isVisible());
    EXPECT_EQ(f.menus().show_draworders_action()->text().toStdString(), "Show Draworders");

    // No draw order: the view stays shut.
    f.w->store().drwlist.clear();
    f.right_click_polygons_button();
    EXPECT_FALSE(b.layer_view());
    EXPECT_EQ(f.prompt.messages.back(), "Polygons have no draworder");
}

TEST(DrawOrderWindow, SetLevelAndInsertLayerFromTheMenusAreSaved) {
    MenusFixture f;
    f.menus().show_draworders();
    auto& b = f.w->browser();
    ASSERT_TRUE(b.layer_view());
    // Polygon 0x01 (first cell) and 0x10f03 (third of level 3) by Ctrl, then
    // level 4 from the Draworder menu.
    f.click_layer(0);
    const int scree = b.layers().layers[2].cell + 2;
    ASSERT_EQ(b.row_of(scree), 12);
    f.click_layer(scree, Qt::ControlModifier);
    f.click_layer(0, Qt::ControlModifier);
    EXPECT_EQ(b.sel1(), "," + std::to_string(scree) + ",0,");
    QMenu* levels = MenusFixture::entry(f.menu("Draworder"), "Set Draworders to Same Level")->menu();
    emit levels->aboutToShow();
    ASSERT_NE(MenusFixture::entry(levels, "4"), nullptr);
    MenusFixture::entry(levels, "4")->trigger();
    EXPECT_EQ(b.sel1(), "");  // the cells moved: the selection is gone
    // Ties keep the order they had in the list; the saved file sorts them by type.
    EXPECT_EQ(f.w->store().drwlist,
              " 000C,1 0017,2 001A,2 004E,2 004F,2 0050,2 003C,3 0051,3 0001,4 10F03,4 0005,4 0013,4 0014,5");
    EXPECT_TRUE(f.w->windowTitle().endsWith("+"));

    // The view's menu: a lower layer under layer 3 for the selected 0x14.
    const int reserve = b.cell_count() - 1;
    ASSERT_EQ(b.row_of(reserve), 4);
    f.click_layer(reserve);
    QMenu context;
    f.menus().fill_layer_menu(context, b.layers().layers[2].cell);
    MenusFixture::entry(&context, "Insert Lower Layer")->trigger();
    EXPECT_EQ(f.w->store().drwlist,
              " 000C,1 0017,2 001A,2 004E,2 004F,2 0050,2 0014,3 003C,4 0051,4 0001,5 10F03,5 0005,5 0013,5");
    EXPECT_EQ(f.saved_drwlist(),
              " 000C,1 0017,2 001A,2 004E,2 004F,2 0050,2 0014,3 003C,4 0051,4 0001,5 0005,5 0013,5 10F03,5");
}

TEST(DrawOrderWindow, TheDialogsAddGiveAndRemoveEntries) {
    MenusFixture f;
    f.menus().show_draworders();
    auto& b = f.w->browser();

    // Add Separate Draworder: a refusal keeps the dialog open, a good entry closes it.
    f.next_dialog<korvex::gui::EdpolDialog>([&](korvex::gui::EdpolDialog& d) {
        d.type_field()->setText("53");
        d.level_field()->setCurrentText("0");
        d.accept();
        EXPECT_TRUE(d.isVisible());
        EXPECT_EQ(f.prompt.messages.back(), "Draworder can't be 0.");
        d.level_field()->setCurrentText("2");
        d.accept();
    });
    MenusFixture::entry(f.menu("Draworder"), "Add Separate Draworder")->trigger();
    EXPECT_NE(f.w->store().drwlist.find(" 0053,2"), std::string::npos);
    // Its cell is a placeholder of the view: the sample has no polygon 0x53.
    bool placeholder = false;
    for (const auto& c : b.layers().cells) placeholder = placeholder || (c.code == "0053" && c.kind == korvex::workbench::LayerCellKind::placeholder);
    EXPECT_TRUE(placeholder);
    grab(f.w->draworder_view(), "draworder-placeholder.png");

    // A double click on the placeholder edits its entry in place.
    int cell = -1;
    for (size_t k = 0; k < b.layers().cells.size(); ++k)
        if (b.layers().cells[k].code == "0053") cell = static_cast<int>(k);
    f.next_dialog<korvex::gui::EdpolDialog>([](korvex::gui::EdpolDialog& d) {
        EXPECT_EQ(d.type_field()->text().toStdString(), "53");
        EXPECT_EQ(d.level_field()->currentText().toStdString(), "2");
        d.level_field()->setCurrentText("3");
        d.accept();
    });
    f.w->draworder_view()->show_cell(cell);
    QTest::mouseDClick(f.w->draworder_view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                       f.w->draworder_view()->cell_rect(cell).center());
    EXPECT_EQ(f.w->store().drwlist.find("0053,2"), std::string::npos);
    EXPECT_NE(f.w->store().drwlist.find(" 0053,3"), std::string::npos);

    // Give Selected Polygons Draworder, a new level for each.
    f.click_layer(0);
    f.click_layer(1, Qt::ShiftModifier);
    f.next_dialog<korvex::gui::DrawselDialog>([](korvex::gui::DrawselDialog& d) {
        d.each_option()->setChecked(true);
        d.levels()->setCurrentText("7");
        d.accept();
    });
    MenusFixture::entry(f.menu("Draworder"), "Give Selected Polygons Draworder")->trigger();
    EXPECT_NE(f.w->store().drwlist.find(" 0001,7 000C,8"), std::string::npos);

    // Show/Remove Extra Draworders lists the placeholder; OK removes it.
    f.next_dialog<korvex::gui::RedundDialog>([](korvex::gui::RedundDialog& d) {
        ASSERT_EQ(d.list()->count(), 1);
        EXPECT_EQ(d.list()->item(0)->text().toStdString(), "0053 (d3)");
        d.accept();
    });
    MenusFixture::entry(f.menu("Draworder"), "Show/Remove Extra Draworders")->trigger();
    EXPECT_EQ(f.w->store().drwlist.find("0053"), std::string::npos);

    // Delete in the view takes the selected entry out of the draw order.
    f.click_layer(0);
    const int32_t row = b.current_row();
    f.next_dialog<korvex::gui::RedundDialog>([](korvex::gui::RedundDialog& d) { d.accept(); });
    f.w->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(f.w.get()));
    QTest::keyClick(f.w->draworder_view(), Qt::Key_Delete);
    EXPECT_EQ(f.w->store().pg_drw[static_cast<size_t>(row)].back(), '0');

    // Duplicates from the menu.
    f.w->store().drwlist += " 0005,9";
    MenusFixture::entry(f.menu("Draworder"), "Check Duplicated Draworders")->trigger();
    EXPECT_EQ(f.prompt.messages.back(), "Found and removed duplicates :\r\n\r\n0005,9");
}

TEST(FontsWindow, TheMenuRunsBothFormsTheListAndTheStringLine) {
    MenusFixture f;
    f.w->show_class(0);
    auto& s = f.w->store();
    // Polygon 2 (0x05, no style) selected: Add Font "Large".
    f.w->click_cell(1, false, false);
    f.next_dialog<korvex::gui::FontDialog>([](korvex::gui::FontDialog& d) {
        EXPECT_FALSE(d.class_box(0)->isVisible());
        d.option(2)->setChecked(true);
        d.fonts()->setCurrentText("Large");
        grab(&d, "font-dialog.png");
        d.ok_button()->click();
    });
    MenusFixture::entry(f.menu("Fonts"), "Edit  Fonts of Selected Elements")->trigger();
    EXPECT_EQ(korvex::integration::font_style_of(s.pg_txt[1]), "Large");
    EXPECT_EQ(f.prompt.messages.back(), "Changes made:\r\n\r\nPolygons: 1\r\nLines: 0\r\nPoints: 0");
    EXPECT_TRUE(f.w->windowTitle().endsWith("+"));

    // The colour form on all points, from the settings' colours.
    f.w->settings().font_day_colour = "0000FF";
    f.next_dialog<korvex::gui::FontDialog>([](korvex::gui::FontDialog& d) {
        EXPECT_TRUE(d.day_cell()->isVisible());
        EXPECT_FALSE(d.fonts()->isVisible());
        EXPECT_EQ(d.option(1)->text().toStdString(), "Add current Font colours if none exist");
        // The caption stays readable on the default yellow of the night.
        EXPECT_TRUE(d.night_cell()->styleSheet().contains("color: black")) << d.night_cell()->styleSheet().toStdString();
        d.class_box(0)->setChecked(false);
        d.class_box(2)->setChecked(true);
        d.select_all()->setChecked(true);
        d.option(0)->setChecked(true);
        grab(&d, "font-colours-dialog.png");
        d.ok_button()->click();
    });
    MenusFixture::entry(f.menu("Fonts"), "Font Colours")->trigger();
    EXPECT_NE(s.pt_txt[0].find("DaycustomColor:#0000FF"), std::string::npos);
    EXPECT_EQ(s.pt_cc[0].substr(0, 6), "FF0000");

    // A refusal keeps the dialog open.
    f.w->browser().no_multi();
    f.w->browser().set_current(-1);
    f.next_dialog<korvex::gui::FontDialog>([&](korvex::gui::FontDialog& d) {
        d.ok_button()->click();
        EXPECT_TRUE(d.isVisible());
        EXPECT_EQ(f.prompt.messages.back(), "Tick Select All\r\n\r\nCTRL/SHFT  (CTRL A) (Esc = cancel)");
        d.reject();
    });
    MenusFixture::entry(f.menu("Fonts"), "Edit  Fonts of Selected Elements")->trigger();

    f.next_dialog<QDialog>([](QDialog& d) {
        auto* list = d.findChild<QPlainTextEdit*>("fontList");
        ASSERT_NE(list, nullptr);
        EXPECT_TRUE(list->toPlainText().startsWith("FONTLIST for Polygons\n\n0x0100, - \n0x0500,Large\n0x0c00, - \n0x1300,SmallFont\n0x1400,Normal\n"))
            << list->toPlainText().toStdString();
        d.accept();
    });
    MenusFixture::entry(f.menu("Fonts"), "Create Font List")->trigger();

    // Add String: the selected word becomes the next String line.
    f.w->click_cell(0, false, false);
    QPlainTextEdit* panel = f.w->code_panel();
    const QString text = panel->toPlainText();
    const int at = text.indexOf("Residential area");
    ASSERT_GE(at, 0);
    QTextCursor cur = panel->textCursor();
    cur.setPosition(at);
    cur.setPosition(at + 16, QTextCursor::KeepAnchor);
    panel->setTextCursor(cur);
    MenusFixture::entry(f.menu("Fonts"), "Add String (= 0 x language)")->trigger();
    EXPECT_TRUE(panel->toPlainText().contains("String1=0x04,String3=0x00,Residential area\nString2=0x02,Wohngebiet"))
        << panel->toPlainText().toStdString();
    EXPECT_TRUE(f.w->session().text_pending());
}

TEST(MkgmapWindow, TheGridMenuMakesRulesAndCopiesThem) {
    MenusFixture f;
    f.w->show_class(0);
    f.w->click_cell(10, false, false, true);  // the forest
    QMenu menu;
    f.menus().add_grid_entries(menu);
    QAction* entry = MenusFixture::entry(&menu, "Mkgmap Code");
    ASSERT_NE(entry, nullptr);
    EXPECT_TRUE(entry->isEnabled());
    f.next_dialog<korvex::gui::MkgmapDialog>([](korvex::gui::MkgmapDialog& d) {
        EXPECT_EQ(d.tag()->currentText().toStdString(), "?");
        EXPECT_EQ(d.value()->text().toStdString(), "Forest");
        d.copy_button()->setEnabled(true);
        d.copy_into_memory();
        d.tag()->setCurrentText("landuse");
        d.value()->setText("forest");
        d.resolution()->setText("22");
        d.create_button()->click();
        EXPECT_EQ(d.result()->toPlainText().toStdString(), "landuse=forest [0x50 resolution 22]\n");
        d.copy_button()->click();
        d.reject();
    });
    entry->trigger();
    EXPECT_EQ(f.prompt.messages.front(), "Click Create Code");
    EXPECT_EQ(f.prompt.messages.back(), "Text copied");
    EXPECT_EQ(f.clipboard.unicode_text(), "landuse=forest [0x50 resolution 22]\n");

    f.w->show_class(3);
    QMenu active;
    f.menus().add_grid_entries(active);
    EXPECT_FALSE(MenusFixture::entry(&active, "Mkgmap Code")->isEnabled());
}
