// The check and repair entries of the Tools and Colours menus reach their
// logic from the window: the report in the viewer, the message, the store
// and the caption afterwards.
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "gui/main_window.h"
#include "platform/files.h"

namespace {

using korvex::platform::Answer;
using korvex::testing::k_samples;

struct CheckMenusFixture : korvex::testing::WindowFixture {
    explicit CheckMenusFixture(Answer fallback = Answer::yes) : WindowFixture(fallback) { show(services(), 1000, 650); }

    QMenu* top(const QString& title) {
        for (QAction* a : w->menuBar()->actions())
            if (a->text() == title) return a->menu();
        return nullptr;
    }
    void run(const QString& menu, const QString& text) {
        QMenu* m = top(menu);
        ASSERT_NE(m, nullptr) << menu.toStdString();
        for (QAction* a : m->actions()) {
            if (a->text() == text) {
                a->trigger();
                QApplication::processEvents();
                return;
            }
        }
        FAIL() << "no entry " << text.toStdString();
    }
    // A text project of two polygons, one of them with its day colour twice.
    std::string open_wasteful() {
        const std::string file = path("waste.txt");
        const std::string text =
            "[_id]\r\nProductCode=1\r\nFID=100\r\nCodePage=1252\r\n[end]\r\n"
            "[_polygon]\r\nType=0x03\r\nString1=0x04,Twice\r\nXpm=\"0 0 2 0\"\r\n\"0 c #FF0000\"\r\n\"1 c #FF0000\"\r\n[end]\r\n"
            "[_polygon]\r\nType=0x05\r\nString1=0x04,Once\r\nXpm=\"0 0 1 0\"\r\n\"0 c #00FF00\"\r\n[end]\r\n";
        EXPECT_TRUE(korvex::platform::write_file_atomic(file, text));
        EXPECT_TRUE(w->open_file(file));
        return file;
    }
};

TEST(CheckMenus, FixUnusedColoursShowsTheReportAndRepairsOnYes) {
    CheckMenusFixture f;
    f.open_wasteful();
    f.prompt.messages.clear();
    f.run("Colours", "Fix Unused Colours");
    ASSERT_EQ(f.prompt.reports.size(), 1u);
    EXPECT_NE(f.prompt.reports[0].text.find("1 0x0300 1 (same colour)"), std::string::npos);
    EXPECT_EQ(f.prompt.questions.back(), "Remove unused colours?");
    EXPECT_EQ(f.prompt.messages.back(), "Unused colours have been removed.");
    EXPECT_EQ(f.w->store().pg_ncol[0], 1);
    EXPECT_TRUE(f.w->store().dirty);
    EXPECT_TRUE(f.w->windowTitle().endsWith("+"));

    // Nothing is left: a second run says so and asks nothing.
    const size_t asked = f.prompt.questions.size();
    f.run("Colours", "Fix Unused Colours");
    EXPECT_EQ(f.prompt.messages.back(), "No unused colours found.");
    EXPECT_EQ(f.prompt.questions.size(), asked);
}

TEST(CheckMenus, NoAtTheQuestionLeavesTheProjectClean) {
    CheckMenusFixture f(Answer::no);
    f.open_wasteful();
    f.run("Colours", "Fix Unused Colours");
    EXPECT_EQ(f.prompt.questions.back(), "Remove unused colours?");
    EXPECT_EQ(f.w->store().pg_ncol[0], 2);
    EXPECT_FALSE(f.w->store().dirty);
    EXPECT_FALSE(f.w->windowTitle().endsWith("+"));
}

TEST(CheckMenus, TheDrawOrderViewRefusesTheColourRepair) {
    CheckMenusFixture f;
    f.open_wasteful();
    f.w->show_class(korvex::model::k_polygons);
    f.w->set_draworder_view(true);
    f.prompt.messages.clear();
    f.run("Colours", "Fix Unused Colours");
    EXPECT_EQ(f.prompt.messages, std::vector<std::string>{"Change to Polygons."});
    EXPECT_TRUE(f.prompt.reports.empty());
    EXPECT_EQ(f.w->store().pg_ncol[0], 2);
}

TEST(CheckMenus, ToolsChecksOnTheSampleFindNothing) {
    CheckMenusFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    f.prompt.messages.clear();
    f.run("Tools", "Check Lines for Non-Bitmap Conversion");
    EXPECT_EQ(f.prompt.messages, std::vector<std::string>{"None found."});
    f.run("Tools", "Visible in Basecamp");
    ASSERT_EQ(f.prompt.reports.size(), 1u);
    EXPECT_EQ(f.prompt.reports[0].text, "All lines are visible\r\n");
    f.run("Tools", "Check 65001 labels");
    EXPECT_EQ(f.prompt.messages.back(), "Not codepage 65001");
    EXPECT_FALSE(f.w->store().dirty);
}

TEST(CheckMenus, SpellingWithTheCustomDictionaryReportsUnknownWords) {
    CheckMenusFixture f;
    f.open_wasteful();
    const std::string dic = f.path("mine.dic");
    ASSERT_TRUE(korvex::platform::write_file_atomic(dic, "once\r\n"));
    f.w->settings().dictionary_path = dic;
    f.w->store().opt.langid = 4;
    // The check reads the class in view.
    f.w->show_class(korvex::model::k_polygons);
    QMenu* spelling = nullptr;
    for (QAction* a : f.top("Tools")->actions())
        if (a->menu() && a->text() == "Check Spelling") spelling = a->menu();
    ASSERT_NE(spelling, nullptr);
    for (QAction* a : spelling->actions())
        if (a->text() == "Custom Dictionary") a->trigger();
    ASSERT_EQ(f.prompt.reports.size(), 1u) << (f.prompt.messages.empty() ? "" : f.prompt.messages.back());
    EXPECT_EQ(f.prompt.reports[0].text, "Dictionary used: " + dic + "\r\n0x0300 twice\r\n");
}

}  // namespace
