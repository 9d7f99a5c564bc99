// The sampler: every element of a project once, whatever the project
// (checked on every corpus file), with successive levels overlapping.
#include <gtest/gtest.h>

#include <map>

#include "platform/files.h"
#include "preview/draw_list.h"
#include "preview/preview_fixture.h"
#include "preview/sampler.h"
#include "support/harness.h"
#include "workbench/type_key.h"

using namespace korvex;
using namespace korvex::preview;

class SamplerCorpus : public ::testing::TestWithParam<std::string> {};

namespace {

std::vector<std::string> corpus_files() {
    const std::string dir = korvex::testing::corpus_dir();
    if (dir.empty()) return korvex::testing::corpus_params({});
    std::vector<std::string> files = korvex::testing::files_with(dir + "/typ", ".typ");
    for (const std::string& t : korvex::testing::files_with(dir + "/txt", ".txt")) files.push_back(t);
    return korvex::testing::corpus_params(files);
}

model::Store open_file(const std::string& path) {
    platform::ScriptedPrompt ui;
    if (path.ends_with(".typ")) {
        model::Store s;
        korvex::testing::decode_bytes(s, ui, korvex::testing::read_bytes(path));
        return s;
    }
    model::Store s;
    model::newproject(s);
    text::load_txt(s, ui, path, korvex::testing::read_bytes(path), false, false);
    return s;
}

}  // namespace

TEST_P(SamplerCorpus, EveryElementOnceAndDrawnOrCountedInvisible) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    model::Store s = open_file(GetParam());
    const Scene sc = make_sampler(s);
    // Each (class, row) once: polygons, lines with active lines, points with
    // extra points.
    std::map<std::pair<FeatureClass, int32_t>, int> seen;
    for (const Feature& f : sc.features) {
        ASSERT_GE(f.row, 0);
        ++seen[{f.cls, f.row}];
    }
    const int32_t counts[] = {s.pg_n, s.ln_n + s.ln_nact, s.pt_n + s.pt_nx};
    const FeatureClass classes[] = {FeatureClass::polygon, FeatureClass::line, FeatureClass::point};
    for (int c = 0; c < 3; ++c)
        for (int32_t r = 0; r < counts[c]; ++r)
            EXPECT_EQ((seen[{classes[c], r}]), 1) << "class " << c << " row " << r;
    EXPECT_EQ(sc.features.size(), seen.size());

    // Every feature is drawn as its own element, or is a polygon of a type
    // without a level.
    const DrawList l = build_draw_list(s, sc, {});
    size_t invisible = 0;
    for (const Feature& f : sc.features) {
        if (f.cls != FeatureClass::polygon) continue;
        invisible += std::find(l.invisible_types.begin(), l.invisible_types.end(), f.code) != l.invisible_types.end();
    }
    EXPECT_EQ(l.sources.size() + invisible, sc.features.size());
    for (const ItemSource& src : l.sources) {
        const Feature& f = sc.features[static_cast<size_t>(src.feature)];
        EXPECT_EQ(src.row, f.row);
        EXPECT_EQ(workbench::row_type_code(s, src.store_class, src.row), f.code);
    }
    for (const PolygonItem& p : l.polygons) EXPECT_FALSE(p.missing);
}

INSTANTIATE_TEST_SUITE_P(Corpus, SamplerCorpus, ::testing::ValuesIn(corpus_files()),
                         [](const auto& info) {
                             return korvex::testing::file_param_name(info.param) + (info.param.ends_with(".txt") ? "_txt" : "");
                         });

TEST(Sampler, SuccessiveLevelsOverlapAndTheHigherIsDrawnOver) {
    // Rows in project order 0x04 (level 2), 0x02 (level 1), 0x03 (level 2),
    // 0x05 without a level.
    model::Store s = preview_test::project(
        "[_drawOrder]\r\nType=0x02,1\r\nType=0x04,2\r\nType=0x03,2\r\n[end]\r\n" +
        preview_test::solid_polygon("0x04", "111111") + preview_test::solid_polygon("0x02", "222222") +
        preview_test::solid_polygon("0x03", "333333") + preview_test::solid_polygon("0x05", "444444"));
    s.drwlist = " 0002,1 0004,2 0003,2";
    const Scene sc = make_sampler(s);
    std::vector<int32_t> codes;
    std::vector<const Feature*> patches;
    for (const Feature& f : sc.features)
        if (f.cls == FeatureClass::polygon) {
            codes.push_back(f.code);
            patches.push_back(&f);
        }
    EXPECT_EQ(codes, (std::vector<int32_t>{0x0200, 0x0400, 0x0300, 0x0500}));
    for (size_t k = 1; k + 1 < patches.size(); ++k) {
        // The patch reaches over the next one's left edge.
        EXPECT_GT(patches[k - 1]->points[1].x, patches[k]->points[0].x) << k;
        EXPECT_EQ(patches[k - 1]->points[0].y, patches[k]->points[0].y) << k;
    }
    const DrawList l = build_draw_list(s, sc, {});
    EXPECT_EQ(l.invisible_types, std::vector<int32_t>{0x0500});
    for (const Feature& f : sc.features) {
        for (const Pt& p : f.points) {
            EXPECT_LE(p.x, sc.width);
            EXPECT_LE(p.y, sc.height);
        }
    }
}

TEST(Sampler, AnEmptyProjectGivesAnEmptyButDrawableScene) {
    model::Store s;
    model::newproject(s);
    const Scene sc = make_sampler(s);
    EXPECT_TRUE(sc.features.empty());
    EXPECT_GT(sc.width, 0);
    EXPECT_GT(sc.height, 0);
    EXPECT_TRUE(build_draw_list(s, sc, {}).order.empty());
}
