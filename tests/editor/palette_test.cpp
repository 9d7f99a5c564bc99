// Palette files, the standard palettes, the mapping onto a palette and the
// palette edits.
#include <gtest/gtest.h>

#include <filesystem>

#include "editor/canvas.h"
#include "editor/colour_picker.h"
#include "editor/palette_edit.h"
#include "editor/palette_file.h"
#include "editor/palette_map.h"
#include "editor/standard_palettes.h"
#include "platform/files.h"

namespace korvex::editor {
namespace {

namespace fs = std::filesystem;

TEST(PaletteFile, ParsesFieldsByTheCountRuleAndRoundTrips) {
    EXPECT_EQ(parse_tpal("FF0000,00ff00\r\n0000FF,,\n123"), (std::vector<uint32_t>{0x0000FF, 0x00FF00, 0xFF0000}));
    EXPECT_EQ(parse_tpal("FF0000,zz0000,0000FF,"), std::vector<uint32_t>{0x0000FF});  // a bad field ends it
    EXPECT_TRUE(parse_tpal("").empty());
    const std::vector<uint32_t> cols{rgb(1, 2, 3), rgb(0xAB, 0xCD, 0xEF)};
    EXPECT_EQ(tpal_text(cols), "010203,ABCDEF,");
    EXPECT_EQ(parse_tpal(tpal_text(cols)), cols);
    EXPECT_EQ(with_tpal_extension("/a/mine"), "/a/mine.tpal");
    EXPECT_EQ(with_tpal_extension("/a/mine.TPAL"), "/a/mine.TPAL");

    const fs::path dir = fs::temp_directory_path() / "korvex_tpal_test";
    fs::remove_all(dir);
    fs::create_directories(dir);
    ASSERT_TRUE(save_tpal((dir / "mine").string(), cols));
    EXPECT_EQ(read_tpal((dir / "mine.tpal").string()), cols);
    // A failed save leaves the old file and reports why.
    std::string why;
    EXPECT_FALSE(save_tpal((dir / "missing" / "x").string(), cols, &why));
    EXPECT_FALSE(why.empty());
    EXPECT_FALSE(read_tpal((dir / "none.tpal").string()).has_value());

    ASSERT_TRUE(ensure_standard_palettes(dir.string()));
    EXPECT_EQ(read_tpal((dir / "256.tpal").string()), palette_256());
    EXPECT_EQ(read_tpal((dir / "16.tpal").string()), palette_16());
    fs::remove_all(dir);
}

TEST(StandardPalettes, HaveTheirCountsAndOrder) {
    const auto p = palette_256();
    ASSERT_EQ(p.size(), 254u);
    EXPECT_EQ(p[0], 0u);
    EXPECT_EQ(p[1], rgb(0, 0, 0x20));    // blue runs fastest
    EXPECT_EQ(p[8], rgb(0x39, 0, 0));     // then red
    EXPECT_EQ(p[40], rgb(0, 0x30, 0));    // green outermost
    EXPECT_EQ(p[239], rgb(0xff, 0xff, 0xff));
    EXPECT_EQ(p[253], rgb(0xe6, 0xe6, 0xe6));
    EXPECT_EQ(palette_64().size(), 64u);
    EXPECT_EQ(palette_16().size(), 14u);
    EXPECT_EQ(chooser_caption(ChooserMode::custom), "Garmin-C");
}

TEST(PaletteMap, HsvAndNearestColourRules) {
    EXPECT_EQ(rgbtohsv(rgb(255, 0, 0)).h, 0);
    EXPECT_EQ(rgbtohsv(rgb(0, 255, 0)).h, 120);
    EXPECT_EQ(rgbtohsv(rgb(0, 0, 255)).h, 240);
    const Hsv grey = rgbtohsv(rgb(128, 128, 128));
    EXPECT_EQ(grey.s, 0);
    EXPECT_EQ(grey.h, 0);
    EXPECT_EQ(rgbtohsv(rgb(255, 128, 0)).v, 100);
    EXPECT_EQ(HSLToRGB02(120, 100, 100), rgb(0, 255, 0));
    EXPECT_EQ(HSLToRGB02(0, 0, 100), rgb(255, 255, 255));

    // White and black are always offered.
    const auto offered = chooser_colours("FF0000\r\n00FF00");
    EXPECT_EQ(offered, (std::vector<uint32_t>{rgb(255, 0, 0), rgb(0, 255, 0), rgb(255, 255, 255), rgb(0, 0, 0)}));
    // A cut-off last field is no colour, even with white and black behind it.
    EXPECT_EQ(chooser_colours("ffffff,FF0000,12"), (std::vector<uint32_t>{rgb(255, 255, 255), rgb(255, 0, 0), rgb(0, 0, 0)}));

    auto nearest_colour = [](uint32_t c, const std::vector<uint32_t>& p) {
        std::vector<Hsv> h;
        for (uint32_t x : p) h.push_back(rgbtohsv(x));
        return p[nearest_index(c, p, h)];
    };
    // Distance 60 keeps the nearest; 61 goes to the hue band.
    const std::vector<uint32_t> pal{rgb(100, 0, 0), rgb(0, 0, 0), rgb(255, 255, 0)};
    EXPECT_EQ(nearest_colour(rgb(160, 0, 0), pal), rgb(100, 0, 0));
    // Hue 0 (red) stands whatever the distance.
    EXPECT_EQ(nearest_colour(rgb(161, 0, 0), pal), rgb(100, 0, 0));
    // A green far from everything: band 180 takes the highest hue up to 180.
    EXPECT_EQ(nearest_colour(rgb(0, 200, 0), pal), rgb(255, 255, 0));
    // Grey (saturation 0) takes the nearest even when far.
    EXPECT_EQ(nearest_colour(rgb(200, 200, 200), pal), rgb(255, 255, 0));
    // At distance 60 the nearest stands, at 61 a hued colour goes to its band.
    const std::vector<uint32_t> greens{rgb(0, 100, 0), rgb(0, 255, 255)};
    EXPECT_EQ(nearest_colour(rgb(0, 160, 0), greens), rgb(0, 100, 0));
    EXPECT_EQ(nearest_colour(rgb(0, 161, 0), greens), rgb(0, 255, 255));
    // A hue above 320 uses band 320.
    const std::vector<uint32_t> p2{rgb(0, 0, 255), rgb(255, 0, 200), rgb(255, 0, 100)};
    EXPECT_EQ(rgbtohsv(rgb(128, 0, 50)).h, 337);
    EXPECT_EQ(nearest_colour(rgb(128, 0, 50), p2), rgb(255, 0, 200));
    // Two entries at the same distance: the lower one.
    const std::vector<uint32_t> tie{rgb(90, 0, 0), rgb(110, 0, 0)};
    EXPECT_EQ(nearest_colour(rgb(100, 0, 0), tie), rgb(90, 0, 0));
}

TEST(PaletteMap, AppliesToEntriesKeepsTransparencyAndAvoidsMagenta) {
    platform::ScriptedPrompt ui;
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = {rgb(250, 5, 250), rgb(10, 10, 10), k_transparent_magenta};
    resize_picture(e, 2, 1);
    e.pixels.set(1, 0, 2);
    ASSERT_TRUE(apply_palette(e, "FF00FF,", false, ui));
    EXPECT_EQ(e.palette.colour(1), rgb(255, 0, 254));
    EXPECT_EQ(e.palette.colour(2), rgb(0, 0, 0));
    EXPECT_EQ(e.palette.colour(3), k_transparent_magenta);
    EXPECT_EQ(e.surface.at(0, 0), rgb(255, 0, 254));
    EXPECT_TRUE(e.eddirty);

    ui.script(platform::Answer::no);
    EXPECT_FALSE(apply_palette(e, "000000,", true, ui));
    EXPECT_EQ(ui.questions.back(), "Action applies to the whole image.");
    EXPECT_EQ(e.palette.colour(1), rgb(255, 0, 254));
    EXPECT_FALSE(apply_palette_file(e, "/no/such.tpal", false, ui));
    EXPECT_EQ(ui.messages.back(), "Can't find Palette /no/such.tpal");

    // A polygon's or line's two colours stay two: the second keeps its own,
    // and the chooser stops offering the colour the first took.
    for (int cls : {0, 1, 3, k_line_group}) {
        SCOPED_TRACE(cls);
        EditorSession pg;
        pg.curclass = cls;
        pg.palette.colours = {rgb(250, 250, 250), rgb(240, 240, 240)};
        resize_picture(pg, 1, 1);
        std::vector<size_t> hidden;
        ASSERT_TRUE(apply_palette(pg, "000000,FFFFFF,", false, ui, &hidden));
        EXPECT_EQ(pg.palette.colour(1), rgb(255, 255, 255));
        EXPECT_EQ(pg.palette.colour(2), rgb(240, 240, 240));
        EXPECT_EQ(hidden, std::vector<size_t>{1});
    }
    // A point's entries may meet in one colour; nothing is hidden.
    EditorSession pt;
    pt.curclass = 4;
    pt.palette.colours = {rgb(250, 250, 250), rgb(240, 240, 240)};
    resize_picture(pt, 1, 1);
    std::vector<size_t> hidden;
    ASSERT_TRUE(apply_palette(pt, "FFFFFF,", false, ui, &hidden));
    EXPECT_EQ(pt.palette.colours, (std::vector<uint32_t>{rgb(255, 255, 255), rgb(255, 255, 255)}));
    EXPECT_TRUE(hidden.empty());

    // The refusals come before the file is looked for.
    e.truecolour = true;
    EXPECT_FALSE(apply_palette_file(e, "/no/such.tpal", false, ui));
    EXPECT_EQ(ui.messages.back(), "Convert to 256 Colours.");
    e.truecolour = false;
    const size_t said = ui.messages.size();
    ui.script(platform::Answer::no);
    EXPECT_FALSE(apply_palette_file(e, "/no/such.tpal", true, ui));
    EXPECT_EQ(ui.messages.size(), said);
}

TEST(PaletteEdit, AddRemoveTrimFix) {
    platform::ScriptedPrompt ui;
    EditorSession e;
    e.curclass = 2;
    resize_picture(e, 3, 1);
    EXPECT_EQ(add_colour(e, ui, rgb(1, 1, 1), rgb(2, 2, 2)), 1);
    EXPECT_EQ(add_colour(e, ui, rgb(1, 1, 1), rgb(2, 2, 2)), 2);
    EXPECT_EQ(add_colour(e, ui, rgb(1, 1, 1), rgb(2, 2, 2)), 3);
    EXPECT_EQ(e.palette.colour(2), rgb(2, 2, 2));
    EXPECT_EQ(e.palette.colour(3), rgb(255, 255, 255));
    EXPECT_EQ(add_colour(e, ui, 0, 0), 4);
    EXPECT_EQ(e.palette.colour(4), rgb(254, 254, 254));
    EXPECT_EQ(e.curcol, 4);
    EXPECT_EQ(getcurcol(e.palette).substr(0, 15), "\"$\tc #010101\"\r\n");

    // A deleted entry's pixels take the nearest colour left (white goes to
    // 254 grey, not to the entry before it); later entries move down.
    e.pixels.set(0, 0, 3);
    e.pixels.set(1, 0, 2);
    ASSERT_TRUE(removecol(e, 3, ui));
    EXPECT_EQ(e.ncols(), 3);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(1, 1, 1), rgb(2, 2, 2), rgb(254, 254, 254)}));
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{2, 2, 0}));
    EXPECT_EQ(trimcols(e, ui), 1);
    // The colours left are ordered as met.
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(254, 254, 254), rgb(1, 1, 1)}));
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{0, 0, 1}));
    EXPECT_EQ(ui.messages.back(), "Unused colours have been removed.");
    EXPECT_EQ(trimcols(e, ui), 0);
    EXPECT_EQ(ui.messages.back(), "No usused colours found.");
    {
        // At an exact tie the lower entry wins; the first entry's pixels
        // take the nearest too.
        EditorSession t;
        t.curclass = 2;
        resize_picture(t, 3, 1);
        t.palette.colours = {rgb(10, 10, 10), rgb(0, 0, 0), rgb(20, 20, 20), rgb(12, 12, 12)};
        t.pixels.set(0, 0, 0);
        t.pixels.set(1, 0, 2);
        t.pixels.set(2, 0, 3);
        ASSERT_TRUE(removecol(t, 1, ui));
        EXPECT_EQ(t.pixels.values(), (std::vector<uint8_t>{2, 1, 2}));
        t.palette.colours = {rgb(0, 0, 0), rgb(10, 10, 10), rgb(20, 20, 20)};
        t.pixels.set(0, 0, 1);
        ASSERT_TRUE(removecol(t, 2, ui));
        EXPECT_EQ(t.pixels.values()[0], 0);
    }

    e.palette.colours.resize(k_max_colours, 7);
    EXPECT_EQ(add_colour(e, ui, 0, 0), 0);
    EXPECT_EQ(ui.messages.back(), "Maximum Colours = 254");
    EXPECT_EQ(e.ncols(), k_max_colours);

    Palette p;
    p.colours = {5, 5, 0xFFFFFF, 0xFFFFFF, 6};
    fixcols(p);
    EXPECT_EQ(p.colours, (std::vector<uint32_t>{5, 6, 0xFFFFFF, 0xFFFFFE, 7}));  // each later entry gives way
    EXPECT_FALSE(p.has_duplicates());

    EditorSession pg;
    pg.curclass = 0;
    EXPECT_EQ(add_colour(pg, ui, 0, 0), 0);
    EXPECT_EQ(ui.messages.back(), "Only two colours allowed.");
    pg.palette.colours = {1, 2};
    EXPECT_EQ(transparency_refusal(pg, 1), "First palette colour cannot be transparent.");
    EXPECT_EQ(transparency_refusal(pg, 2), "");
    pg.palette.colours[1] = k_transparent_magenta;
    EXPECT_EQ(transparency_refusal(pg, 2), "Transparency colour exists.");
    // A line or an active line: only the second entry may be transparent.
    for (const int cls : {1, 3}) {
        EditorSession ln;
        ln.curclass = cls;
        ln.palette.colours = {1, 2};
        EXPECT_EQ(transparency_refusal(ln, 1), "Make 2nd palette colour transparent then click 'reverse'.") << cls;
        EXPECT_EQ(transparency_refusal(ln, 2), "") << cls;
    }
}

