// Opacity, transparency and true colour of points in the editor: the ticks
// with their refusals, the opacity tools and levels, and what reaches the
// element's text and the TYP file.
#include "editor/canvas.h"
#include "editor/label_panel.h"
#include "editor/opacity.h"
#include "editor/palette_edit.h"
#include "editor/point_picture_text.h"
#include "editor/tools.h"
#include "editor/transparency.h"
#include "editor/true_colour.h"
#include "variants_fixture.h"

namespace korvex::editor {
namespace {

using namespace variants;
using platform::Answer;

const uint32_t k_red = rgb(0xFF, 0, 0), k_green = rgb(0, 0xFF, 0), k_blue = rgb(0, 0, 0xFF);

std::vector<std::string> lines_with(const std::string& text, const std::string& word) {
    std::vector<std::string> out;
    for (const std::string& l : testing::lines_of(text))
        if (has(l, word)) out.push_back(l);
    return out;
}

TEST(Opacity, TickOnTakesLevelsFromTransparencyTickOffAsks) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    ASSERT_FALSE(e.alpha);
    ASSERT_TRUE(opaval(e, true, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "With Opacity (colormode 32) only 'pink opacity tools' can be used.");
    EXPECT_TRUE(e.alpha);
    EXPECT_EQ(e.colormode, 32);
    EXPECT_TRUE(e.changes1 & ch_mode);
    EXPECT_EQ(e.opacity.at(0, 1), 15);  // the transparent pixels
    EXPECT_EQ(e.opacity.at(2, 1), 0);
    EXPECT_EQ(e.palette.alpha, (std::vector<uint8_t>{0, 0, 0, 15}));
    EXPECT_FALSE(opaval(e, true, p.ui));

    p.ui.script(Answer::no);
    EXPECT_FALSE(opaval(e, false, p.ui));
    EXPECT_EQ(p.ui.questions.back(), "This will clear your opacity levels. Are you sure?");
    EXPECT_TRUE(e.alpha);
    e.oplevel = 4;
    p.ui.script(Answer::yes);
    ASSERT_TRUE(opaval(e, false, p.ui));
    EXPECT_FALSE(e.alpha);
    EXPECT_EQ(e.oplevel, 15);
    EXPECT_EQ(e.colormode, 16);
    EXPECT_TRUE(e.palette.alpha.empty());
    EXPECT_EQ(e.opacity.at(0, 1), 0);

    // A fully transparent colour read from a file stays transparent.
    EditorSession read = p.open(2, k_alpha_point);
    ASSERT_TRUE(read.alpha);
    ASSERT_TRUE(set_colour_level(read, 2, 15));
    p.ui.script(Answer::yes);
    ASSERT_TRUE(opaval(read, false, p.ui));
    EXPECT_EQ(read.palette.colour(2), k_magenta);
    EXPECT_EQ(read.colormode, 16);
    // Only points take opacity.
    EditorSession line = p.open(1, 0);
    EXPECT_FALSE(opaval(line, true, p.ui));
}

TEST(Opacity, IdenticalColoursRefuseTheTickAndThePressUnlessFixed) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    e.palette.set(2, k_red);
    p.ui.script(Answer::no);
    EXPECT_FALSE(opaval(e, true, p.ui));
    EXPECT_EQ(p.ui.questions.back(), "Fix identical colours?");
    EXPECT_FALSE(e.alpha);
    EXPECT_EQ(e.palette.colour(2), k_red);
    p.ui.script(Answer::yes);
    ASSERT_TRUE(opaval(e, true, p.ui));
    EXPECT_EQ(e.palette.colour(2), k_red + 1);

