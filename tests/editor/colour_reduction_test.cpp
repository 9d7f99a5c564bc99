// Colour reduction on small pictures: the level lists, the quantised
// colours and their cap, the paste mode's choice by frequency, the palette
// and pixels that histogram leaves, and reducecols' nearest entries.
#include <gtest/gtest.h>

#include "editor/canvas.h"
#include "editor/colour_reduction.h"
#include "editor/median_cut.h"
#include "image_fixtures.h"

namespace korvex::editor {
namespace {

using fixtures::M;

Raster picture(int w, int h, const std::vector<uint32_t>& px) {
    Raster r(w, h);
    r.pixels() = px;
    return r;
}

EditorSession session(int cls, int w, int h, const std::vector<uint32_t>& surface, std::vector<uint32_t> palette) {
    EditorSession e;
    e.curclass = cls;
    e.palette.colours = std::move(palette);
    resize_picture(e, w, h);
    e.surface = picture(w, h, surface);
    return e;
}

std::vector<uint32_t> indexes(const EditorSession& e) {
    return {e.pixels.values().begin(), e.pixels.values().end()};
}

TEST(ChannelLevels, OneLevelAGroupTheLaterValueWinningATie) {
    ChannelHistogram h{};
    std::vector<int> ends;
    for (int v = 3; v < 256; v += 4) ends.push_back(v);
    EXPECT_EQ(channel_levels(h, 64), ends);  // an empty group gives its last value

    h[0] = 1;
    h[1] = 5;
    h[2] = 5;    // ties with 1: the later value
    h[200] = 3;  // a group of its own
    const std::vector<int> l = channel_levels(h, 64);
    ASSERT_EQ(l.size(), 64u);
    EXPECT_EQ(l[0], 2);
    EXPECT_EQ(l[50], 200);
    EXPECT_EQ(l[49], 199);

    ChannelHistogram eight{};
    eight[40] = 2;
    EXPECT_EQ(channel_levels(eight, 8), (std::vector<int>{31, 40, 95, 127, 159, 191, 223, 255}));
    // A black-only and a white-only channel both end their list at the top.
    ChannelHistogram black{}, white{};
    black[0] = 9;
    white[255] = 9;
    EXPECT_EQ(channel_levels(black, 8).front(), 0);
    EXPECT_EQ(channel_levels(black, 8).back(), 255);
    EXPECT_EQ(channel_levels(white, 8).back(), 255);
}

TEST(Quantise, RoundsUpToLevelsAndSparesTheMarker) {
    // Red 9 and 10 share a group (the later wins the tie), so do green 200
    // and 201; blue 250 and 255 lie in groups of their own.
    const uint32_t a = rgb(10, 200, 255), b = rgb(9, 201, 250);
    const Quantised q = quantise(picture(3, 1, {a, b, M}), M, 64);
    EXPECT_EQ(q.colours, (std::vector<uint32_t>{rgb(10, 201, 255), rgb(10, 201, 250), M}));
    EXPECT_EQ(q.indexes, (std::vector<uint8_t>{0, 1, 2}));
    EXPECT_EQ(q.counts[0], 1u);
    EXPECT_EQ(q.counts[2], 1u);

    // A value above the last level takes the last level: 253 beats 255 on count.
    const uint32_t c = rgb(253, 0, 0);
    const Quantised top = quantise(picture(3, 1, {c, c, rgb(255, 0, 0)}), M, 64);
    EXPECT_EQ(top.colours, std::vector<uint32_t>{c});
    EXPECT_EQ(top.indexes, (std::vector<uint8_t>{0, 0, 0}));
}

TEST(Quantise, AfterTheCapUnknownColoursTakeIndex65) {
    // 300 colours far enough apart to keep their own levels.
    std::vector<uint32_t> px;
    for (uint32_t i = 0; i < 300; ++i) px.push_back(rgb((i % 20) * 12, (i / 20) * 12, 0));
    const Quantised q = quantise(picture(20, 15, px), M, 64);
    ASSERT_EQ(q.colours.size(), 255u);
    EXPECT_EQ(q.colours[254], px[254]);
    EXPECT_EQ(q.indexes[254], 254);
    EXPECT_EQ(q.indexes[255], k_surplus_index);
    EXPECT_EQ(q.indexes[299], k_surplus_index);
    EXPECT_EQ(q.counts[k_surplus_index], 1u + 45u);

    // histogram keeps the old palette then, and the pixels take its entries.
    EditorSession e = session(2, 20, 15, px, {0xFFFFFF, 0x000000});
    const ReduceOutcome r = histogram(e, ReduceMode::full);
    EXPECT_TRUE(r.palette_kept);
    EXPECT_EQ(r.before, 300);
    EXPECT_EQ(r.after, 2);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{0xFFFFFF, 0x000000}));
    EXPECT_EQ(e.pixels.at(0, 0), 1);    // black
    EXPECT_EQ(e.pixels.at(19, 14), 0);  // 228,168,0 is nearer white
    EXPECT_EQ(reduce_status(r), "Reducing colours from 300 to 2");

