// The colour adjustments with exact channel values, the panel's life
// (slider back to 0, one colour, Apply, Cancel, Restore, true colour),
// invert and desaturate with their Ctrl+Z, the colour count's walk and the
// pattern generators.
#include <gtest/gtest.h>

#include "editor/canvas.h"
#include "editor/colour_adjust.h"
#include "editor/colour_count.h"
#include "editor/patterns.h"
#include "editor/standard_palettes.h"
#include "image_fixtures.h"

namespace korvex::editor {
namespace {

using platform::ScriptedPrompt;

using fixtures::M;
const AdjustScope all{M, 0};

EditorSession cycling_point(std::vector<uint32_t> palette, int w = 4, int h = 1) {
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = std::move(palette);
    resize_picture(e, w, h);
    for (int i = 0; i < w * h; ++i) e.pixels.values()[static_cast<size_t>(i)] = static_cast<uint8_t>(i % e.ncols());
    painticon(e);
    start_history(e);
    return e;
}

TEST(ColourAdjust, EachAdjustmentHasExactChannels) {
    // Brightness: the offset is 0.9 x the slider, half to even, within 0..255.
    EXPECT_EQ(change_brightness({rgb(250, 3, 100), M}, 10, all), (std::vector<uint32_t>{rgb(255, 12, 109), M}));
    EXPECT_EQ(change_brightness({rgb(250, 3, 100)}, -5, all), std::vector<uint32_t>{rgb(246, 0, 96)});
    EXPECT_EQ(change_brightness({rgb(10, 10, 10)}, 5, all), std::vector<uint32_t>{rgb(14, 14, 14)});

    // Contrast: the channel means over the opaque entries, by integer division.
    const std::vector<uint32_t> pal{rgb(100, 100, 100), rgb(200, 0, 50), M};
    EXPECT_EQ(change_contrast(pal, 100, all), (std::vector<uint32_t>{rgb(50, 150, 125), rgb(250, 0, 25), M}));
    EXPECT_EQ(change_contrast(pal, -100, all), (std::vector<uint32_t>{rgb(150, 50, 75), rgb(150, 50, 75), M}));
    EXPECT_EQ(change_contrast({rgb(1, 0, 0), rgb(2, 0, 0)}, -100, all), (std::vector<uint32_t>{rgb(1, 0, 0), rgb(1, 0, 0)}));

    // Hue in degrees, lightness and saturation as factors.
    const uint32_t red = rgb(255, 0, 0);
    EXPECT_EQ(change_hls({red}, 120, 0, 0, all), std::vector<uint32_t>{rgb(0, 255, 0)});
    EXPECT_EQ(change_hls({red}, -120, 0, 0, all), std::vector<uint32_t>{rgb(0, 0, 255)});
    EXPECT_EQ(change_hls({red}, 0, -100, 0, all), std::vector<uint32_t>{0});
    EXPECT_EQ(change_hls({red}, 0, 0, -100, all), std::vector<uint32_t>{rgb(128, 128, 128)});
    EXPECT_EQ(change_hls({red}, 0, 100, 0, all), std::vector<uint32_t>{rgb(255, 255, 255)});  // lightness capped
    // A whole turn gives every colour back exactly.
    const std::vector<uint32_t> std256 = palette_256();
    EXPECT_EQ(change_hls(std256, 360, 0, 0, all), std256);

    EXPECT_EQ(change_cols({rgb(100, 100, 100)}, 20, 0, 200, 5, 30, 0, all), std::vector<uint32_t>{rgb(115, 70, 255)});
    EXPECT_EQ(vibrance({rgb(200, 100, 50), rgb(90, 90, 90)}, 100, all),
              (std::vector<uint32_t>{rgb(200, 165, 148), rgb(90, 90, 90)}));

    // One colour: only that entry moves.
    const AdjustScope one{M, 2};
    EXPECT_EQ(change_cols({rgb(1, 1, 1), rgb(2, 2, 2)}, 10, 0, 0, 0, 0, 0, one), (std::vector<uint32_t>{rgb(1, 1, 1), rgb(12, 2, 2)}));
}

TEST(ColourAdjuster, SlidersBackAtZeroGiveTheStartingPaletteExactly) {
    EditorSession e = cycling_point(palette_256(), 16, 16);
    e.palette.colours[3] = M;
    painticon(e);
    const Palette start = e.palette;
    const Raster surface = e.surface;
    ColourAdjuster a;
    a.open(e);
    Sliders s;
    s.brightness = 37;
    s.contrast = -20;
    s.hue = 45;
    s.lightness = 10;
    s.saturation = -30;
    s.red = 12;
    s.magenta = 40;
    s.vibrance = 55;
    a.move(e, s);
    EXPECT_NE(e.palette, start);
    EXPECT_EQ(e.palette.colours[3], M);  // the transparent entry stays
    EXPECT_NE(e.surface, surface);       // the canvas previews
    s.brightness = 0;
    a.move(e, s);  // each move starts from origpal, not from the last result
    a.move(e, Sliders{});
    EXPECT_EQ(e.palette, start);
    EXPECT_EQ(e.surface, surface);
    a.cancel(e);
    EXPECT_FALSE(a.is_open());
    EXPECT_FALSE(e.eddirty);
}

TEST(ColourAdjuster, ApplyCancelRestoreAndOneColour) {
    EditorSession e = cycling_point({rgb(10, 10, 10), rgb(20, 20, 20), M});
    ColourAdjuster a;
    Sliders bright;
    bright.brightness = 100;

    a.open(e);
    a.move(e, bright);
    a.restore(e);  // "Restore Image"
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(10, 10, 10), rgb(20, 20, 20), M}));
    EXPECT_TRUE(a.is_open());
    a.move(e, bright);
    a.cancel(e);
    EXPECT_EQ(e.palette.colours[0], rgb(10, 10, 10));
    EXPECT_EQ(e.changes2, 0);

    // One colour without a valid current colour changes nothing.
    e.curcol = 0;
    a.open(e);
    a.set_onecolour(e, true);
    a.move(e, bright);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(10, 10, 10), rgb(20, 20, 20), M}));
    a.cancel(e);

    e.curcol = 2;
    a.open(e);
    a.set_onecolour(e, true);
    a.move(e, bright);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(10, 10, 10), rgb(110, 110, 110), M}));
    a.apply(e);
    EXPECT_FALSE(a.is_open());
    EXPECT_EQ(e.surface.at(1, 0), rgb(110, 110, 110));
    EXPECT_EQ(e.changes2, ch_filter | ch_brightness);
    EXPECT_TRUE(e.eddirty);
    // Ctrl+Z takes the applied palette back.
    ASSERT_TRUE(load_lastpalette(e));
    EXPECT_EQ(e.palette.colours[1], rgb(20, 20, 20));

    // A true-colour icon: the pixels are the colours, and Apply is an undo level.
    EditorSession t = cycling_point({rgb(0, 0, 0)}, 2, 1);
    t.truecolour = true;
    t.surface.pixels() = {rgb(100, 0, 0), M};
    start_history(t);
    a.open(t);
    Sliders hue;
    hue.hue = 120;
    a.move(t, hue);
    EXPECT_EQ(t.surface.pixels(), (std::vector<uint32_t>{rgb(0, 100, 0), M}));
    a.apply(t);
    EXPECT_EQ(t.undo.level(), 1);
    EXPECT_EQ(t.changes2, ch_filter);
}

