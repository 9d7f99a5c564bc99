#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QPointer>
#include <QFileDialog>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "gui/errors_window.h"
#include "gui/report_window.h"
#include "gui/language_menu.h"
#include "gui/qt_file_dialog.h"
#include "gui/preferences_dialog.h"
#include "gui/qt_prompt.h"
#include "platform/file_dialog.h"
#include "platform/fonts.h"
#include "support/harness.h"

namespace {

using korvex::gui::QtPrompt;
using korvex::platform::Answer;

TEST(QtPrompt, ButtonsMapToAnswersAndClosingIsTheSafeOne) {
    QtPrompt ui;
    QMessageBox::StandardButton press = QMessageBox::Yes;
    QString shown, title;
    ui.set_answerer([&](QMessageBox& box) {
        shown = box.text();
        title = box.windowTitle();
        return press;
    });
    EXPECT_EQ(ui.yes_no_cancel("Save changes before exiting?"), Answer::yes);
    EXPECT_EQ(shown, "Save changes before exiting?");
    EXPECT_EQ(title, "Korvex");
    press = QMessageBox::No;
    EXPECT_EQ(ui.yes_no_cancel("q"), Answer::no);
    EXPECT_FALSE(ui.yes_no("q"));
    press = QMessageBox::Cancel;
    EXPECT_EQ(ui.yes_no_cancel("q"), Answer::cancel);
    // Closed by the window frame: no button.
    press = QMessageBox::NoButton;
    EXPECT_EQ(ui.yes_no_cancel("q"), Answer::cancel);
    EXPECT_FALSE(ui.yes_no("q"));
    press = QMessageBox::Yes;
    EXPECT_TRUE(ui.yes_no("q"));
    ui.message("File exists.\r\nReplace this file?");
    EXPECT_EQ(shown, "File exists.\nReplace this file?");
}

TEST(QtPrompt, RealBoxAnswersTheButtonClicked) {
    QtPrompt ui;
    QTimer::singleShot(0, [] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        box->button(QMessageBox::No)->click();
    });
    EXPECT_EQ(ui.yes_no_cancel("Continue?"), Answer::no);
}

TEST(QtPrompt, ProgressAndStatusGoToTheWindowsWidgets) {
    QtPrompt ui;
    QProgressBar bar;
    QLabel label;
    ui.set_progress_bar(&bar);
    ui.set_status_label(&label);
    ui.progress(40);
    EXPECT_EQ(bar.value(), 40);
    ui.progress(-1);
    EXPECT_EQ(bar.value(), 0);
    ui.status("Text Codepage 1252");
    EXPECT_EQ(label.text(), "Text Codepage 1252");
    // Labels in the file's page come through iconv; UTF-8 as it stands.
    EXPECT_EQ(korvex::gui::from_codepage("\xe9", 1252), QString::fromUtf8("\xc3\xa9"));
    EXPECT_EQ(korvex::gui::to_codepage(QString::fromUtf8("\xd0\x96"), 1251), "\xc6");
}

TEST(QtFileDialog, FiltersAndStartFolderReachTheDialogAndTheChoiceComesBack) {
    korvex::gui::QtFileDialog files;
    files.set_native(false);
    const std::string folder = korvex::testing::source_dir() + "/data/samples";
    QStringList filters;
    QString start;
    QTimer::singleShot(0, [&] {
        auto* d = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(d, nullptr);
        filters = d->nameFilters();
        start = d->directory().absolutePath();
        d->selectFile(QString::fromStdString(folder + "/sample.typ"));
        QMetaObject::invokeMethod(d, "accept");
    });
    EXPECT_EQ(files.open_file("Open File", {"Typ files (*.typ)", "Themes (*.kmtf)"}, folder),
              folder + "/sample.typ");
    EXPECT_EQ(filters, QStringList({"Typ files (*.typ)", "Themes (*.kmtf)"}));
    EXPECT_EQ(start, QString::fromStdString(folder));
}

