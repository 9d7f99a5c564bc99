// Changes of a bitmap's size and the icon out of the editor as a file: a
// point resized (stretched, padded, to no bitmap) with its size undo, its
// night bitmap asked about first, the crop, a line's height, the icon saved
// as a BMP, and an imported picture through Apply into a TYP file and back.
#include "editor/bitmap_save.h"
#include "editor/editor_apply.h"
#include "editor/element_open.h"
#include "editor/image_import.h"
#include "editor/image_raster.h"
#include "editor/point_pictures.h"
#include "editor/point_size.h"
#include "image_fixtures.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "text/load_driver.h"
#include "typ/decoder.h"
#include "typ/encoder.h"

namespace korvex::editor {
namespace {

using namespace fixtures;

TEST(PointSize, StretchPadRefusalsAndTheSizeUndo) {
    platform::ScriptedPrompt ui;
    EditorSession e = point(2, 2, {W, K});
    EXPECT_FALSE(resize_point(e, ui, 129, 4, true));
    EXPECT_EQ(ui.messages.back(), "maximum length=128");
    EXPECT_FALSE(resize_point(e, ui, 0, 4, true));
    EXPECT_EQ(ui.messages.back(), "Please enter valid bitmap sizes (1 - 128)");
    ASSERT_TRUE(resize_point(e, ui, 2, 2, true));
    EXPECT_FALSE(e.eddirty);  // nothing was refused or changed so far

    // Stretched, each pixel repeated; an odd size takes the nearest.
    ASSERT_TRUE(resize_point(e, ui, 4, 3, true));
    EXPECT_EQ(rows_of(e), "1100\n1100\n0011\n");
    EXPECT_EQ(e.width_box * 10 + e.height_box, 43);
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(rows_of(e), "10\n01\n");
    EXPECT_EQ(e.undo.level(), 1);
    ASSERT_TRUE(size_undo_step(e, 1));
    EXPECT_EQ(rows_of(e), "1100\n1100\n0011\n");

    // Padded: a palette without transparency gains the entry; an entry no
    // pixel uses any more goes; the trim orders the colours as met from the
    // last row up.
    EditorSession p = point(2, 2, {W, K, 0x0000FF});
    ASSERT_TRUE(resize_point(p, ui, 3, 1, false));
    EXPECT_EQ(p.palette.colours, (std::vector<uint32_t>{K, W, M}));
    EXPECT_EQ(rows_of(p), "012\n");
    EXPECT_EQ(p.surface.pixels(), (std::vector<uint32_t>{K, W, M}));

    // A full palette (254 colours, none transparent) has no room for the
    // entry: the margin takes the first colour and the count stays.
    std::vector<uint32_t> full;
    for (int i = 0; i < k_max_colours; ++i) full.push_back(rgb(static_cast<uint32_t>(i), 0, 1));
    EditorSession big = point(16, 16, full);
    std::vector<uint8_t>& every = big.pixels.values();
    for (size_t i = 0; i < every.size(); ++i) every[i] = static_cast<uint8_t>(i % static_cast<size_t>(k_max_colours));
    painticon(big);
    ASSERT_TRUE(resize_point(big, ui, 17, 16, false));
    EXPECT_EQ(big.ncols(), k_max_colours);
    EXPECT_EQ(big.palette.first_transparent(M), 0);
}

TEST(PointSize, NoBitmapAndTheNightBitmapAskFirst) {
    platform::ScriptedPrompt ui;
    EditorSession e = point(2, 2);
    ui.script(platform::Answer::no);
    EXPECT_FALSE(resize_point(e, ui, 0, 0, true));
    EXPECT_EQ(ui.questions.back(), "This may cause problems on Mapsource & some devices.\r\nBitmap will be removed.\r\nContinue?");
    EXPECT_EQ(e.width, 2);
    ASSERT_TRUE(resize_point(e, ui, 0, 0, true));
    EXPECT_EQ(e.width * 10 + e.height + e.ncols() * 100, 300);  // the palette stays

    EditorSession n = point(2, 2);
    n.has_night_bitmap = true;
    n.bmpmode = 1;
    ui.script(platform::Answer::no);
    EXPECT_FALSE(resize_point(n, ui, 3, 3, true));
    EXPECT_EQ(ui.questions.back(), "Points with night bmp cannot be resized.\r\nContinue?");
    EXPECT_EQ(n.width, 2);
    ASSERT_TRUE(resize_point(n, ui, 3, 3, true));
    EXPECT_EQ(n.has_night_bitmap * 10 + n.bmpmode, 0);
    EXPECT_EQ(n.width, 3);
    // A night on the canvas gives way to the day picture, which is resized.
    EditorSession on = point(2, 2);
    on.has_night_bitmap = true;
    on.bmpmode = 1;
    on.other.palette = on.palette;
    on.other.pixels = PixelGrid(2, 2, 1);
    cmd19(on);
    ASSERT_EQ(on.bmpmode, 2);
    ASSERT_TRUE(resize_point(on, ui, 4, 4, true));
    EXPECT_EQ(rows_of(on), "1100\n1100\n0011\n0011\n");
    EXPECT_TRUE(on.other.empty());
    EXPECT_EQ(on.bmpmode, 0);
    // Opacity levels are kept a pixel: the size waits for the tick to go.
    EditorSession levels = point(2, 2);
    levels.alpha = true;
    EXPECT_FALSE(resize_point(levels, ui, 3, 3, true));
    EXPECT_EQ(ui.messages.back(), "Untick Opacity first.");
    EXPECT_TRUE(resize_point(levels, ui, 2, 2, true));
    // A night bitmap not yet confirmed asks only "Continue?".
    EditorSession pending = point(2, 2);
    pending.newbmp = 1;
    ASSERT_TRUE(resize_point(pending, ui, 1, 1, true));
    EXPECT_EQ(ui.questions.back(), "Continue?");
    // A true-colour icon with a night bitmap is refused.
    EditorSession tc = point(2, 2);
    tc.truecolour = true;
    tc.newbmp = 1;
    EXPECT_FALSE(resize_point(tc, ui, 3, 3, true));
    EXPECT_EQ(ui.messages.back(), "Convert to 256 Colours first.");
    EXPECT_EQ(tc.width, 2);
}

TEST(Crop, ToTheFrameWithItsRefusals) {
    platform::ScriptedPrompt ui;
    EditorSession e = point(3, 2);
    ToolEngine t(e, ui);
    ASSERT_TRUE(t.set_tool(t_crop_select));
    t.press(1, 1, false);
    t.release(1, 1);
    e.alpha = true;
    t.double_click(1, 1);
    EXPECT_EQ(ui.messages.back(), "Untick Opacity first.");
    e.alpha = false;
    // A night picture of its own takes the same frame.
    e.has_night_bitmap = true;
    e.bmpmode = 1;
    e.other.palette = e.palette;
    e.other.pixels = PixelGrid(3, 2);
    e.other.pixels.set(1, 1, 1);
    e.other.pixels.set(2, 1, 1);
    ui.script(platform::Answer::no);
    t.double_click(1, 1);
    EXPECT_EQ(ui.questions.back(), "Night bmp will be cropped as well: Continue?");
    EXPECT_EQ(e.width, 3);
    // One cell is a picture of its own.
    t.double_click(1, 1);
    EXPECT_EQ(rows_of(e), "1\n");
    EXPECT_EQ(e.other.pixels, PixelGrid(1, 1, 1));
    EXPECT_EQ(t.tool(), t_crop_select);
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(rows_of(e), "100\n010\n");
    EXPECT_EQ(e.other.pixels.width() * 10 + e.other.pixels.height(), 32);
    EXPECT_EQ(e.other.pixels.at(2, 1), 1);
    // The whole picture as the frame changes nothing.
    EditorSession f = point(3, 2);
    ASSERT_TRUE(crop(f, ui, Rect{0, 0, 3, 2}, false));
    EXPECT_FALSE(f.eddirty);
}

TEST(LineBitmap, TheHeightChangesTheWidthStays32) {
    platform::ScriptedPrompt ui;
    EditorSession ln;
    ln.curclass = 1;
    ln.solid = true;
    ln.lwidth = 2;
    ln.border = 1;
    ASSERT_TRUE(chkbmp(ln, ui));
    EXPECT_EQ(ui.questions.back(), "Convert to Bitmap?");
    EXPECT_EQ(ln.width * 100 + ln.height, 3204);
    ln.pixels.set(31, 1, 1);
    ASSERT_TRUE(changebmp(ln, ui, 6));
    EXPECT_EQ(ln.width * 100 + ln.height, 3206);
    EXPECT_EQ(ln.pixels.at(31, 1) * 10 + ln.pixels.at(0, 5), 10);  // new rows take the first entry
    for (int h : {0, 33}) {
        EXPECT_FALSE(changebmp(ln, ui, h));
        EXPECT_EQ(ui.messages.back(), "Please enter a valid size between 1 & 32.");
    }
    ASSERT_TRUE(changebmp(ln, ui, 1));
    EXPECT_EQ(ln.width * 100 + ln.height, 3201);
}

TEST(SaveBitmap, TrueSizeMagentaTransparencyAndAnExistingFile) {
    TempDir tmp;
    platform::ScriptedPrompt ui;
    platform::ScriptedFileDialog dialogs;
    platform::BmpImageCodec codec;
    EditorSession e = point(3, 2);
    e.pixels.set(2, 1, 2);
    painticon(e);
    dialogs.script(tmp.file("icon"));
    ASSERT_TRUE(savepoi(e, ui, dialogs, codec));
    EXPECT_EQ(ui.messages.back(), "Caution. Transparency will show as magenta.");
    EXPECT_EQ(dialogs.calls.back().filters, "Bitmap files (*.bmp)");
    EXPECT_EQ(codec.read(tmp.file("icon.bmp")).image.argb,
              (std::vector<uint32_t>{0xFF000000, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFF000000, 0xFFFF11FF}));

    // An existing file stays unless the user agrees; a failed write names the file.
    const std::string existing = tmp.file("old.BMP");
    ASSERT_TRUE(platform::write_file_atomic(existing, "keep"));
    dialogs.script(existing);
    ui.script(platform::Answer::no);
    EXPECT_FALSE(savepoi(e, ui, dialogs, codec));
    EXPECT_EQ(ui.questions.back(), "File exists.\r\nReplace this file?");
    EXPECT_EQ(platform::read_file(existing).value_or(""), "keep");
    const std::string nowhere = tmp.file("missing/icon.bmp");
    dialogs.script(nowhere);
    EXPECT_FALSE(savepoi(e, ui, dialogs, codec));
    EXPECT_EQ(ui.messages.back().rfind(nowhere + "\r\n", 0), 0u) << ui.messages.back();
}

struct OnePointProject {
    model::Store s;
    platform::ScriptedPrompt ui;
    OnePointProject() {
        model::newproject(s);
        EXPECT_TRUE(text::load_txt(s, ui, "t.txt",
                                   "[_id]\nFID=7\nCodePage=1252\n[end]\n"
                                   "[_point]\nType=0x2f\nSubType=0x01\nDayXpm=\"4 2 2 1\" Colormode=0\n\"! c #FFFFFF\"\n"
                                   "\"# c #000000\"\n\"!!##\"\n\"##!!\"\n[end]\n",
                                   false, true));
    }
    EditorSession open() { return open_element(s, OpenRequest{2, 0, {}, k_transparent_magenta}); }
};

TEST(PointSize, ApplyResizesThroughTheOpenFrame) {
    OnePointProject p;
    EditorSession e = p.open();
    const std::string row = p.s.pt_bmp[0].substr(0, 4);
    e.width_box = 8;
    e.height_box = 4;
    EXPECT_FALSE(apply(p.s, e, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Please click resize.");
    ApplyForm form;
    form.resize_open = true;
    ASSERT_TRUE(apply(p.s, e, p.ui, form).committed);
    EXPECT_NE(p.s.pt_xpm[0].find("\"8 4 "), std::string::npos) << p.s.pt_xpm[0];
    const std::string doubled = {row[0], row[0], row[1], row[1], row[2], row[2], row[3], row[3]};
    EXPECT_EQ(p.s.pt_bmp[0].substr(0, 20), doubled + "\r\n" + doubled + "\r\n");
}

TEST(ImportRoundTrip, ABmpFileThroughApplyIntoTypAndBack) {
    TempDir tmp;
    OnePointProject p;
    platform::BmpImageCodec codec;
    const uint32_t colours[] = {red, green, blue, 0xFF123456, 0xFFFFFFFF};
    platform::Image pic{5, 3, {}};
    for (int i = 0; i < 15; ++i) pic.argb.push_back(colours[i * 7 % 5]);
    ASSERT_TRUE(codec.write_bmp(tmp.file("in.bmp"), pic));
    EditorSession e = p.open();
    ToolEngine tools(e, p.ui);
    platform::ScriptedFileDialog dialogs;
    dialogs.script(tmp.file("in.bmp"));
    std::string last;
    ASSERT_TRUE(import_file(e, tools, p.ui, dialogs, codec, last));
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);

    platform::FixedClock clock({2024, 5, 17, 13, 45, 30});
    ASSERT_TRUE(typ::save_typ(p.s, p.ui, clock, false));
    const std::string bytes = p.s.curf;
    model::newproject(p.s);
    typ::open_typ_bytes(p.s, p.ui, bytes, "/test/file.typ");
    const EditorSession back = p.open();
    ASSERT_EQ(back.width * 10 + back.height, 53);
    for (int i = 0; i < 15; ++i) {
        const int x = i % 5, y = i / 5;
        const uint32_t c = back.truecolour ? back.surface.at(x, y) : back.palette.colour(back.pixels.at(x, y) + 1);
        EXPECT_EQ(c, colour_of_argb(pic.argb[static_cast<size_t>(i)])) << x << "," << y;
    }
}

}  // namespace
}  // namespace korvex::editor
