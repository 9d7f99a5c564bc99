// The repairs change how a file stores its elements, never what they draw:
// over every element of every corpus file and the bundled sample, the day
// and night pictures after Fix Unused Colours and after the non-bitmap line
// conversion are those of before, pixel for pixel.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "support/harness.h"
#include "text/load_driver.h"
#include "workbench/checks.h"
#include "workbench/icon_painter.h"
#include "workbench/line_check.h"
#include "workbench/unused_colours.h"

namespace korvex::workbench {
namespace {

using namespace korvex::testing;

constexpr uint32_t k_repair_bg = 0xFFF0F0F0u;

std::vector<std::string> repair_files() {
    std::vector<std::string> out = {source_dir() + "/data/samples/sample.typ", source_dir() + "/data/samples/sample.txt"};
    if (!corpus_dir().empty()) {
        for (const auto& f : files_with(corpus_dir() + "/typ", ".typ")) out.push_back(f);
        for (const auto& f : corpus_texts()) out.push_back(f);
    }
    return out;
}

std::string repair_file_name(const ::testing::TestParamInfo<std::string>& info) {
    const std::string ext = std::filesystem::path(info.param).extension().string();
    return file_param_name(info.param) + "_" + ext.substr(1);
}

void load_file(model::Store& s, const std::string& path) {
    platform::QuietPrompt quiet;
    const std::string bytes = read_bytes(path);
    if (path.ends_with(".typ"))
        decode_bytes(s, quiet, bytes);
    else
        ASSERT_TRUE(text::load_txt(s, quiet, path, bytes, false, false));
}

struct PaintedPair {
    std::vector<uint32_t> day, night;
    int w = 0, h = 0;
    bool operator==(const PaintedPair&) const = default;
};

PaintedPair painted(model::Store& s, int table, int32_t row) {
    const Raster day = paint_element(s, table, row, k_repair_bg);
    const Raster night = paint_element(s, table, row, k_repair_bg, true);
    return {day.px, night.px, day.w, day.h};
}

std::vector<PaintedPair> painted_all(model::Store& s, int table) {
    const int32_t rows = table == model::k_polygons ? s.pg_n : table == model::k_lines ? s.ln_n + s.ln_nact : s.pt_n + s.pt_nx;
    std::vector<PaintedPair> out;
    for (int32_t r = 0; r < rows; ++r) out.push_back(painted(s, table, r));
    return out;
}

std::string row_type_name(const model::Store& s, int table, int32_t r) {
    const auto i = static_cast<size_t>(r);
    return table == model::k_polygons ? s.pg_typ[i] : table == model::k_lines ? s.ln_lab[i].substr(0, 7) : s.pt_typ[i];
}

class ColourRepair : public ::testing::TestWithParam<std::string> {};

TEST_P(ColourRepair, FixUnusedColoursKeepsEveryPictureAndLeavesNothingToFind) {
    model::Store s;
    load_file(s, GetParam());
    for (int table = model::k_polygons; table <= model::k_points; ++table) {
        const std::vector<PaintedPair> before = painted_all(s, table);
        const int32_t changed = redun(s, table);
        const std::vector<PaintedPair> after = painted_all(s, table);
        ASSERT_EQ(before.size(), after.size());
        for (size_t r = 0; r < before.size(); ++r)
            EXPECT_TRUE(before[r] == after[r]) << "class " << table << " row " << r << " " << row_type_name(s, table, static_cast<int32_t>(r));
        EXPECT_EQ(checkcols(s, table), "") << "class " << table << " after " << changed << " repairs";
    }
}

// What a device reads: the repaired tables saved and read back draw what
// the untouched ones saved and read back draw.
TEST_P(ColourRepair, RepairedFileSavesToTheSamePictures) {
    model::Store s;
    load_file(s, GetParam());
    platform::QuietPrompt quiet;
    model::Store plain, repaired;
    decode_bytes(plain, quiet, encode(s, quiet));
    for (int table = model::k_polygons; table <= model::k_points; ++table) redun(s, table);
    for (const int32_t r : convertible_lines(s)) convert_to_non_bitmap(s, r);
    const std::string bytes = encode(s, quiet);
    ASSERT_FALSE(bytes.empty());
    decode_bytes(repaired, quiet, bytes);
    for (int table = model::k_polygons; table <= model::k_points; ++table) {
        const std::vector<PaintedPair> before = painted_all(plain, table);
        const std::vector<PaintedPair> after = painted_all(repaired, table);
        ASSERT_EQ(before.size(), after.size());
        for (size_t r = 0; r < before.size(); ++r)
            EXPECT_TRUE(before[r] == after[r]) << "class " << table << " row " << r << " " << row_type_name(repaired, table, static_cast<int32_t>(r));
    }
}

TEST_P(ColourRepair, NonBitmapConversionKeepsTheLineRows) {
    model::Store s;
    load_file(s, GetParam());
    const std::vector<int32_t> rows = convertible_lines(s);
    const std::vector<PaintedPair> before = painted_all(s, model::k_lines);
    for (const int32_t r : rows) {
        ASSERT_TRUE(convert_to_non_bitmap(s, r));
        EXPECT_LT(s.ln_mode[static_cast<size_t>(r)], 8) << row_type_name(s, model::k_lines, r);
    }
    const std::vector<PaintedPair> after = painted_all(s, model::k_lines);
    for (size_t r = 0; r < before.size(); ++r)
        EXPECT_TRUE(before[r] == after[r]) << "row " << r << " " << row_type_name(s, model::k_lines, static_cast<int32_t>(r));
    EXPECT_TRUE(convertible_lines(s).empty());
}

// What a program reads of the checks: every finding names its class, its
// element's type and a known check, and a second run gives the same list.
TEST_P(ColourRepair, FindingsNameTheirElementAndAreStable) {
    model::Store s;
    load_file(s, GetParam());
    const Findings first = consistency_findings(s);
    const Findings again = consistency_findings(s);
    ASSERT_EQ(first.size(), again.size());
    const std::set<std::string> checks = {"unused-colours", "non-bitmap-line", "basecamp-invisible", "basecamp-no-label"};
    for (size_t k = 0; k < first.size(); ++k) {
        const Finding& f = first[k];
        EXPECT_TRUE(f.cls >= model::k_polygons && f.cls <= model::k_extra_points) << f.cls;
        EXPECT_TRUE(f.type.rfind("0x", 0) == 0 && f.type.find(',') == std::string::npos) << f.type;
        EXPECT_TRUE(checks.count(f.check)) << f.check;
        EXPECT_FALSE(f.message.empty());
        EXPECT_EQ(f.type + f.check + f.message, again[k].type + again[k].check + again[k].message);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, ColourRepair, ::testing::ValuesIn(repair_files()), repair_file_name);

}  // namespace
}  // namespace korvex::workbench