TEST(ErrorsWindow, ShowsTheLoadReportLineByLine) {
    korvex::gui::ErrorsWindow w;
    EXPECT_EQ(w.windowTitle(), "Errors");
    w.show_report("No lwidth(\r\n Unknown colour in Point bmp.\r\n");
    EXPECT_EQ(w.text(), "No lwidth(\n Unknown colour in Point bmp.\n");
    w.show_report("");
    EXPECT_EQ(w.text(), "");
}

// The window closes with Esc and with its own Close button, in the language's word.
TEST(ErrorsWindow, ClosesWithEscAndItsCloseButton) {
    korvex::gui::ErrorsWindow w(QStringLiteral("Schließen"));
    ASSERT_NE(w.close_button(), nullptr);
    EXPECT_EQ(w.close_button()->text(), "Schließen");
    w.show();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &w, Qt::Key_Escape);
    EXPECT_FALSE(w.isVisible());
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    QTest::mouseClick(w.close_button(), Qt::LeftButton);
    EXPECT_FALSE(w.isVisible());
}

// A report opens beside the window and stays; Copy gives its text, Save As
// writes its bytes as they came, Close ends it.
TEST(ReportWindow, ShowsCopiesSavesAndCloses) {
    korvex::gui::QtPrompt ui;
    ui.report("Unused colours", "UNUSED COLOURS: Points\r\n3 0x2a0e %\r\n");
    QPointer<QWidget> shown = ui.last_report();
    auto* w = qobject_cast<korvex::gui::ReportWindow*>(shown.data());
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(w->isVisible());
    EXPECT_EQ(w->windowTitle(), "Unused colours");
    EXPECT_EQ(w->text(), "UNUSED COLOURS: Points\n3 0x2a0e %\n");
    QTest::mouseClick(w->copy_button(), Qt::LeftButton);
    EXPECT_EQ(QApplication::clipboard()->text(), w->text());
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(w->save_to(dir.filePath(QStringLiteral("r.txt"))));
    EXPECT_EQ(korvex::testing::read_bytes(dir.filePath(QStringLiteral("r.txt")).toStdString()),
              "UNUSED COLOURS: Points\r\n3 0x2a0e %\r\n");
    EXPECT_FALSE(w->save_to(dir.filePath(QStringLiteral("missing/r.txt"))));
    QTest::mouseClick(w->close_button(), Qt::LeftButton);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(shown.isNull());
}

struct PrefFixture {
    korvex::workbench::AppSettings st;
    korvex::platform::FixedFontList fonts{{"Arial", "Courier", "DejaVu Sans"}};
    korvex::platform::ScriptedFileDialog files;
    korvex::platform::ScriptedPrompt ui;
};

template <class T>
T* find(QWidget& w, const char* name) {
    T* c = w.findChild<T*>(QLatin1String(name));
    EXPECT_NE(c, nullptr) << name;
    return c;
}

