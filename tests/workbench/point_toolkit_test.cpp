// The parts the batch bitmap tools are built from: a point's picture as text
// and back, the key rule, the margin and exclusion checks, and the frame.
#include <gtest/gtest.h>

#include "ops_fixture.h"
#include "text/point_reader.h"
#include "workbench/batch_frame.h"
#include "workbench/point_checks.h"
#include "workbench/point_keys.h"
#include "workbench/point_section.h"

namespace korvex::workbench {
namespace {

using namespace korvex::testing;

// A point section of the text form: head w h n, colour lines, rows.
std::string point_text(const std::string& type, int w, int h, const std::vector<std::string>& colours,
                       const std::vector<std::string>& rows, const std::string& mode = "16") {
    std::string t = "[_point]\r\nType=0x" + type + "\r\nString1=0x04,Label\r\nDayXpm=\"" + std::to_string(w) + ' ' +
                    std::to_string(h) + ' ' + std::to_string(colours.size()) + " 1\" Colormode=" + mode + "\r\n";
    for (const auto& c : colours) t += "\"" + c + "\"\r\n";
    for (const auto& r : rows) t += "\"" + r + "\"\r\n";
    return t + "[end]\r\n";
}

// A point of n colours keyed from "A" upward, one row using them all.
std::string many_colours(int n) {
    std::vector<std::string> colours;
    std::string row;
    for (int i = 0; i < n; ++i) {
        const char k = static_cast<char>('A' + i);
        char hex[16];
        std::snprintf(hex, sizeof hex, "%06X", i * 0x010203);
        colours.push_back(std::string(1, k) + " c #" + hex);
        row += k;
    }
    return point_text("2f00", n, 1, colours, {row}, "0");
}

int32_t add_point(model::Store& s, platform::Prompt& ui, const std::string& section) {
    const int32_t r = s.pt_n++;
    text::poiparse(s, ui, section, r, true);
    return r;
}

// Every point of every corpus file, its picture taken apart and written
// back unchanged, reads to the same row: what a tool does not touch stays.
class PointSectionCorpus : public ::testing::TestWithParam<std::string> {};

TEST_P(PointSectionCorpus, UnchangedPictureRewritesToTheSameRow) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    model::Store s;
    platform::QuietPrompt quiet;
    if (GetParam().ends_with(".typ"))
        decode_bytes(s, quiet, read_bytes(GetParam()));
    else
        text::load_txt(s, quiet, GetParam(), read_bytes(GetParam()), false, false);
    for (int32_t r = 0; r < s.pt_n + s.pt_nx; ++r) {
        const auto row = static_cast<size_t>(r);
        if (s.pt_xpm[row].empty()) continue;
        const auto col = s.pt_col[row], bmp = s.pt_bmp[row], nbmp = s.pt_nbmp[row], xpm = s.pt_xpm[row],
                   txt = s.pt_txt[row], typ = s.pt_typ[row], lab = s.pt_lab[row];
        const auto ncol = s.pt_ncol[row], nncol = s.pt_nncol[row];
        const auto mode = s.pt_mode[row];
        const int32_t nights = s.pt_nnight;
        const PointPicture day = read_point_picture(s, r);
        if (!day.night.empty()) {
            const PointPicture night = read_night_picture(s, r);
            EXPECT_EQ(night.key, "NightXpm=") << typ;
            ASSERT_EQ(picture_text(night), day.night) << typ;
        }
        updpoicod(s, quiet, r, read_point_picture(s, r));
        ASSERT_EQ(s.pt_col[row], col) << typ;
        ASSERT_EQ(s.pt_bmp[row], bmp) << typ;
        ASSERT_EQ(s.pt_nbmp[row], nbmp) << typ;
        ASSERT_EQ(s.pt_xpm[row], xpm) << typ;
        ASSERT_EQ(s.pt_txt[row], txt) << typ;
        ASSERT_EQ(s.pt_typ[row], typ);
        ASSERT_EQ(s.pt_lab[row], lab) << typ;
        ASSERT_EQ(s.pt_ncol[row], ncol) << typ;
        ASSERT_EQ(s.pt_nncol[row], nncol) << typ;
        ASSERT_EQ(s.pt_mode[row], mode) << typ;
        ASSERT_EQ(s.pt_nnight, nights) << typ;
    }
}

std::vector<std::string> toolkit_corpus_files() {
    std::vector<std::string> files;
    if (!corpus_dir().empty()) {
        files = files_with(corpus_dir() + "/typ", ".typ");
        for (const auto& f : files_with(corpus_dir() + "/txt", ".txt")) files.push_back(f);
    }
    return corpus_params(std::move(files));
}

INSTANTIATE_TEST_SUITE_P(Corpus, PointSectionCorpus, ::testing::ValuesIn(toolkit_corpus_files()),
                         [](const auto& info) {
                             return file_param_name(info.param) + (info.param.ends_with(".typ") ? "_typ" : "_txt");
                         });

// The key rule at its boundary: 31 colours keep single keys, the 32nd
// colour re-keys every colour and pixel to two characters.
TEST(PointKeys, TheThirtySecondColourWidensEveryKey) {
    for (const int before : {30, 31, 32}) {
        model::Store s;
        platform::QuietPrompt quiet;
        const int32_t r = add_point(s, quiet, many_colours(before));
        PointPicture p = read_point_picture(s, r);
        ASSERT_EQ(p.cpp, before >= 32 ? 2 : 1);
        const std::string old_row = p.rows[0];
        const std::string key = add_colour(p, "none");
        const int after = before + 1;
        EXPECT_EQ(p.colours, after);
        if (after < 32) {
            EXPECT_EQ(key.size(), 1u) << before;
            EXPECT_EQ(p.rows[0], old_row) << "a new single key leaves the rows";
        } else {
            EXPECT_EQ(p.cpp, 2) << before;
            EXPECT_EQ(key.size(), 2u);
            ASSERT_EQ(p.rows[0].size(), static_cast<size_t>(2 * before));
            for (int i = 0; i < before; ++i) {
                EXPECT_EQ(colour_key(p.colour_lines[static_cast<size_t>(i)], 2), wide_key(i));
                EXPECT_EQ(p.rows[0].substr(static_cast<size_t>(2 * i), 2), wide_key(i)) << "pixel " << i;
            }
        }
        // Every existing key stays distinct from the new one, and the
        // rewritten section reads back to the same pixels plus one colour.
        for (size_t i = 0; i + 1 < p.colour_lines.size(); ++i) EXPECT_NE(colour_key(p.colour_lines[i], p.cpp), key);
        const std::string bmp = s.pt_bmp[static_cast<size_t>(r)];
        updpoicod(s, quiet, r, p);
        EXPECT_EQ(s.pt_ncol[static_cast<size_t>(r)], after);
        EXPECT_EQ(s.pt_bmp[static_cast<size_t>(r)].size(), after >= 32 && before < 32 ? bmp.size() + static_cast<size_t>(before) : bmp.size());
    }
}

TEST(PointKeys, ReBmpMapsKeysOfTheirWidthAndLeavesOthers) {
    std::vector<std::string> rows{"$%$%", "%%&&", ""};
    re_bmp(rows, {{"$%", "ab"}, {"&&", "."}}, 2);
    EXPECT_EQ(rows, (std::vector<std::string>{"abab", "%%.", ""}));
    std::vector<std::string> one{"$%&"};
    re_bmp(one, {{"$", "$$"}, {"%", "%$"}}, 1);
    EXPECT_EQ(one[0], "$$%$&");
}

TEST(PointKeys, WideKeysFollowTheCharacterSet) {
    EXPECT_EQ(wide_key(0), "$$");
    EXPECT_EQ(wide_key(15), "$3");
    EXPECT_EQ(wide_key(16), "%$");
    EXPECT_EQ(wide_key(255), "33");
}

// Margins of the transparent key at the four sides.
TEST(Chktrbmp, MarginsAtTheFourSides) {
    struct Case {
        std::vector<std::string> rows;
        int width;
        TrimEdges want;
    };
    const std::vector<Case> cases = {
        {{"."}, 1, {1, 1, 1, 1, true, false}},
        {{"A"}, 1, {0, 0, 0, 0, false, false}},
        {{"....", ".A..", "...."}, 4, {1, 1, 1, 2, false, false}},
        {{"A..", "...", "..A"}, 3, {0, 0, 0, 0, false, false}},
        {{".", "AA"}, 2, {1, 0, 0, 0, false, false}},  // a one-key row is a whole row
        {{"..", "A"}, 2, {1, 0, 0, 0, false, false}},  // ... of a colour too
        {{"...", ".."}, 3, {0, 0, 0, 0, false, true}},
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        const TrimEdges t = chktrbmp(cases[i].rows, ".", cases[i].width);
        const TrimEdges& w = cases[i].want;
        EXPECT_EQ(t.width_error, w.width_error) << i;
        if (w.width_error) continue;
        EXPECT_EQ(t.all, w.all) << i;
        EXPECT_EQ(t.top, w.top) << i;
        EXPECT_EQ(t.bottom, w.bottom) << i;
        EXPECT_EQ(t.left, w.left) << i;
        EXPECT_EQ(t.right, w.right) << i;
    }
    // Two characters a pixel: a key straddling pixels is no key.
    const TrimEdges t = chktrbmp({"..A.", "A..."}, "..", 2);
    EXPECT_EQ(t.left + t.right, 0);
    EXPECT_EQ(chktrbmp({"....", "..A."}, "..", 2).top, 1);
}

TEST(BatchFrame, MaxSizeIsAtLeastTwelveAtMost255AndSixtyFourWhenUnset) {
    AppSettings a;
    for (const auto& [set, want] : std::vector<std::pair<int, int>>{{0, 64}, {11, 12}, {12, 12}, {13, 13}, {255, 255}, {256, 255}}) {
        a.max_canvas_poi = set;
        EXPECT_EQ(max_size(a), want) << set;
    }
}

// The points of both selection lists, the primary first, each once; the
// box takes the whole class.
TEST(BatchFrame, TheRowsAreBothListsOnceOrTheWholeClass) {
    model::Store s;
    platform::QuietPrompt quiet;
    for (int i = 0; i < 3; ++i) add_point(s, quiet, point_text("2f0" + std::to_string(i), 1, 1, {"A c #FF0000"}, {"A"}, "0"));
    Browser b;
    b.set_class(model::k_points);
    b.build_grid(s);
    EXPECT_TRUE(batch_rows(s, b, false).empty());
    EXPECT_EQ(batch_rows(s, b, true), (std::vector<int32_t>{0, 1, 2}));
    b.click(2, true, false);
    b.click(0, true, false, true);
    b.click(2, true, false, true);  // in both lists
    EXPECT_EQ(batch_rows(s, b, false), (std::vector<int32_t>{2, 0}));
}

}  // namespace
}  // namespace korvex::workbench
