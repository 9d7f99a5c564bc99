// The draw list: the order a device draws in, what becomes of types without
// a level and of types the project lacks, labels by language and font
// style, night colours and pictures, transparency and widths.
#include <gtest/gtest.h>

#include "preview/draw_list.h"
#include "preview/preview_fixture.h"

using namespace korvex;
using namespace korvex::preview;
using namespace korvex::preview_test;

namespace {

std::vector<int32_t> polygon_codes(const DrawList& l) {
    std::vector<int32_t> out;
    for (const DrawStep& st : l.order)
        if (st.kind == ItemKind::polygon) out.push_back(l.sources[static_cast<size_t>(st.source)].code);
    return out;
}

const LabelItem* label_of(const DrawList& l, int feature) {
    for (const DrawStep& st : l.order)
        if (st.kind == ItemKind::label && l.sources[static_cast<size_t>(st.source)].feature == feature)
            return &l.labels[static_cast<size_t>(st.index)];
    return nullptr;
}

}  // namespace

TEST(DrawList, PolygonsByLevelTiesInProjectOrderMissingTypesBelow) {
    // Project order 0x05, 0x03, 0x04, 0x02; 0x03 and 0x04 share level 2,
    // 0x05 is highest; the scene lists them the other way round.
    model::Store s = project("[_drawOrder]\r\nType=0x02,1\r\nType=0x03,2\r\nType=0x04,2\r\nType=0x05,3\r\n[end]\r\n" +
                             solid_polygon("0x05", "111111") + solid_polygon("0x03", "222222") +
                             solid_polygon("0x04", "333333") + solid_polygon("0x02", "444444"));
    const Scene sc = scene_of({square(0x0500, 0, 0), square(0x0400, 5, 5), square(0x0300, 10, 10),
                               square(0x0200, 15, 15), square(0x0700, 20, 20), square(0x0400, 30, 30)});
    const DrawList l = build_draw_list(s, sc, {});
    EXPECT_EQ(polygon_codes(l), (std::vector<int32_t>{0x0700, 0x0200, 0x0300, 0x0400, 0x0400, 0x0500}));
    // Two features of one type keep the scene's order.
    std::vector<int> fours;
    for (const DrawStep& st : l.order)
        if (l.sources[static_cast<size_t>(st.source)].code == 0x0400) fours.push_back(l.sources[static_cast<size_t>(st.source)].feature);
    EXPECT_EQ(fours, (std::vector<int>{1, 5}));
    EXPECT_TRUE(l.invisible_types.empty());
    EXPECT_TRUE(l.notes().empty());
}

TEST(DrawList, PolygonsThenLinesThenPointsThenLabelsWhateverTheSceneOrder) {
    model::Store s = project("[_drawOrder]\r\nType=0x02,1\r\n[end]\r\n" + solid_polygon("0x02", "00FF00"));
    const Scene sc = scene_of({feature(FeatureClass::point, 0x2a06, {{5, 5}}, "P"),
                               feature(FeatureClass::line, 0x0100, {{0, 0}, {9, 9}}, "L"),
                               square(0x0200, 0, 0), feature(FeatureClass::point, 0x2f01, {{6, 6}}, "Q"),
                               square(0x0300, 1, 1)});
    const DrawList l = build_draw_list(s, sc, {});
    ASSERT_EQ(l.order.size(), 5u + 3u);  // five features, three labelled
    for (size_t k = 1; k < l.order.size(); ++k) EXPECT_LE(l.order[k - 1].kind, l.order[k].kind) << k;
    EXPECT_EQ(l.order.back().kind, ItemKind::label);
}

