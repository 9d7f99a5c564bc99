#include <gtest/gtest.h>

#include <algorithm>

#include "support/record_bytes.h"
#include "typ/curf_access.h"
#include "typ/extended_sections.h"
#include "typ/header.h"
#include "typ/line_record.h"

using namespace korvex;

namespace {

using korvex::testing::bytes;
using korvex::testing::record_colours::A;
using korvex::testing::record_colours::B;
using korvex::testing::record_colours::C;
using korvex::testing::record_colours::D;

// One row: set bits are the line colour 0.
const std::string ROW = bytes({0xff, 0x00, 0x01, 0x80});
const std::string ROW_TEXT = "00000000" "11111111" "01111111" "11111110";

// One line record at offset 0 of curf, type 0x2b, decoded into row `row`.
model::Store decode_line(const std::string& record, const std::string& ldopts = "111111", int32_t row = 0) {
    model::Store s;
    s.ldopts = ldopts;
    s.curf = record;
    model::procredim(s, model::k_lines, row + 1);
    s.ln_n = row == 0 ? 1 : row;
    s.ln_code[static_cast<size_t>(row)] = 0x2B00;
    const int flag = static_cast<unsigned char>(record[0]);
    s.ln_mode[static_cast<size_t>(row)] = static_cast<uint8_t>(flag);
    if (flag / 8 != 0)
        typ::line_bmp(s, 0, row, flag, static_cast<int32_t>(record.size()));
    else
        typ::line_no_bmp(s, 0, row, flag, static_cast<int32_t>(record.size()));
    return s;
}

struct LineCase {
    std::string name;
    std::string record;
    std::string keys;     // text between the Type line and the Xpm line
    std::string xpm;
    std::string palette;
};

class LineScheme : public ::testing::TestWithParam<LineCase> {};

TEST_P(LineScheme, DecodesTextAndEncodesTheSameBytes) {
    const LineCase& c = GetParam();
    model::Store s = decode_line(c.record);
    EXPECT_EQ(s.ln_txt[0], "[_line] \r\nType=0x2B00\r\n" + c.keys + c.xpm + "\r\n" + c.palette + "\r\n");
    EXPECT_EQ(s.ln_xpm[0], c.xpm);
    EXPECT_EQ(s.ln_col[0], c.palette);
    EXPECT_EQ(s.ln_lab[0], "0x02b00#");
    EXPECT_EQ(s.ln_len[0], static_cast<int32_t>(c.record.size()));
    EXPECT_EQ(typ::encode_line_record(s, 0), c.record);
    EXPECT_EQ(s.loadrep, "");
}

const std::string Y = "UseOrientation=Y\r\n";

INSTANTIATE_TEST_SUITE_P(
    AllSchemes, LineScheme,
    ::testing::Values(
        LineCase{"Solid0", bytes({0, 0}) + A + B + bytes({3, 7}), "LineWidth=3\r\nBorderWidth=2\r\n" + Y,
                 "Xpm=\"0 0 2 0\"", "\"0 c #302010\"\r\n\"1 c #605040\""},
        LineCase{"Solid1", bytes({1, 2}) + A + B + C + D + bytes({2, 4}),
                 "LineWidth=2\r\nBorderWidth=1\r\nUseOrientation=N\r\n", "Xpm=\"0 0 4 0\"",
                 "\"0 c #302010\"\r\n\"1 c #605040\"\r\n\"2 c #908070\"\r\n\"3 c #C0B0A0\""},
        // Border colours may be transparent by day (3) or by night (5).
        LineCase{"Solid3", bytes({3, 0}) + A + B + C + bytes({3, 5}), "LineWidth=3\r\nBorderWidth=1\r\n" + Y,
                 "Xpm=\"0 0 4 0\"", "\"0 c #302010\"\r\n\"1 c none\"\r\n\"2 c #605040\"\r\n\"3 c #908070\""},
        LineCase{"Solid5", bytes({5, 0}) + A + B + C + bytes({3, 5}), "LineWidth=3\r\nBorderWidth=1\r\n" + Y,
                 "Xpm=\"0 0 4 0\"", "\"0 c #302010\"\r\n\"1 c #605040\"\r\n\"2 c #908070\"\r\n\"3 c none\""},
        LineCase{"Solid6", bytes({6, 0}) + A + bytes({5}), "LineWidth=5\r\nBorderWidth=0\r\n" + Y,
                 "Xpm=\"0 0 1 0\"", "\"0 c #302010\""},
        // Day and night colour: no border colour, so no total width.
        LineCase{"Solid7", bytes({7, 0}) + A + B + bytes({1}), "LineWidth=1\r\nBorderWidth=0\r\n" + Y,
                 "Xpm=\"0 0 2 0\"", "\"0 c #302010\"\r\n\"1 c #605040\""},
        LineCase{"Bitmap0", bytes({16, 0}) + A + B + ROW + ROW, Y, "Xpm=\"32 2 2 1\"",
                 "\"0 c #302010\"\r\n\"1 c #605040\""},
        LineCase{"Bitmap1", bytes({9, 0}) + A + B + C + D + ROW, Y, "Xpm=\"32 1 4 1\"",
                 "\"0 c #302010\"\r\n\"1 c #605040\"\r\n\"2 c #908070\"\r\n\"3 c #C0B0A0\""},
        LineCase{"Bitmap3", bytes({11, 0}) + A + B + C + ROW, Y, "Xpm=\"32 1 4 1\"",
                 "\"0 c #302010\"\r\n\"1 c none\"\r\n\"2 c #605040\"\r\n\"3 c #908070\""},
        LineCase{"Bitmap5", bytes({13, 0}) + A + B + C + ROW, Y, "Xpm=\"32 1 4 1\"",
                 "\"0 c #302010\"\r\n\"1 c #605040\"\r\n\"2 c #908070\"\r\n\"3 c none\""},
        LineCase{"Bitmap6", bytes({14, 0}) + A + ROW, Y, "Xpm=\"32 1 2 1\"", "\"0 c #302010\"\r\n\"1 c none\""},
        LineCase{"Bitmap7", bytes({15, 0}) + A + B + ROW, Y, "Xpm=\"32 1 4 1\"",
                 "\"0 c #302010\"\r\n\"1 c none\"\r\n\"2 c #605040\"\r\n\"3 c none\""}),
    [](const auto& info) { return info.param.name; });

TEST(LineRecord, BitmapBitsAreInvertedAgainstPolygons) {
    model::Store s = decode_line(bytes({8, 0}) + A + B + ROW);
    EXPECT_EQ(s.ln_bmp[0], ROW_TEXT);
    EXPECT_EQ(s.ln_mode[0], 8);
    EXPECT_EQ(s.ln_wid[0], 0);
}

TEST(LineRecord, SolidLineGetsRowsOfBorderLineBorder) {
    model::Store s = decode_line(bytes({0, 0}) + A + B + bytes({2, 4}));
    const std::string ones(32, '1'), zeros(32, '0');
    EXPECT_EQ(s.ln_bmp[0], ones + "\r\n" + zeros + "\r\n" + zeros + "\r\n" + ones);
    EXPECT_EQ(s.ln_wid[0], 2);
    EXPECT_EQ(s.ln_bord[0], 1);
}

// The border is half the excess of the total width, halves to even: an
// excess of 1 gives no border (and a line of one colour), 3 gives 2, 5 gives
// 2, 7 gives 4.
TEST(LineRecord, OddExcessOfTheTotalWidthRoundsTheBorderToEven) {
    const struct {
        int total, border, scheme;
    } cases[] = {{3, 0, 6}, {4, 1, 0}, {5, 2, 0}, {7, 2, 0}, {9, 4, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.total);
        model::Store s = decode_line(bytes({0, 0}) + A + B + bytes({2, c.total}));
        EXPECT_EQ(s.ln_wid[0], 2);
        EXPECT_EQ(s.ln_bord[0], c.border);
        EXPECT_EQ(s.ln_mode[0], c.scheme);
        EXPECT_NE(s.ln_txt[0].find("LineWidth=2\r\nBorderWidth=" + std::to_string(c.border) + "\r\n"), std::string::npos);
        // Rows: border, line, border.
        EXPECT_EQ(std::count(s.ln_bmp[0].begin(), s.ln_bmp[0].end(), '\n') + 1, 2 + 2 * c.border);
    }
}

TEST(LineRecord, Scheme2IsReportedBothWays) {
    model::Store s = decode_line(bytes({2, 0, 3, 5}));
    EXPECT_EQ(s.loadrep, "unknown polyline format\r\n");
    model::Store t = decode_line(bytes({10, 0}) + ROW);
    EXPECT_EQ(t.loadrep, "unknown polyline format line_bmp\r\n");
    s.loadrep.clear();
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({2, 0, 3, 5}));
    EXPECT_EQ(s.loadrep, "11008 Unknow type\r\n");
}