TEST(PaletteEdit, TrimOrdersFromTheLastRowUpAndKeepsTheTransparentPlace) {
    platform::ScriptedPrompt ui;
    EditorSession e;
    e.curclass = 2;
    constexpr uint32_t A = 0x0000AA, B = 0x00BB00, C = 0xCC0000, U = 0x123456, T = k_transparent_magenta;
    e.palette.colours = {A, T, B, U, C, B};
    resize_picture(e, 2, 3);
    // Rows: A T / C B / B' A, the second B an equal entry of its own.
    const uint8_t rows[3][2] = {{0, 1}, {4, 2}, {5, 0}};
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 2; ++x) e.pixels.set(x, y, rows[y][x]);
    painticon(e);
    EXPECT_EQ(trimcols(e, ui), 2);
    // Met from the last row up: B, A, C; the equal B entries merge; the
    // transparent entry stays second.
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{B, T, A, C}));
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{2, 1, 3, 0, 0, 2}));
    EXPECT_EQ(e.surface.at(0, 2), B);
    EXPECT_EQ(e.undo.level(), 0);

    // Opacity mode and groups are left alone; one colour is refused.
    EXPECT_EQ(trimcols(e, ui, true), 0);
    EditorSession one;
    one.curclass = 2;
    one.palette.colours = {A};
    resize_picture(one, 1, 1);
    EXPECT_EQ(trimcols(one, ui), 0);
    EXPECT_EQ(ui.messages.back(), "No colours to trim");
}

