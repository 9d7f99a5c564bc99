// Changes of a bitmap's size and the way out of the editor as a file: a
// point resized (stretched, padded, to no bitmap), its night bitmap asked
// about first, the crop, a line's height, the size undo, the icon saved as
// a BMP, and an imported picture through Apply into a TYP file and back.
#include <gtest/gtest.h>

#include <filesystem>

#include "editor/bitmap_save.h"
#include "editor/canvas.h"
#include "editor/editor_apply.h"
#include "editor/element_open.h"
#include "editor/image_import.h"
#include "editor/image_raster.h"
#include "editor/point_size.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "text/load_driver.h"
#include "typ/decoder.h"
#include "typ/encoder.h"

namespace korvex::editor {
namespace {

constexpr uint32_t W = 0xFFFFFF, K = 0x000000, M = k_transparent_magenta;

// Rows of palette indices as digits.
std::string rows_of(const EditorSession& e) {
    std::string out;
    for (int y = 0; y < e.height; ++y) {
        for (int x = 0; x < e.width; ++x) out += static_cast<char>('0' + e.pixels.at(x, y));
        out += '\n';
    }
    return out;
}

// A point of white and black, "10" over "01" in a 2 x 2 corner of w x h.
EditorSession point(int w, int h, std::vector<uint32_t> palette = {W, K}) {
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = std::move(palette);
    resize_picture(e, w, h);
    e.pixels.set(0, 0, 1);
    e.pixels.set(1, 1, 1);
    painticon(e);
    start_history(e);
    e.width_box = w;
    e.height_box = h;
    return e;
}

struct TempDir {
    std::filesystem::path dir;
    TempDir() {
        dir = std::filesystem::temp_directory_path() / ("korvex_size_" + std::to_string(::getpid()) + "_" +
                                                        ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(dir);
    }
    ~TempDir() { std::filesystem::remove_all(dir); }
    std::string file(const std::string& name) const { return (dir / name).string(); }
};

TEST(PointSize, StretchPadAndTheirRefusals) {
    platform::ScriptedPrompt ui;
    EditorSession e = point(2, 2);
    const EditorSession before = e;
    EXPECT_FALSE(resize_point(e, ui, 129, 4, true));
    EXPECT_EQ(ui.messages.back(), "maximum length=128");
    EXPECT_FALSE(resize_point(e, ui, 0, 4, true));
    EXPECT_EQ(ui.messages.back(), "Please enter valid bitmap sizes (1 - 128)");
    EXPECT_EQ(e.pixels, before.pixels);
    EXPECT_FALSE(e.eddirty);

    // Stretched, each pixel repeated; an odd size takes the nearest.
    ASSERT_TRUE(resize_point(e, ui, 4, 3, true));
    EXPECT_EQ(rows_of(e), "1100\n1100\n0011\n");
    EXPECT_EQ(e.width_box * 10 + e.height_box, 43);
    EXPECT_TRUE(e.changes1 & ch_dimensions);
    EXPECT_EQ(e.undo.level(), 0);
    // The size undo: one step back, one forward.
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(rows_of(e), "10\n01\n");
    EXPECT_EQ(e.undo.level(), 1);
    ASSERT_TRUE(size_undo_step(e, 1));
    EXPECT_EQ(rows_of(e), "1100\n1100\n0011\n");

    // Padded: a palette without transparency gains the entry; shrinking cuts.
    EditorSession p = point(2, 2);
    ASSERT_TRUE(resize_point(p, ui, 3, 1, false));
    EXPECT_EQ(p.palette.colours, (std::vector<uint32_t>{W, K, M}));
    EXPECT_EQ(rows_of(p), "102\n");
    EXPECT_EQ(p.surface.pixels(), (std::vector<uint32_t>{K, W, M}));

    // A palette entry no pixel uses any more goes.
    EditorSession q = point(2, 2, {W, K, 0x0000FF});
    q.pixels.set(1, 1, 2);
    painticon(q);
    ASSERT_TRUE(resize_point(q, ui, 1, 1, false));
    EXPECT_EQ(q.palette.colours, (std::vector<uint32_t>{K}));
    EXPECT_EQ(rows_of(q), "0\n");

    // An unchanged size changes nothing.
    EditorSession same = point(2, 2);
    ASSERT_TRUE(resize_point(same, ui, 2, 2, true));
    EXPECT_FALSE(same.eddirty);
}

TEST(PointSize, NoBitmapAndTheNightBitmapAskFirst) {
    platform::ScriptedPrompt ui;
    EditorSession e = point(2, 2);
    ui.script(platform::Answer::no);
    EXPECT_FALSE(resize_point(e, ui, 0, 0, true));
    EXPECT_EQ(ui.questions.back(), "This may cause problems on Mapsource & some devices.\r\nBitmap will be removed.\r\nContinue?");
    EXPECT_EQ(e.width, 2);
    ASSERT_TRUE(resize_point(e, ui, 0, 0, true));
    EXPECT_EQ(e.width * 10 + e.height, 0);
    EXPECT_EQ(e.ncols(), 2);  // the palette stays
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(rows_of(e), "10\n01\n");

    // A night bitmap: the resize goes only with it.
    EditorSession n = point(2, 2);
    n.has_night_bitmap = true;
    n.bmpmode = 1;
    n.nightpal.colours = {K, W};
    ui.script(platform::Answer::no);
    EXPECT_FALSE(resize_point(n, ui, 3, 3, true));
    EXPECT_EQ(ui.questions.back(), "Points with night bmp cannot be resized.\r\nContinue?");
    EXPECT_TRUE(n.has_night_bitmap);
    EXPECT_EQ(n.width, 2);
    ASSERT_TRUE(resize_point(n, ui, 3, 3, true));
    EXPECT_FALSE(n.has_night_bitmap);
    EXPECT_EQ(n.bmpmode, 0);
    EXPECT_EQ(n.width, 3);
    // A night bitmap not yet confirmed asks only "Continue?".
    EditorSession pending = point(2, 2);
    pending.newbmp = 1;
    ASSERT_TRUE(resize_point(pending, ui, 1, 1, true));
    EXPECT_EQ(ui.questions.back(), "Continue?");
    EXPECT_EQ(pending.newbmp, 0);
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
    t.opacity_mode = true;
    t.double_click(1, 1);
    EXPECT_EQ(ui.messages.back(), "Untick Opacity first.");
    EXPECT_EQ(e.width, 3);
    t.opacity_mode = false;
    e.has_night_bitmap = true;
    ui.script(platform::Answer::no);
    t.double_click(1, 1);
    EXPECT_EQ(ui.questions.back(), "Night bmp will be cropped as well: Continue?");
    EXPECT_EQ(e.width, 3);
    EXPECT_EQ(t.tool(), t_crop_pending);
    // One cell is a picture of its own.
    t.double_click(1, 1);
    EXPECT_EQ(e.width * 10 + e.height, 11);
    EXPECT_EQ(rows_of(e), "1\n");
    EXPECT_EQ(t.tool(), t_crop_select);
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(rows_of(e), "100\n010\n");

    // The whole picture as the frame changes nothing.
    EditorSession f = point(3, 2);
    ASSERT_TRUE(crop(f, ui, Rect{0, 0, 3, 2}, false));
    EXPECT_FALSE(f.eddirty);
    EXPECT_FALSE(f.sizeundo.slot[0].valid);
}

TEST(LineBitmap, TheHeightChangesTheWidthStays32) {
    platform::ScriptedPrompt ui;
    EditorSession ln;
    ln.curclass = 1;
    ln.solid = true;
    ln.lwidth = 2;
    ln.border = 1;
    ln.palette.colours = {K};
    ASSERT_TRUE(chkbmp(ln, ui));
    EXPECT_EQ(ui.questions.back(), "Convert to Bitmap?");
    EXPECT_EQ(ln.width * 100 + ln.height, 3204);
    ln.pixels.set(31, 1, 1);
    ASSERT_TRUE(changebmp(ln, ui, 6));
    EXPECT_EQ(ln.width * 100 + ln.height, 3206);
    EXPECT_EQ(ln.pixels.at(31, 1), 1);
    EXPECT_EQ(ln.pixels.at(0, 5), 0);  // new rows take the first entry
    ASSERT_TRUE(changebmp(ln, ui, 1));
    EXPECT_EQ(ln.width * 100 + ln.height, 3201);
    for (int h : {0, 33}) {
        EXPECT_FALSE(changebmp(ln, ui, h));
        EXPECT_EQ(ui.messages.back(), "Please enter a valid size between 1 & 32.");
    }
    EXPECT_EQ(ln.width * 100 + ln.height, 3201);
    ASSERT_TRUE(size_undo_step(ln, 0));
    EXPECT_EQ(ln.width * 100 + ln.height, 3206);

    // No to the question: the line stays solid.
    EditorSession solid;
    solid.curclass = 1;
    solid.solid = true;
    solid.lwidth = 3;
    ui.script(platform::Answer::no);
    EXPECT_FALSE(chkbmp(solid, ui));
    EXPECT_TRUE(solid.solid);
}

TEST(SaveBitmap, TrueSizeMagentaTransparencyAndAnExistingFile) {
    TempDir tmp;
    platform::ScriptedPrompt ui;
    platform::ScriptedFileDialog dialogs;
    platform::BmpImageCodec codec;
    EditorSession e = point(3, 2, {W, K, M});
    e.pixels.set(2, 1, 2);
    painticon(e);
    dialogs.script(tmp.file("icon"));
    ASSERT_TRUE(savepoi(e, ui, dialogs, codec));
    EXPECT_EQ(ui.messages.back(), "Caution. Transparency will show as magenta.");
    EXPECT_EQ(dialogs.calls.back().filters, "Bitmap files (*.bmp)");
    const platform::ImageRead r = codec.read(tmp.file("icon.bmp"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.image.argb, (std::vector<uint32_t>{0xFF000000, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFF000000, 0xFFFF11FF}));

    // An existing file stays unless the user agrees.
    const std::string existing = tmp.file("old.BMP");
    ASSERT_TRUE(platform::write_file_atomic(existing, "keep"));
    EditorSession plain = point(1, 1);
    const size_t said = ui.messages.size();
    dialogs.script(existing);
    ui.script(platform::Answer::no);
    EXPECT_FALSE(savepoi(plain, ui, dialogs, codec));
    EXPECT_EQ(ui.questions.back(), "File exists.\r\nReplace this file?");
    EXPECT_EQ(platform::read_file(existing).value_or(""), "keep");
    EXPECT_EQ(ui.messages.size(), said);  // no transparency, no caution
    dialogs.script(existing);
    ASSERT_TRUE(savepoi(plain, ui, dialogs, codec));
    EXPECT_EQ(platform::read_file(existing)->size(), 54u + 4u);  // one pixel, its row padded to 4 bytes

    // A write that fails names the file and leaves nothing behind.
    const std::string nowhere = tmp.file("missing/icon.bmp");
    dialogs.script(nowhere);
    EXPECT_FALSE(savepoi(plain, ui, dialogs, codec));
    EXPECT_EQ(ui.messages.back().rfind(nowhere + "\r\n", 0), 0u) << ui.messages.back();
    EXPECT_FALSE(platform::file_exists(nowhere));
}

const char* k_project =
    "[_id]\nFID=7\nCodePage=1252\n[end]\n"
    "[_point]\nType=0x2f\nSubType=0x01\nDayXpm=\"4 2 2 1\" Colormode=0\n\"! c #FFFFFF\"\n\"# c #000000\"\n\"!!##\"\n\"##!!\"\n[end]\n"
    "[_point]\nType=0x30\nDayXpm=\"2 1 1 1\" Colormode=0\n\"! c #000000\"\n\"!!\"\n[end]\n";

struct Project {
    model::Store s;
    platform::ScriptedPrompt ui;
    Project() {
        model::newproject(s);
        EXPECT_TRUE(text::load_txt(s, ui, "t.txt", k_project, false, true));
    }
    EditorSession open(int32_t row) {
        OpenRequest r;
        r.curclass = 2;
        r.row = row;
        return open_element(s, r);
    }
    // Encoded to TYP bytes and decoded into a fresh store.
    void through_typ() {
        platform::FixedClock clock({2024, 5, 17, 13, 45, 30});
        ASSERT_TRUE(typ::save_typ(s, ui, clock, false));
        const std::string bytes = s.curf;
        model::newproject(s);
        typ::open_typ_bytes(s, ui, bytes, "/test/file.typ");
    }
};

TEST(PointSize, ApplyResizesThroughTheOpenFrame) {
    Project p;
    EditorSession e = p.open(0);
    const std::string row = p.s.pt_bmp[0].substr(0, 4);
    e.width_box = 8;
    e.height_box = 4;
    EXPECT_FALSE(apply(p.s, e, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Please click resize.");
    ApplyForm form;
    form.resize_open = true;
    e.width_box = 200;
    EXPECT_FALSE(apply(p.s, e, p.ui, form).committed);
    EXPECT_EQ(p.ui.messages.back(), "maximum length=128");
    EXPECT_EQ(e.width, 4);
    e.width_box = 8;
    ASSERT_TRUE(apply(p.s, e, p.ui, form).committed);
    EXPECT_NE(p.s.pt_xpm[0].find("\"8 4 "), std::string::npos) << p.s.pt_xpm[0];
    // Each pixel doubled both ways.
    const std::string doubled = {row[0], row[0], row[1], row[1], row[2], row[2], row[3], row[3]};
    EXPECT_EQ(p.s.pt_bmp[0].substr(0, 20), doubled + "\r\n" + doubled + "\r\n");
}

TEST(ImportRoundTrip, ABmpFileThroughApplyIntoTypAndBack) {
    TempDir tmp;
    Project p;
    platform::BmpImageCodec codec;
    const std::vector<uint32_t> colours = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFF123456, 0xFFFFFFFF};
    platform::Image pic{5, 3, {}};
    for (int i = 0; i < 15; ++i) pic.argb.push_back(colours[static_cast<size_t>(i * 7 % 5)]);
    ASSERT_TRUE(codec.write_bmp(tmp.file("in.bmp"), pic));
    EditorSession e = p.open(1);
    ToolEngine tools(e, p.ui);
    platform::ScriptedFileDialog dialogs;
    dialogs.script(tmp.file("in.bmp"));
    std::string last;
    ASSERT_TRUE(import_file(e, tools, p.ui, dialogs, codec, last));
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    p.through_typ();
    ASSERT_EQ(p.s.pt_n, 2);
    const EditorSession back = p.open(1);
    ASSERT_EQ(back.width * 10 + back.height, 53);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) {
            const uint32_t c = back.truecolour ? back.surface.at(x, y) : back.palette.colour(back.pixels.at(x, y) + 1);
            EXPECT_EQ(c, colour_of_argb(pic.argb[static_cast<size_t>(y * 5 + x)])) << x << "," << y;
        }
}

}  // namespace
}  // namespace korvex::editor
