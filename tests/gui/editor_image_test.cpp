// The editor's Image menu driven as a user drives it: a picture file of each
// format chosen in the import dialog, applied, saved as TYP and read back;
// the clipboard's picture pasted with Ctrl+V; the resize frame; the icon
// saved as a bitmap through Qt's writer.
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "editor/element_open.h"
#include "editor/image_raster.h"
#include "gui/editor_image.h"
#include "gui/editor_window.h"
#include "gui/main_window.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "support/harness.h"

namespace {

using korvex::gui::EditorWindow;
using korvex::gui::MainWindow;
using korvex::platform::Answer;

const char* k_image_project =
    "[_id]\r\nFID=7\r\nCodePage=1252\r\n[end]\r\n"
    "[_point]\r\nType=0x2f\r\nSubType=0x01\r\nDayXpm=\"4 2 2 1\" Colormode=0\r\n\"! c #FFFFFF\"\r\n\"# c #000000\"\r\n"
    "\"!!##\"\r\n\"##!!\"\r\n[end]\r\n";

struct ImageFixture : korvex::testing::WindowFixture {
    ImageFixture() : WindowFixture(Answer::yes) {
        show(services(), 900, 600);
        EXPECT_TRUE(korvex::platform::write_file_atomic(file("p.txt"), k_image_project));
        EXPECT_TRUE(w->open_file(file("p.txt")));
        w->show_class(2);
    }
    std::string file(const std::string& name) const { return path(name); }
    EditorWindow* open() {
        // A closed editor goes when the event loop comes round.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(w->open_icon_editor({0}));
        EditorWindow* ed = w->icon_editor();
        if (ed) {
            EXPECT_TRUE(QTest::qWaitForWindowExposed(ed));
        }
        return ed;
    }
    std::string text() { return korvex::text::create_code(w->store(), 1, 2, false); }
    // The point's colour at (x, y) after the store went through a TYP file.
    std::vector<uint32_t> colours_through_typ(int& width, int& height) {
        korvex::model::Store& s = w->store();
        EXPECT_TRUE(korvex::typ::save_typ(s, prompt, clock, false));
        korvex::model::Store back;
        korvex::model::newproject(back);
        korvex::typ::open_typ_bytes(back, prompt, s.curf, "/t/p.typ");
        korvex::editor::OpenRequest r;
        r.curclass = 2;
        r.row = 0;
        const korvex::editor::EditorSession e = korvex::editor::open_element(back, r);
        width = e.width;
        height = e.height;
        std::vector<uint32_t> out;
        for (int y = 0; y < e.height; ++y)
            for (int x = 0; x < e.width; ++x)
                out.push_back(e.truecolour ? e.surface.at(x, y) : e.palette.colour(e.pixels.at(x, y) + 1));
        return out;
    }
};

// 32 x 16: a red and a blue half, each with a few pixels of other colours
// in its corner; the halves fill whole blocks of a JPEG.
QImage test_picture() {
    QImage img(32, 16, QImage::Format_RGB32);
    img.fill(QColor(200, 30, 30));
    for (int y = 0; y < 16; ++y)
        for (int x = 16; x < 32; ++x) img.setPixel(x, y, qRgb(20, 40, 220));
    img.setPixel(0, 0, qRgb(0, 0, 0));
    img.setPixel(1, 0, qRgb(255, 255, 255));
    img.setPixel(31, 15, qRgb(10, 200, 10));
    return img;
}

class ImportFormat : public ::testing::TestWithParam<const char*> {};

TEST_P(ImportFormat, AFileThroughImportApplyAndTypKeepsItsPixels) {
    const std::string format = GetParam();
    ImageFixture f;
    const QImage pic = test_picture();
    const std::string path = f.file("pic." + format);
    // Qt writes no GIF: the file of the test data holds the same picture.
    if (format == "gif")
        ASSERT_TRUE(QFile::copy(QString::fromStdString(korvex::testing::source_dir()) + "/tests/data/images/picture.gif", QString::fromStdString(path)));
    else
        ASSERT_TRUE(pic.save(QString::fromStdString(path), nullptr, 100));
    EditorWindow* ed = f.open();
    ASSERT_NE(ed, nullptr);
    f.dialogs.script(path);
    ed->image()->action("import")->trigger();
    EXPECT_EQ(f.prompt.questions.back(), "Convert to RGB.\r\nThis action can not be undone.\r\nContinue?");
    EXPECT_TRUE(ed->session().truecolour);
    ASSERT_TRUE(ed->apply_clicked());
    EXPECT_NE(f.text().find("\"32 16 "), std::string::npos) << f.text();

    int w = 0, h = 0;
    const std::vector<uint32_t> got = f.colours_through_typ(w, h);
    ASSERT_EQ(w * 100 + h, 3216);
    // Lossless formats come back exactly; a JPEG close to the original away from its edges.
    const bool lossy = format == "jpg";
    int worst = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            if (lossy && (x < 4 || x > 27 || (x > 11 && x < 20))) continue;
            const uint32_t want = korvex::editor::colour_of_argb(pic.pixel(x, y));
            const uint32_t c = got[static_cast<size_t>(y * w + x)];
            for (int shift : {0, 8, 16})
                worst = std::max(worst, std::abs(static_cast<int>((c >> shift) & 0xFF) - static_cast<int>((want >> shift) & 0xFF)));
        }
    EXPECT_LE(worst, lossy ? 12 : 0) << format;
}