TEST(DrawList, PolygonTypesWithoutLevelAreNotDrawnAndCountedOnce) {
    const std::string types[] = {"0x02", "0x03", "0x04"};
    for (int without = 0; without <= 3; ++without) {
        std::string order = "[_drawOrder]\r\n", sections;
        for (int k = 0; k < 3; ++k) {
            if (k >= without) order += "Type=" + types[k] + ",1\r\n";
            sections += solid_polygon(types[k], "808080");
        }
        model::Store s = project(order + "[end]\r\n" + sections);
        // Drop what the load may have completed: the list is the truth.
        s.drwlist.clear();
        for (int k = without; k < 3; ++k) s.drwlist += " 00" + std::string(types[k]).substr(2) + ",1";
        // Each type twice in the scene: counted once.
        const Scene sc = scene_of({square(0x0200, 0, 0), square(0x0300, 0, 0), square(0x0400, 0, 0),
                                   square(0x0200, 5, 5), square(0x0300, 5, 5), square(0x0400, 5, 5)});
        const DrawList l = build_draw_list(s, sc, {});
        EXPECT_EQ(l.invisible_types.size(), static_cast<size_t>(without));
        EXPECT_EQ(l.polygons.size(), static_cast<size_t>(2 * (3 - without)));
        const std::vector<std::string> notes = l.notes();
        const std::vector<std::string> expected =
            without == 0   ? std::vector<std::string>{}
            : without == 1 ? std::vector<std::string>{"1 polygon type has no draw order and is invisible"}
                           : std::vector<std::string>{std::to_string(without) +
                                                      " polygon types have no draw order and are invisible"};
        EXPECT_EQ(notes, expected);
    }
}

TEST(DrawList, TheElementsLabelByLanguageAndFontStyle) {
    const std::string strings = "String1=0x00,Zero\r\nString2=0x04,English\r\nString3=0x02,Deutsch\r\n";
    struct Case {
        const char* name;
        std::string keys;
        int language;
        const char* text;  // nullptr: no label item
        FontStyle style;
    };
    const Case cases[] = {
        {"preferred", strings, 2, "Deutsch", FontStyle::normal},
        {"other preferred", strings, 4, "English", FontStyle::normal},
        {"language 0 when the preferred is absent", strings, 0x19, "Zero", FontStyle::normal},
        {"the first without language 0", "String1=0x04,English\r\nString2=0x02,Deutsch\r\n", 0x19, "English",
         FontStyle::normal},
        {"the type without strings", "", 2, "0x2a06", FontStyle::normal},
        {"small", strings + "FontStyle=SmallFont\r\n", 2, "Deutsch", FontStyle::small},
        {"large", strings + "FontStyle=Large\r\n", 2, "Deutsch", FontStyle::large},
        {"default", strings + "FontStyle=Default\r\n", 2, "Deutsch", FontStyle::normal},
        {"no label", strings + "FontStyle=NoLabel\r\n", 2, nullptr, FontStyle::normal},
    };
    for (const Case& c : cases) {
        model::Store s = project("[_point]\r\nType=0x2a06\r\n" + c.keys +
                                 "DayXpm=\"1 1 1 1\"\r\n\"! c #FF0000\"\r\n\"!\"\r\n[end]\r\n");
        Feature bound = feature(FeatureClass::point, 0x2a06, {{5, 5}}, "Scene's own");
        bound.row = 0;  // as the sampler binds it
        const Scene sc = scene_of({bound, feature(FeatureClass::point, 0x2a06, {{9, 9}}, "Scene's own")});
        DrawOptions o;
        o.language = c.language;
        const DrawList l = build_draw_list(s, sc, o);
        const LabelItem* sampled = label_of(l, 0);
        const LabelItem* own = label_of(l, 1);
        if (!c.text) {
            EXPECT_EQ(sampled, nullptr) << c.name;
            EXPECT_EQ(own, nullptr) << c.name;
            EXPECT_EQ(l.points.size(), 2u) << c.name;
            continue;
        }
        ASSERT_NE(sampled, nullptr) << c.name;
        EXPECT_EQ(sampled->text, c.text) << c.name;
        EXPECT_EQ(sampled->style, c.style) << c.name;
        ASSERT_NE(own, nullptr) << c.name;
        EXPECT_EQ(own->text, "Scene's own") << c.name;
        EXPECT_EQ(own->style, c.style) << c.name;
    }
}

TEST(DrawList, LabelsOfCodePageBytesArriveAsUtf8) {
    model::Store s = project(solid_polygon("0x02", "808080", "String1=0x00,Caf\xe9\r\n") +
                             "[_drawOrder]\r\nType=0x02,1\r\n[end]\r\n");
    Feature f = square(0x0200, 0, 0);
    f.row = 0;
    const DrawList l = build_draw_list(s, scene_of({f}), {});
    ASSERT_EQ(l.labels.size(), 1u);
    EXPECT_EQ(l.labels[0].text, "Caf\xc3\xa9");
}

