#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QUrl>
#include <QDropEvent>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "gui/grid_model.h"
#include "gui/grid_view.h"
#include "gui/label_panel.h"
#include "gui/editor_window.h"
#include "gui/main_window.h"
#include "platform/environment.h"
#include "support/harness.h"

namespace {

using korvex::gui::MainWindow;
using korvex::platform::Answer;

using korvex::testing::k_samples;

// A window on a data folder of its own, with scripted answers and dialogs.
struct MainFixture : korvex::testing::WindowFixture {
    MainFixture() : WindowFixture(Answer::no) { show(services(), 900, 600); }

    int cells() const { return w->grid_model()->rowCount(); }
    // A real mouse click in the middle of a cell's icon.
    void click(int cell, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QApplication::processEvents();
        korvex::gui::GridView* g = w->grid();
        g->show_cell(cell);
        const QRect r = g->visualRect(w->grid_model()->index(cell));
        QTest::mouseClick(g->viewport(), Qt::LeftButton, mods, r.center() - QPoint(0, r.height() / 4));
    }
};

TEST(MainWindow, OpensTheSamplesWithOneCellAnElementOfEachClass) {
    MainFixture f;
    for (const char* name : {"sample.typ", "sample.txt"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(f.w->open_file(k_samples + name));
        const int expected[5] = {13, 12, 20, 1, 1};
        for (int cls = 0; cls < 5; ++cls) {
            f.w->show_class(cls);
            EXPECT_EQ(f.cells(), expected[cls]) << "class " << cls;
        }
        EXPECT_EQ(f.w->class_button_text(2).toStdString(), "Points (20)");
        EXPECT_EQ(f.w->status_label()->text().toStdString(), "Text Codepage 1252");
    }
    // The window shows and keeps the file it opened.
    EXPECT_NE(f.w->windowTitle().toStdString().find("sample.txt"), std::string::npos);

    // A file dropped on the window opens as well.
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(QString::fromStdString(k_samples + "sample.typ"))});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(f.w.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(f.w.get(), &drop);
    QApplication::processEvents();
    EXPECT_NE(f.w->windowTitle().toStdString().find("sample.typ"), std::string::npos);
}

TEST(MainWindow, ClicksBuildTheSelectionListsInBothDirections) {
    MainFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    f.w->show_class(2);
    auto& b = f.w->browser();

    f.click(2);
    EXPECT_EQ(b.current_cell(), 2);
    EXPECT_FALSE(f.w->code_panel()->toPlainText().isEmpty());
    f.click(4, Qt::ControlModifier);
    f.click(6, Qt::ControlModifier);
    EXPECT_EQ(b.sel1(), ",4,6,");
    f.click(6, Qt::ControlModifier);
    f.click(4, Qt::ControlModifier);
    EXPECT_EQ(b.sel1(), "");  // never a lone comma

    f.click(3);
    f.click(6, Qt::ShiftModifier);
    const std::string down = b.sel1();
    f.click(6);
    f.click(3, Qt::ShiftModifier);
    EXPECT_EQ(down, ",3,4,5,6,");
    EXPECT_EQ(b.sel1(), down);

    QTest::keyClick(f.w->grid(), Qt::Key_A, Qt::ControlModifier);
    std::string all = ",";
    for (int c = 0; c < 20; ++c) all += std::to_string(c) + ",";
    EXPECT_EQ(b.sel1(), all);
    EXPECT_TRUE(b.multi());

    // A double click opens the element in the icon editor.
    f.w->code_panel()->clear();
    f.w->session().set_text_pending(false);  // an emptied panel, not an edit held back
    const QRect r = f.w->grid()->visualRect(f.w->grid_model()->index(5));
    QTest::mouseDClick(f.w->grid()->viewport(), Qt::LeftButton, Qt::NoModifier, r.center() - QPoint(0, r.height() / 4));
    EXPECT_EQ(b.current_cell(), 5);
    EXPECT_TRUE(f.w->code_panel()->toPlainText().startsWith("[_point]"));
    ASSERT_NE(f.w->icon_editor(), nullptr);
    f.w->icon_editor()->cancel_clicked();
}

TEST(MainWindow, AnAppliedEditMakesTheProjectDirtyAndSaveAsWritesIt) {
    MainFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    f.w->show_class(2);
    f.click(0);
    QPlainTextEdit* panel = f.w->code_panel();
    const std::string clean_title = f.w->windowTitle().toStdString();
    EXPECT_EQ(clean_title.back(), 'p');

    // Typing in the panel shows the button; applying marks the caption.
    QString text = panel->toPlainText();
    text.replace(QRegularExpression("String1=0x00,[^\n]*"), "String1=0x00,Renamed");
    panel->setPlainText(text);
    EXPECT_TRUE(f.w->apply_button()->isVisibleTo(f.w.get()));
    f.w->apply_changes();
    EXPECT_FALSE(f.w->apply_button()->isVisibleTo(f.w.get()));
    EXPECT_TRUE(f.w->store().dirty);
    EXPECT_EQ(f.w->windowTitle().toStdString(), clean_title + "+");

    // Save TYP As: the first answer names a new file, which is written.
    const std::string out = f.path("out.typ");
    f.dialogs.script(out);
    f.w->action("Save TYP As")->trigger();
    EXPECT_TRUE(QFile::exists(QString::fromStdString(out)));
    EXPECT_FALSE(f.w->store().dirty);
    EXPECT_EQ(f.w->windowTitle().toStdString().back(), 'p');
    EXPECT_NE(f.w->windowTitle().toStdString().find(out), std::string::npos);

    // Again onto the same name: "File exists." answered No leaves it alone.
    const auto before = QFileInfo(QString::fromStdString(out)).lastModified();
    f.dialogs.script(out);
    f.prompt.script(Answer::no);
    f.w->action("Save a Copy As")->trigger();
    ASSERT_FALSE(f.prompt.questions.empty());
    EXPECT_NE(f.prompt.questions.back().find("File exists."), std::string::npos);
    EXPECT_EQ(QFileInfo(QString::fromStdString(out)).lastModified(), before);

    // The FID field is what the save checks: emptied, the save is refused.
    auto* fid = f.w->findChild<QLineEdit*>("fid");
    fid->setText("");
    EXPECT_EQ(f.w->store().fid, "");
    f.w->action("Save")->trigger();
    EXPECT_EQ(f.prompt.messages.back(), "Please enter FID");
    EXPECT_EQ(QFileInfo(QString::fromStdString(out)).lastModified(), before);
}

TEST(MainWindow, ClosingADirtyProjectAsksAndCancelKeepsTheWindow) {
    MainFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    f.w->session().set_dirty(true);
    f.prompt.script(Answer::cancel);
    EXPECT_FALSE(f.w->close());
    EXPECT_TRUE(f.w->isVisible());
    ASSERT_EQ(f.prompt.questions.size(), 1u);
    EXPECT_EQ(f.prompt.questions[0], "Save changes before exiting?");
    f.prompt.script(Answer::no);
    EXPECT_TRUE(f.w->close());
}

TEST(MainWindow, TheReportLabelTurnsRedWithAReport) {
    MainFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    f.w->store().loadrep = "Something odd\r\n";
    f.w->session().paint_report();
    EXPECT_EQ(f.w->report_label()->styleSheet().toStdString(), "color: red;");
    f.w->store().loadrep.clear();
    f.w->session().paint_report();
    EXPECT_EQ(f.w->report_label()->styleSheet().toStdString(), "color: black;");
}

}  // namespace