TEST(LineRecord, NightColoursOffKeepsTheDayLook) {
    struct Case {
        std::string record;
        int mode;
        std::string palette;
    };
    const Case cases[] = {
        {bytes({9, 0}) + A + B + C + D + ROW, 8, "\"0 c #302010\"\r\n\"1 c #605040\""},
        {bytes({11, 0}) + A + B + C + ROW, 14, "\"0 c #302010\"\r\n\"1 c none\""},
        {bytes({13, 0}) + A + B + C + ROW, 8, "\"0 c #302010\"\r\n\"1 c #605040\""},
        {bytes({15, 0}) + A + B + ROW, 14, "\"0 c #302010\"\r\n\"1 c none\""},
        {bytes({1, 0}) + A + B + C + D + bytes({2, 4}), 0, "\"0 c #302010\"\r\n\"1 c #605040\""},
        {bytes({7, 0}) + A + B + bytes({1}), 6, "\"0 c #302010\""},
        {bytes({3, 0}) + A + B + C + bytes({3, 5}), 6, "\"0 c #302010\""},
        {bytes({5, 0}) + A + B + C + bytes({3, 5}), 0, "\"0 c #302010\"\r\n\"1 c #605040\""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.record[0]));
        model::Store s = decode_line(c.record, "111101");
        EXPECT_EQ(s.ln_mode[0], c.mode);
        EXPECT_EQ(s.ln_col[0], c.palette);
        EXPECT_EQ(s.ln_ncol[0], c.mode == 6 ? 1 : 2);
    }
}

