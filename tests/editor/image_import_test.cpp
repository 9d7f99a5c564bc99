// Pictures into and out of the icon editor on small images with exact
// pixels: import of a file, paste of the clipboard's picture over the bitmap
// or into a selection, copy and cut, the size rules, and their refusals,
// which leave the bitmap as it was.
#include <gtest/gtest.h>

#include <filesystem>

#include "editor/canvas.h"
#include "editor/image_import.h"
#include "editor/image_raster.h"
#include "editor/point_size.h"
#include "platform/files.h"

namespace korvex::editor {
namespace {

constexpr uint32_t W = 0xFFFFFF, K = 0x000000, M = k_transparent_magenta;
// Image pixels, 0xAARRGGBB.
constexpr uint32_t red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF, clear = 0x00000000;

platform::Image image(int w, int h, std::vector<uint32_t> argb) { return {w, h, std::move(argb)}; }
platform::Image filled(int w, int h, uint32_t argb) { return {w, h, std::vector<uint32_t>(static_cast<size_t>(w * h), argb)}; }

// A palette point of white, black and transparent.
EditorSession point(int w, int h) {
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = {W, K, M};
    resize_picture(e, w, h);
    e.pixels.set(0, 0, 1);
    painticon(e);
    start_history(e);
    e.width_box = w;
    e.height_box = h;
    e.curcol = 1;
    return e;
}

EditorSession polygon() {
    EditorSession e;
    e.curclass = 0;
    e.palette.colours = {K, W};
    resize_picture(e, 32, 32);
    painticon(e);
    start_history(e);
    e.curcol = 1;
    return e;
}

struct TempDir {
    std::filesystem::path dir;
    TempDir() {
        dir = std::filesystem::temp_directory_path() / ("korvex_import_" + std::to_string(::getpid()) + "_" +
                                                        ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(dir);
    }
    ~TempDir() { std::filesystem::remove_all(dir); }
    std::string file(const std::string& name) const { return (dir / name).string(); }
};

TEST(ImageRaster, StretchAveragesDownRepeatsUpAndFitsProportions) {
    // 4 x 2 to 2 x 1: each target pixel the mean of a 2 x 2 block.
    const platform::Image down = stretch_image(image(4, 2, {0xFF000000, 0xFF0000FE, red, red, 0xFF000000, 0xFF000002, red, red}), 2, 1);
    EXPECT_EQ(down.argb, (std::vector<uint32_t>{0xFF000040, red}));
    // 2 x 1 to 3 x 2: the nearest pixel, no new colour.
    const platform::Image up = stretch_image(image(2, 1, {red, blue}), 3, 2);
    EXPECT_EQ(up.argb, (std::vector<uint32_t>{red, red, blue, red, red, blue}));
    // A transparent pixel does not darken its neighbour; it halves the alpha.
    EXPECT_EQ(stretch_image(image(2, 1, {red, clear}), 1, 1).argb[0], 0x80FF0000u);
    EXPECT_EQ(stretch_image(image(2, 1, {clear, clear}), 1, 1).argb[0], 0u);

    int w = 16, h = 16;
    fit_proportions(64, 32, w, h);
    EXPECT_EQ(w * 100 + h, 1608);
    w = 10, h = 10;
    fit_proportions(3, 5, w, h);
    EXPECT_EQ(w * 100 + h, 610);
    w = 8, h = 8;
    fit_proportions(1, 1000, w, h);
    EXPECT_EQ(w * 100 + h, 108);  // never below one pixel
}

TEST(ImageImport, APointTakesTheFileAsATrueColourIcon) {
    TempDir tmp;
    platform::BmpImageCodec codec;
    const std::string bmp = tmp.file("pic.bmp");
    ASSERT_TRUE(codec.write_bmp(bmp, image(3, 2, {red, green, blue, 0xFF010203, red, 0xFFFFFFFF})));
    platform::ScriptedPrompt ui;
    platform::ScriptedFileDialog dialogs;
    EditorSession e = point(2, 2);
    const EditorSession before = point(2, 2);
    ToolEngine tools(e, ui);
    std::string pastedfile;

    // Refused: nothing changes, and the choice is still remembered.
    dialogs.script(bmp);
    ui.script(platform::Answer::no);
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_EQ(ui.questions.back(), "Convert to RGB.\r\nThis action can not be undone.\r\nContinue?");
    EXPECT_EQ(dialogs.calls.back().filters,
              "All Image Files (*.png;*.gif;*.bmp;*.jpg;*.jpeg;*.ico;*.wmf;)|PNG (*.png) |JPG (*.jpg)|JPEG (*.jpeg)|GIF (*.gif)| Bitmap files (*.bmp)|XPM (*.xpm)");
    EXPECT_FALSE(e.truecolour);
    EXPECT_EQ(e.pixels, before.pixels);
    EXPECT_EQ(e.surface, before.surface);
    EXPECT_EQ(pastedfile, bmp);

    dialogs.script(bmp);
    ASSERT_TRUE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_EQ(dialogs.calls.back().start, bmp);  // the dialog opens at the last file
    EXPECT_TRUE(e.truecolour);
    EXPECT_EQ(e.width * 10 + e.height, 32);  // a larger picture gives the point its size
    EXPECT_EQ(e.width_box * 10 + e.height_box, 32);
    EXPECT_EQ(e.surface.pixels(), (std::vector<uint32_t>{rgb(255, 0, 0), rgb(0, 255, 0), rgb(0, 0, 255), rgb(1, 2, 3), rgb(255, 0, 0), W}));
    EXPECT_TRUE(e.eddirty);
    EXPECT_TRUE(e.changes2 & ch_imported);
    EXPECT_EQ(e.undo.level(), 0);
    // The size undo goes back to the picture of 2 x 2 and forward again.
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(e.width, 2);
    EXPECT_EQ(e.surface, before.surface);
    ASSERT_TRUE(size_undo_step(e, 1));
    EXPECT_EQ(e.surface.at(0, 1), rgb(1, 2, 3));

    // A cancelled dialog and a vanished file end quietly; a PNG that is no PNG says so.
    const size_t said = ui.messages.size();
    dialogs.script("");
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    dialogs.script(tmp.file("gone.bmp"));
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_EQ(ui.messages.size(), said);
    const std::string png = tmp.file("fake.png");
    ASSERT_TRUE(platform::write_file_atomic(png, "not a picture"));
    dialogs.script(png);
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_EQ(ui.messages.back(), "Failed to load the file. May not be valid PNG format or pre-Vista operating system.");
    EXPECT_EQ(e.width, 3);
}

TEST(ImageImport, SizeRulesOfPointsAndFixedClasses) {
    platform::ScriptedPrompt ui;
    // A point takes a larger picture's size up to 128 x 128, not beyond.
    EditorSession e = point(4, 2);
    EXPECT_TRUE(pasteinto_p4(e, ui, filled(200, 10, red)));
    EXPECT_EQ(e.width * 1000 + e.height, 4002);
    EXPECT_TRUE(pasteinto_p4(e, ui, filled(129, 128, red)));
    EXPECT_EQ(e.width * 1000 + e.height, 4002);
    EXPECT_TRUE(pasteinto_p4(e, ui, filled(128, 128, red)));
    EXPECT_EQ(e.width * 1000 + e.height, 128128);
    EXPECT_TRUE(pasteinto_p4(e, ui, filled(2, 2, red)));  // a smaller one is stretched later
    EXPECT_EQ(e.width, 128);
    // A point without bitmap takes the largest size of the picture's shape.
    procnobitmap(e);
    EXPECT_TRUE(pasteinto_p4(e, ui, filled(256, 128, red)));
    EXPECT_EQ(e.width * 1000 + e.height, 128064);

    // A polygon refuses what does not fit, and stays as it was.
    EditorSession pg = polygon();
    const EditorSession before = pg;
    EXPECT_FALSE(pasteinto_p4(pg, ui, filled(32, 40, red)));
    EXPECT_EQ(ui.messages.back(), "Height of current icon must be at least 40");
    EXPECT_FALSE(pasteinto_p4(pg, ui, filled(33, 32, red)));
    EXPECT_EQ(ui.messages.back(), "Width of current icon too small!");
    EXPECT_EQ(pg.pixels, before.pixels);
    EXPECT_EQ(pg.width * 100 + pg.height, 3232);
    EXPECT_TRUE(pasteinto_p4(pg, ui, filled(32, 32, red)));
}

TEST(ImageImport, AlphaLiesOverTheBackgroundAndMagentaIsTransparency) {
    EditorSession e = point(4, 4);
    e.truecolour = true;
    PasteOptions keep{true};
    // 4 x 2 into 4 x 4 keeping proportions: the lower half is background.
    pasteloadedpic(e, image(4, 2, {red, clear, 0x80FF0000, 0xFFFF11FF, red, red, red, red}), keep);
    const uint32_t r = rgb(255, 0, 0);
    EXPECT_EQ(e.surface.pixels(), (std::vector<uint32_t>{r, M, rgb(255, 8, 127), M, r, r, r, r, M, M, M, M, M, M, M, M}));
    // Stretched out of shape without.
    pasteloadedpic(e, image(4, 2, {red, red, red, red, blue, blue, blue, blue}));
    EXPECT_EQ(e.surface.at(0, 1), r);
    EXPECT_EQ(e.surface.at(0, 2), rgb(0, 0, 255));
}

TEST(ImageImport, APaletteIconTakesThePicturesColoursThroughTheReduction) {
    TempDir tmp;
    platform::BmpImageCodec codec;
    platform::ScriptedPrompt ui;
    platform::ScriptedFileDialog dialogs;
    // 32 x 32: the left half black, the right half white, one row red-ish.
    platform::Image pic = filled(32, 32, 0xFFFFFFFF);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 16; ++x) pic.argb[static_cast<size_t>(y * 32 + x)] = 0xFF000000;
    ASSERT_TRUE(codec.write_bmp(tmp.file("half.bmp"), pic));