namespace {

QMenu* top_menu(MainWindow& w, int n) { return w.menuBar()->actions().at(n)->menu(); }

TEST(MainWindow, RecentFilesComeFirstAndAGoneFileIsGreyed) {
    MainFixture f;
    const std::string copy = f.path("copy.typ");
    ASSERT_TRUE(QFile::copy(QString::fromStdString(k_samples + "sample.typ"), QString::fromStdString(copy)));
    ASSERT_TRUE(f.w->open_file(copy));
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    QFile::remove(QString::fromStdString(copy));
    f.w->session().updatmff(k_samples + "sample.typ");

    const auto& recent = f.w->recent_actions();
    EXPECT_EQ(recent[0]->text().toStdString(), k_samples + "sample.typ");
    EXPECT_TRUE(recent[0]->isEnabled());
    EXPECT_EQ(recent[1]->text().toStdString(), copy);
    EXPECT_TRUE(recent[1]->isVisible());
    EXPECT_FALSE(recent[1]->isEnabled());
    for (size_t i = 2; i < recent.size(); ++i) EXPECT_FALSE(recent[i]->isVisible()) << i;
}

TEST(MainWindow, ALanguageFileRewordsMenusButtonsAndMessages) {
    MainFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    QMenu* language = nullptr;
    for (QAction* m : f.w->menuBar()->actions())
        if (m->text() == "Language") language = m->menu();
    ASSERT_NE(language, nullptr);
    QAction* deutsch = nullptr;
    for (QAction* a : language->actions())
        if (a->text() == "Deutsch") deutsch = a;
    ASSERT_NE(deutsch, nullptr);
    deutsch->trigger();
    EXPECT_EQ(top_menu(*f.w, 0)->title().toStdString(), "Datei");
    EXPECT_EQ(f.w->class_button_text(2).toStdString(), "Punkte (20)");
    EXPECT_EQ(f.w->action("Save")->text().toStdString(), "TYP speichern");
    EXPECT_EQ(f.w->action("Hide Code Panel")->text().toStdString(), "Code-Feld ausblenden");
    EXPECT_NE(f.w->settings().language_file.find("deutsch.lan"), std::string::npos);

    language->actions().at(0)->trigger();  // English
    EXPECT_EQ(top_menu(*f.w, 0)->title().toStdString(), "File");
    EXPECT_EQ(f.w->class_button_text(2).toStdString(), "Points (20)");
    EXPECT_EQ(f.w->settings().language_file, "");
}

}  // namespace

