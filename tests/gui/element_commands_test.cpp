// The element operations reached from the window: keys, the Edit menu, the
// buttons under the grid, the context menu; the New dialogs and the desktop
// clipboard.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QPushButton>
#include <QSpinBox>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "gui/element_commands.h"
#include "gui/element_dialogs.h"
#include "gui/grid_model.h"
#include "gui/grid_view.h"
#include "gui/main_window.h"
#include "gui/qt_clipboard.h"
#include "platform/environment.h"
#include "workbench/type_key.h"
#include "support/harness.h"

namespace {

using korvex::gui::MainWindow;
using korvex::platform::Answer;
namespace wb = korvex::workbench;

using korvex::testing::k_samples;

struct ScriptedDialogs : wb::ElementDialogs {
    std::vector<wb::NewElementForm> shown;
    bool poisizes(wb::NewElementForm& f) override {
        shown.push_back(f);
        return true;
    }
    bool new_line(wb::NewElementForm& f) override {
        shown.push_back(f);
        return true;
    }
};

struct CommandsFixture : korvex::testing::WindowFixture {
    ScriptedDialogs element_dialogs;

    CommandsFixture() : WindowFixture(Answer::no) {
        korvex::gui::WindowServices sv = services();
        sv.element_dialogs = &element_dialogs;
        show(sv, 1000, 650);
        w->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(w.get()));
        EXPECT_TRUE(w->open_file(k_samples + "sample.typ"));
    }
    int cells() const { return w->grid_model()->rowCount(); }
    void click(int cell) {
        QApplication::processEvents();
        korvex::gui::GridView* g = w->grid();
        g->show_cell(cell);
        const QRect r = g->visualRect(w->grid_model()->index(cell));
        QTest::mouseClick(g->viewport(), Qt::LeftButton, Qt::NoModifier, r.center() - QPoint(0, r.height() / 4));
    }
    void key(int k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        w->grid()->setFocus();
        QTest::keyClick(w->grid(), static_cast<Qt::Key>(k), mods);
        QApplication::processEvents();
    }
};

TEST(ElementCommands, CopyDeleteAndPasteByKeys) {
    CommandsFixture f;
    f.w->show_class(2);
    const int32_t points = f.w->store().pt_n;
    f.click(3);
    const std::string type = f.w->store().pt_typ[3];
    f.key(Qt::Key_C, Qt::ControlModifier);
    ASSERT_EQ(f.clipboard.unicode_text().rfind("krv2\r\n", 0), 0u);

    f.key(Qt::Key_Delete);  // the question is answered No
    EXPECT_EQ(f.w->store().pt_n, points);
    ASSERT_FALSE(f.prompt.questions.empty());
    EXPECT_EQ(f.prompt.questions.back(), "Reload TYP file to undo changes.\r\n\r\nContinue?");
    f.prompt.script(Answer::yes);
    f.key(Qt::Key_Delete);
    EXPECT_EQ(f.w->store().pt_n, points - 1);
    EXPECT_EQ(f.cells(), points - 1);
    EXPECT_NE(f.w->windowTitle().right(1), QString());
    EXPECT_TRUE(f.w->windowTitle().endsWith("+"));

    f.key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(f.w->store().pt_n, points);
    EXPECT_EQ(f.w->store().pt_typ[3], type);
    EXPECT_EQ(f.w->browser().current_row(), 3);
    EXPECT_TRUE(f.w->code_panel()->toPlainText().startsWith("[_point]"));

    // Ctrl+A selects every cell, Esc drops the selection but not the current cell.
    f.key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(f.w->browser().selected_rows().size(), static_cast<size_t>(points));
    f.key(Qt::Key_Escape);
    EXPECT_TRUE(f.w->browser().sel1().empty());
    EXPECT_EQ(f.w->browser().current_row(), 3);
}

// A point of the clipboard; its label "Café" in UTF-8 or in the page 1252.
std::string clip_point(const std::string& type, const std::string& label) {
    return "krv2\r\n[_point]\r\nType=" + type + "\r\nString1=0x04," + label +
           "\r\nDayXpm=\"2 2 2 1\" Colormode=0\r\n\"! c #FF0000\"\r\n\"# c #0000FF\"\r\n\"!#\"\r\n\"#!\"\r\n[end]\r\n";
}

bool has_point(const korvex::model::Store& s, const std::string& type, const std::string& text) {
    for (int32_t r = 0; r < s.pt_n; ++r)
        if (wb::row_type_code(s, 2, r) == wb::type_code(type) && s.pt_txt[static_cast<size_t>(r)].find(text) != std::string::npos)
            return true;
    return false;
}