    // A polygon without bitmap takes one first, then two colours, no question of RGB.
    EditorSession pg = polygon();
    pg.solid = true;
    resize_picture(pg, 0, 0);
    ToolEngine tools(pg, ui);
    std::string last;
    dialogs.script(tmp.file("half.bmp"));
    ASSERT_TRUE(import_file(pg, tools, ui, dialogs, codec, last));
    EXPECT_EQ(ui.questions, (std::vector<std::string>{"Convert to Bitmap?"}));
    EXPECT_FALSE(pg.solid);
    EXPECT_FALSE(pg.truecolour);
    EXPECT_EQ(pg.ncols(), 2);
    EXPECT_EQ(pg.palette.colour(pg.pixels.at(0, 0) + 1), K);
    EXPECT_EQ(pg.palette.colour(pg.pixels.at(15, 31) + 1), K);
    EXPECT_EQ(pg.palette.colour(pg.pixels.at(16, 0) + 1), W);
    EXPECT_EQ(pg.palette.colour(pg.pixels.at(31, 31) + 1), W);
    EXPECT_EQ(pg.undo.level(), 0);
    EXPECT_EQ(pg.curcol, -1);  // the next stroke picks its colour first

    // A palette point pasted over as a whole takes the picture's size and colours.
    platform::MemoryClipboard clip;
    clip.set_image(image(3, 3, {red, green, blue, blue, red, green, green, blue, red}));
    EditorSession e = point(2, 2);
    ToolEngine pt(e, ui);
    ASSERT_TRUE(pastebut(e, pt, ui, clip, false));
    EXPECT_FALSE(e.truecolour);
    EXPECT_EQ(e.width * 10 + e.height, 33);
    EXPECT_EQ(e.ncols(), 3);
    EXPECT_EQ(e.surface.at(0, 0), rgb(255, 0, 0));
    EXPECT_EQ(e.surface.at(1, 2), rgb(0, 0, 255));
    EXPECT_EQ(e.palette.colour(e.pixels.at(2, 1) + 1), rgb(0, 255, 0));
    ASSERT_FALSE(ui.statuses.empty());
    EXPECT_EQ(ui.statuses.back().rfind("Reducing colours from ", 0), 0u);
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(e.width * 10 + e.height, 22);
}

TEST(ImagePaste, IntoASelectionThePaletteMustHoldTheColours) {
    platform::ScriptedPrompt ui;
    platform::MemoryClipboard clip;
    EditorSession e = point(4, 2);
    ToolEngine tools(e, ui);
    EXPECT_FALSE(pastebut(e, tools, ui, clip, true));
    EXPECT_EQ(ui.messages.back(), "Clipboard contains no picture.");
    clip.set_image(filled(1, 1, 0xFF123456));
    EXPECT_FALSE(pastebut(e, tools, ui, clip, true));
    EXPECT_EQ(ui.messages.back(), "Select part of your bitmap");

    // A palette of 254 has no room for one new colour.
    for (uint32_t c = 1; e.ncols() < k_max_colours; ++c) e.palette.colours.push_back(c * 0x10101);
    const Palette full = e.palette;
    ASSERT_TRUE(tools.set_tool(t_select));
    tools.press(1, 0, false);
    tools.release(2, 1);
    EXPECT_FALSE(pastebut(e, tools, ui, clip, true));
    EXPECT_EQ(ui.messages.back(), "Too many colours\r\nSelect whole area instead.");
    EXPECT_EQ(e.palette, full);
    EXPECT_TRUE(tools.layer().empty());

    // One entry less: the colour comes in as the last entry and floats until stamped.
    e.palette.colours.pop_back();
    ASSERT_TRUE(pastebut(e, tools, ui, clip, false));
    EXPECT_EQ(e.ncols(), k_max_colours);
    EXPECT_EQ(e.palette.colour(k_max_colours), rgb(0x12, 0x34, 0x56));
    EXPECT_EQ(tools.layer().picture.width() * 10 + tools.layer().picture.height(), 22);
    tools.commit_layer();
    EXPECT_EQ(e.pixels.at(1, 0), k_max_colours - 1);
    EXPECT_EQ(e.pixels.at(2, 1), k_max_colours - 1);
    EXPECT_EQ(e.pixels.at(0, 0), 1);
    EXPECT_EQ(e.pixels.at(3, 1), 0);

    // A polygon keeps its two entries: near colours map to them, more new colours than entries refuse.
    EditorSession pg = polygon();
    ToolEngine pt(pg, ui);
    pt.select_all();
    clip.set_image(image(3, 1, {0xFF101010, 0xFFF0F0F0, 0xFF101010}));
    ASSERT_TRUE(pastebut(pg, pt, ui, clip, true));
    pt.commit_layer();
    EXPECT_EQ(pg.pixels.at(0, 0), 0);
    EXPECT_EQ(pg.pixels.at(15, 5), 1);
    EXPECT_EQ(pg.pixels.at(31, 31), 0);
    clip.set_image(image(3, 1, {0xFF101010, 0xFFF0F0F0, 0xFF808080}));
    pt.select_all();
    EXPECT_FALSE(pastebut(pg, pt, ui, clip, true));
    EXPECT_EQ(ui.messages.back(), "Too many colours\r\nSelect whole area instead.");
}

TEST(ImagePaste, CopyAndCutLiftTheSelectionOntoTheClipboard) {
    platform::ScriptedPrompt ui;
    platform::MemoryClipboard clip;
    EditorSession e = point(3, 2);
    e.pixels.set(1, 0, 2);  // transparent
    painticon(e);
    ToolEngine tools(e, ui);
    EXPECT_FALSE(copyp4(tools, e, ui, &clip, false));
    EXPECT_EQ(ui.messages.back(), "Please CTRL/SHIFT or CTRL A select.");
    EXPECT_FALSE(clip.image());

    ASSERT_TRUE(tools.set_tool(t_select));
    tools.press(0, 0, false);
    tools.release(1, 0);
    ASSERT_TRUE(copyp4(tools, e, ui, &clip, true));
    // Transparent pixels leave as transparent ones.
    EXPECT_EQ(clip.image()->argb, (std::vector<uint32_t>{0xFF000000, 0x00FF11FF}));
    // The cut leaves the transparent entry behind.
    tools.escape();
    EXPECT_EQ(e.pixels.at(0, 0), 2);
    EXPECT_EQ(e.pixels.at(1, 0), 2);

    // Pasted back elsewhere: what was transparent shows what lies beneath.
    tools.press(1, 1, false);
    tools.release(2, 1);
    ASSERT_TRUE(pastebut(e, tools, ui, clip, true));
    tools.commit_layer();
    EXPECT_EQ(e.pixels.at(1, 1), 1);
    EXPECT_EQ(e.pixels.at(2, 1), 0);

    // Without a transparent entry the cut leaves the current colour.
    EditorSession opaque = point(2, 1);
    opaque.palette.colours.pop_back();
    opaque.curcol = 1;
    ToolEngine ot(opaque, ui);
    ot.select_all();
    ASSERT_TRUE(copyp4(ot, opaque, ui, nullptr, true));
    EXPECT_EQ(opaque.pixels.at(0, 0), 0);
}

}  // namespace
}  // namespace korvex::editor
