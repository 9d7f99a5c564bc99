// The scene text: bad lines are reported and skipped without harm, a written
// scene reads back the same, type digits mean what the store's do, and the
// bundled Town reads cleanly with every kind of feature a town has.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "platform/files.h"
#include "preview/scene.h"
#include "support/harness.h"

using namespace korvex::preview;

namespace {

const std::string k_head = "scene T 100 80\n";

struct BadCase {
    const char* name;
    std::string body;
    size_t features;    // kept
    size_t reports;     // report lines
    const char* says;   // in the first report line
};

}  // namespace

TEST(SceneReader, BadLinesAreReportedAndSkippedTheRestIsKept) {
    const BadCase cases[] = {
        {"bad type", "polygon 01 \"a\"\n 1,1 5,1 5,5\nline 0x02\n 0,0 9,9\n", 1, 2, "bad type"},
        {"six digits", "point 0x123456\n 1,1\n", 0, 2, "bad type"},
        {"unclosed label", "point 0x2a06 \"Pizza\n 1,1\n", 0, 2, "bad label"},
        {"text behind the label", "point 0x2a06 \"a\" b\n 1,1\n", 0, 2, "bad label"},
        {"bad coordinate keeps the good lines", "line 0x01\n 0,0 5,5\n 7;7\n 9,9\n", 1, 1, "bad coordinate"},
        {"huge number", "line 0x01\n 0,0 1e300,5\n", 0, 2, "bad coordinate"},
        {"a coordinate without its y", "line 0x01\n 0,0 5,\n", 0, 2, "bad coordinate"},
        {"polygon of two points", "polygon 0x01\n 0,0 5,5\n", 0, 1, "too few points"},
        {"polygon of three points", "polygon 0x01\n 0,0 5,5 0,5\n", 1, 0, ""},
        {"line of one point", "line 0x01\n 5,5\n", 0, 1, "too few points"},
        {"point of two coordinates", "point 0x2f01\n 1,1 2,2\n", 0, 2, "one coordinate"},
        {"coordinates before any feature", " 1,1\npoint 0x2f01\n 1,1\n", 1, 1, "without a feature"},
        {"unknown word ends the feature", "point 0x2f01\nroad 0x01\n 1,1\n", 0, 3, "too few points"},
        {"second scene line", "scene U 5 5\npoint 0x2f01\n 1,1\n", 1, 1, "second scene"},
        {"blank lines, comments and CR LF", "\r\n# a\r\npoint 0x2f01 \"x\"\r\n\r\n  1,1\r\n", 1, 0, ""},
    };
    for (const BadCase& c : cases) {
        const SceneRead r = read_scene(k_head + c.body);
        EXPECT_EQ(r.scene.features.size(), c.features) << c.name;
        ASSERT_EQ(r.report.size(), c.reports) << c.name;
        if (c.reports) {
            EXPECT_NE(r.report.front().find(c.says), std::string::npos) << c.name << ": " << r.report.front();
        }
        EXPECT_EQ(r.scene.width, 100) << c.name;
    }
}

TEST(SceneReader, ReportLinesNameTheLineAndABadHeadLeavesTheSizeToTheFeatures) {
    const SceneRead r = read_scene("scene Town wide 900\npoint 0x2f01\n 40,30\n\npoint x\n");
    ASSERT_EQ(r.report.size(), 3u);
    EXPECT_EQ(r.report[0].rfind("line 1: ", 0), 0u);
    EXPECT_EQ(r.report[1].rfind("line 5: ", 0), 0u);
    EXPECT_NE(r.report[2].find("no scene line"), std::string::npos);
    EXPECT_EQ(r.scene.width, 40);
    EXPECT_EQ(r.scene.height, 30);
    // Bytes no text has: still no crash, still a report.
    const SceneRead junk = read_scene(std::string("\0\xff\"\\,\n\t,,\n", 10));
    EXPECT_FALSE(junk.report.empty());
    EXPECT_TRUE(junk.scene.features.empty());
}

TEST(SceneReader, TypeDigitsAreTheStoresCodesAndAreWrittenBackAlike) {
    const std::pair<const char*, int32_t> cases[] = {
        {"0x1", 0x100}, {"0x01", 0x100}, {"0x115", 0x11500}, {"0x2a06", 0x2a06},
        {"0x2A06", 0x2a06}, {"0x10f04", 0x10f04}, {"0x0100", 0x100},
    };
    for (const auto& [text, code] : cases) {
        const SceneRead r = read_scene(k_head + "point " + text + "\n 1,1\n");
        ASSERT_EQ(r.scene.features.size(), 1u) << text;
        EXPECT_EQ(r.scene.features[0].code, code) << text;
        const SceneRead again = read_scene(k_head + "point " + scene_type_text(code) + "\n 1,1\n");
        EXPECT_EQ(again.scene.features[0].code, code) << scene_type_text(code);
    }
    EXPECT_EQ(scene_type_text(0x100), "0x01");
    EXPECT_EQ(scene_type_text(0x2a06), "0x2a06");
    EXPECT_EQ(scene_type_text(0x10f04), "0x10f04");
}