TEST(ElementCommands, PasteEntriesTakeTheirFormOfTheClipboardAndCutAndCopyKeys) {
    CommandsFixture f;
    f.w->show_class(2);
    auto& cmd = f.w->commands();
    const auto& s = f.w->store();
    const int32_t points = s.pt_n;
    f.clipboard.set_text(clip_point("0x6200", "Caf\xE9"));
    cmd.action("Paste Plain Text")->trigger();
    EXPECT_TRUE(has_point(s, "0x6200", "Caf\xE9"));
    f.clipboard.set_unicode_text(clip_point("0x6100", "Caf\xC3\xA9"));
    cmd.action("Paste UTF-8")->trigger();
    EXPECT_TRUE(has_point(s, "0x6100", "Caf\xE9"));  // the project's page
    ASSERT_EQ(s.pt_n, points + 2);
    cmd.action("Paste Plain Text")->trigger();  // no plain text on the clipboard
    EXPECT_EQ(f.prompt.messages.back(), "No element to paste");
    EXPECT_EQ(s.pt_n, points + 2);

    // Ctrl+D copies the current point under a new number; Ctrl+X asks, copies and removes.
    f.click(0);
    f.key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(s.pt_n, points + 3);
    const std::string current = s.pt_typ[static_cast<size_t>(f.w->browser().current_row())];
    f.prompt.script(Answer::yes);
    f.key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(f.prompt.questions.back(), "Reload TYP file to undo changes.\r\n\r\nContinue?");
    EXPECT_EQ(s.pt_n, points + 2);
    EXPECT_EQ(f.clipboard.unicode_text().rfind("krv2\r\n" + current.substr(current.size() - 5), 0), 0u)
        << f.clipboard.unicode_text().substr(0, 20);
}