TEST(DrawList, NightSwitchesColoursPicturesAndLabelColours) {
    model::Store s = project(
        "[_drawOrder]\r\nType=0x02,1\r\n[end]\r\n"
        "[_polygon]\r\nType=0x02\r\nString1=0x00,Area\r\nCustomColor=DayAndNight\r\nDaycustomColor:#112233\r\n"
        "NightcustomColor:#445566\r\nXpm=\"0 0 2 0\"\r\n\"1 c #00FF00\"\r\n\"2 c #003300\"\r\n[end]\r\n"
        "[_line]\r\nType=0x01\r\nlwidth(=3\r\nBorderWidth=0\r\nXpm=\"0 0 2 0\"\r\n\"1 c #FF0000\"\r\n"
        "\"2 c #550000\"\r\n[end]\r\n"
        "[_point]\r\nType=0x2a06\r\nString1=0x00,Pt\r\nCustomColor=Day\r\nDaycustomColor:#0000FF\r\n"
        "DayXpm=\"1 1 1 1\"\r\n\"! c #FFFFFF\"\r\n\"!\"\r\n"
        "NightXpm=\"1 1 1 1\"\r\n\"! c #202020\"\r\n\"!\"\r\n[end]\r\n");
    Scene sc = scene_of({square(0x0200, 0, 0, 50), feature(FeatureClass::line, 0x0100, {{0, 0}, {50, 50}}),
                         feature(FeatureClass::point, 0x2a06, {{20, 20}}, "Pt")});
    sc.features[0].label = "Area";
    for (const bool night : {false, true}) {
        DrawOptions o;
        o.night = night;
        const DrawList l = build_draw_list(s, sc, o);
        ASSERT_EQ(l.polygons.size(), 1u);
        ASSERT_EQ(l.lines.size(), 1u);
        ASSERT_EQ(l.points.size(), 1u);
        EXPECT_TRUE(l.polygons[0].solid);
        EXPECT_EQ(l.polygons[0].colour, night ? 0xFF003300u : 0xFF00FF00u);
        EXPECT_EQ(l.lines[0].fill, night ? 0xFF550000u : 0xFFFF0000u);
        EXPECT_EQ(l.lines[0].width, 3);
        ASSERT_TRUE(l.points[0].picture);
        EXPECT_EQ(l.points[0].picture->at(0, 0), night ? 0xFF202020u : 0xFFFFFFFFu);
        ASSERT_EQ(l.labels.size(), 2u);
        EXPECT_EQ(label_of(l, 0)->colour, night ? 0xFF445566u : 0xFF112233u);
        // The point has only a day colour: at night its label takes the default.
        EXPECT_EQ(label_of(l, 2)->colour == 0xFF0000FFu, !night);
        EXPECT_NE(l.background, build_draw_list(s, sc, DrawOptions{!night, 0, 1.0}).background);
    }
}

TEST(DrawList, TypesTheProjectLacksAreGreyAndSaySoWithLabelsReadableOnThem) {
    model::Store s = project("");
    const Scene sc = scene_of({square(0x0200, 0, 0, 50), feature(FeatureClass::line, 0x0100, {{0, 0}, {50, 50}}, "A1"),
                               feature(FeatureClass::point, 0x2a06, {{20, 20}}, "Pizza")});
    for (const bool night : {false, true}) {
        DrawOptions o;
        o.night = night;
        const DrawList l = build_draw_list(s, sc, o);
        ASSERT_EQ(l.sources.size(), 3u);
        EXPECT_TRUE(l.polygons.at(0).missing);
        EXPECT_TRUE(l.lines.at(0).missing);
        EXPECT_TRUE(l.points.at(0).missing);
        const uint32_t grey = l.polygons[0].colour, label = l.labels.at(0).colour;
        EXPECT_EQ((grey >> 16) & 0xFF, grey & 0xFF);
        EXPECT_EQ((grey >> 8) & 0xFF, grey & 0xFF);
        const int contrast = static_cast<int>(grey & 0xFF) - static_cast<int>(label & 0xFF);
        EXPECT_GE(std::abs(contrast), 0x60) << (night ? "night" : "day");
        EXPECT_GT(l.lines[0].width, 0);
        ASSERT_TRUE(l.points[0].picture);
        for (const ItemSource& src : l.sources) EXPECT_EQ(src.row, -1);
        EXPECT_EQ(source_text(l.sources[2]), "0x2a06 Pizza (not in the project)");
        // Missing polygon types are no draw-order matter.
        EXPECT_TRUE(l.notes().empty());
    }
}

