// Pictures into the icon editor on small images with exact pixels: import
// of a file, paste of the clipboard's picture over the bitmap or into a
// selection, copy and cut, the size rules; refusals leave the bitmap as it
// was.
#include "editor/canvas.h"
#include "editor/image_import.h"
#include "editor/image_raster.h"
#include "editor/point_size.h"
#include "image_fixtures.h"
#include "platform/files.h"

namespace korvex::editor {
namespace {

using namespace fixtures;

TEST(ImageRaster, StretchAveragesDownRepeatsUpAndFitsProportions) {
    // 4 x 2 to 2 x 1: the mean of each 2 x 2 block.
    const platform::Image down = stretch_image({4, 2, {0xFF000000, 0xFF0000FE, red, red, 0xFF000000, 0xFF000002, red, red}}, 2, 1);
    EXPECT_EQ(down.argb, (std::vector<uint32_t>{0xFF000040, red}));
    // 2 x 1 to 3 x 2: the nearest pixel, no new colour.
    EXPECT_EQ(stretch_image({2, 1, {red, blue}}, 3, 2).argb, (std::vector<uint32_t>{red, red, blue, red, red, blue}));
    // A transparent pixel halves the alpha without darkening the colour.
    EXPECT_EQ(stretch_image({2, 1, {red, clear}}, 1, 1).argb[0], 0x80FF0000u);
    int w = 16, h = 16;
    fit_proportions(64, 32, w, h);
    EXPECT_EQ(w * 100 + h, 1608);
    w = 8, h = 8;
    fit_proportions(1, 1000, w, h);
    EXPECT_EQ(w * 100 + h, 108);  // never below one pixel
}

TEST(ImageImport, APointTakesTheFileAsATrueColourIcon) {
    TempDir tmp;
    platform::BmpImageCodec codec;
    const std::string bmp = tmp.file("pic.bmp");
    ASSERT_TRUE(codec.write_bmp(bmp, {3, 2, {red, green, blue, 0xFF010203, red, 0xFFFFFFFF}}));
    platform::ScriptedPrompt ui;
    platform::ScriptedFileDialog dialogs;
    EditorSession e = point(2, 2);
    const EditorSession before = e;
    ToolEngine tools(e, ui);
    std::string pastedfile;

    dialogs.script(bmp);
    ui.script(platform::Answer::no);
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_EQ(ui.questions.back(), "Convert to RGB.\r\nThis action can not be undone.\r\nContinue?");
    EXPECT_EQ(dialogs.calls.back().filters,
              "All Image Files (*.png;*.gif;*.bmp;*.jpg;*.jpeg;*.ico;*.wmf;)|PNG (*.png) |JPG (*.jpg)|JPEG (*.jpeg)|GIF (*.gif)| Bitmap files (*.bmp)|XPM (*.xpm)");
    EXPECT_FALSE(e.truecolour);
    EXPECT_EQ(e.surface, before.surface);

    dialogs.script(bmp);
    ASSERT_TRUE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_EQ(dialogs.calls.back().start, bmp);  // the dialog opens at the last file
    EXPECT_TRUE(e.truecolour);
    EXPECT_EQ(e.width_box * 10 + e.height_box, 32);  // a larger picture gives the point its size
    EXPECT_EQ(e.surface.pixels(), (std::vector<uint32_t>{rgb(255, 0, 0), rgb(0, 255, 0), rgb(0, 0, 255), rgb(1, 2, 3), rgb(255, 0, 0), W}));
    // The import is a step of the history: Ctrl+Z gives back the palette
    // picture of the size before, Ctrl+Y the import.
    const EditorSession imported = e;
    ASSERT_TRUE(undo_step(e));
    EXPECT_FALSE(e.truecolour);
    EXPECT_EQ(e.width * 10 + e.height, 22);
    EXPECT_EQ(e.pixels, before.pixels);
    EXPECT_EQ(e.palette, before.palette);
    EXPECT_EQ(e.surface, before.surface);
    ASSERT_TRUE(redo_step(e));
    EXPECT_TRUE(e.truecolour);
    EXPECT_EQ(e.surface, imported.surface);
    ASSERT_TRUE(size_undo_step(e, 0));
    EXPECT_EQ(e.surface, before.surface);

    // A cancelled dialog and a vanished file end quietly; a PNG that is no PNG says so.
    dialogs.script("");
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    dialogs.script(tmp.file("gone.bmp"));
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_TRUE(ui.messages.empty());
    ASSERT_TRUE(platform::write_file_atomic(tmp.file("fake.png"), "not a picture"));
    dialogs.script(tmp.file("fake.png"));
    EXPECT_FALSE(import_file(e, tools, ui, dialogs, codec, pastedfile));
    EXPECT_EQ(ui.messages.back(), "Failed to load the file. May not be valid PNG format or pre-Vista operating system.");
    EXPECT_EQ(e.width, 2);
}

TEST(ImageImport, SizeRulesOfPointsAndFixedClasses) {
    platform::ScriptedPrompt ui;
    // A point takes a larger picture's size up to 128 x 128, not beyond.
    EditorSession e = point(4, 2);
    for (auto [w, h, size] : std::vector<std::tuple<int, int, int>>{{200, 10, 4002}, {129, 128, 4002}, {128, 128, 128128}, {2, 2, 128128}}) {
        EXPECT_TRUE(pasteinto_p4(e, ui, filled(w, h, red)));
        EXPECT_EQ(e.width * 1000 + e.height, size) << w << " x " << h;
    }
    // Without bitmap: the largest size of the picture's shape.
    procnobitmap(e);
    EXPECT_TRUE(pasteinto_p4(e, ui, filled(256, 128, red)));
    EXPECT_EQ(e.width * 1000 + e.height, 128064);

    EditorSession pg = point(32, 32, {K, W});
    pg.curclass = 0;
    EXPECT_FALSE(pasteinto_p4(pg, ui, filled(32, 40, red)));
    EXPECT_EQ(ui.messages.back(), "Height of current icon must be at least 40");
    EXPECT_FALSE(pasteinto_p4(pg, ui, filled(33, 32, red)));
    EXPECT_EQ(ui.messages.back(), "Width of current icon too small!");
    EXPECT_EQ(pg.width * 100 + pg.height, 3232);
    EXPECT_TRUE(pasteinto_p4(pg, ui, filled(32, 32, red)));
}

TEST(ImageImport, AlphaLiesOverTheBackgroundAndMagentaIsTransparency) {
    EditorSession e = point(4, 4);
    e.truecolour = true;
    // 4 x 2 into 4 x 4 keeping proportions: the lower half is background.
    pasteloadedpic(e, {4, 2, {red, clear, 0x80FF0000, 0xFFFF11FF, red, red, red, red}}, {true});
    const uint32_t r = rgb(255, 0, 0);
    EXPECT_EQ(e.surface.pixels(), (std::vector<uint32_t>{r, M, rgb(255, 8, 127), M, r, r, r, r, M, M, M, M, M, M, M, M}));
}

TEST(ImageImport, APaletteIconTakesThePicturesColoursThroughTheReduction) {
    TempDir tmp;
    platform::BmpImageCodec codec;
    platform::ScriptedPrompt ui;
    platform::ScriptedFileDialog dialogs;
    platform::Image halves = filled(32, 32, 0xFFFFFFFF);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 16; ++x) halves.argb[static_cast<size_t>(y * 32 + x)] = 0xFF000000;
    ASSERT_TRUE(codec.write_bmp(tmp.file("half.bmp"), halves));

