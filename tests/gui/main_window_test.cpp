#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGroupBox>
#include <QProgressBar>
#include <QScrollBar>
#include <QTimer>
#include <set>
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
#include "gui/language_menu.h"
#include "gui/qt_prompt.h"
#include "gui/cell_delegate.h"
#include "gui/draworder_view.h"
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

// What the window shows stays in place: Extra Points neither widen the
// window nor push the code panel out of it, a long label is elided with the
// full label as its tooltip, the progress bar empties after a load and a
// save, and the layer view opens at its top.
TEST(MainWindow, TheWindowKeepsItsShapeAndShowsWhatItHolds) {
    MainFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    f.w->resize(720, 500);
    QApplication::processEvents();
    const int width = f.w->width();
    f.w->show_class(4);
    QApplication::processEvents();
    EXPECT_EQ(f.w->width(), width);
    EXPECT_LE(f.w->minimumSizeHint().width(), width);
    const QWidget* side = f.w->side_panel();
    EXPECT_TRUE(side->isVisible());
    EXPECT_LE(side->mapTo(f.w.get(), QPoint(side->width(), 0)).x(), f.w->width());

    // A long label: the cell shows it elided, the tooltip in full.
    f.w->show_class(2);
    f.click(0);
    QString text = f.w->code_panel()->toPlainText();
    const QString label = "A very long label that no cell of the grid could ever hold on one line";
    text.replace(QRegularExpression("(String\\d+=0x[0-9A-Fa-f]+,)[^\n]*"), "\\1" + label);
    f.w->code_panel()->setPlainText(text);
    f.w->apply_changes();
    const int cell = f.w->browser().current_cell();
    ASSERT_GE(cell, 0);
    const QString full = f.w->grid_model()->label_text(cell);
    ASSERT_TRUE(full.contains(label)) << full.toStdString();
    const QString shown = f.w->delegate()->shown_label(full);
    EXPECT_TRUE(shown.endsWith(QChar(0x2026))) << shown.toStdString();
    EXPECT_LT(shown.size(), full.size());
    const QString tip = f.w->grid_model()->data(f.w->grid_model()->index(cell), Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.startsWith(full)) << tip.toStdString();

    // The bar empties after a load and after a save, however far it went.
    QProgressBar* bar = f.w->progress_bar();
    bar->setValue(100);
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.txt"));
    EXPECT_EQ(bar->value(), 0);
    EXPECT_FALSE(bar->isVisible());
    bar->setValue(100);
    f.dialogs.script(f.path("saved.typ"));
    f.w->action("Save TYP As")->trigger();
    ASSERT_TRUE(QFile::exists(QString::fromStdString(f.path("saved.typ"))));
    EXPECT_EQ(bar->value(), 0);
    EXPECT_FALSE(bar->isVisible());

    // The layer view opens at its top, wherever it was left.
    f.w->set_icon_size(5);
    f.w->set_draworder_view(true);
    QApplication::processEvents();
    QScrollBar* scroll = f.w->draworder_view()->verticalScrollBar();
    ASSERT_GT(scroll->maximum(), 0);
    scroll->setValue(scroll->maximum());
    f.w->set_draworder_view(false);
    f.w->set_draworder_view(true);
    QApplication::processEvents();
    EXPECT_EQ(scroll->value(), 0);
}

// The German language file words every caption the window shows: its
// menus, the class and element buttons, the grid's context menu and the icon
// editor. A caption without an entry in the file fails here by its key.
TEST(MainWindow, TheGermanFileWordsEveryCaptionOfTheWindowAndTheEditor) {
    MainFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    QAction* deutsch = nullptr;
    for (QAction* m : f.w->menuBar()->actions())
        if (m->text() == "Language")
            for (QAction* a : m->menu()->actions())
                if (a->text() == "Deutsch") deutsch = a;
    ASSERT_NE(deutsch, nullptr);
    deutsch->trigger();
    f.w->show_class(2);
    f.click(0);
    ASSERT_TRUE(f.w->open_icon_editor(f.w->browser().selected_rows()));
    QApplication::processEvents();

    std::set<std::string> missing, unapplied;
    int checked = 0;
    auto check = [&](QObject* control, const QString& shown) {
        const std::string key = korvex::gui::control_caption_key(control);
        if (key.empty() || shown.isEmpty()) return;
        ++checked;
        const std::string given = f.w->messages().caption(key);
        if (given.empty())
            missing.insert(key + "=" + shown.toStdString());
        else if (!shown.startsWith(korvex::gui::from_message(given)))
            unapplied.insert(key + ": " + shown.toStdString());
    };
    auto walk = [&](QWidget* root) {
        QList<QWidget*> widgets = root->findChildren<QWidget*>();
        widgets.prepend(root);
        for (QWidget* w : widgets) {
            for (QAction* a : w->actions())
                if (!a->isSeparator()) check(a, a->text());
            auto* tool = qobject_cast<QToolButton*>(w);
            if (auto* b = qobject_cast<QAbstractButton*>(w); b && !(tool && tool->defaultAction())) check(b, b->text());
            if (auto* g = qobject_cast<QGroupBox*>(w)) check(g, g->title());
        }
    };
    walk(f.w.get());
    ASSERT_NE(f.w->icon_editor(), nullptr);
    // The grid's context menu, as a right click shows it.
    f.w->icon_editor()->cancel_clicked();
    QApplication::processEvents();
    QTimer::singleShot(0, [&] {
        if (QWidget* menu = QApplication::activePopupWidget()) {
            walk(menu);
            menu->close();
        }
    });
    f.w->grid()->context_menu(0, QPoint(10, 10));
    EXPECT_GT(checked, 150);
    std::string list;
    for (const std::string& m : missing) list += m + "\n";
    EXPECT_TRUE(missing.empty()) << "no German entry:\n" << list;
    list.clear();
    for (const std::string& m : unapplied) list += m + "\n";
    EXPECT_TRUE(unapplied.empty()) << "German entry not shown:\n" << list;
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