TEST(ElementCommands, ACodePanelSelectionIsCopiedAsText) {
    CommandsFixture f;
    f.w->show_class(2);
    f.click(1);
    QPlainTextEdit* panel = f.w->code_panel();
    panel->setFocus();
    QTextCursor c = panel->textCursor();
    c.movePosition(QTextCursor::Start);
    c.movePosition(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
    panel->setTextCursor(c);
    f.w->commands().copy();
    EXPECT_EQ(f.clipboard.unicode_text(), "[_point]");
}

TEST(ElementCommands, TheEditMenuFollowsTheClassInView) {
    CommandsFixture f;
    auto& cmd = f.w->commands();
    for (const char* name : {"Cut", "Copy", "Paste", "Paste UTF-8", "Paste Plain Text", "Create Copy", "Delete",
                             "New Polygon", "New Extra Point", "New Element", "Import Style (KRVX)"})
        ASSERT_NE(cmd.action(name), nullptr) << name;
    EXPECT_EQ(cmd.action("Copy")->shortcut(), QKeySequence(QKeySequence::Copy));
    EXPECT_EQ(cmd.action("Delete")->shortcut(), QKeySequence(QKeySequence::Delete));
    f.w->show_class(3);
    EXPECT_TRUE(cmd.action("Copy")->isEnabled());
    EXPECT_FALSE(cmd.action("Create Copy")->isEnabled());
    EXPECT_FALSE(cmd.button("Create Copy")->isEnabled());
    f.w->show_class(4);
    EXPECT_FALSE(cmd.action("Copy")->isEnabled());
    EXPECT_FALSE(cmd.button("Paste")->isEnabled());
    f.w->show_class(0);
    EXPECT_TRUE(cmd.action("Create Copy")->isEnabled());
}

TEST(ElementCommands, ANewButtonShowsItsClassAndTheNewElement) {
    CommandsFixture f;
    f.w->show_class(2);
    const int32_t polygons = f.w->store().pg_n;
    f.w->commands().button("New Polygon")->click();
    ASSERT_EQ(f.element_dialogs.shown.size(), 1u);
    EXPECT_EQ(f.element_dialogs.shown[0].cls, 0);
    EXPECT_EQ(f.w->store().curclass, 0);
    EXPECT_EQ(f.w->store().pg_n, polygons + 1);
    EXPECT_EQ(f.cells(), polygons + 1);
    const int32_t row = f.w->browser().current_row();
    ASSERT_GE(row, 0);
    EXPECT_EQ(f.w->store().pg_typ[static_cast<size_t>(row)],
              "0x" + f.element_dialogs.shown[0].type.substr(1, 4));
    EXPECT_TRUE(f.w->code_panel()->toPlainText().contains(
        QString::fromStdString("Type=0x" + f.element_dialogs.shown[0].type)));
    // Insert makes one of the class in view, but not while a text box has the focus.
    f.key(Qt::Key_Insert);
    EXPECT_EQ(f.w->store().pg_n, polygons + 2);
    f.w->code_panel()->setFocus();
    QTest::keyClick(f.w->code_panel(), Qt::Key_Insert);
    EXPECT_EQ(f.w->store().pg_n, polygons + 2);
}

TEST(ElementCommands, TheContextMenuOffersCreateCopyAndSubtypes) {
    CommandsFixture f;
    f.w->show_class(2);
    f.click(0);
    QMenu menu;
    f.w->commands().fill_context_menu(menu);
    QStringList names;
    QMenu* subtypes = nullptr;
    for (QAction* a : menu.actions()) {
        names << a->text();
        if (a->menu()) subtypes = a->menu();
    }
    EXPECT_TRUE(names.contains("Create Copy Next Type From 0x00060)")) << names.join("|").toStdString();
    EXPECT_TRUE(names.contains("Paste"));
    ASSERT_NE(subtypes, nullptr);
    const int32_t points = f.w->store().pt_n;
    ASSERT_FALSE(subtypes->actions().isEmpty());
    subtypes->actions().first()->trigger();
    EXPECT_EQ(f.w->store().pt_n, points + 1);
}

TEST(ElementCommands, ANewTypeNumberInTheCodePanelMovesTheElement) {
    CommandsFixture f;
    f.w->show_class(0);
    f.click(0);
    QString text = f.w->code_panel()->toPlainText();
    // The panel warns of what a new number does; the warning is no part of the element.
    EXPECT_TRUE(text.startsWith("[_polygon]\n; Changing type number effects draworder!\n"
                                "; use Draworder Main Menu option to change draworder\n"))
        << text.toStdString();
    const int32_t polygons = f.w->store().pg_n;
    text.replace(QRegularExpression("Type=0x[0-9a-fA-F]+"), "Type=0x17f00");
    f.w->code_panel()->setPlainText(text);
    f.w->apply_changes();
    const int32_t row = f.w->browser().current_row();
    EXPECT_EQ(row, polygons - 1);
    EXPECT_EQ(f.w->store().pg_typ[static_cast<size_t>(row)], "0x17F00");
    EXPECT_EQ(f.w->store().pg_txt[static_cast<size_t>(row)].find("Changing type"), std::string::npos);
}

TEST(ElementCommands, TextNotAppliedIsOnlyDroppedWhenTheUserSaysSo) {
    CommandsFixture f;
    f.w->show_class(2);
    f.click(1);
    QPlainTextEdit* panel = f.w->code_panel();
    const std::string type_before = f.w->store().pt_typ[0];
    // A type the panel cannot take: Apply says so in one box and keeps the text.
    QString text = panel->toPlainText();
    text.replace(QRegularExpression("Type=0x[0-9a-fA-F]+"), "Type=0x7777777");
    panel->setPlainText(text + "; typed\n");
    ASSERT_TRUE(f.w->session().text_pending());
    const size_t said = f.prompt.messages.size();
    f.w->apply_changes();
    ASSERT_EQ(f.prompt.messages.size(), said + 1);
    EXPECT_EQ(f.prompt.messages.back(), "Too long ");
    EXPECT_TRUE(f.w->session().text_pending());
    EXPECT_EQ(f.w->store().pt_typ[0], type_before);
    f.click(2);  // answered No: the text and the element stay
    ASSERT_FALSE(f.prompt.questions.empty());
    EXPECT_EQ(f.prompt.questions.back(), "Return to ICONS without saving changes?");
    EXPECT_EQ(f.w->browser().current_cell(), 1);
    EXPECT_TRUE(panel->toPlainText().endsWith("; typed\n"));
    // The second half of a double click neither asks again nor opens the other element.
    const size_t asked = f.prompt.questions.size();
    f.w->double_click_cell(2, false, false);
    EXPECT_EQ(f.prompt.questions.size(), asked);
    EXPECT_EQ(f.w->icon_editor(), nullptr);
    EXPECT_EQ(f.w->browser().current_cell(), 1);
    EXPECT_TRUE(panel->toPlainText().endsWith("; typed\n"));
    f.w->findChild<QPushButton*>("class0")->click();
    EXPECT_EQ(f.w->store().curclass, 2);
    EXPECT_TRUE(f.w->findChild<QPushButton*>("class2")->isChecked());
    f.prompt.script(Answer::yes);
    f.click(2);
    EXPECT_EQ(f.w->browser().current_cell(), 2);
    EXPECT_FALSE(f.w->session().text_pending());
    EXPECT_FALSE(panel->toPlainText().contains("; typed"));  // Yes discards the text
    EXPECT_EQ(f.prompt.messages.size(), said + 1);              // and nothing more was said
    EXPECT_EQ(f.w->store().pt_typ[0], type_before);
}

TEST(ElementDialogs, PoiSizesRefusesAndStaysOpenUntilTheFormIsFine) {
    korvex::model::Store s;
    korvex::integration::Messages msgs;
    korvex::platform::ScriptedPrompt ui;
    wb::NewElementForm form;
    form.cls = 0;
    form.type = "00200";
    korvex::gui::PoiSizesDialog d(form, {s, msgs, ui});
    auto* level = d.findChild<QSpinBox*>("level");
    ASSERT_NE(level, nullptr);
    level->setValue(256);
    d.ok();
    EXPECT_EQ(d.result(), QDialog::Rejected);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0], "Draworder < 256 ");
    level->setValue(255);
    d.findChild<QLineEdit*>("text")->setText(QString::fromUtf8("W\xC3\xA4ldchen"));
    d.ok();
    EXPECT_EQ(d.result(), QDialog::Accepted);
    EXPECT_EQ(d.form().level, 255);
    EXPECT_EQ(d.form().text, "W\xC3\xA4ldchen");

    form.cls = 2;
    korvex::gui::PoiSizesDialog p(form, {s, msgs, ui});
    p.findChild<QSpinBox*>("width")->setValue(0);
    p.ok();
    EXPECT_EQ(p.result(), QDialog::Rejected);
    EXPECT_EQ(ui.messages.back(), msgs.get_msg(63));
}