TEST(PaletteEdit, TwoColoursIdenticalColoursAndTheMarkerSwitch) {
    platform::ScriptedPrompt ui;
    EditorSession e;
    e.curclass = 2;
    // Colours compare as numbers, blue the high byte: the range is
    // 0x200000 .. 0x800000 (white and numbers below 0x101011 left out), its
    // middle 0x500000; white is above it, 0x0000F0 below.
    e.palette.colours = {0x200000, 0x800000, 0xFFFFFF, 0x0000F0};
    resize_picture(e, 4, 1);
    for (int x = 0; x < 4; ++x) e.pixels.set(x, 0, static_cast<uint8_t>(x));
    painticon(e);
    twocols(e);
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{0, 1, 1, 0}));

    e.palette.colours = {5, 9, 5};
    ui.script(platform::Answer::no);
    EXPECT_FALSE(chk1col(e, ui));
    EXPECT_EQ(ui.questions.back(), "Fix identical colours?");
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{5, 9, 5}));
    EXPECT_TRUE(chk1col(e, ui));
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{5, 9, 6}));
    const size_t asked = ui.questions.size();
    EXPECT_TRUE(chk1col(e, ui));
    EXPECT_EQ(ui.questions.size(), asked);

    EXPECT_EQ(add_colour(e, ui, 0, 0, true), 0);
    EXPECT_EQ(ui.messages.back(), "With Opacity (colormode 32) only 'pink opacity tools' can be used.");

    e.palette.colours = {0x0000FF, k_transparent_magenta, k_transparent_grey};
    e.pixels.fill(1);
    painticon(e);
    switch_transparent_marker(e, k_transparent_grey);
    EXPECT_EQ(e.transparentcolour, k_transparent_grey);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{0x0000FF, k_transparent_grey, k_transparent_grey}));
    EXPECT_EQ(e.surface.at(0, 0), k_transparent_grey);
    EXPECT_TRUE(e.palette.transparent(2, e.transparentcolour));
}