    // Equal colours that came in opacity mode stop a press.
    e.palette.set(2, k_red);
    ToolEngine tools(e, p.ui);
    const PixelGrid before = e.pixels;
    p.ui.script(Answer::no);
    e.curcol = 3;
    tools.press(0, 0, false);
    tools.release(0, 0);
    EXPECT_EQ(p.ui.messages.back(), "Palette contains identical colours!\r\nCannot continue.");
    EXPECT_EQ(e.pixels, before);
}

TEST(Opacity, ToolsAndRightClickSetLevelsCutTo15) {
    EXPECT_EQ(moplev(16), 15);
    EXPECT_EQ(moplev(15), 15);
    EXPECT_EQ(moplev(-1), 0);
    Project p;
    EditorSession e = p.open(2, k_alpha_point);
    ASSERT_TRUE(e.alpha);
    EXPECT_EQ(e.opacity.at(0, 0), 2);
    EXPECT_FALSE(set_colour_level(e, 3, 5));  // no such colour
    ASSERT_TRUE(set_colour_level(e, 1, 16));
    EXPECT_EQ(e.palette.alpha[0], 15);
    EXPECT_EQ(e.opacity.at(1, 1), 15);

    ToolEngine tools(e, p.ui);
    ASSERT_TRUE(tools.set_tool(t_opacity_fill));
    e.oplevel = 16;
    tools.press(1, 0, false);  // a green pixel: all green ones
    tools.release(1, 0);
    EXPECT_EQ(e.palette.alpha[1], 15);
    EXPECT_EQ(e.opacity.at(0, 1), 15);
    ASSERT_TRUE(tools.set_tool(t_opacity_pencil));
    e.oplevel = 6;
    tools.press(0, 0, false);
    tools.move(0, 1);
    tools.release(0, 1);
    EXPECT_EQ(e.opacity.at(0, 0), 6);
    EXPECT_EQ(e.opacity.at(0, 1), 6);
    EXPECT_EQ(e.opacity.at(1, 0), 15);
    EXPECT_EQ(e.palette.alpha[0], 15);  // a pixel's level is its own
    // A stroke of the pencil gives the pixel the level of its new colour.
    ASSERT_TRUE(tools.set_tool(t_pencil));
    e.curcol = 1;
    tools.press(1, 0, false);
    tools.release(1, 0);
    EXPECT_EQ(e.opacity.at(1, 0), 15);
    // Outside opacity mode the pink tools are the flip and the turn again.
    EditorSession plain = p.open(2, k_plain_point);
    EXPECT_FALSE(opacity_tool(plain, t_opacity_fill));
}

// A colormode 32 point written out: every colour line carries its alpha, a
// transparent colour is "#000000" with alpha 15, and pixels whose level
// differs from their colour's get a colour of their own.
TEST(Opacity, WrittenPointCarriesAlphaOnEveryColourLine) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    ASSERT_TRUE(opaval(e, true, p.ui));
    ASSERT_TRUE(set_colour_level(e, 2, 7));
    e.oplevel = 9;
    ASSERT_TRUE(opacity_plot(e, 0, 0));  // a red pixel at 9, the other red at 0
    PointPicture folded = canvas_picture(e);
    fold_opacity(folded, k_magenta);
    const Look shown = look(folded, k_magenta);
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    const std::string text = p.code(2, k_plain_point);
    EXPECT_TRUE(has(text, "DayXpm=\"3 2 5 1\" Colormode=32")) << text;
    const std::vector<std::string> colours = lines_with(text, " c ");
    EXPECT_EQ(colours, (std::vector<std::string>{"\"$ c #FF0000\" alpha=0", "\"% c #00FF00\" alpha=7", "\"& c #0000FF\" alpha=0",
                                                 "\"' c #000000\" alpha=15", "\"( c #FE0000\" alpha=9"}));

    model::Store text_store, typ_store;
    reload_text(text_store, p.ui, as_text(p.s, p.ui));
    reload_typ(typ_store, p.ui, p.s);
    for (model::Store* s : {&p.s, &text_store, &typ_store}) {
        OpenRequest r;
        r.curclass = 2;
        r.row = k_plain_point;
        const EditorSession back = open_element(*s, r);
        EXPECT_TRUE(back.alpha);
        EXPECT_EQ(back.colormode, 32);
        EXPECT_EQ(look(canvas_picture(back), k_magenta), shown);
    }
}

// A border and a doubled canvas in opacity mode: the new margin is fully
// transparent and every old pixel keeps its level, through Apply.
TEST(Opacity, BorderAndCanvasKeepEveryLevel) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    ASSERT_TRUE(opaval(e, true, p.ui));
    ASSERT_TRUE(set_colour_level(e, 2, 7));
    e.oplevel = 9;
    ASSERT_TRUE(opacity_plot(e, 0, 0));
    PointPicture folded = canvas_picture(e);
    fold_opacity(folded, k_magenta);
    const Look before = look(folded, k_magenta);
    const int w = e.width, h = e.height;
    ASSERT_TRUE(add_canvas(e, "M1", p.ui));
    ASSERT_TRUE(add_canvas(e, "L", p.ui));
    // A margin of 1, then a new left half: old pixel (x, y) is at (w + 3 + x, 1 + y).
    const int nw = 2 * (w + 2), nh = h + 2;
    ASSERT_EQ(e.width, nw);
    Look expected(static_cast<size_t>(nw * nh), {0, 15});
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) expected[static_cast<size_t>((y + 1) * nw + w + 3 + x)] = before[static_cast<size_t>(y * w + x)];
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    const EditorSession back = p.open(2, k_plain_point);
    EXPECT_TRUE(back.alpha);
    EXPECT_EQ(look(canvas_picture(back), k_magenta), expected);
}