    // A true-colour icon has no palette to keep: 254 colours by median cut.
    EditorSession t = session(2, 20, 15, px, {});
    t.truecolour = true;
    const ReduceOutcome tr = histogram(t, ReduceMode::full);
    EXPECT_FALSE(tr.palette_kept);
    EXPECT_FALSE(t.truecolour);
    EXPECT_EQ(tr.after, k_max_colours);
    int worst = 0;
    for (int y = 0; y < 15; ++y)
        for (int x = 0; x < 20; ++x)
            worst = std::max(worst, colour_distance(px[static_cast<size_t>(y * 20 + x)], t.surface.at(x, y)));
    EXPECT_LE(worst, 12);  // no pixel moves further than to a neighbour of the grid
}

TEST(ChooseByFrequency, SortsMergesAndKeepsFarColours) {
    const uint32_t a = rgb(100, 100, 100), b = rgb(136, 148, 100), c = rgb(100, 161, 100), far = rgb(255, 255, 0);
    ASSERT_EQ(colour_distance(a, b), 60);
    ASSERT_EQ(colour_distance(a, c), 61);
    Quantised q;
    q.colours = {c, b, a};
    q.counts = {3, 4, 5};
    // Most frequent first; b is too near a, c is just far enough.
    EXPECT_EQ(choose_by_frequency(q, 3, M), (std::vector<uint32_t>{a, c}));
    EXPECT_EQ(choose_by_frequency(q, 0, M).size(), 2u);  // no target: two
    EXPECT_EQ(choose_by_frequency(q, 1, M), std::vector<uint32_t>{a});

    // a, far, b: b is only compared with the last one taken, so it stays
    // while there are at most ten colours...
    Quantised few;
    few.colours = {a, far, b};
    few.counts = {9, 8, 7};
    EXPECT_EQ(choose_by_frequency(few, 5, M), (std::vector<uint32_t>{a, far, b}));
    // ...and with eleven the merge of near colours drops it first.
    Quantised many = few;
    for (uint32_t i = 0; i < 8; ++i) {
        many.colours.push_back(rgb(0, 0, 30 * i + 30) + (i % 2 ? rgb(0, 250, 0) : 0));
        many.counts.push_back(1);
    }
    const std::vector<uint32_t> chosen = choose_by_frequency(many, 20, M);
    EXPECT_EQ(std::count(chosen.begin(), chosen.end(), b), 0);
    EXPECT_EQ(chosen[0], a);
    EXPECT_EQ(chosen[1], far);
    // Equal counts keep their order.
    Quantised tie;
    tie.colours = {far, a};
    tie.counts = {2, 2};
    EXPECT_EQ(choose_by_frequency(tie, 2, M), (std::vector<uint32_t>{far, a}));
    // The marker is never merged away.
    Quantised marked;
    marked.colours = {rgb(255, 20, 250), M};
    marked.counts = {5, 1};
    EXPECT_EQ(choose_by_frequency(marked, 2, M), (std::vector<uint32_t>{rgb(255, 20, 250), M}));
}

