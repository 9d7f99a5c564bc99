// The icon editor driven as a user drives it: opened by a double click on a
// cell, drawn on with the mouse, keys for undo and redo, Apply and Cancel;
// the element's text is checked afterwards.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QTimer>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>
#include <cstdio>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "editor/canvas.h"
#include "editor/palette_file.h"
#include "editor/standard_palettes.h"
#include "gui/canvas_dialog.h"
#include "gui/canvas_widget.h"
#include "gui/colour_dialog.h"
#include "gui/editor_window.h"
#include "gui/grid_model.h"
#include "gui/grid_view.h"
#include "gui/label_panel.h"
#include "gui/main_window.h"
#include "gui/palette_widget.h"
#include "platform/environment.h"
#include "text/text_writer.h"
#include "support/harness.h"

namespace {

using korvex::gui::CanvasWidget;
using korvex::gui::EditorWindow;
using korvex::gui::MainWindow;
using korvex::platform::Answer;

using korvex::testing::k_samples;

struct EditorFixture : korvex::testing::WindowFixture {
    EditorFixture() : WindowFixture(Answer::yes) { show(services(), 900, 600); }

    // Double clicks a cell of the class and gives the editor that opened.
    EditorWindow* open_cell(int cls, int cell) {
        w->show_class(cls);
        QApplication::processEvents();
        korvex::gui::GridView* g = w->grid();
        g->show_cell(cell);
        const QRect r = g->visualRect(w->grid_model()->index(cell));
        QTest::mouseDClick(g->viewport(), Qt::LeftButton, Qt::NoModifier, r.center() - QPoint(0, r.height() / 4));
        EditorWindow* e = w->icon_editor();
        if (e) {
            EXPECT_TRUE(QTest::qWaitForWindowExposed(e));
        }
        return e;
    }
    // The cell of the first point of at least 3 x 2 pixels and two colours.
    int drawable_point() {
        w->show_class(2);
        korvex::model::Store& s = w->store();
        for (int32_t r = 0; r < s.pt_n; ++r) {
            int wd = 0, ht = 0, n = 0;
            const std::string& x = s.pt_xpm[static_cast<size_t>(r)];
            if (std::sscanf(x.c_str() + x.find('"') + 1, "%d %d %d", &wd, &ht, &n) == 3 && wd >= 3 && ht >= 2 && n >= 2 && n < 30)
                return w->browser().cell_of_row(r);
        }
        return -1;
    }
    // The editor on the sample's first drawable point; null when it did not open.
    EditorWindow* open_drawable_sample_point() {
        if (!w->open_file(k_samples + "sample.typ")) return nullptr;
        const int cell = drawable_point();
        return cell < 0 ? nullptr : open_cell(2, cell);
    }
    std::string element_text(int cls, int32_t row) {
        korvex::model::Store& s = w->store();
        const int32_t local = cls == 3 ? row - s.ln_n : cls == 4 ? row - s.pt_n : row;
        return korvex::text::create_code(s, local + 1, cls, false);
    }
};

// The widget position of the centre of picture pixel (x, y).
QPoint at(CanvasWidget* c, int x, int y) {
    int px = 0, py = 0;
    for (int sx = 0; sx < c->width(); ++sx)
        if (c->pixel_at(QPoint(sx, c->height() / 2), px, py) && px == x) {
            return QPoint(sx + c->zoom() / 2, 0) + QPoint(0, [&] {
                       for (int sy = 0; sy < c->height(); ++sy)
                           if (c->pixel_at(QPoint(sx, sy), px, py) && py == y) return sy + c->zoom() / 2;
                       return 0;
                   }());
        }
    return {};
}

void drag(CanvasWidget* c, Qt::MouseButton b, QPoint from, QPoint to) {
    QTest::mousePress(c, b, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, to, c->mapToGlobal(to), Qt::NoButton, b, Qt::NoModifier);
    QApplication::sendEvent(c, &move);
    QTest::mouseRelease(c, b, Qt::NoModifier, to);
}

TEST(EditorWindow, DrawUndoRedoAndApplyReachTheElementText) {
    EditorFixture f;
    EditorWindow* ed = f.open_drawable_sample_point();
    ASSERT_NE(ed, nullptr);
    korvex::editor::EditorSession& e = ed->session();
    const int32_t row = e.row;
    const std::string before = f.element_text(2, row);
    ASSERT_GE(e.ncols(), 2);
    ASSERT_GE(e.width, 3);
    CanvasWidget* c = ed->canvas();

    // Left draws the first colour, right the second.
    e.curcol = 1;
    e.curcol2 = 2;
    drag(c, Qt::LeftButton, at(c, 0, 0), at(c, 2, 0));
    EXPECT_EQ(e.pixels.at(0, 0), 0);
    EXPECT_EQ(e.pixels.at(1, 0), 0);
    EXPECT_EQ(e.pixels.at(2, 0), 0);
    QTest::mouseClick(c, Qt::RightButton, Qt::NoModifier, at(c, 1, 1));
    EXPECT_EQ(e.pixels.at(1, 1), 1);
    EXPECT_EQ(e.undo.level(), 2);

    // The pointer shows the pixel and its colour.
    QMouseEvent hover(QEvent::MouseMove, at(c, 1, 1), c->mapToGlobal(at(c, 1, 1)), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(c, &hover);
    EXPECT_TRUE(ed->position_label()->text().startsWith("x 1  y 1  #")) << ed->position_label()->text().toStdString();

    // After an undo, and after a click that does not move the pointer, the
    // status line names the pixel under the pointer as it is now.
    const auto status_of = [&](int x, int y) {
        return QString("x %1  y %2  #%3  colour %4")
            .arg(x)
            .arg(y)
            .arg(QString::fromStdString(korvex::editor::hex6(e.surface.at(x, y))))
            .arg(e.pixels.at(x, y) + 1);
    };
    QTest::keyClick(ed, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(e.undo.level(), 1);
    EXPECT_NE(e.pixels.at(1, 1), 1);
    EXPECT_TRUE(ed->position_label()->text().startsWith(status_of(1, 1))) << ed->position_label()->text().toStdString();
    QTest::keyClick(ed, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(e.undo.level(), 2);
    EXPECT_TRUE(ed->position_label()->text().startsWith(status_of(1, 1))) << ed->position_label()->text().toStdString();
    QTest::keyClick(ed, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(e.undo.level(), 2);  // already at the top
    QTest::keyClick(ed, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(ed, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(e.undo.level(), 2);
    EXPECT_EQ(e.pixels.at(1, 1), 1);
    QTest::mouseClick(c, Qt::LeftButton, Qt::NoModifier, at(c, 1, 1));
    EXPECT_EQ(e.pixels.at(1, 1), 0);
    EXPECT_TRUE(ed->position_label()->text().startsWith(status_of(1, 1))) << ed->position_label()->text().toStdString();

    // A label typed in the panel.
    ed->labels()->text_box()->setPlainText("Test label");

    // The wheel zooms.
    const int zoom = c->zoom();
    QWheelEvent wheel(QPointF(5, 5), c->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(c, &wheel);
    EXPECT_GT(c->zoom(), zoom);

    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(f.w->icon_editor(), nullptr);
    const std::string after = f.element_text(2, row);
    EXPECT_NE(after, before);
    EXPECT_NE(after.find("Test label"), std::string::npos) << after;
    EXPECT_TRUE(f.w->store().dirty);
    EXPECT_EQ(f.w->windowTitle().toStdString().back(), '+');
    // The code panel shows the new text.
    EXPECT_TRUE(f.w->code_panel()->toPlainText().contains("Test label"));
}

TEST(EditorWindow, EscCancelsAToolCancelDiscardsAndRefusalsKeepTheEditorOpen) {
    EditorFixture f;
    EditorWindow* ed = f.open_drawable_sample_point();
    ASSERT_NE(ed, nullptr);
    korvex::editor::EditorSession& e = ed->session();
    const int32_t row = e.row;
    const std::string before = f.element_text(2, row);
    CanvasWidget* c = ed->canvas();

    QTest::mouseClick(ed->tool_button(korvex::editor::t_line), Qt::LeftButton);
    EXPECT_EQ(e.tool, korvex::editor::t_line);
    QTest::mouseClick(c, Qt::LeftButton, Qt::NoModifier, at(c, 0, 0));
    EXPECT_TRUE(ed->tools().anchored());
    QTest::keyClick(ed, Qt::Key_Escape);
    EXPECT_FALSE(ed->tools().anchored());
    EXPECT_TRUE(ed->isVisible());  // Esc never closes the editor

    // A subtype out of range: the message, and the editor stays.
    ed->subtype_box()->setText("25");
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    EXPECT_EQ(f.prompt.messages.back(), "Choose subtype : 0 - &1F");
    EXPECT_EQ(f.w->icon_editor(), ed);
    EXPECT_EQ(f.element_text(2, row), before);

    // The text stamp: a double click stamps the text in the first colour.
    ASSERT_GE(e.height, 6);
    {
        e.curcol = 1;
        QTest::mouseClick(ed->tool_button(korvex::editor::t_text), Qt::LeftButton);
        EXPECT_EQ(e.tool, korvex::editor::t_text);
        const int level = e.undo.level();
        QTest::mouseDClick(c, Qt::LeftButton, Qt::NoModifier, at(c, 0, 0));
        EXPECT_EQ(e.undo.level(), level + 1);
        QTest::keyClick(ed, Qt::Key_Escape);
        EXPECT_EQ(e.tool, korvex::editor::t_pencil);
    }

    // Drawing, then Cancel: nothing changes and nothing is asked.
    QTest::mouseClick(ed->tool_button(korvex::editor::t_fill), Qt::LeftButton);
    e.curcol = 2;
    QTest::mouseClick(c, Qt::LeftButton, Qt::NoModifier, at(c, 0, 0));
    EXPECT_TRUE(e.eddirty);
    const size_t questions = f.prompt.questions.size();
    ed->cancel_clicked();
    QApplication::processEvents();
    EXPECT_EQ(f.w->icon_editor(), nullptr);
    EXPECT_EQ(f.prompt.questions.size(), questions);
    EXPECT_EQ(f.element_text(2, row), before);
    EXPECT_FALSE(f.w->store().dirty);

    // The close button asks first; "no" keeps the editor.
    ed = f.open_cell(2, f.drawable_point());
    ASSERT_NE(ed, nullptr);
    ed->session().eddirty = true;
    f.prompt.script(Answer::no);
    ed->close();
    QApplication::processEvents();
    EXPECT_EQ(f.prompt.questions.back(), "Exit without saving changes?");
    EXPECT_EQ(f.w->icon_editor(), ed);
    ed->cancel_clicked();
}

TEST(EditorWindow, ApplyKeepsTheBytesOfAnUntouchedLabel) {
    // A byte the label's code page cannot show (0x81 in 1252) survives an
    // Apply that only drew pixels; an edited label is stored as shown.
    EditorFixture f;
    EditorWindow* ed = f.open_drawable_sample_point();
    ASSERT_NE(ed, nullptr);
    const int32_t row = ed->session().row;
    ed->cancel_clicked();
    QApplication::processEvents();
    std::string& own = f.w->store().pt_txt[static_cast<size_t>(row)];
    const size_t label = own.find("String1=0x04,");
    ASSERT_NE(label, std::string::npos) << own;
    own.insert(label + 13, "\x81");
    ed = f.open_cell(2, f.drawable_point());
    ASSERT_NE(ed, nullptr);
    ASSERT_EQ(ed->session().row, row);
    ed->session().curcol = 2;
    QTest::mouseClick(ed->canvas(), Qt::LeftButton, Qt::NoModifier, at(ed->canvas(), 0, 0));
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_EQ(f.w->icon_editor(), nullptr);
    EXPECT_NE(f.element_text(2, row).find("String1=0x04,\x81"), std::string::npos) << f.element_text(2, row);

    ed = f.open_cell(2, f.drawable_point());
    ASSERT_NE(ed, nullptr);
    ed->labels()->text_box()->setPlainText("Edited");
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_NE(f.element_text(2, row).find("String1=0x04,Edited"), std::string::npos) << f.element_text(2, row);
}

TEST(EditorWindow, PolygonDrawOrderAndTheSampleOnScreen) {
    EditorFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    EditorWindow* ed = f.open_cell(0, 0);
    ASSERT_NE(ed, nullptr);
    // Polygons have no crop and no add colour.
    EXPECT_FALSE(ed->tool_button(korvex::editor::t_crop_select)->isEnabled());
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(f.w->icon_editor(), nullptr);
    EXPECT_FALSE(f.w->store().dirty);  // nothing was changed

    // A picture of the editor on a point, for a person to look at.
    const QByteArray out = qgetenv("KORVEX_EDITOR_SCREENSHOT");
    const QByteArray file = qgetenv("KORVEX_EDITOR_SCREENSHOT_FILE");
    if (!out.isEmpty()) {
        ASSERT_TRUE(f.w->open_file(file.isEmpty() ? k_samples + "sample.typ" : file.toStdString()));
        ed = f.open_cell(2, qEnvironmentVariableIntValue("KORVEX_EDITOR_SCREENSHOT_CELL"));
        ASSERT_NE(ed, nullptr);
        ed->resize(1100, 720);
        QApplication::processEvents();
        EXPECT_TRUE(ed->grab().save(QString::fromUtf8(out)));
        ed->cancel_clicked();
    }
}

// A line of colours only has no pixels to draw, yet its canvas shows the
// line as it would stand as a bitmap: border rows and line rows.
TEST(EditorWindow, ALineOfColoursOnlyShowsItsBands) {
    EditorFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    EditorWindow* ed = f.open_cell(1, 0);  // the motorway: width 6, border 1
    ASSERT_NE(ed, nullptr);
    korvex::editor::EditorSession& e = ed->session();
    ASSERT_TRUE(e.solid);
    ASSERT_EQ(e.border * 100 + e.lwidth, 106);
    CanvasWidget* c = ed->canvas();
    const QImage shot = c->grab().toImage();
    const int z = c->zoom();
    auto colour_at = [&](int row) {
        const QRgb q = shot.pixel(8 + z / 2, 8 + row * z + z / 2);
        return korvex::editor::rgb(static_cast<uint32_t>(qRed(q)), static_cast<uint32_t>(qGreen(q)),
                                   static_cast<uint32_t>(qBlue(q)));
    };
    EXPECT_EQ(colour_at(0), e.palette.colour(2));  // border
    EXPECT_EQ(colour_at(3), e.palette.colour(1));  // line
    EXPECT_EQ(colour_at(7), e.palette.colour(2));  // border
    EXPECT_EQ(e.width, 0);  // the look only: still no bitmap
    ed->cancel_clicked();
}

// Runs fn on the modal dialog of type D that the next step opens.
template <class D, class Fn>
void on_dialog(Fn fn) {
    QTimer::singleShot(0, [fn] {
        auto* d = qobject_cast<D*>(QApplication::activeModalWidget());
        ASSERT_NE(d, nullptr);
        fn(d);
    });
}

TEST(EditorWindow, ColourDialogPaletteUndoMarkerAndCanvasReachTheText) {
    EditorFixture f;
    EditorWindow* ed = f.open_drawable_sample_point();
    ASSERT_NE(ed, nullptr);
    korvex::editor::EditorSession& e = ed->session();
    const int32_t row = e.row;
    korvex::gui::PaletteWidget* pal = ed->palette_cells();
    const uint32_t first = e.palette.colour(1);

    // A double click on the first cell opens the colour dialog; the hex box
    // keeps only hex digits, a number box warns past its maximum.
    on_dialog<korvex::gui::ColourDialog>([&](korvex::gui::ColourDialog* d) {
        d->number_box(0)->clear();
        QTest::keyClicks(d->number_box(0), "300");
        EXPECT_EQ(d->number_box(0)->text(), "255");
        d->hex_box()->clear();
        QTest::keyClicks(d->hex_box(), "12zab9g0");
        EXPECT_EQ(d->hex_box()->text(), "12ab90");
        d->accept();
    });
    QTest::mouseDClick(pal, Qt::LeftButton, Qt::NoModifier, pal->cell_rect(0).center());
    EXPECT_EQ(f.prompt.messages.back(), "Maximum value:255");
    EXPECT_EQ(e.palette.colour(1), korvex::editor::rgb(0x12, 0xAB, 0x90));
    // Ctrl+Z takes the palette change back, a second one brings it again.
    ed->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(ed));
    QTest::keyClick(ed, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(e.palette.colour(1), first);
    QTest::keyClick(ed, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(e.palette.colour(1), korvex::editor::rgb(0x12, 0xAB, 0x90));
    // Cancel in the dialog changes nothing.
    on_dialog<korvex::gui::ColourDialog>([](korvex::gui::ColourDialog* d) {
        d->set_colour(0);
        d->reject();
    });
    QTest::mouseDClick(pal, Qt::LeftButton, Qt::NoModifier, pal->cell_rect(0).center());
    EXPECT_EQ(e.palette.colour(1), korvex::editor::rgb(0x12, 0xAB, 0x90));

    // The picker takes the colour under the pointer for the button pressed.
    CanvasWidget* c = ed->canvas();
    QTest::mouseClick(ed->tool_button(korvex::editor::t_picker), Qt::LeftButton);
    const int entry = e.pixels.at(0, 0) + 1;
    e.curcol2 = 0;
    QTest::mouseClick(c, Qt::RightButton, Qt::NoModifier, at(c, 0, 0));
    EXPECT_EQ(e.curcol2, e.palette.first_of(e.palette.colour(entry)));

    // Add 1 Color, then a transparent margin all round from the canvas dialog.
    const int w0 = e.width, h0 = e.height;
    if (e.palette.first_transparent(e.transparentcolour) == 0) {
        QPushButton* add = nullptr;
        for (QPushButton* b : ed->findChildren<QPushButton*>())
            if (b->text() == "Add 1 Color") add = b;
        ASSERT_NE(add, nullptr);
        QTest::mouseClick(add, Qt::LeftButton);
        e.palette.set(e.ncols(), e.transparentcolour);
    }
    auto* canvas_button = ed->findChild<QPushButton*>("add_canvas");
    ASSERT_NE(canvas_button, nullptr);
    on_dialog<korvex::gui::CanvasDialog>([](korvex::gui::CanvasDialog* d) {
        d->margin_box()->setValue(1);
        QTest::mouseClick(d->findChild<QPushButton*>("M"), Qt::LeftButton);
    });
    QTest::mouseClick(canvas_button, Qt::LeftButton);
    EXPECT_EQ(e.width, w0 + 2);
    EXPECT_EQ(e.height, h0 + 2);
    EXPECT_EQ(e.palette.colour(e.pixels.at(0, 0) + 1), e.transparentcolour);

    // The marker switch keeps the transparent entry transparent.
    ed->magenta_tick()->setChecked(false);
    EXPECT_EQ(e.transparentcolour, korvex::editor::k_transparent_grey);
    EXPECT_EQ(e.palette.colour(e.pixels.at(0, 0) + 1), korvex::editor::k_transparent_grey);
    EXPECT_FALSE(f.w->settings().magenta_transparency);

    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(f.w->icon_editor(), nullptr);
    const std::string after = f.element_text(2, row);
    EXPECT_NE(after.find("c #12AB90\""), std::string::npos) << after;
    EXPECT_NE(after.find(" c none\""), std::string::npos) << after;
    EXPECT_NE(after.find("\"" + std::to_string(w0 + 2) + " " + std::to_string(h0 + 2) + " "), std::string::npos) << after;
    EXPECT_EQ(after.find("F0F0F0"), std::string::npos) << after;
}

TEST(EditorWindow, TheChooserFeedsLabelColoursAndHidesAColourTakenTwice) {
    EditorFixture f;
    ASSERT_TRUE(f.w->open_file(k_samples + "sample.typ"));
    // A double click on an active line opens its text: Edit Icon opens the editor.
    f.w->show_class(3);
    QApplication::processEvents();
    f.w->show_row(f.w->store().ln_n);
    f.w->action("Edit Icon")->trigger();
    EditorWindow* ed = f.w->icon_editor();
    ASSERT_NE(ed, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(ed));
    korvex::editor::EditorSession& e = ed->session();
    ASSERT_EQ(e.curclass, 3);
    const int32_t row = e.row;
    using korvex::editor::rgb;

    // A label colour comes from the dialog until a chooser cell is picked.
    int dialogs = 0;
    ed->labels()->set_colour_picker([&](uint32_t) {
        ++dialogs;
        return int64_t{rgb(0, 0, 255)};
    });
    ed->labels()->extended_tick()->setChecked(true);
    ed->labels()->colours_tick()->setChecked(true);
    QTest::mouseClick(ed->labels()->colour_button(false), Qt::LeftButton);
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(e.labels.daylabelcolour, rgb(0, 0, 255));
    auto* chooser = ed->findChild<korvex::gui::PaletteWidget*>("chooser");
    ASSERT_NE(chooser, nullptr);
    const std::vector<uint32_t> p256 = korvex::editor::palette_256();
    QTest::mouseClick(chooser, Qt::LeftButton, Qt::NoModifier, chooser->cell_rect(3).center());
    QTest::mouseClick(ed->labels()->colour_button(true), Qt::LeftButton);
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(e.labels.nightlabelcolour, p256[3]);

    // Two colours that both come nearest to white: the second keeps its
    // own, and white is no longer offered.
    e.palette.set(1, rgb(250, 250, 250));
    e.palette.set(2, rgb(251, 251, 251));
    ed->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(ed));
    QTest::keyClick(ed, Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(e.palette.colour(1), rgb(255, 255, 255));
    EXPECT_EQ(e.palette.colour(2), rgb(251, 251, 251));
    const auto white = std::find(p256.begin(), p256.end(), rgb(255, 255, 255)) - p256.begin();
    EXPECT_TRUE(chooser->hidden(static_cast<int>(white)));
    EXPECT_EQ(chooser->cell_at(chooser->cell_rect(static_cast<int>(white)).center()), -1);

    // The active line's "Apply Border" tick asks before the colour goes out.
    auto* tick = ed->findChild<QCheckBox*>("apply_border");
    ASSERT_NE(tick, nullptr);
    tick->setChecked(true);
    QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_FALSE(f.prompt.questions.empty());
    EXPECT_EQ(f.prompt.questions.back(), "Apply Border Color to ALL Hiking?");
    EXPECT_EQ(f.w->icon_editor(), nullptr);
    const std::string after = f.element_text(3, row);
    EXPECT_NE(after.find("DaycustomColor:#0000FF"), std::string::npos) << after;
    EXPECT_NE(after.find("NightcustomColor:#" + korvex::editor::hex6(p256[3])), std::string::npos) << after;
}

}  // namespace