TEST(PreferencesDialog, ApplyHandsBackTheControlsRefusalsKeepTheOldValueCancelDrops) {
    PrefFixture f;
    const std::string sample = korvex::testing::source_dir() + "/data/samples/sample.typ";
    f.st.label_font_size = 10;
    f.st.custom_icon_size = 700;
    f.st.polygon_seed = "00100";
    f.st.auto_load_path = "/maps/a.typ";
    korvex::gui::PreferencesDialog d(f.st, f.fonts, f.files, f.ui);
    ASSERT_EQ(d.panes()->count(), 5);
    EXPECT_EQ(d.panes()->tabText(0), "Language / Font");
    EXPECT_EQ(d.panes()->tabText(4), "Software / Auto TYP");
    EXPECT_EQ(find<QSpinBox>(d, "label_size")->value(), 10);
    // The slider runs 110 below the size; a polygon seed shows its type digits.
    EXPECT_EQ(find<QSlider>(d, "custom_size")->value(), 590);
    EXPECT_EQ(find<QLineEdit>(d, "polygon_seed")->text(), "001");
    EXPECT_EQ(find<QLineEdit>(d, "auto_load")->text(), "/maps/a.typ");

    // A refused value: its message, the dialog stays, the settings keep theirs.
    find<QSpinBox>(d, "label_size")->setValue(40);
    find<QPushButton>(d, "apply")->click();
    EXPECT_EQ(f.ui.messages, std::vector<std::string>{"Font >5 & <30"});
    EXPECT_EQ(d.result(), 0);
    EXPECT_EQ(d.settings().label_font_size, 10);

    find<QSpinBox>(d, "label_size")->setValue(12);
    find<QComboBox>(d, "language")->setCurrentIndex(0x19);
    find<QComboBox>(d, "label_font")->setCurrentText("DejaVu Sans");
    find<QSlider>(d, "custom_size")->setValue(1000);
    find<QCheckBox>(d, "logs")->setChecked(true);
    find<QCheckBox>(d, "duplicates")->setChecked(false);
    find<QSpinBox>(d, "extra_page")->setValue(3);
    f.files.script(sample);
    find<QPushButton>(d, "auto_load_browse")->click();
    find<QPushButton>(d, "apply")->click();
    EXPECT_EQ(d.result(), int(QDialog::Accepted));
    const auto& out = d.settings();
    EXPECT_EQ(out.label_font_size, 12);
    EXPECT_TRUE(d.outcome().font_changed);
    EXPECT_EQ(out.langsel, 0x19);
    EXPECT_EQ(out.langname, "Russian");
    EXPECT_EQ(out.label_font, "DejaVu Sans");
    EXPECT_EQ(out.custom_icon_size, 1110);
    EXPECT_EQ(out.polygon_seed, "1");
    EXPECT_TRUE(out.logs_on);
    EXPECT_EQ(out.no_duplicate_check, 1);
    EXPECT_EQ(out.extra_page_size, 10);
    EXPECT_EQ(out.auto_load_path, sample);
    EXPECT_EQ(out.recent, f.st.recent);

    korvex::gui::PreferencesDialog c(f.st, f.fonts, f.files, f.ui);
    find<QSpinBox>(c, "label_size")->setValue(12);
    find<QPushButton>(c, "cancel")->click();
    EXPECT_EQ(c.settings().label_font_size, 10);
}

TEST(LanguageMenu, ListsTheBundledFileAndItsCaptionsComeAndGo) {
    korvex::integration::Messages msgs;
    QMenu languages, file(QStringLiteral("File"));
    korvex::gui::CaptionTable captions;
    captions.add(&file, "mfile", QStringLiteral("File"));
    korvex::gui::LanguageMenu menu(&languages, msgs, {korvex::testing::source_dir() + "/data/languages"},
                                   [&] { captions.apply(msgs); });
    menu.rebuild();
    ASSERT_EQ(languages.actions().size(), 2);
    EXPECT_EQ(languages.actions()[0]->text(), "English");
    EXPECT_EQ(languages.actions()[1]->text(), "Deutsch");
    EXPECT_TRUE(languages.actions()[0]->isChecked());

    QSignalSpy changed(&menu, &korvex::gui::LanguageMenu::language_changed);
    languages.actions()[1]->trigger();
    EXPECT_EQ(file.title(), "Datei");
    EXPECT_EQ(msgs.get_msg(3), "Keine Daten.");
    EXPECT_TRUE(languages.actions()[1]->isChecked());
    ASSERT_EQ(changed.count(), 1);
    EXPECT_TRUE(changed[0][0].toString().endsWith("deutsch.lan"));

    EXPECT_TRUE(menu.select(0));
    EXPECT_EQ(file.title(), "File");
    EXPECT_EQ(msgs.get_msg(3), "No data.");
    EXPECT_EQ(changed[1][0].toString(), "");
    EXPECT_FALSE(menu.select(2));
}

}  // namespace