TEST(DrawList, TransparentPatternPixelsStayClearForTheLowerPolygon) {
    model::Store s = project("[_drawOrder]\r\nType=0x02,1\r\n[end]\r\n[_polygon]\r\nType=0x02\r\n"
                             "Xpm=\"32 32 2 1\"\r\n\"0 c none\"\r\n\"1 c #0000FF\"\r\n" +
                             [] {
                                 std::string rows;
                                 for (int y = 0; y < 32; ++y) rows += "\"" + std::string(16, '1') + std::string(16, '0') + "\"\r\n";
                                 return rows;
                             }() + "[end]\r\n");
    const DrawList l = build_draw_list(s, scene_of({square(0x0200, 0, 0, 64)}), {});
    ASSERT_EQ(l.polygons.size(), 1u);
    const PolygonItem& p = l.polygons[0];
    ASSERT_FALSE(p.solid);
    ASSERT_TRUE(p.tile);
    EXPECT_EQ(p.tile->at(0, 0), 0xFF0000FFu);
    EXPECT_EQ(p.tile->at(15, 31), 0xFF0000FFu);
    EXPECT_EQ(p.tile->at(16, 0) >> 24, 0u);
    EXPECT_EQ(p.tile->at(31, 31) >> 24, 0u);
}

TEST(DrawList, LineWidthBorderAndGeometryScaleWithZoom) {
    model::Store s = project("[_line]\r\nType=0x01\r\nlwidth(=5\r\nBorderWidth=1\r\nXpm=\"0 0 2 0\"\r\n"
                             "\"1 c #FF0000\"\r\n\"2 c #0000FF\"\r\n[end]\r\n");
    const Scene sc = scene_of({feature(FeatureClass::line, 0x0100, {{10, 20}, {30, 40}}, "A1")});
    const std::pair<double, double> zooms[] = {{1, 1}, {2, 2}, {3, 3}, {0, 0.25}, {100, 8}};
    for (const auto& [asked, used] : zooms) {
        DrawOptions o;
        o.zoom = asked;
        const DrawList l = build_draw_list(s, sc, o);
        ASSERT_EQ(l.lines.size(), 1u);
        const LineItem& line = l.lines[0];
        EXPECT_EQ(l.zoom, used);
        EXPECT_FALSE(line.bitmap);
        EXPECT_EQ(line.width, 5 * used);
        EXPECT_EQ(line.border, 1 * used);
        EXPECT_EQ(line.fill, 0xFFFF0000u);
        EXPECT_EQ(line.border_colour, 0xFF0000FFu);
        EXPECT_EQ(line.points[1], (Pt{30 * used, 40 * used}));
        EXPECT_EQ(l.width, 100 * used);
    }
}

TEST(DrawList, BitmapLinesKeepTheirRowsAndOrientation) {
    for (const char* orient : {"Y", "N"}) {
        model::Store s = project(std::string("[_line]\r\nType=0x01\r\nUseOrientation=") + orient +
                                 "\r\nXpm=\"32 2 2 1\"\r\n\"0 c #FF0000\"\r\n\"1 c none\"\r\n\"" + std::string(32, '0') +
                                 "\"\r\n\"" + std::string(16, '0') + std::string(16, '1') + "\"\r\n[end]\r\n");
        const DrawList l = build_draw_list(s, scene_of({feature(FeatureClass::line, 0x0100, {{0, 0}, {50, 0}})}), {});
        ASSERT_EQ(l.lines.size(), 1u);
        const LineItem& line = l.lines[0];
        EXPECT_TRUE(line.bitmap);
        EXPECT_EQ(line.oriented, orient[0] == 'Y');
        ASSERT_TRUE(line.rows);
        EXPECT_EQ(line.rows->h, 2);
        EXPECT_EQ(line.rows->at(0, 0), 0xFFFF0000u);
        EXPECT_EQ(line.rows->at(31, 1) >> 24, 0u);
    }
}