TEST(Opacity, AddalphaLeavesAlphaTextsAndFillsTheRest) {
    EXPECT_EQ(addalpha("\"$ c #FF0000\" alpha=3\r\n\"% c none\"\r\n", {}), "\"$ c #FF0000\" alpha=3\r\n\"% c none\"\r\n");
    EXPECT_EQ(addalpha("\"$ c #FF0000\"\r\n\"% c none\"\r\n\"& c #00FF00\"\r\n", {4, 2}),
              "\"$ c #FF0000\" alpha=4\r\n\"% c #000000\" alpha=15\r\n\"& c #00FF00\" alpha=0\r\n");
    EXPECT_EQ(addalpha("DayXpm=\"1 1 1 1\"\n\"$ c #FF0000\"", {20}), "DayXpm=\"1 1 1 1\"\n\"$ c #FF0000\" alpha=15");
}

TEST(Transparency, OnlyOneEntryIsTransparentAtATime) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    ASSERT_EQ(e.palette.first_transparent(k_magenta), 4);
    e.curcol = 2;
    ASSERT_TRUE(transp(e, true, p.ui));
    // The old transparent entry handed its pixels over and left.
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{k_red, k_magenta, k_blue}));
    EXPECT_EQ(e.pixels.at(1, 0), 1);
    EXPECT_EQ(e.pixels.at(0, 1), 1);
    EXPECT_EQ(e.pixels.at(2, 0), 2);
    EXPECT_EQ(e.colormode, 16);
    // Ticked off, the noted green comes back; again off says why not.
    ASSERT_TRUE(transp(e, false, p.ui));
    EXPECT_EQ(e.palette.colour(2), k_green);
    EXPECT_EQ(e.colormode, 0);
    EXPECT_FALSE(transp(e, false, p.ui));

    // An entry below the old one: the new one moves down with the rest.
    EditorSession low = p.open(2, k_plain_point);
    low.palette.set(1, k_magenta);
    low.palette.set(4, 0x808080);
    low.curcol = 3;
    ASSERT_TRUE(transp(low, true, p.ui));
    EXPECT_EQ(low.palette.colours, (std::vector<uint32_t>{k_green, k_magenta, 0x808080}));
    EXPECT_EQ(low.pixels.at(0, 0), 1);  // was the first entry
    EXPECT_EQ(low.pixels.at(0, 1), 2);
    EXPECT_EQ(low.curcol, 2);

    // An entry that came transparent has no colour to go back to.
    EditorSession read = p.open(2, k_plain_point);
    read.curcol = 4;
    EXPECT_FALSE(transp(read, false, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "Can't make transparent solid");
    EXPECT_EQ(read.palette.colour(4), k_magenta);
}