TEST(SceneReader, AWrittenSceneReadsBackTheSame) {
    Scene s;
    s.name = "Two words";
    s.width = 640.5;
    s.height = 480;
    Feature poly{FeatureClass::polygon, 0x10f04, "Quote \" and \\ back", {}, -1};
    for (int k = 0; k < 11; ++k) poly.points.push_back({k * 1.25, -k * 3.0});  // more than one line of points
    s.features.push_back(poly);
    s.features.push_back({FeatureClass::line, 0x100, "", {{0, 0}, {1e5, 2}}, -1});
    s.features.push_back({FeatureClass::point, 0x2a06, "Caf\xc3\xa9", {{3, 4}}, -1});
    const SceneRead r = read_scene(write_scene(s));
    EXPECT_TRUE(r.report.empty()) << r.report.front();
    EXPECT_EQ(r.scene.name, s.name);
    EXPECT_EQ(r.scene.width, s.width);
    EXPECT_EQ(r.scene.height, s.height);
    EXPECT_EQ(r.scene.features, s.features);
}

TEST(SceneReader, AFileThatCannotBeReadGivesOneLineNamingIt) {
    const SceneRead r = load_scene("/nonexistent/scene.txt");
    ASSERT_EQ(r.report.size(), 1u);
    EXPECT_EQ(r.report[0].rfind("/nonexistent/scene.txt: ", 0), 0u);
    EXPECT_TRUE(r.scene.features.empty());
}

TEST(TownScene, ReadsWithoutReportAndHoldsWhatATownHas) {
    const SceneRead r = load_scene(korvex::testing::source_dir() + "/data/" + k_town_scene);
    EXPECT_TRUE(r.report.empty()) << r.report.front();
    EXPECT_EQ(r.scene.name, "Town");
    std::set<std::pair<FeatureClass, int32_t>> types;
    int named_points = 0;
    for (const Feature& f : r.scene.features) {
        types.insert({f.cls, f.code});
        named_points += f.cls == FeatureClass::point && !f.label.empty();
    }
    EXPECT_GE(named_points, 20);
    // Built-up area, buildings, park, forest, farmland, lake, river bank;
    // motorway, main road, street, track, footpath, railway, river, contour,
    // border.
    const std::pair<FeatureClass, int32_t> wanted[] = {
        {FeatureClass::polygon, 0x0200}, {FeatureClass::polygon, 0x1300}, {FeatureClass::polygon, 0x1700},
        {FeatureClass::polygon, 0x5000}, {FeatureClass::polygon, 0x1c00}, {FeatureClass::polygon, 0x3c00},
        {FeatureClass::polygon, 0x4600}, {FeatureClass::line, 0x0100},    {FeatureClass::line, 0x0300},
        {FeatureClass::line, 0x0600},    {FeatureClass::line, 0x0a00},    {FeatureClass::line, 0x1600},
        {FeatureClass::line, 0x1400},    {FeatureClass::line, 0x1f00},    {FeatureClass::line, 0x2000},
        {FeatureClass::line, 0x1c00},
    };
    for (const auto& w : wanted) EXPECT_TRUE(types.count(w)) << scene_type_text(w.second);
}

TEST(SceneReader, MangledTownTextsNeverFailAndWhatIsReadIsWrittenBackExactly) {
    const std::string town =
        korvex::platform::read_file(korvex::testing::source_dir() + "/data/" + k_town_scene).value_or("");
    ASSERT_FALSE(town.empty());
    const char pieces[] = {'"', '\\', ',', ' ', '\n', '\r', '#', '-', '.', 'e', 'x', '0', '9', '\0', '\xff'};
    uint32_t seed = 12345;
    const auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
    for (int round = 0; round < 80; ++round) {
        std::string text = town;
        for (int k = 0; k < 1 + round % 12; ++k) {
            const size_t at = next() % text.size();
            const char c = pieces[next() % sizeof pieces];
            switch (next() % 3) {
                case 0: text[at] = c; break;
                case 1: text.insert(text.begin() + static_cast<std::ptrdiff_t>(at), c); break;
                default: text.erase(at, 1 + next() % 20); break;
            }
        }
        const SceneRead r = read_scene(text);
        const SceneRead again = read_scene(write_scene(r.scene));
        if (r.scene.name.empty()) continue;  // the head line was lost: there is nothing to write it from
        ASSERT_TRUE(again.report.empty()) << "round " << round << ": " << again.report.front();
        ASSERT_EQ(again.scene.features, r.scene.features) << "round " << round;
    }
}