TEST(Histogram, PointTakesTheListInOrderOfFirstAppearance) {
    const uint32_t r = rgb(255, 0, 0), b = rgb(0, 0, 255);
    EditorSession e = session(2, 3, 2, {r, r, b, M, b, r}, {0x123456});
    e.curcol = 1;
    const ReduceOutcome out = histogram(e, ReduceMode::full);
    EXPECT_FALSE(out.palette_kept);
    EXPECT_EQ(out.before, 3);
    EXPECT_EQ(out.after, 3);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{r, b, M}));
    EXPECT_TRUE(e.palette.transparent(3, M));
    EXPECT_EQ(indexes(e), (std::vector<uint32_t>{0, 0, 1, 2, 1, 0}));
    EXPECT_EQ(e.surface.pixels(), (std::vector<uint32_t>{r, r, b, M, b, r}));
    EXPECT_EQ(e.pixeltext, "$$%\r\n&%$\r\n");
    EXPECT_TRUE(e.changes1 & ch_ncols);
    EXPECT_TRUE(e.eddirty);
}

TEST(Histogram, TrueColourPointBecomesAPaletteIcon) {
    const uint32_t g = rgb(0, 128, 0);
    EditorSession e = session(2, 2, 1, {g, 0xFFFFFF}, {});
    e.truecolour = true;
    histogram(e, ReduceMode::full);
    EXPECT_FALSE(e.truecolour);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{g, 0xFFFFFF}));
    EXPECT_EQ(e.pixeltext, "$%\r\n");
}

TEST(Histogram, PolygonOfOneColourGetsATransparentSecondEntry) {
    const uint32_t c = rgb(10, 20, 30);
    for (int cls : {0, 1, 3, k_polygon_group}) {
        EditorSession e = session(cls, 2, 2, {c, c, c, c}, {0, 0xFFFFFF});
        histogram(e, ReduceMode::paste, 2);
        EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{c, M})) << cls;
        EXPECT_EQ(indexes(e), (std::vector<uint32_t>{0, 0, 0, 0}));
    }
    // A point keeps its single colour.
    EditorSession p = session(2, 1, 1, {c}, {0, 0xFFFFFF});
    histogram(p, ReduceMode::full);
    EXPECT_EQ(p.palette.colours, std::vector<uint32_t>{c});
}

