// The Tools entry for installed map families from the window: its dialog
// over a copy of the test Wine prefix, opening a family's TYP and replacing
// another's with the open project.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>

#include <gtest/gtest.h>

#include <filesystem>

#include "window_fixture.h"

#include "gui/families_dialog.h"
#include "gui/tool_menus.h"
#include "integration/family_fixture.h"

namespace {

using korvex::platform::Answer;
using korvex::testing::k_samples;
namespace kx = korvex;

struct FamiliesFixture : kx::testing::WindowFixture {
    kx::integration::WinePrefixCopy wine;
    FamiliesFixture() : WindowFixture(Answer::yes) {
        show(services(), 1000, 650);
        const std::string prefix = wine.prefix.string();
        w->tool_menus()->map_platform = [prefix] { return std::make_unique<kx::platform::WinePlatform>(prefix); };
    }
    // Runs the entry; fill works the dialog as a user would.
    template <class F>
    void run_entry(F fill) {
        w->tool_menus()->exec_dialog = [fill](QDialog& d) {
            d.show();
            fill(dynamic_cast<kx::gui::FamiliesDialog&>(d));
            return d.result();
        };
        for (QAction* a : w->tool_menus()->tools()->actions())
            if (a->text() == "Add / Replace Basecamp/Mapsource TYP files") a->trigger();
        QApplication::processEvents();
    }
    static int row_of(kx::gui::FamiliesDialog& d, const QString& start) {
        for (int i = 0; i < d.list()->count(); ++i)
            if (d.list()->item(i)->text().startsWith(start)) return i;
        return -1;
    }
    static void click(QDialog& d, const char* button) { d.findChild<QPushButton*>(button)->click(); }
};

TEST(FamiliesMenus, TheDialogListsTheFamiliesAndOpensOnesTyp) {
    FamiliesFixture f;
    bool ran = false;
    f.run_entry([&](kx::gui::FamiliesDialog& d) {
        ran = true;
        EXPECT_EQ(d.windowTitle(), "TYP files in Mapsource/Basecamp");
        EXPECT_EQ(d.list()->count(), 3);
        EXPECT_EQ(d.findChild<QLabel*>("current")->text(), " Current Map: Mapsource: Coast");
        // Nothing selected: nothing to open or replace.
        EXPECT_FALSE(d.findChild<QPushButton*>("open_typ")->isEnabled());
        const int coast = FamiliesFixture::row_of(d, "(*)Coast,");
        ASSERT_GE(coast, 0);
        d.list()->setCurrentRow(coast);
        EXPECT_TRUE(d.findChild<QPushButton*>("add_or_replace_typ")->isEnabled());
        FamiliesFixture::click(d, "open_typ");
    });
    ASSERT_TRUE(ran);
    EXPECT_EQ(f.w->store().curfile, (f.wine.prefix / "drive_c/Garmin/Coast/coast.typ").string());
    EXPECT_TRUE(f.w->windowTitle().contains("[Coast]"));
    EXPECT_GT(f.w->store().pg_n, 0);
}

TEST(FamiliesMenus, ReplaceFromTheDialogRewritesTheRowsTypAndKeepsTheProject) {
    FamiliesFixture f;
    const std::string mine = f.path("mine.typ");
    std::filesystem::copy_file(k_samples + "sample.typ", mine);
    ASSERT_TRUE(f.w->open_file(mine));
    const std::string own = f.w->store().curfile;
    f.prompt.script(Answer::yes);  // replace
    f.prompt.script(Answer::no);   // not the current file
    f.run_entry([&](kx::gui::FamiliesDialog& d) {
        d.list()->setCurrentRow(FamiliesFixture::row_of(d, "Alpine Trails,"));
        FamiliesFixture::click(d, "add_or_replace_typ");
        // Search reads the maps again: still three, none lost.
        FamiliesFixture::click(d, "search");
        EXPECT_EQ(d.list()->count(), 3);
        FamiliesFixture::click(d, "close");
    });
    EXPECT_TRUE(kx::platform::file_exists((f.wine.prefix / "drive_c/Garmin/Alpine/I0000123_copy.typ").string()));
    EXPECT_EQ(f.w->store().curfile, own);
    EXPECT_EQ(f.prompt.messages.back(), "Click on Mapsource/Basecamp , then CTRL G 2x.");
}

}  // namespace