TEST(ColourPicker, BoxesSwatchesShadesAndPointers) {
    EXPECT_EQ(colour_swatches().size(), 24u);
    EXPECT_STREQ(colour_swatches()[0], "ffff00");
    EXPECT_STREQ(colour_swatches()[23], "000000");
    EXPECT_EQ(hex_box_text("1g2Z3a#bc9f"), "123abc");
    EXPECT_FALSE(hex_box_accepts('x'));
    std::string warning;
    EXPECT_EQ(box_value(ColourBox::red, "255", warning), 255);
    EXPECT_TRUE(warning.empty());
    EXPECT_EQ(box_value(ColourBox::green, "256", warning), 255);
    EXPECT_EQ(warning, "Maximum value:255");
    EXPECT_EQ(box_value(ColourBox::hue, "3a61", warning), 360);
    EXPECT_EQ(warning, "Maximum value:360");
    EXPECT_EQ(box_value(ColourBox::saturation, "100", warning), 100);
    EXPECT_TRUE(warning.empty());
    EXPECT_EQ(box_value(ColourBox::value, "101", warning), 100);
    EXPECT_EQ(warning, "Maximum value:100");

    const ShadeBars b = shades(rgb(200, 100, 0));
    EXPECT_EQ(b.dark[0], rgb(0, 0, 0));
    EXPECT_EQ(b.dark[64], rgb(100, 50, 0));
    EXPECT_EQ(b.dark[127], rgb(198, 99, 0));
    EXPECT_EQ(b.light[0], rgb(200, 100, 0));
    EXPECT_EQ(b.light[64], rgb(227, 177, 127));
    EXPECT_EQ(b.light[127], rgb(254, 253, 253));

    const PointerSpots at = find_color(rgb(0, 0, 255));  // hue 240, value 100
    EXPECT_DOUBLE_EQ(at.hue, 240.0 / 360.0);
    EXPECT_DOUBLE_EQ(at.value, 2.0);
}

}  // namespace
}  // namespace korvex::editor
