// The convolution filters on small pictures with exact channel values, the
// refusals and warnings of Filter, its re-import and its Ctrl+Z; the turns
// and mirrors, and the canvas blocked by an open adjustment panel.
#include <gtest/gtest.h>

#include "editor/canvas.h"
#include "editor/image_filters.h"
#include "editor/tools.h"
#include "editor/transforms.h"
#include "image_fixtures.h"

namespace korvex::editor {
namespace {

using platform::Answer;
using platform::ScriptedPrompt;

using fixtures::M;

uint32_t grey(uint32_t v) { return rgb(v, v, v); }

Raster greys(int w, int h, const std::vector<uint32_t>& levels) {
    Raster r(w, h);
    for (size_t i = 0; i < levels.size(); ++i) r.pixels()[i] = levels[i] == M ? M : grey(levels[i]);
    return r;
}

std::vector<uint32_t> filtered(const Raster& in, int code) {
    const std::optional<Raster> out = filter_picture(in, code, M);
    return out ? out->pixels() : std::vector<uint32_t>{};
}

EditorSession checkered_point(int w, int h, std::vector<uint32_t> palette) {
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = std::move(palette);
    resize_picture(e, w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) e.pixels.set(x, y, static_cast<uint8_t>((x + y) % 2));
    painticon(e);
    start_history(e);
    e.curcol = 1;
    return e;
}

TEST(FilterPicture, ConvolutionsWithTheirWeightsBiasInversionAndClamp) {
    // Blur: 12 x centre plus the ring, over 20, plus 8; a missing neighbour is 0.
    const Raster bump = greys(3, 3, {100, 100, 100, 100, 200, 100, 100, 100, 100});
    const std::vector<uint32_t> blur = filtered(bump, f_blur);
    EXPECT_EQ(blur[4], grey(168));
    EXPECT_EQ(blur[0], grey(88));
    EXPECT_EQ(blur[1], grey(98));
    // 1250 / 20 = 62.5 goes to the even 62; 43 is below 50 and goes black.
    EXPECT_EQ(filtered(greys(2, 1, {100, 50}), f_blur), (std::vector<uint32_t>{grey(70), 0}));
    // Dark grey everywhere ends black.
    EXPECT_EQ(filtered(greys(1, 1, {40}), f_blur), std::vector<uint32_t>{0});
    // 840 / 20 + 8 is exactly 50 and stays; 816 / 20 + 8 = 48.8 gives 49 and goes black.
    EXPECT_EQ(filtered(greys(1, 1, {70}), f_blur), std::vector<uint32_t>{grey(50)});
    EXPECT_EQ(filtered(greys(1, 1, {68}), f_blur), std::vector<uint32_t>{0});

    // Hard Outline: flat ground gives 32, inverted 223; the corner sees
    // missing neighbours, goes below 0, inverts past 255 and is cut to white.
    const std::vector<uint32_t> hard = filtered(greys(3, 3, {100, 100, 100, 100, 100, 100, 100, 100, 100}), f_hard_outline);
    EXPECT_EQ(hard[4], grey(223));
    EXPECT_EQ(hard[0], grey(255));
    // Soft Outline: left and right columns weigh -1 -2 -1 and 1 2 1.
    const std::vector<uint32_t> soft = filtered(greys(3, 3, {0, 0, 90, 0, 0, 90, 0, 0, 90}), f_soft_outline);
    EXPECT_EQ(soft[4], grey(0));     // 255 - (360 + 64) is below 0
    EXPECT_EQ(soft[3], grey(191));   // its ring holds no 90: 255 - 64
    // Sharpen Gentle: 5 x centre minus the four sides, plus 127; each channel apart.
    Raster colour(1, 1);
    colour.set(0, 0, rgb(100, 10, 60));
    EXPECT_EQ(filtered(colour, f_sharpen_gentle), std::vector<uint32_t>{rgb(255, 177, 255)});
}

TEST(FilterPicture, DifferenceFiltersGiveTheGreyOfTheDiagonalStep) {
    Raster r(2, 2);
    r.pixels() = {grey(100), rgb(200, 100, 0), grey(0), grey(200)};
    const std::vector<uint32_t> emboss = filtered(r, f_emboss);
    EXPECT_EQ(emboss[0], grey(227));  // |100 - 200 - 127|
    EXPECT_EQ(emboss[1], grey(76));   // (73 + 27 + 127) / 3 against the missing neighbour
    EXPECT_EQ(emboss[3], grey(73));
    const std::vector<uint32_t> extrude = filtered(r, f_extrude);
    EXPECT_EQ(extrude[0], grey(100));
    EXPECT_EQ(extrude[1], grey(100));  // (200 + 100 + 0) / 3
    EXPECT_EQ(extrude[2], grey(0));
}

TEST(FilterPicture, TransparentCellsAreNeitherReadNorWrittenAndSharpenHardStops) {
    EXPECT_EQ(filtered(greys(2, 1, {100, M}), f_blur), (std::vector<uint32_t>{grey(68), M}));
    EXPECT_FALSE(filter_picture(greys(2, 1, {100, 50}), f_sharpen_hard, M).has_value());
    // Nothing opaque: nothing is divided.
    EXPECT_EQ(filtered(greys(1, 1, {M}), f_sharpen_hard), std::vector<uint32_t>{M});
    EXPECT_FALSE(filter_picture(greys(1, 1, {1}), 2, M).has_value());  // no filter of that code
}

TEST(Filter, WarnsBelowSixteenOnBothSidesAndFiltersAllTheSame) {
    for (auto [w, h, warns] : {std::tuple{15, 15, true}, {16, 15, false}, {15, 16, false}}) {
        EditorSession e = checkered_point(w, h, {grey(100), grey(200)});
        ScriptedPrompt ui;
        EXPECT_TRUE(Filter(e, f_blur, ui));
        EXPECT_EQ(ui.messages, warns ? std::vector<std::string>{"Filters work only on width and height > 16."}
                                     : std::vector<std::string>{})
            << w << "x" << h;
    }
    EditorSession e = checkered_point(4, 4, {grey(100), grey(200)});
    ScriptedPrompt ui;
    EXPECT_TRUE(Filter(e, f_emboss, ui));  // the difference filters never warn
    EXPECT_TRUE(ui.messages.empty());
}

TEST(Filter, RefusalsChangeNothing) {
    // True colour: warned about the size first, then refused.
    EditorSession t = checkered_point(4, 4, {});
    t.truecolour = true;
    t.surface.fill(grey(90));
    const Raster before = t.surface;
    ScriptedPrompt ui;
    EXPECT_FALSE(Filter(t, f_blur, ui));
    EXPECT_EQ(ui.messages, (std::vector<std::string>{"Filters work only on width and height > 16.",
                                                     "Convert to 256 Colours first."}));
    EXPECT_EQ(t.surface, before);

    // A transparent entry with an undo history asks first; no keeps everything.
    EditorSession e = checkered_point(20, 20, {grey(100), M});
    e.pixels.set(0, 0, 0);
    painticon(e);
    translate(e);
    ASSERT_EQ(e.undo.level(), 1);
    const EditorSession kept = e;
    ScriptedPrompt no(Answer::no);
    EXPECT_FALSE(Filter(e, f_blur, no));
    EXPECT_EQ(no.questions, std::vector<std::string>{"All previous undos will be cleared.\r\nContinue anyway?"});
    EXPECT_EQ(e.pixels, kept.pixels);
    EXPECT_EQ(e.palette, kept.palette);
    EXPECT_EQ(e.undo.level(), 1);
    ScriptedPrompt yes;
    EXPECT_TRUE(Filter(e, f_blur, yes));
    EXPECT_EQ(e.undo.level(), 2);
    EXPECT_EQ(e.surface.at(1, 0), M);  // transparent pixels stay

    // Sharpen Hard changes nothing, not even the Ctrl+Z state.
    EditorSession s = checkered_point(20, 20, {grey(100), grey(200)});
    const EditorSession start = s;
    ScriptedPrompt quiet;
    EXPECT_FALSE(Filter(s, f_sharpen_hard, quiet));
    EXPECT_EQ(s.pixels, start.pixels);
    EXPECT_EQ(s.palette, start.palette);
    EXPECT_EQ(s.surface, start.surface);
    EXPECT_FALSE(s.lastpalok);
    EXPECT_FALSE(s.eddirty);
}

TEST(Filter, ResultIsANewPictureThatCtrlZTakesBack) {
    // A chequered 2-colour point blurs into more colours.
    EditorSession e = checkered_point(20, 20, {grey(100), grey(200)});
    const PixelGrid pixels = e.pixels;
    const Palette palette = e.palette;
    ScriptedPrompt ui;
    ASSERT_TRUE(Filter(e, f_blur, ui));
    EXPECT_GT(e.ncols(), 2);
    EXPECT_TRUE(e.changes2 & ch_filter);
    EXPECT_TRUE(e.eddirty);
    EXPECT_EQ(e.undo.level(), 1);
    EXPECT_EQ(e.surface.at(5, 5), grey(128));  // (12 x 100 + 4 x 100 + 4 x 200) / 20 + 8
    EXPECT_EQ(e.surface.at(5, 6), grey(188));  // (12 x 200 + 4 x 200 + 4 x 100) / 20 + 8
    for (uint8_t v : e.pixels.values()) ASSERT_LT(v, e.ncols());
    const PixelGrid after = e.pixels;
    // Ctrl+Z: palette and picture as they were; redo: the filter's result.
    EXPECT_FALSE(e.lastpalok);
    ASSERT_TRUE(undo_step(e));
    EXPECT_EQ(e.pixels, pixels);
    EXPECT_EQ(e.palette, palette);
    EXPECT_EQ(e.surface.at(5, 5), grey(100));
    ASSERT_TRUE(redo_step(e));
    EXPECT_EQ(e.pixels, after);
    EXPECT_EQ(e.surface.at(5, 5), grey(128));

    // A polygon keeps two colours.
    EditorSession p = checkered_point(8, 8, {grey(60), grey(220)});
    p.curclass = 0;
    ASSERT_TRUE(Filter(p, f_extrude, ui));
    EXPECT_EQ(p.ncols(), 2);
}

TEST(Transforms, QuarterTurnAndMirrorsMovePixelsExactly) {
    ScriptedPrompt ui;
    EditorSession e = checkered_point(3, 2, {grey(0), grey(1), grey(2), grey(3), grey(4), grey(5)});
    for (int i = 0; i < 6; ++i) e.pixels.values()[static_cast<size_t>(i)] = static_cast<uint8_t>(i);  // rows 0 1 2 / 3 4 5
    painticon(e);
    start_history(e);
    e.width_box = 3;
    e.height_box = 2;
    ASSERT_TRUE(flip(e, 0, false, ui));
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{2, 1, 0, 5, 4, 3}));
    EXPECT_EQ(e.undo.level(), 1);
    ASSERT_TRUE(flip(e, 1, false, ui));
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{5, 4, 3, 2, 1, 0}));
    // Per-pixel opacity levels travel with their pixels.
    EditorSession levels = e;
    levels.opacity = PixelGrid(3, 2);
    levels.opacity.values() = {1, 2, 3, 4, 5, 6};
    ASSERT_TRUE(flip(levels, 0, false, ui));
    EXPECT_EQ(levels.pixels.values(), (std::vector<uint8_t>{3, 4, 5, 0, 1, 2}));
    EXPECT_EQ(levels.opacity.values(), (std::vector<uint8_t>{3, 2, 1, 6, 5, 4}));
    ASSERT_TRUE(undo_step(e));
    ASSERT_TRUE(undo_step(e));
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{0, 1, 2, 3, 4, 5}));
    // Clockwise: the left column becomes the top row.
    ASSERT_TRUE(rotate(e, false, ui));
    EXPECT_EQ(e.width, 2);
    EXPECT_EQ(e.height, 3);
    EXPECT_EQ(e.width_box, 2);
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{3, 0, 4, 1, 5, 2}));
    EXPECT_EQ(e.surface.at(0, 0), grey(3));
    EXPECT_TRUE(e.changes1 & ch_dimensions);
    EXPECT_TRUE(ui.messages.empty());

    // Refusals leave the picture.
    const PixelGrid turned = e.pixels;
    EXPECT_FALSE(rotate(e, true, ui));
    EXPECT_FALSE(flip(e, 0, true, ui));
    EXPECT_EQ(ui.messages, (std::vector<std::string>{"Cannot apply to selections.", "Invert selection first."}));
    EXPECT_EQ(e.pixels, turned);
    EditorSession line = checkered_point(32, 4, {grey(0), grey(9)});
    line.curclass = 1;
    ScriptedPrompt lu;
    ToolEngine tools(line, lu);
    EXPECT_FALSE(tools.set_tool(t_rotate));
    EXPECT_EQ(lu.messages, std::vector<std::string>{"Rotation not permitted."});
    // A whole-bitmap flip of a line is allowed.
    EXPECT_TRUE(flip(line, 0, false, lu));
}

TEST(Tools, AnOpenAdjustmentPanelBlocksTheCanvas) {
    EditorSession e = checkered_point(4, 4, {grey(0), grey(255)});
    ScriptedPrompt ui;
    ToolEngine tools(e, ui);
    tools.panel_open = true;
    const Raster before = e.surface;
    tools.press(1, 1, false);
    tools.release(1, 1);
    EXPECT_EQ(ui.messages, std::vector<std::string>{"Click Apply or Cancel."});
    EXPECT_EQ(e.surface, before);
    EXPECT_EQ(e.undo.level(), 0);
    // The turn tool works at once and the tool stays the pencil.
    tools.panel_open = false;
    EXPECT_TRUE(tools.set_tool(t_flip_h));
    EXPECT_EQ(tools.tool(), t_pencil);
}

}  // namespace
}  // namespace korvex::editor