    // A polygon without bitmap takes one first, then two colours; no question of RGB.
    EditorSession pg;
    pg.solid = true;
    pg.palette.colours = {K};
    ToolEngine tools(pg, ui);
    std::string last;
    dialogs.script(tmp.file("half.bmp"));
    ASSERT_TRUE(import_file(pg, tools, ui, dialogs, codec, last));
    EXPECT_EQ(ui.questions, (std::vector<std::string>{"Convert to Bitmap?"}));
    EXPECT_EQ(pg.ncols(), 2);
    for (auto [x, y, c] : std::vector<std::tuple<int, int, uint32_t>>{{0, 0, K}, {15, 31, K}, {16, 0, W}, {31, 31, W}})
        EXPECT_EQ(pg.palette.colour(pg.pixels.at(x, y) + 1), c) << x << "," << y;
    EXPECT_EQ(pg.curcol, -1);  // the next stroke picks its colour first

    // A palette point pasted over as a whole takes the picture's size and colours.
    platform::MemoryClipboard clip;
    clip.set_image({3, 3, {red, green, blue, blue, red, green, green, blue, red}});
    EditorSession e = point(2, 2);
    const EditorSession before = e;
    ToolEngine pt(e, ui);
    ASSERT_TRUE(pastebut(e, pt, ui, clip, false));
    EXPECT_EQ(e.ncols(), 3);
    EXPECT_EQ(e.surface.pixels()[5], rgb(0, 255, 0));
    EXPECT_EQ(e.palette.colour(e.pixels.at(1, 2) + 1), rgb(0, 0, 255));
    EXPECT_EQ(ui.statuses.back().rfind("Reducing colours from ", 0), 0u);
    // Ctrl+Z takes the paste back with its palette and size.
    const int level = e.undo.level();
    ASSERT_TRUE(undo_step(e));
    EXPECT_EQ(e.undo.level(), level - 1);
    EXPECT_EQ(e.width * 10 + e.height, 22);
    EXPECT_EQ(e.palette, before.palette);
    EXPECT_EQ(e.pixels, before.pixels);
    EXPECT_EQ(e.surface, before.surface);
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
    // One entry less: the colour becomes the last entry and floats until stamped.
    e.palette.colours.pop_back();
    ASSERT_TRUE(pastebut(e, tools, ui, clip, false));
    EXPECT_EQ(e.palette.colour(k_max_colours), rgb(0x12, 0x34, 0x56));
    tools.commit_layer();
    EXPECT_EQ(e.pixels.at(1, 0) + e.pixels.at(2, 1), 2 * (k_max_colours - 1));
    EXPECT_EQ(e.pixels.at(0, 0) * 10 + e.pixels.at(3, 1), 10);