TEST(Transparency, ClassRulesExtendedPointsAndOpacityRefuse) {
    Project p;
    // An extended point whose first entry is ticked keeps the old one, solid.
    EditorSession x = p.open(2, k_plain_point);
    x.curclass = 4;
    x.curcol = 1;
    ASSERT_TRUE(transp(x, true, p.ui));
    EXPECT_EQ(x.palette.colours, (std::vector<uint32_t>{k_magenta, k_green, k_blue, 0xFFFFFF}));
    EXPECT_EQ(x.pixels.at(0, 1), 3);

    EditorSession alpha = p.open(2, k_alpha_point);
    alpha.curcol = 1;
    EXPECT_FALSE(transp(alpha, true, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "Please set opacity of one color to 15");

    EditorSession polygon = p.open(0, 0);
    polygon.curcol = 1;
    EXPECT_FALSE(transp(polygon, true, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "First palette colour cannot be transparent.");
    polygon.curcol = 2;
    EXPECT_TRUE(transp(polygon, true, p.ui));
    // Groups: polygons their first entry, lines their second, whatever is selected.
    polygon.curclass = k_polygon_group;
    polygon.curcol = 2;
    EXPECT_EQ(transp_entry_of(polygon), 1);
    polygon.curclass = k_line_group;
    EXPECT_EQ(transp_entry_of(polygon), 2);
}

TEST(TrueColour, RefusalsLeaveThePaletteIcon) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    e.palette.colours.push_back(0x808080);  // an entry no pixel uses
    EXPECT_FALSE(truecol(e, true, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "Please Trim Colours.");
    EXPECT_FALSE(e.truecolour);
    EXPECT_EQ(e.ncols(), 5);

    EditorSession empty = p.open(2, k_plain_point);
    empty.palette = {};
    EXPECT_FALSE(truecol(empty, true, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "Add color.");
    resize_picture(empty, 0, 0);
    EXPECT_FALSE(truecol(empty, true, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "Change Width and Height.");

    // An extended point with a night asks to lose it first.
    EditorSession x = p.open(2, k_night_point);
    x.curclass = 4;
    p.ui.script(Answer::no);
    EXPECT_FALSE(truecol(x, true, p.ui));
    EXPECT_FALSE(x.truecolour);
    EXPECT_EQ(x.bmpmode, 1);
}

TEST(TrueColour, OnKeepsThePixelsOffBringsAPaletteBack) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    const Look before = look(canvas_picture(e), k_magenta);
    ASSERT_TRUE(truecol(e, true, p.ui));
    EXPECT_TRUE(e.truecolour);
    EXPECT_EQ(colour_count(e), 6);

    EXPECT_EQ(e.colormode, 0);  // the first colour is not the transparent one
    EXPECT_EQ(e.surface.at(2, 0), k_blue);
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    EXPECT_TRUE(has(as_text(p.s, p.ui), "\"#FF0000#00FF00#0000FF\"\r\n\"#FF11FF#FF11FF#FF0000\""));

    EditorSession back = p.open(2, k_plain_point);
    ASSERT_TRUE(back.truecolour);
    ASSERT_TRUE(truecol(back, false, p.ui));
    EXPECT_FALSE(back.truecolour);
    EXPECT_EQ(back.ncols(), 4);
    EXPECT_EQ(look(canvas_picture(back), k_magenta), before);

    // Transparent first colour: colormode 16.
    const Project fresh;
    EditorSession first = fresh.open(2, k_plain_point);
    first.palette.set(4, 0x808080);
    first.curcol = 1;
    ASSERT_TRUE(transp(first, true, p.ui));
    ASSERT_TRUE(truecol(first, true, p.ui));
    EXPECT_EQ(first.colormode, 16);
}

TEST(TrueColour, OpacityLevelsOfPixelsReachTheRows) {
    Project p;
    EditorSession e = p.open(2, k_alpha_point);
    ASSERT_TRUE(truecol(e, true, p.ui));
    e.oplevel = 10;
    ASSERT_TRUE(opacity_plot(e, 1, 0));
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    const std::string text = as_text(p.s, p.ui);
    EXPECT_TRUE(has(text, "DayXpm=\"2 2 0 0\" Colormode=32")) << text;
    EXPECT_TRUE(has(text, "\"#FF000002#00FF000A\"\r\n\"#00FF00#FF000002\"")) << text;
    const EditorSession back = p.open(2, k_alpha_point);
    EXPECT_TRUE(back.truecolour);
    EXPECT_EQ(back.opacity.at(1, 0), 10);
    EXPECT_EQ(back.opacity.at(0, 1), 0);

    // Unticked, only a fully transparent pixel (level 15) turns transparent.
    EditorSession off = p.open(2, k_alpha_point);
    ASSERT_TRUE(off.truecolour && off.alpha);
    off.opacity.set(0, 0, 7);
    off.opacity.set(1, 0, 15);
    const Raster before = off.surface;
    p.ui.script(Answer::yes);
    ASSERT_TRUE(opaval(off, false, p.ui));
    EXPECT_EQ(off.surface.at(0, 0), before.at(0, 0));
    EXPECT_EQ(off.surface.at(1, 0), k_magenta);
    EXPECT_EQ(off.surface.at(0, 1), before.at(0, 1));
    EXPECT_EQ(off.surface.at(1, 1), before.at(1, 1));
    EXPECT_EQ(off.colormode, 16);
}

}  // namespace
}  // namespace korvex::editor
