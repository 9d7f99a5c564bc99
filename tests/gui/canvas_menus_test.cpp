// The Canvas menu and the point tools of the Tools menu from the window: the
// entries reach their tools on the selection, the canvas dialog's choice is
// what runs, and a refusal or a Cancel leaves the file as it was.
#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "gui/batch_canvas_dialog.h"
#include "gui/grid_view.h"
#include "gui/main_window.h"
#include "gui/tool_menus.h"
#include "workbench/point_checks.h"
#include "workbench/point_section.h"

namespace {

using korvex::platform::Answer;
using korvex::testing::k_samples;

struct CanvasFixture : korvex::testing::WindowFixture {
    CanvasFixture() : WindowFixture(Answer::yes) {
        show(services(), 1000, 650);
        EXPECT_TRUE(w->open_file(k_samples + "sample.typ"));
        w->show_class(2);
    }
    QAction* entry(const QString& menu, const char* name) {
        for (QAction* a : w->menuBar()->actions())
            if (a->text() == menu && a->menu()) return a->menu()->findChild<QAction*>(name);
        return nullptr;
    }
    // Runs the next canvas dialog through fill instead of a modal loop.
    template <class F>
    void next_dialog(F fill) {
        w->tool_menus()->exec_dialog = [fill](QDialog& d) {
            auto* c = dynamic_cast<korvex::gui::BatchCanvasDialog*>(&d);
            EXPECT_NE(c, nullptr);
            return c ? fill(*c) : 0;
        };
    }
    std::vector<std::string> pictures() {
        std::vector<std::string> out;
        const auto& s = w->store();
        for (int32_t r = 0; r < s.pt_n; ++r) out.push_back(s.pt_xpm[static_cast<size_t>(r)] + s.pt_bmp[static_cast<size_t>(r)]);
        return out;
    }
};

TEST(CanvasMenus, AddCanvasRunsTheChosenSideOnTheSelection) {
    CanvasFixture f;
    const auto before = f.pictures();
    const int width = f.w->store().pt_xpm.empty() ? 0 : korvex::workbench::read_point_picture(f.w->store(), 0).width;
    f.w->select_all();
    f.next_dialog([](korvex::gui::BatchCanvasDialog& d) {
        EXPECT_EQ(d.choice(), '\0');
        d.findChild<QToolButton*>("R")->click();
        // KORVEX_GRABS=dir keeps a picture of the dialog for a look.
        if (const QByteArray dir = qgetenv("KORVEX_GRABS"); !dir.isEmpty()) {
            d.show();
            QApplication::processEvents();
            d.grab().save(QString::fromUtf8(dir) + "/batch_canvas.png");
        }
        return static_cast<int>(QDialog::Accepted);
    });
    QAction* add = f.entry("Canvas", "adcanvas");
    ASSERT_NE(add, nullptr);
    add->trigger();
    EXPECT_EQ(f.prompt.questions, std::vector<std::string>{"Continue?"});
    EXPECT_EQ(korvex::workbench::read_point_picture(f.w->store(), 0).width, 2 * width);
    EXPECT_NE(f.pictures(), before);
    EXPECT_TRUE(f.w->store().dirty);
    EXPECT_TRUE(f.w->windowTitle().contains("+"));

    // Remove White Space takes the new space off again.
    f.prompt.messages.clear();
    f.entry("Canvas", "remborder")->trigger();
    ASSERT_FALSE(f.prompt.messages.empty());
    EXPECT_EQ(f.prompt.messages.back().rfind("Pois reduced:", 0), 0u);
    EXPECT_EQ(korvex::workbench::read_point_picture(f.w->store(), 0).width, width);
}

TEST(CanvasMenus, ACancelledDialogOrNoPictureChangesNothing) {
    CanvasFixture f;
    const auto before = f.pictures();
    f.w->select_all();
    f.next_dialog([](korvex::gui::BatchCanvasDialog&) { return static_cast<int>(QDialog::Rejected); });
    f.entry("Canvas", "adcanvas")->trigger();
    EXPECT_TRUE(f.prompt.messages.empty());
    f.next_dialog([](korvex::gui::BatchCanvasDialog& d) {
        d.pictures()->setExclusive(false);
        for (QAbstractButton* b : d.pictures()->buttons()) b->setChecked(false);
        return static_cast<int>(QDialog::Accepted);
    });
    f.entry("Canvas", "adborder")->trigger();
    EXPECT_EQ(f.prompt.messages, std::vector<std::string>{"Please select spaces"});
    // Cancel at "Continue?".
    f.prompt.script(Answer::cancel);
    f.next_dialog([](korvex::gui::BatchCanvasDialog& d) {
        EXPECT_EQ(d.choice(), 'M');
        d.amount_field()->setText("3");
        EXPECT_EQ(d.amount(), 3);
        return static_cast<int>(QDialog::Accepted);
    });
    f.entry("Canvas", "adborder")->trigger();
    EXPECT_EQ(f.prompt.questions, std::vector<std::string>{"Continue?"});
    EXPECT_EQ(f.pictures(), before);
    EXPECT_FALSE(f.w->store().dirty);
}

TEST(CanvasMenus, ToolsEntriesWantPointsAndWorkOnThem) {
    CanvasFixture f;
    f.w->show_class(0);
    f.entry("Tools", "adpixel")->trigger();
    f.entry("Tools", "add_nightpois")->trigger();
    EXPECT_EQ(f.prompt.messages, (std::vector<std::string>{"Please show POIs", "Change to POINTS"}));

    f.w->show_class(2);
    f.w->select_all();
    f.prompt.messages.clear();
    f.entry("Tools", "adpixel")->trigger();
    ASSERT_FALSE(f.prompt.messages.empty());
    EXPECT_EQ(f.prompt.messages.back().rfind("Pixels added:", 0), 0u);
    f.entry("Tools", "rempxl")->trigger();
    EXPECT_EQ(f.prompt.messages.back().rfind("Pixels removed : ", 0), 0u);
    const int nights = f.w->store().pt_nnight;
    f.entry("Tools", "add_nightpois")->trigger();
    EXPECT_GT(f.w->store().pt_nnight, nights);
    EXPECT_TRUE(f.w->store().dirty);
}

// The grid's menu on points holds the point tools; with nothing selected
// they act on the cell that was right-clicked.
TEST(CanvasMenus, TheGridMenuOffersThePointToolsForTheClickedCell) {
    CanvasFixture f;
    QStringList seen;
    QTimer::singleShot(0, [&] {
        QWidget* menu = QApplication::activePopupWidget();
        if (!menu) return;
        for (QAction* a : menu->actions()) {
            seen << a->text();
            if (a->menu())
                for (QAction* b : a->menu()->actions()) seen << b->text();
            if (a->text() == "Add Night POIs") a->trigger();
        }
        menu->close();
    });
    // A cell whose point the tools take.
    int cell = 0;
    std::string why;
    while (cell + 1 < f.w->browser().cell_count() &&
           korvex::workbench::chkcanv(f.w->store(), f.w->browser().row_of(cell), why))
        ++cell;
    const int32_t row = f.w->browser().row_of(cell);
    std::vector<bool> had_night;
    for (int32_t r = 0; r < f.w->store().pt_n; ++r) had_night.push_back(!f.w->store().pt_nbmp[static_cast<size_t>(r)].empty());
    ASSERT_FALSE(had_night[static_cast<size_t>(row)]);
    f.w->browser().click(cell, false, false, true);  // the right button's press
    f.w->grid()->context_menu(cell, QPoint(10, 10));
    for (const char* name : {"Add Canvas", "Add Border", "Remove White Space", "Add POI Label Pixel",
                             "Remove POI Label Pixel", "Add Night POIs"})
        EXPECT_TRUE(seen.contains(name)) << name;
    const auto& s = f.w->store();
    for (int32_t r = 0; r < s.pt_n; ++r)
        EXPECT_EQ(!s.pt_nbmp[static_cast<size_t>(r)].empty(), had_night[static_cast<size_t>(r)] || r == row) << r;
}

}  // namespace
