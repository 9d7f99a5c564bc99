// Palette files, the standard palettes, the mapping onto a palette and the
// palette edits.
#include <gtest/gtest.h>

#include <filesystem>

#include "editor/canvas.h"
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

    auto hues = [](const std::vector<uint32_t>& p) {
        std::vector<Hsv> h;
        for (uint32_t c : p) h.push_back(rgbtohsv(c));
        return h;
    };
    // Distance 60 keeps the nearest; 61 goes to the hue band.
    const std::vector<uint32_t> pal{rgb(100, 0, 0), rgb(0, 0, 0), rgb(255, 255, 0)};
    EXPECT_EQ(nearest_colour(rgb(160, 0, 0), pal, hues(pal)), rgb(100, 0, 0));
    // Hue 0 (red) stands whatever the distance.
    EXPECT_EQ(nearest_colour(rgb(161, 0, 0), pal, hues(pal)), rgb(100, 0, 0));
    // A green far from everything: band 180 takes the highest hue up to 180.
    EXPECT_EQ(nearest_colour(rgb(0, 200, 0), pal, hues(pal)), rgb(255, 255, 0));
    // Grey (saturation 0) takes the nearest even when far.
    EXPECT_EQ(nearest_colour(rgb(200, 200, 200), pal, hues(pal)), rgb(255, 255, 0));
    // A hue above 320 uses band 320.
    const std::vector<uint32_t> p2{rgb(0, 0, 255), rgb(255, 0, 200), rgb(255, 0, 100)};
    EXPECT_EQ(rgbtohsv(rgb(128, 0, 50)).h, 337);
    EXPECT_EQ(nearest_colour(rgb(128, 0, 50), p2, hues(p2)), rgb(255, 0, 200));
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

    // A polygon's two colours stay two.
    EditorSession pg;
    pg.curclass = 0;
    pg.palette.colours = {rgb(250, 250, 250), rgb(240, 240, 240)};
    resize_picture(pg, 1, 1);
    ASSERT_TRUE(apply_palette(pg, "FFFFFF,", false, ui));
    EXPECT_EQ(pg.palette.colour(1), rgb(255, 255, 255));
    EXPECT_EQ(pg.palette.colour(2), rgb(240, 240, 240));
    e.truecolour = true;
    EXPECT_FALSE(apply_palette(e, "FFFFFF,", false, ui));
    EXPECT_EQ(ui.messages.back(), "Convert to 256 Colours.");
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

    e.pixels.set(0, 0, 3);
    e.pixels.set(1, 0, 2);
    ASSERT_TRUE(removecol(e, 2, ui));
    EXPECT_EQ(e.ncols(), 3);
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{2, 1, 0}));
    EXPECT_EQ(trimcols(e, ui), 0);
    EXPECT_EQ(ui.messages.back(), "No usused colours found.");
    e.pixels.set(1, 0, 0);
    EXPECT_EQ(trimcols(e, ui), 1);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(1, 1, 1), rgb(254, 254, 254)}));
    EXPECT_EQ(e.pixels.values(), (std::vector<uint8_t>{1, 0, 0}));
    EXPECT_EQ(ui.messages.back(), "Unused colours have been removed.");

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
}

}  // namespace
}  // namespace korvex::editor