TEST(LineRecord, WidthComesFromTheColumnWhenTheTextHasAWidthKey) {
    model::Store s;
    model::procredim(s, model::k_lines, 1);
    s.ln_code[0] = 0x2B00;
    s.ln_mode[0] = 5 * 8;  // rows from the browser's synthesis do not count
    s.ln_col[0] = "\"0 c #302010\"\r\n\"1 c #605040\"";
    s.ln_bmp[0] = ROW_TEXT;
    s.ln_wid[0] = 4;
    s.ln_bord[0] = 1;
    s.ln_txt[0] = "[_line]\r\nType=0x2b\r\nlwidth(=4\r\nBorderWidth=1\r\n";
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({0, 0}) + A + B + bytes({4, 6}));
    s.ln_txt[0] = "[_line]\r\nType=0x2b\r\nLineWidth=4\r\n";
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({0, 0}) + A + B + bytes({4, 4}));
    // No width key: the rows are the picture.
    s.ln_txt[0] = "[_line]\r\nType=0x2b\r\nUseOrientation=N\r\n";
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({8, 2}) + A + B + ROW);
    // No width key and no rows: a record of no rows is solid, width 0.
    s.ln_mode[0] = 7;
    s.ln_bmp[0].clear();
    s.ln_txt[0] = "[_line]\r\nType=0x2b\r\n";
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({7, 0}) + A + B + bytes({0}));
}

TEST(LineRecord, WidthKeysInCommentsDoNotCountAndCaseDoesNot) {
    model::Store s;
    model::procredim(s, model::k_lines, 1);
    s.ln_code[0] = 0x2B00;
    s.ln_mode[0] = 5 * 8;
    s.ln_col[0] = "\"0 c #302010\"\r\n\"1 c #605040\"";
    s.ln_bmp[0] = ROW_TEXT;
    s.ln_wid[0] = 4;
    s.ln_bord[0] = 1;
    s.ln_txt[0] = "[_line]\r\nType=0x2b\r\n;LineWidth=4\r\nUSEORIENTATION=n\r\n";
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({8, 2}) + A + B + ROW);
    s.ln_txt[0] = "linewidth=4\r\nBORDERWIDTH=1";
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({0, 0}) + A + B + bytes({4, 6}));
    s.ln_txt[0] = "UseOrientation=\r\nN=LineWidth 4";
    EXPECT_EQ(typ::encode_line_record(s, 0), bytes({8, 0}) + A + B + ROW);
}