TEST(Histogram, PasteModeKeepsTheMostFrequentAndMapsTheRestToTheNearest) {
    // 8 level groups: values that are the peak of their group stay as they are.
    const uint32_t a = rgb(0, 0, 0), b = rgb(255, 255, 255), c = rgb(40, 40, 40);
    EditorSession e = session(0, 4, 3, {a, a, a, a, a, b, b, b, b, c, c, c}, {0x111111, 0x222222});
    e.curcol = 2;
    const ReduceOutcome out = histogram(e, ReduceMode::paste, 2);
    EXPECT_EQ(out.before, 3);
    EXPECT_EQ(out.after, 2);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{a, b}));
    EXPECT_EQ(indexes(e), (std::vector<uint32_t>{0, 0, 0, 0, 0, 1, 1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(e.surface.at(3, 2), a);  // repainted in the entry's colour
    EXPECT_EQ(e.pixeltext, "0000\r\n0111\r\n1000\r\n");
    // A transparent polygon keeps its marker, as the second entry even
    // when it is the most frequent colour. The marker is not rounded but
    // is counted: its green 17 outnumbers black's 0 and becomes the level.
    EditorSession t = session(0, 3, 1, {a, M, M}, {a, M});
    histogram(t, ReduceMode::paste, 2);
    EXPECT_EQ(t.palette.colours, (std::vector<uint32_t>{rgb(0, 17, 0), M}));
    EXPECT_EQ(indexes(t), (std::vector<uint32_t>{0, 1, 1}));
}

TEST(Reducecols, NearestEntryLowestOnATieAndNothingForOneColourPolygons) {
    const uint32_t k0 = rgb(0, 0, 0), k2 = rgb(2, 0, 0), w = 0xFFFFFF;
    EditorSession e = session(2, 3, 1, {rgb(1, 0, 0), rgb(200, 200, 200), rgb(2, 1, 0)}, {k0, k2, w});
    reducecols(e);
    EXPECT_EQ(indexes(e), (std::vector<uint32_t>{0, 2, 1}));
    EXPECT_EQ(e.surface.pixels(), (std::vector<uint32_t>{k0, w, k2}));
    EXPECT_EQ(e.pixeltext, "$&%\r\n");
    // The lower entry of a tie whose red difference alone equals the best
    // distance, on either side of the colour's red.
    const uint32_t c = rgb(100, 0, 0);
    EditorSession below = session(2, 1, 1, {c}, {rgb(90, 0, 0), rgb(100, 10, 0)});
    reducecols(below);
    EXPECT_EQ(indexes(below), std::vector<uint32_t>{0});
    EditorSession above = session(2, 1, 1, {c}, {rgb(110, 0, 0), rgb(100, 0, 10)});
    reducecols(above);
    EXPECT_EQ(indexes(above), std::vector<uint32_t>{0});

    EditorSession one = session(0, 2, 1, {w, k0}, {k0});
    one.pixels.fill(0);
    reducecols(one);
    EXPECT_EQ(one.surface.pixels(), (std::vector<uint32_t>{w, k0}));  // untouched
}

TEST(MedianCut, SplitsTheWidestRangeAtTheMedianAndKeepsTheMarker) {
    const uint32_t k = rgb(0, 0, 0), k10 = rgb(10, 0, 0), r200 = rgb(200, 0, 0), r210 = rgb(210, 0, 0);
    const Raster pic = picture(5, 1, {k, k10, r200, r210, M});
    EXPECT_EQ(median_cut_palette(pic, M, 2), (std::vector<uint32_t>{rgb(5, 0, 0), rgb(205, 0, 0)}));
    EXPECT_EQ(median_cut_palette(pic, M, 1), std::vector<uint32_t>{rgb(105, 0, 0)});
    EXPECT_EQ(median_cut_palette(pic, M, 9), (std::vector<uint32_t>{k, k10, r200, r210}));  // fewer than asked

    EditorSession e = session(2, 5, 1, {k, k10, r200, r210, M}, {k, k10, r200, r210, M});
    e.pixels.values() = {0, 1, 2, 3, 4};
    painticon(e);
    start_history(e);
    const ReduceOutcome out = reduce_colours(e, 3);
    EXPECT_EQ(out.before, 5);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{rgb(5, 0, 0), rgb(205, 0, 0), M}));
    EXPECT_EQ(indexes(e), (std::vector<uint32_t>{0, 0, 1, 1, 2}));
    // A step of the history: Ctrl+Z brings picture and palette back.
    EXPECT_EQ(e.undo.level(), 1);
    EXPECT_FALSE(e.lastpalok);
    ASSERT_TRUE(undo_step(e));
    EXPECT_EQ(indexes(e), (std::vector<uint32_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(e.ncols(), 5);
    EXPECT_EQ(e.surface.at(1, 0), k10);
    ASSERT_TRUE(redo_step(e));
    EXPECT_EQ(indexes(e), (std::vector<uint32_t>{0, 0, 1, 1, 2}));
    EXPECT_EQ(e.ncols(), 3);

    // A polygon keeps two entries whatever is asked, the marker second.
    EditorSession p = session(0, 3, 1, {M, k, k10}, {k, M});
    reduce_colours(p, 50);
    EXPECT_EQ(p.palette.colours, (std::vector<uint32_t>{rgb(5, 0, 0), M}));
    EXPECT_EQ(indexes(p), (std::vector<uint32_t>{1, 0, 0}));
}

}  // namespace
}  // namespace korvex::editor