TEST(MainWindow, CtrlSSavesAnEditorApplyInPlace) {
    MainFixture f;
    const QString typ = QString::fromStdString(f.path("work.typ"));
    ASSERT_TRUE(QFile::copy(QString::fromStdString(k_samples + "sample.typ"), typ));
    QFile::setPermissions(typ, QFile::ReadOwner | QFile::WriteOwner);
    ASSERT_TRUE(f.w->open_file(typ.toStdString()));
    // The menu entry shows the key it answers to.
    EXPECT_EQ(f.w->action("Save")->shortcut(), QKeySequence(QKeySequence::Save));

    f.w->show_class(2);
    QApplication::processEvents();
    const QRect r = f.w->grid()->visualRect(f.w->grid_model()->index(0));
    QTest::mouseDClick(f.w->grid()->viewport(), Qt::LeftButton, Qt::NoModifier, r.center() - QPoint(0, r.height() / 4));
    korvex::gui::EditorWindow* ed = f.w->icon_editor();
    ASSERT_NE(ed, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(ed));
    ed->labels()->text_box()->setPlainText("Saved by key");
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_EQ(f.w->icon_editor(), nullptr);
    ASSERT_EQ(f.w->windowTitle().toStdString().back(), '+');

    // The key goes where a user's key goes: to the window that is active.
    QWidget* target = QApplication::activeWindow();
    ASSERT_EQ(target, f.w.get());
    QTest::keyClick(target, Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(f.w->store().dirty);
    EXPECT_NE(f.w->windowTitle().toStdString().back(), '+');
    QFile in(typ);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    EXPECT_TRUE(in.readAll().contains("Saved by key"));
}