TEST(LineRecord, LabelsAndFontFollowTheWidths) {
    model::Store s;
    model::procredim(s, model::k_lines, 1);
    s.ln_n = 1;
    s.ln_code[0] = 0x2B00;
    s.ln_mode[0] = 6;
    s.ln_col[0] = "\"0 c #302010\"";
    s.ln_wid[0] = 3;
    s.ln_txt[0] = "[_line]\r\nType=0x2b\r\nLineWidth=3\r\nString1=0x04,Road\r\nExtendedLabels=Y\r\nFontStyle=SmallFont\r\n";
    const std::string record = typ::encode_line_record(s, 0);
    ASSERT_GE(record.size(), 7u);
    EXPECT_EQ(record.substr(0, 6), bytes({6, 1 | 4}) + A + bytes({3}));

    model::Store t = decode_line(record);
    EXPECT_NE(t.ln_txt[0].find("String1=0x04,Road\r\n"), std::string::npos);
    EXPECT_NE(t.ln_txt[0].find("FontStyle=SmallFont\r\n"), std::string::npos);
    EXPECT_EQ(t.ln_len[0], static_cast<int32_t>(record.size()));
    EXPECT_EQ(typ::encode_line_record(t, 0), record);
}

TEST(LineRecord, ActiveLineTextStartsWithItsActivity) {
    model::Store s;
    s.curf = bytes({6, 0}) + A + bytes({2});
    model::procredim(s, model::k_lines, 2);
    s.ln_n = 1;
    s.ln_code[1] = 0x2B00;
    s.ln_act[1] = "41";
    typ::line_no_bmp(s, 0, 1, 6, 0);
    std::string name = typ::chkactivity("41");
    if (name.empty()) name = "41";
    EXPECT_EQ(s.ln_txt[1].substr(0, 26 + name.size()), "[_line] \r\nActivity=" + name + "\r\nType=");
}

TEST(LineRecord, TypeTextCutsDoubleZeroOfExtendedTypes) {
    EXPECT_EQ(typ::line_type_text(0x2b * 32), "0x2B00");
    EXPECT_EQ(typ::line_type_text(0x10f * 32 + 3), "0x10F03");
    EXPECT_EQ(typ::line_type_text(0x10f * 32), "0x10F");
    EXPECT_EQ(typ::line_type_text(0x100 * 32), "0x100");
}

// Two ordinary lines in reverse type order and one active line.
model::Store three_lines() {
    model::Store s;
    model::procredim(s, model::k_lines, 3);
    s.ln_n = 2;
    s.ln_nact = 1;
    s.hdr_len = typ::hdr::k_active;
    s.curf.assign(typ::hdr::k_active, '\0');
    s.curf[typ::hdr::ln_recsize] = 4;
    s.ln_code = {0x2C00, 0x2B00, 0x2B00};
    s.ln_act = {"", "", "52"};
    for (int k = 0; k < 3; ++k) {
        const auto r = static_cast<size_t>(k);
        s.ln_mode[r] = 6;
        s.ln_col[r] = "\"0 c #302010\"";
        s.ln_wid[r] = static_cast<int16_t>(k + 1);
        s.ln_txt[r] = "[_line]\r\nLineWidth=" + std::to_string(k + 1) + "\r\n";
    }
    return s;
}

TEST(LineRecord, SaveWritesOrdinaryThenActiveLinesAndBothIndexes) {
    model::Store s = three_lines();
    const int64_t at = typ::hdr::k_active;
    const int64_t end = typ::save_polylines(s, at);
    // Records in type order (0x2b, 0x2c), then the active one.
    EXPECT_EQ(s.curf.substr(static_cast<size_t>(at), 18),
              bytes({6, 0}) + A + bytes({2, 6, 0}) + A + bytes({1, 6, 0}) + A + bytes({3}));
    const int64_t index = at + 18;
    EXPECT_EQ(s.curf.substr(static_cast<size_t>(index), 8), bytes({0x60, 0x05, 0, 0, 0x80, 0x05, 6, 0}));
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::ln_data), at);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::ln_data_len), 18);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::ln_index), index);
    EXPECT_EQ(typ::curf_byte(s, typ::hdr::ln_recsize), 4);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::ln_index_len), 8);
    // Active index: offset into line data, then the activity digits.
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::act_index), index + 8);
    EXPECT_EQ(typ::curf_byte(s, typ::hdr::act_recsize), 4);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::act_index_len), 4);
    EXPECT_EQ(s.curf.substr(static_cast<size_t>(index + 8), 4), bytes({12, 0, 5, 2}));
    EXPECT_EQ(end, index + 12);
}

TEST(LineRecord, ShortHeaderLeavesActiveLinesOut) {
    model::Store s = three_lines();
    s.hdr_len = typ::hdr::k_blocks;
    const int64_t end = typ::save_polylines(s, 200);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::ln_data_len), 12);
    EXPECT_EQ(end, 200 + 12 + 8);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::act_index), 0);
}

}  // namespace