TEST(DrawList, PointOpacityBecomesAlpha) {
    model::Store s = project("[_point]\r\nType=0x2a06\r\nDayXpm=\"3 1 3 1\" Colormode=32\r\n\"! c #FF0000\" alpha=0\r\n"
                             "\"# c #00FF00\" alpha=7\r\n\"$ c #0000FF\" alpha=15\r\n\"!#$\"\r\n[end]\r\n");
    const DrawList l = build_draw_list(s, scene_of({feature(FeatureClass::point, 0x2a06, {{5, 5}})}), {});
    ASSERT_EQ(l.points.size(), 1u);
    const Raster& pic = *l.points[0].picture;
    EXPECT_EQ(pic.at(0, 0), 0xFFFF0000u);
    EXPECT_EQ(pic.at(1, 0) & 0xFFFFFF, 0x00FF00u);
    EXPECT_EQ(pic.at(1, 0) >> 24, 255u - 7 * 17);
    EXPECT_EQ(pic.at(2, 0) >> 24, 0u);
}

TEST(DrawList, TheTopmostFeatureIsHitAndLabelsAreNot) {
    model::Store s = project("[_drawOrder]\r\nType=0x02,1\r\nType=0x03,2\r\n[end]\r\n" + solid_polygon("0x03", "111111") +
                             solid_polygon("0x02", "222222"));
    const Scene sc = scene_of({square(0x0300, 20, 20, 20), square(0x0200, 0, 0, 60),
                               feature(FeatureClass::line, 0x0100, {{0, 50}, {60, 50}}),
                               feature(FeatureClass::point, 0x2a06, {{45, 10}}, "P")});
    DrawOptions o;
    o.zoom = 2;
    const DrawList l = build_draw_list(s, sc, o);
    const auto hit_feature = [&](Pt at) {
        const int k = hit_step(l, at);
        return k < 0 ? -1 : l.sources[static_cast<size_t>(l.order[static_cast<size_t>(k)].source)].feature;
    };
    EXPECT_EQ(hit_feature({60, 60}), 0);    // the higher polygon over the lower
    EXPECT_EQ(hit_feature({10, 10}), 1);
    EXPECT_EQ(hit_feature({100, 101}), 2);  // on the line (device pixels)
    EXPECT_EQ(hit_feature({90, 20}), 3);    // the point's grey picture
    EXPECT_EQ(hit_feature({119, 5}), 1);    // just inside the big polygon
    EXPECT_EQ(hit_feature({121, 5}), -1);
}

TEST(DrawList, AViewLeavesOutWhatLiesWhollyOutsideButCountsInvisibleTypesAlways) {
    model::Store s = project("[_drawOrder]\r\nType=0x02,1\r\n[end]\r\n" + solid_polygon("0x02", "00FF00") +
                             solid_polygon("0x03", "0000FF"));
    s.drwlist = " 0002,1";
    // At zoom 2 the view is scene x 1000 .. 1050: a square just inside its
    // reach, one beyond it, and an invisible type far away.
    Scene sc = scene_of({square(0x0200, 1100, 0), square(0x0200, 2000, 0), square(0x0300, 5000, 5000),
                         feature(FeatureClass::line, 0x0100, {{0, 10}, {3000, 10}})});
    DrawOptions o;
    o.zoom = 2;
    o.view_x = 2000;
    o.view_w = 100;
    o.view_h = 100;
    const DrawList l = build_draw_list(s, sc, o);
    std::vector<int> kept;
    for (const ItemSource& src : l.sources) kept.push_back(src.feature);
    EXPECT_EQ(kept, (std::vector<int>{0, 3}));  // the square in reach, the line across
    EXPECT_EQ(l.invisible_types, std::vector<int32_t>{0x0300});
    o.view_w = 0;  // no view: everything
    EXPECT_EQ(build_draw_list(s, sc, o).sources.size(), 3u);
}