TEST(ColourAdjust, InvertAndDesaturateKeepTransparencyAndUndo) {
    EditorSession e = cycling_point({rgb(0, 238, 0), rgb(10, 20, 31), M});
    ScriptedPrompt ui;
    ASSERT_TRUE(minvert(e, ui));
    // The complement of the first is the marker itself: it stays opaque.
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(255, 17, 254), rgb(245, 235, 224), M}));
    ASSERT_TRUE(load_lastpalette(e));
    EXPECT_EQ(e.palette.colours[1], rgb(10, 20, 31));
    ASSERT_TRUE(mdesat(e));
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(79, 79, 79), rgb(20, 20, 20), M}));
    EXPECT_TRUE(e.lastpalok);

    EditorSession t = cycling_point({0}, 1, 1);
    t.truecolour = true;
    EXPECT_FALSE(minvert(t, ui));
    EXPECT_EQ(ui.messages, std::vector<std::string>{"Convert to 256 Colours first."});
    EXPECT_EQ(slider_label("Hue", -30), "Hue -30");
}

TEST(ColourCount, CountsWalkToTheNextRarerEntryAndBlink) {
    EditorSession e = cycling_point({rgb(1, 1, 1), rgb(2, 2, 2), rgb(3, 3, 3), rgb(4, 4, 4)}, 7, 1);
    e.pixels.values() = {0, 0, 1, 0, 2, 0, 0};
    painticon(e);
    const std::vector<long> counts = colour_counts(e);
    EXPECT_EQ(counts, (std::vector<long>{5, 1, 1, 0}));
    int entry = next_rarer(counts, -1);
    std::vector<int> walk;
    for (int i = 0; i < 5; ++i) {
        walk.push_back(entry);
        entry = next_rarer(counts, entry);
    }
    EXPECT_EQ(walk, (std::vector<int>{4, 2, 3, 1, 4}));
    EXPECT_EQ(colour_count_text(counts, 1), "Colour Count: 5 (colour 1)");
    EXPECT_EQ(next_rarer({}, 1), 0);

    // The blink is a copy for the view: the surface a tool reads keeps the
    // entry's colour, and a pixel a tool preview covers is not blinked.
    const Raster surface = e.surface;
    Raster view = e.surface;
    view.set(4, 0, rgb(9, 9, 9));
    const Raster shown = blink_view(view, e, 2);
    EXPECT_EQ(shown.at(2, 0), k_blink_colour);
    EXPECT_EQ(shown.at(1, 0), rgb(1, 1, 1));
    EXPECT_EQ(blink_view(view, e, 3).at(4, 0), rgb(9, 9, 9));
    EXPECT_EQ(e.surface, surface);
}