TEST(QtClipboard, TextInTheProjectsPageUnicodeAsUtf8AndPictures) {
    korvex::gui::QtClipboard c(1252);
    c.set_unicode_text("B\xC3\xA4" "ckerei");
    EXPECT_EQ(c.text(), "B\xE4" "ckerei");
    c.set_codepage(1251);
    c.set_text("\xC4\xE0");  // Cyrillic in page 1251
    EXPECT_EQ(c.unicode_text(), "\xD0\x94\xD0\xB0");
    korvex::platform::ClipImage img{2, 1, {0xFFFF0000u, 0x8000FF00u}};
    c.set_image(img);
    const auto back = c.image();
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(*back, img);
}

}  // namespace

namespace {

TEST(ElementCommands, AStyleImportAndAThemeComeInThroughTheFileMenus) {
    CommandsFixture f;
    const std::string krvx = f.home.filePath("style.krvx").toStdString();
    {
        QFile out(QString::fromStdString(krvx));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("<Korvex>\r\n<1/>\r\n<Lines>0x2f,highway=yes</Lines>\r\n");
    }
    const int32_t lines = f.w->store().ln_n;
    f.dialogs.script(krvx);
    f.w->commands().action("Import Style (KRVX)")->trigger();
    EXPECT_EQ(f.w->store().ln_n, lines + 1);
    EXPECT_EQ(f.dialogs.calls.back().filters, "Korvex Import File (*.krvx)");
    EXPECT_EQ(f.prompt.messages.back().rfind("Added Polygons:0 Lines:1 Points:0", 0), 0u);

    // The bundled table names FOREST and TRAIL.
    const std::string theme = f.home.filePath("look.kmtf").toStdString();
    {
        QFile out(QString::fromStdString(theme));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("<StyleList>\n<Style Field=\"MAP_FOREST_CLR\"><Color Day=\"#4CA04C\"/></Style>\n"
                  "<Style Field=\"MAP_TRAIL_CLR\" Scale=\"1\"><Color Day=\"#8B4513\"/></Style>\n</StyleList>\n");
    }
    f.prompt.script(Answer::no);  // the project has changes: not saved
    ASSERT_TRUE(f.w->open_file(theme));
    EXPECT_EQ(f.w->store().pg_n, 1);
    EXPECT_EQ(f.w->store().ln_n, 1);
    EXPECT_TRUE(f.w->windowTitle().contains("look.typ"));
    EXPECT_TRUE(f.w->session().save_as_forced());
}

}  // namespace
