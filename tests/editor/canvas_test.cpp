// The drawing tools, the figures and the undo history on small pictures with
// exact expected pixels.
#include <gtest/gtest.h>

#include "editor/canvas.h"
#include "editor/flood_fill.h"
#include "editor/shapes.h"
#include "editor/tools.h"
#include "editor/undo_history.h"
#include "image_fixtures.h"

namespace korvex::editor {
namespace {

using fixtures::K;
using fixtures::W;
constexpr uint32_t R = 0x0000FF;

// Pixel rows from a picture as characters: '.' entry 1, '#' entry 2, 'r' entry 3.
std::string rows_as_marks(const EditorSession& e) {
    std::string out;
    for (int y = 0; y < e.height; ++y) {
        for (int x = 0; x < e.width; ++x) out += ".#rT"[e.pixels.at(x, y) & 3];
        out += '\n';
    }
    return out;
}

std::string rows_as_marks(const Raster& r) {
    std::string out;
    for (int y = 0; y < r.height(); ++y) {
        for (int x = 0; x < r.width(); ++x) out += r.at(x, y) == K ? '#' : '.';
        out += '\n';
    }
    return out;
}

EditorSession blank_point(int w, int h) {
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = {W, K, R, k_transparent_magenta};
    resize_picture(e, w, h);
    painticon(e);
    start_history(e);
    e.curcol = 2;
    e.curcol2 = 3;
    return e;
}

TEST(Shapes, LinesRectanglesEllipsesHaveExactPixels) {
    Raster r(6, 5, W);
    draw_line(r, 0, 0, 5, 2, K);
    EXPECT_EQ(rows_as_marks(r), "##....\n..##..\n....##\n......\n......\n");

    Raster p(5, 5, W);
    draw_line(p, 2, 2, 2, 2, K, 3);  // a 3-pixel pen around one point
    EXPECT_EQ(rows_as_marks(p), ".....\n.###.\n.###.\n.###.\n.....\n");

    Raster b(5, 4, W);
    draw_rectangle(b, 4, 3, 0, 0, K, false);  // corners in any order
    EXPECT_EQ(rows_as_marks(b), "#####\n#...#\n#...#\n#####\n");
    Raster f(5, 4, W);
    draw_rectangle(f, 1, 1, 3, 2, K, true);
    EXPECT_EQ(rows_as_marks(f), ".....\n.###.\n.###.\n.....\n");

    Raster e(7, 7, W);
    draw_ellipse(e, 0, 0, 6, 6, K, false);
    EXPECT_EQ(rows_as_marks(e), "..###..\n.#...#.\n#.....#\n#.....#\n#.....#\n.#...#.\n..###..\n");
    Raster fe(7, 5, W);
    draw_ellipse(fe, 0, 0, 6, 4, K, true);
    EXPECT_EQ(rows_as_marks(fe), "..###..\n.#####.\n#######\n.#####.\n..###..\n");
    // An even box is symmetric too.
    Raster ev(6, 4, W);
    draw_ellipse(ev, 0, 0, 5, 3, K, false);
    EXPECT_EQ(rows_as_marks(ev), ".####.\n#....#\n#....#\n.####.\n");
    // Past the edge nothing is written and nothing breaks.
    Raster edge(3, 3, W);
    draw_ellipse(edge, -5, -5, 10, 10, K, true);
    draw_line(edge, -100, 1, 100, 1, K, 4);
    EXPECT_EQ(edge.width(), 3);
}

TEST(FloodFill, FillsTheConnectedRegionOfTheStartColourOnly) {
    Raster r(5, 5, W);
    draw_rectangle(r, 1, 1, 3, 3, K, false);
    EXPECT_EQ(flood_fill(r, 2, 2, K), 1);
    EXPECT_EQ(rows_as_marks(r), ".....\n.###.\n.###.\n.###.\n.....\n");
    // Diagonal neighbours do not connect.
    Raster d(3, 3, W);
    d.set(1, 0, K);
    d.set(0, 1, K);
    EXPECT_EQ(flood_fill(d, 0, 0, K), 1);
    EXPECT_EQ(d.at(2, 2), W);
    EXPECT_EQ(flood_fill(d, 0, 0, K), 0);  // already the colour
    EXPECT_EQ(flood_fill(d, 3, 0, K), 0);  // outside
    // A large spiral-free picture fills whole.
    Raster big(256, 256, W);
    EXPECT_EQ(flood_fill(big, 255, 255, K), 256 * 256);
}

TEST(Tools, PencilStrokeJoinsSkippedPixelsAndIsOneUndoLevel) {
    platform::ScriptedPrompt ui;
    EditorSession e = blank_point(6, 3);
    ToolEngine t(e, ui);
    t.press(0, 1, false);
    t.move(5, 1);  // a fast pointer
    t.release(5, 1);
    EXPECT_EQ(rows_as_marks(e), "......\n######\n......\n");
    EXPECT_EQ(e.undo.level(), 1);
    EXPECT_TRUE(e.eddirty);
    // The right button draws with the second colour.
    t.press(2, 0, true);
    t.release(2, 0);
    EXPECT_EQ(rows_as_marks(e), "..r...\n######\n......\n");
    EXPECT_EQ(e.pixeltext, "$$&$$$\r\n%%%%%%\r\n$$$$$$\r\n");
}

TEST(Tools, FillLineRectangleEllipseByDragAndByTwoClicks) {
    platform::ScriptedPrompt ui;
    EditorSession e = blank_point(5, 5);
    ToolEngine t(e, ui);
    ASSERT_TRUE(t.set_tool(t_rectangle));
    t.press(0, 0, false);
    t.move(4, 4);
    // The preview shows, the data does not change yet.
    EXPECT_EQ(t.view().at(4, 0), K);
    EXPECT_EQ(e.pixels.at(4, 0), 0);
    t.release(4, 4);
    EXPECT_EQ(rows_as_marks(e), "#####\n#...#\n#...#\n#...#\n#####\n");
    ASSERT_TRUE(t.set_tool(t_fill));
    t.press(2, 2, true);
    EXPECT_EQ(rows_as_marks(e), "#####\n#rrr#\n#rrr#\n#rrr#\n#####\n");
    // A line by two clicks: the first anchors, the second draws.
    ASSERT_TRUE(t.set_tool(t_line));
    t.press(1, 1, false);
    t.release(1, 1);
    EXPECT_TRUE(t.anchored());
    t.move(3, 3);
    t.press(3, 3, false);
    EXPECT_FALSE(t.anchored());
    EXPECT_EQ(rows_as_marks(e), "#####\n##rr#\n#r#r#\n#rr##\n#####\n");
    // Esc drops a figure in progress.
    ASSERT_TRUE(t.set_tool(t_filled_ellipse));
    t.press(0, 0, false);
    t.release(0, 0);
    EXPECT_TRUE(t.escape());
    EXPECT_FALSE(t.anchored());
    EXPECT_EQ(e.undo.level(), 3);
}

TEST(Tools, PickerRubberAndRefusals) {
    platform::ScriptedPrompt ui;
    EditorSession e = blank_point(3, 1);
    ToolEngine t(e, ui);
    t.press(1, 0, false);
    t.release(1, 0);
    ASSERT_TRUE(t.set_tool(t_picker));
    t.press(1, 0, true);
    EXPECT_EQ(e.curcol2, 2);
    ASSERT_TRUE(t.set_tool(t_rubber));
    EXPECT_EQ(e.curcol, 4);  // the transparent entry
    t.press(1, 0, false);
    t.release(1, 0);
    EXPECT_EQ(e.pixels.at(1, 0), 3);

    EditorSession no_transparency = blank_point(2, 2);
    no_transparency.palette.colours.pop_back();
    ToolEngine t2(no_transparency, ui);
    EXPECT_FALSE(t2.set_tool(t_rubber));
    EXPECT_EQ(ui.messages.back(), "Add 1 transparent colour");
    EXPECT_EQ(no_transparency.tool, t_pencil);

    // A line's night colours are never drawn; polygons have no crop.
    EditorSession line = blank_point(4, 2);
    line.curclass = 1;
    line.curcol = 3;
    ToolEngine t3(line, ui);
    t3.press(0, 0, false);
    EXPECT_EQ(ui.messages.back(), "Night colours can not be used for editing (see manual) .");
    EXPECT_EQ(line.undo.level(), 0);
    EXPECT_FALSE(t3.set_tool(t_crop_select));
}

TEST(Tools, EqualPaletteEntriesTranslateToTheFirst) {
    platform::ScriptedPrompt ui;
    EditorSession e = blank_point(2, 1);
    e.palette.colours = {W, K, K};
    e.curcol = 3;
    ToolEngine t(e, ui);
    t.press(0, 0, false);
    t.release(0, 0);
    EXPECT_EQ(e.pixels.at(0, 0), 1);
    // A stroke that changes nothing still takes a level.
    t.press(0, 0, false);
    t.release(0, 0);
    EXPECT_EQ(e.undo.level(), 2);

    // The look-up is by decimal digits, first hit: a colour whose digits
    // begin an earlier entry's digits resolves to that entry.
    e.palette.colours = {1234, 12, 99};
    painticon(e);
    e.curcol = 2;
    t.press(1, 0, false);
    t.release(1, 0);
    EXPECT_EQ(e.pixels.at(1, 0), 0);
    EXPECT_EQ(e.surface.at(1, 0), 1234u);
    e.curcol = 3;
    t.press(1, 0, false);
    t.release(1, 0);
    EXPECT_EQ(e.pixels.at(1, 0), 2);
}

TEST(Tools, SelectionCopyMoveStampAndCrop) {
    platform::ScriptedPrompt ui;
    EditorSession e = blank_point(4, 4);
    ToolEngine t(e, ui);
    t.press(0, 0, false);
    t.release(0, 0);
    ASSERT_TRUE(t.set_tool(t_select));
    t.press(0, 0, false);
    t.move(-3, -3);  // past the top left stays at 0
    t.release(1, 0);
    EXPECT_EQ(t.frame(), (Rect{0, 0, 2, 1}));
    ASSERT_TRUE(t.copy_selection());
    t.press(0, 0, false);  // grab the layer
    t.move(2, 3);
    t.release(2, 3);
    t.double_click(2, 3);
    EXPECT_EQ(rows_as_marks(e), "#...\n....\n....\n..#.\n");
    EXPECT_TRUE(t.clear_selection());
    EXPECT_EQ(rows_as_marks(e), "#...\n....\n....\n..rr\n");
    // One pixel is a selection too.
    t.press(3, 3, false);
    t.release(3, 3);
    EXPECT_EQ(t.frame(), (Rect{3, 3, 1, 1}));

    ASSERT_TRUE(t.set_tool(t_crop_select));
    t.press(2, 2, false);
    t.move(3, 3);
    t.release(3, 3);
    EXPECT_EQ(t.tool(), t_crop_pending);
    EXPECT_EQ(t.hint(), "Double click to crop or ESC to exit ");
    t.double_click(0, 0);  // outside the frame: nothing
    EXPECT_EQ(e.width, 4);
    t.double_click(3, 3);
    EXPECT_EQ(e.width, 2);
    EXPECT_EQ(rows_as_marks(e), "..\nrr\n");
    EXPECT_EQ(e.undo.level(), 0);
}

TEST(Tools, TextStampAndRepeatFill) {
    platform::ScriptedPrompt ui;
    EditorSession low = blank_point(8, 5);
    ToolEngine tl(low, ui);
    EXPECT_FALSE(tl.set_tool(t_text));
    EXPECT_EQ(ui.messages.back(), "Bitmap Height should be at least 6");

    EditorSession e = blank_point(6, 6);
    ToolEngine t(e, ui);
    e.curcol = -1;
    EXPECT_FALSE(t.set_tool(t_text));
    EXPECT_EQ(ui.messages.back(), "Please select a colour.");
    e.curcol = 2;
    ASSERT_TRUE(t.set_tool(t_text));
    EXPECT_EQ(t.hint(), "Double Click to Stamp/Esc to Close");
    t.set_text_mask(platform::BarTextRasteriser().render("W W", {"Arial", 3}));
    t.move(1, 1);
    EXPECT_EQ(t.view().at(1, 2), K);  // the preview follows the pointer
    EXPECT_EQ(e.undo.level(), 0);
    t.double_click(1, 1);
    EXPECT_EQ(rows_as_marks(e), "......\n.#...#\n.#...#\n.#...#\n......\n......\n");
    EXPECT_EQ(e.undo.level(), 1);
    EXPECT_TRUE(t.escape());
    EXPECT_EQ(e.tool, t_pencil);

    // Repeat Fill: the stroke is drawn at every step.
    EXPECT_FALSE(t.set_repeat(true, 0, 2));
    EXPECT_EQ(ui.messages.back(), "Please select value > 0");
    ASSERT_TRUE(t.set_tool(t_fill));
    EXPECT_FALSE(t.set_repeat(true, 3, 2));
    EXPECT_EQ(ui.messages.back(), "Select Pencil or Rubber.");
    ASSERT_TRUE(t.set_tool(t_pencil));
    ASSERT_TRUE(t.set_repeat(true, 3, 2));
    e.curcol = 3;
    t.press(0, 0, false);
    t.release(0, 0);
    EXPECT_EQ(rows_as_marks(e), "r..r..\n.#...#\nr#.r.#\n.#...#\nr..r..\n......\n");
}

TEST(Undo, SequencesReturnTheExactEarlierPicture) {
    platform::ScriptedPrompt ui;
    EditorSession e = blank_point(8, 8);
    ToolEngine t(e, ui);
    std::vector<PixelGrid> seen{e.pixels};
    for (int k = 0; k < 5; ++k) {
        t.press(k, k, false);
        t.move(7 - k, k);
        t.release(7 - k, k);
        seen.push_back(e.pixels);
    }
    for (int k = 4; k >= 0; --k) {
        ASSERT_TRUE(undo_step(e));
        EXPECT_EQ(e.pixels, seen[static_cast<size_t>(k)]) << k;
    }
    EXPECT_FALSE(undo_step(e));  // level 0
    EXPECT_EQ(e.surface.at(0, 0), W);
    ASSERT_TRUE(redo_step(e));
    ASSERT_TRUE(redo_step(e));
    EXPECT_EQ(e.pixels, seen[2]);
    EXPECT_EQ(e.surface.at(1, 1), K);
    // A new stroke drops the redo levels.
    t.press(0, 7, false);
    t.release(0, 7);
    EXPECT_EQ(e.undo.level(), 3);
    EXPECT_EQ(e.undo.top(), 3);
    EXPECT_FALSE(redo_step(e));
    ASSERT_TRUE(undo_step(e));
    EXPECT_EQ(e.pixels, seen[2]);
}

TEST(Undo, KeepsTheLastFiveHundredLevels) {
    UndoHistory h;
    h.reset({0});
    for (uint32_t k = 1; k <= 600; ++k) h.store({k});
    EXPECT_EQ(h.level(), 600);
    std::vector<uint32_t> p;
    int steps = 0;
    while (h.undo(p)) ++steps;
    EXPECT_EQ(steps, UndoHistory::k_levels);
    EXPECT_EQ(p, std::vector<uint32_t>{100});
    // A level of another size (a new palette or picture) is a step too.
    h.store({1, 2});
    EXPECT_EQ(h.level(), 101);
    ASSERT_TRUE(h.undo(p));
    EXPECT_EQ(p, std::vector<uint32_t>{100});
    ASSERT_TRUE(h.redo(p));
    EXPECT_EQ(p, (std::vector<uint32_t>{1, 2}));
}

TEST(Undo, PaletteChangeIsTakenBackAndBroughtAgainAndAStrokeEndsThat) {
    platform::ScriptedPrompt ui;
    EditorSession e = blank_point(2, 1);
    const Palette before = e.palette;
    save_curpalette(e);
    e.palette.set(1, R);
    painticon(e);
    ASSERT_TRUE(load_lastpalette(e));
    EXPECT_EQ(e.palette, before);
    EXPECT_EQ(e.surface.at(0, 0), W);
    ASSERT_TRUE(load_lastpalette(e));  // the second swaps back
    EXPECT_EQ(e.palette.colour(1), R);
    ToolEngine t(e, ui);
    t.press(0, 0, false);
    t.release(0, 0);
    EXPECT_FALSE(e.lastpalok);
    EXPECT_FALSE(load_lastpalette(e));
    // So does a change of tool.
    save_curpalette(e);
    ASSERT_TRUE(t.set_tool(t_fill));
    EXPECT_FALSE(load_lastpalette(e));
}

TEST(Undo, ClearIconAsksAndStartsTheHistoryAgain) {
    platform::ScriptedPrompt ui(platform::Answer::no);
    EditorSession e = blank_point(3, 2);
    ToolEngine t(e, ui);
    t.press(0, 0, false);
    t.release(0, 0);
    EXPECT_FALSE(clearicon(e, ui));
    EXPECT_EQ(ui.questions.back(), "This clears the whole icon using current colour. Are you sure?");
    EXPECT_EQ(e.undo.level(), 1);
    ui.script(platform::Answer::yes);
    e.curcol = 3;
    ASSERT_TRUE(clearicon(e, ui));
    EXPECT_EQ(rows_as_marks(e), "rrr\nrrr\n");
    EXPECT_EQ(e.undo.level(), 0);
    EXPECT_FALSE(undo_step(e));
    EXPECT_FALSE(clearicon(e, ui, true));
    EXPECT_EQ(ui.messages.back(), "Untick Colormode32.");
    EditorSession none;
    EXPECT_FALSE(clearicon(none, ui));
    EXPECT_EQ(ui.messages.back(), "No bitmap to clear.");
}

TEST(Undo, TrueColourKeepsColours) {
    platform::ScriptedPrompt ui;
    EditorSession e;
    e.curclass = 2;
    e.truecolour = true;
    resize_picture(e, 2, 2);
    e.surface.fill(0x123456);
    start_history(e);
    e.pen_colour = 0x00ABCD;
    ToolEngine t(e, ui);
    t.press(1, 1, false);
    t.release(1, 1);
    EXPECT_EQ(e.surface.at(1, 1), 0x00ABCDu);
    ASSERT_TRUE(undo_step(e));
    EXPECT_EQ(e.surface.at(1, 1), 0x123456u);
}

}  // namespace
}  // namespace korvex::editor