    // A polygon keeps its two entries: new colours map to the nearest, more than two refuse.
    EditorSession pg = point(32, 32, {K, W});
    pg.curclass = 0;
    ToolEngine pt(pg, ui);
    pt.select_all();
    clip.set_image({3, 1, {0xFF101010, 0xFFF0F0F0, 0xFF101010}});
    ASSERT_TRUE(pastebut(pg, pt, ui, clip, true));
    pt.commit_layer();
    EXPECT_EQ(pg.pixels.at(0, 0) * 100 + pg.pixels.at(15, 5) * 10 + pg.pixels.at(31, 31), 10);
    clip.set_image({3, 1, {0xFF101010, 0xFFF0F0F0, 0xFF808080}});
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

    ASSERT_TRUE(tools.set_tool(t_select));
    tools.press(0, 0, false);
    tools.release(1, 0);
    ASSERT_TRUE(copyp4(tools, e, ui, &clip, true));
    // Transparent pixels leave as transparent ones; the cut leaves the transparent entry.
    EXPECT_EQ(clip.image()->argb, (std::vector<uint32_t>{0xFF000000, 0x00FF11FF}));
    tools.escape();
    EXPECT_EQ(rows_of(e), "220\n010\n");
    // Pasted back elsewhere: what was transparent shows what lies beneath.
    tools.press(0, 1, false);
    tools.release(1, 1);
    ASSERT_TRUE(pastebut(e, tools, ui, clip, true));
    tools.commit_layer();
    EXPECT_EQ(rows_of(e), "220\n110\n");

    // Without a transparent entry the cut leaves the current colour.
    EditorSession opaque = point(2, 1, {W, K});
    ToolEngine ot(opaque, ui);
    ot.select_all();
    ASSERT_TRUE(copyp4(ot, opaque, ui, nullptr, true));
    EXPECT_EQ(rows_of(opaque), "00\n");
}

}  // namespace
}  // namespace korvex::editor