INSTANTIATE_TEST_SUITE_P(Formats, ImportFormat, ::testing::Values("png", "bmp", "jpg", "gif", "xpm"));

TEST(EditorImage, CtrlVPastesTheClipboardsPictureIntoTheSelection) {
    ImageFixture f;
    EditorWindow* ed = f.open();
    ASSERT_NE(ed, nullptr);
    QTest::keyClick(ed, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(f.prompt.messages.back(), "Clipboard contains no picture.");
    // Black and white only: the palette holds them.
    f.clipboard.set_image({2, 1, {0xFF000000, 0xFFFFFFFF}});
    QTest::keyClick(ed, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(ed, Qt::Key_V, Qt::ControlModifier);
    EXPECT_FALSE(ed->tools().layer().empty());
    ASSERT_TRUE(ed->apply_clicked());
    // The 2 x 1 picture stretched over 4 x 2: the left half black, the right white.
    const std::string t = f.text();
    EXPECT_NE(t.find("\"%%$$\"\r\n\"%%$$\""), std::string::npos) << t;
}

TEST(EditorImage, TheResizeFrameAndSaveAsBitmap) {
    ImageFixture f;
    EditorWindow* ed = f.open();
    ASSERT_NE(ed, nullptr);
    auto* w = ed->findChild<QSpinBox*>("width_box");
    auto* h = ed->findChild<QSpinBox*>("height_box");
    ASSERT_TRUE(w && h);
    w->setValue(8);
    h->setValue(4);
    EXPECT_FALSE(ed->apply_clicked());
    EXPECT_EQ(f.prompt.messages.back(), "Please click resize.");
    ed->findChild<QPushButton*>("resize")->click();
    EXPECT_TRUE(ed->image()->resize_frame()->isVisible());

    // The icon as a 24-bit BMP through Qt's writer.
    const std::string bmp = f.file("icon.bmp");
    f.dialogs.script(f.file("icon"));
    ed->image()->action("save_bitmap")->trigger();
    const std::string bytes = korvex::platform::read_file(bmp).value_or("");
    ASSERT_GT(bytes.size(), 54u);
    EXPECT_EQ(bytes[28], 24);
    const QImage saved(QString::fromStdString(bmp));
    EXPECT_EQ(saved.size(), QSize(4, 2));
    EXPECT_EQ(saved.pixel(0, 0) & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(saved.pixel(3, 0) & 0xFFFFFF, 0u);

    ASSERT_TRUE(ed->apply_clicked());
    EXPECT_NE(f.text().find("DayXpm=\"8 4 "), std::string::npos) << f.text();
}

}  // namespace