TEST(Patterns, StripesAndWavesPaintTheCurrentColourWithinTheArea) {
    EditorSession e = cycling_point({rgb(255, 255, 255), rgb(0, 0, 0)}, 6, 6);
    e.pixels.fill(0);
    painticon(e);
    std::mt19937 random(7);
    ScriptedPrompt ui;
    e.curcol = 0;
    EXPECT_FALSE(stripes(e, 0, 1, {}, random, ui));
    EXPECT_FALSE(waves(e, 0, {}, random, ui));
    EXPECT_EQ(ui.messages, (std::vector<std::string>{"Please load a TYP file.", "Please load a TYP file."}));
    EXPECT_EQ(e.undo.level(), 0);

    e.curcol = 2;
    ASSERT_TRUE(stripes(e, 0, 1, {}, random, ui));
    EXPECT_EQ(e.undo.level(), 1);
    // Every other row, whole rows.
    int rows = 0;
    for (int y = 0; y < 6; ++y) {
        int dark = 0;
        for (int x = 0; x < 6; ++x) dark += e.pixels.at(x, y);
        EXPECT_TRUE(dark == 0 || dark == 6);
        rows += dark == 6;
        if (y > 0) {
            EXPECT_NE(e.pixels.at(0, y), e.pixels.at(0, y - 1));
        }
    }
    EXPECT_EQ(rows, 3);

    e.pixels.fill(0);
    painticon(e);
    ASSERT_TRUE(waves(e, 1, {1, 1, 3, 4}, random, ui));
    int inside = 0;
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x) {
            const bool in = x >= 1 && x < 4 && y >= 1 && y < 5;
            if (!in) {
                EXPECT_EQ(e.pixels.at(x, y), 0) << x << "," << y;
            }
            inside += in && e.pixels.at(x, y) == 1;
        }
    EXPECT_GT(inside, 0);
}

}  // namespace
}  // namespace korvex::editor
