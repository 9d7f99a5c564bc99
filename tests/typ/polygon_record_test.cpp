#include <gtest/gtest.h>

#include "support/record_bytes.h"
#include "typ/curf_access.h"
#include "typ/header.h"
#include "typ/polygon_record.h"

using namespace korvex;

namespace {

using korvex::testing::bytes;
using korvex::testing::record_colours::A;
using korvex::testing::record_colours::B;
using korvex::testing::record_colours::C;
using korvex::testing::record_colours::D;

// A bitmap whose rows can be told apart: byte k of the picture is k.
std::string counting_bitmap() {
    std::string b;
    for (int k = 0; k < 128; ++k) b += static_cast<char>(k);
    return b;
}

// One polygon record at offset 0 of curf, decoded into row 0.
model::Store decode_polygon(const std::string& record, const std::string& ldopts = "111111") {
    model::Store s;
    s.ldopts = ldopts;
    s.curf = record;
    model::procredim(s, model::k_polygons, 2);
    s.pg_n = 1;
    s.pg_typ[0] = "0x0300";
    s.pg_len[0] = static_cast<int32_t>(record.size());
    const int flag = static_cast<unsigned char>(record[0]);
    if ((flag & 15) == 6)
        typ::polygon_no_bmp(s, 0, 0, 0, flag);
    else
        typ::polygon_bmp(s, 0, 0, 0, flag);
    return s;
}

struct SchemeCase {
    int scheme;
    std::string colours;  // colour bytes behind the flag, file order
    std::string palette;  // expected pg_col
    std::string xpm;
};

class PolygonScheme : public ::testing::TestWithParam<SchemeCase> {};

TEST_P(PolygonScheme, DecodesPaletteAndEncodesTheSameBytes) {
    const SchemeCase& c = GetParam();
    const bool bitmap = c.scheme >= 8;
    const std::string record = static_cast<char>(c.scheme) + c.colours + (bitmap ? counting_bitmap() : "");
    model::Store s = decode_polygon(record);

    EXPECT_EQ(s.pg_mode[0], c.scheme);
    EXPECT_EQ(s.pg_col[0], c.palette);
    EXPECT_EQ(s.pg_xpm[0], c.xpm);
    EXPECT_EQ(s.pg_txt[0], "[_polygon]\r\nType=0x0300\r\nExtendedLabels=N\r\n" + c.xpm + "\r\n" + c.palette + "\r\n");
    EXPECT_EQ(s.pg_dayc[0], "0");
    if (bitmap) {
        // Byte 1 is the second byte of the first row, lowest bit leftmost.
        EXPECT_EQ(s.pg_bmp[0].substr(0, 34), "0000000010000000" "0100000011000000" "\r\n");
    } else {
        EXPECT_EQ(s.pg_bmp[0], "");
    }
    EXPECT_EQ(typ::encode_polygon_record(s, 0), record);
    EXPECT_EQ(s.loadrep, "");
}

INSTANTIATE_TEST_SUITE_P(
    AllSchemes, PolygonScheme,
    ::testing::Values(
        SchemeCase{6, A, "\"0 c #302010\"", "Xpm=\"0 0 1 0\""},
        SchemeCase{7, A + B, "\"0 c #302010\"\r\n\"1 c #605040\"", "Xpm=\"0 0 2 0\""},
        SchemeCase{8, A + B, "\"0 c #605040\"\r\n\"1 c #302010\"", "Xpm=\"32 32 2 1\""},
        SchemeCase{9, A + B + C + D,
                   "\"0 c #605040\"\r\n\"1 c #302010\"\r\n\"2 c #C0B0A0\"\r\n\"3 c #908070\"", "Xpm=\"32 32 4 1\""},
        SchemeCase{11, A + B + C, "\"0 c none\"\r\n\"1 c #302010\"\r\n\"2 c #908070\"\r\n\"3 c #605040\"",
                   "Xpm=\"32 32 4 1\""},
        SchemeCase{13, A + B + C, "\"0 c #605040\"\r\n\"1 c #302010\"\r\n\"2 c none\"\r\n\"3 c #908070\"",
                   "Xpm=\"32 32 4 1\""},
        SchemeCase{14, A, "\"0 c none\"\r\n\"1 c #302010\"", "Xpm=\"32 32 2 1\""},
        SchemeCase{15, A + B, "\"0 c none\"\r\n\"1 c #302010\"\r\n\"2 c none\"\r\n\"3 c #605040\"",
                   "Xpm=\"32 32 4 1\""}),
    [](const auto& info) { return "Scheme" + std::to_string(info.param.scheme); });

TEST(PolygonRecord, NightFlagAndCountFollowTheNightColours) {
    model::Store s = decode_polygon(bytes({9}) + A + B + C + D + counting_bitmap());
    EXPECT_EQ(s.pg_lab[0], std::string("\x01\x00#", 3));
    EXPECT_EQ(s.pg_nnight, 1);
    model::Store t = decode_polygon(bytes({14}) + A + counting_bitmap());
    EXPECT_EQ(t.pg_lab[0], std::string("\x00\x01#", 3));
    EXPECT_EQ(t.pg_nnight, 0);
}

TEST(PolygonRecord, NightColoursOffKeepsTheDayLook) {
    struct Case {
        int scheme;
        std::string colours;
        int mode;
        std::string palette;
    };
    const Case cases[] = {
        {7, A + B, 6, "\"0 c #302010\""},
        {9, A + B + C + D, 8, "\"0 c #605040\"\r\n\"1 c #302010\""},
        {11, A + B + C, 14, "\"0 c none\"\r\n\"1 c #302010\""},
        {13, A + B + C, 8, "\"0 c #605040\"\r\n\"1 c #302010\""},
        {15, A + B, 14, "\"0 c none\"\r\n\"1 c #302010\""},
    };
    for (const Case& c : cases) {
        const std::string picture = c.scheme == 7 ? "" : counting_bitmap();
        model::Store s = decode_polygon(static_cast<char>(c.scheme) + c.colours + picture, "111011");
        SCOPED_TRACE(c.scheme);
        EXPECT_EQ(s.pg_mode[0], c.mode);
        EXPECT_EQ(s.pg_col[0], c.palette);
        EXPECT_EQ(s.pg_ncol[0], c.mode == 6 ? 1 : 2);
        EXPECT_EQ(s.pg_nnight, 0);
        if (c.mode != 6) {
            EXPECT_EQ(s.pg_xpm[0], "Xpm=\"32 32 2 1\"");
        }
    }
}

TEST(PolygonRecord, ShortRecordDropsTheThirdColourOfScheme11) {
    model::Store s;
    s.curf = bytes({11}) + A + B + C + counting_bitmap();
    model::procredim(s, model::k_polygons, 2);
    s.pg_typ[0] = "0x0300";
    s.pg_len[0] = 20;
    typ::polygon_bmp(s, 0, 0, 0, 11);
    EXPECT_EQ(s.pg_col[0], "\"0 c none\"\r\n\"1 c #302010\"\r\n\"3 c #605040\"");
    // The bitmap still stands behind the third colour's slot.
    EXPECT_EQ(s.pg_bmp[0].substr(0, 16), "0000000010000000");
}

TEST(PolygonRecord, CommentLinesNameSchemeLevelAndPosition) {
    model::Store s;
    s.opt.show_offsets = true;
    s.curf = std::string(5, '\0') + bytes({6}) + A;
    model::procredim(s, model::k_polygons, 2);
    s.pg_typ[0] = "0x0300";
    s.pg_drw[0] = "Type=0300,2";
    typ::polygon_no_bmp(s, 5, 3, 0, 6);
    EXPECT_EQ(s.pg_txt[0].substr(0, 69),
              "[_polygon]\r\nType=0x0300\r\n;polygon type:6\r\n;draworder:2\r\n;&5 DBlk:&3\r\n");
}

TEST(PolygonRecord, LabelsAndFontFollowTheBitmap) {
    model::Store s;
    model::procredim(s, model::k_polygons, 1);
    s.pg_typ[0] = "0x0300";
    s.pg_mode[0] = 14;
    s.pg_col[0] = "\"0 c none\"\r\n\"1 c #302010\"";
    s.pg_txt[0] = "[_polygon]\r\nType=0x0300\r\nString1=0x04,Wood\r\nExtendedLabels=Y\r\nFontStyle=SmallFont\r\n"
                  "CustomColor=Day\r\nDaycustomColor:#112233\r\n";
    const std::string record = typ::encode_polygon_record(s, 0);
    ASSERT_GT(record.size(), 4u + 128);
    EXPECT_EQ(record.substr(0, 4), bytes({14 | 16 | 32}) + A);

    model::Store t = decode_polygon(record);
    EXPECT_NE(t.pg_txt[0].find("String1=0x04,Wood\r\n"), std::string::npos);
    EXPECT_NE(t.pg_txt[0].find("FontStyle=SmallFont\r\n"), std::string::npos);
    EXPECT_EQ(t.pg_txt[0].find("ExtendedLabels=N"), std::string::npos);
    EXPECT_EQ(t.pg_dayc[0], "332211");
    EXPECT_NE(t.pg_lab[0].find("Wood"), std::string::npos);
    EXPECT_EQ(typ::encode_polygon_record(t, 0), record);
}

TEST(PolygonRecord, Scheme8WithoutBackgroundWritesZeroColourAndEmptyPictureAllSet) {
    model::Store s;
    model::procredim(s, model::k_polygons, 1);
    s.pg_typ[0] = "0x0300";
    s.pg_mode[0] = 8;
    s.pg_txt[0] = "[_polygon]\r\nType=0x0300\r\n";
    const std::string rec = typ::encode_polygon_record(s, 0);
    ASSERT_EQ(rec.size(), 1u + 6 + 128);
    EXPECT_EQ(rec.substr(0, 7), bytes({8, 0xff, 0xff, 0xff, 0, 0, 0}));
    EXPECT_EQ(rec.substr(7), std::string(128, '\xff'));
}

TEST(PolygonRecord, CompressbmpPacksLowestBitFirstAndReportsShortGroupsOnce) {
    model::Store s;
    EXPECT_EQ(typ::compressbmp(s, "1000000001000001\r\n\r\n11111111", 8, "0x0300"), bytes({1, 0x82, 0xff}));
    EXPECT_EQ(s.loadrep, "");
    EXPECT_EQ(typ::compressbmp(s, "101\r\n11", 8, "0x0300"), bytes({5, 3}));
    EXPECT_EQ(s.loadrep, "0x0300 compress error \r\n");
}

TEST(PolygonRecord, CompressbmpCountsOnlyTheDigitOneAsSet) {
    model::Store s;
    // "q" and 0xB1 share bits with "1"; wider groups read their first eight.
    EXPECT_EQ(typ::compressbmp(s, "1q10 011\xb1" "1111111", 8, "0x0300"), bytes({0xc5, 0xfe}));
    EXPECT_EQ(typ::compressbmp(s, "0000000110", 10, "0x0300"), bytes({0x80}));
    EXPECT_EQ(s.loadrep, "");
}

// Two solid polygons in reverse type order.
model::Store two_polygons() {
    model::Store s;
    model::procredim(s, model::k_polygons, 2);
    s.pg_n = 2;
    s.pg_typ = {"0x0500", "0x0300"};
    s.pg_mode = {6, 6};
    s.pg_col = {"\"0 c #302010\"", "\"0 c #605040\""};
    s.pg_txt = {"[_polygon]\r\nType=0x0500\r\n", "[_polygon]\r\nType=0x0300\r\n"};
    s.curf.assign(91, '\0');
    return s;
}

TEST(PolygonRecord, SaveWritesRecordsAndIndexInTypeOrder) {
    model::Store s = two_polygons();
    const int64_t end = typ::save_polygons(s, 91);
    EXPECT_EQ(end, 91 + 8 + 8);
    EXPECT_EQ(s.curf.substr(91, 8), bytes({6, 0x40, 0x50, 0x60, 6, 0x10, 0x20, 0x30}));
    // Index entries: code type*32, u16 offset; 0x03 first.
    EXPECT_EQ(s.curf.substr(99, 8), bytes({0x60, 0, 0, 0, 0xa0, 0, 4, 0}));
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pg_data), 91);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pg_data_len), 8);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pg_index), 99);
    EXPECT_EQ(typ::curf_byte(s, typ::hdr::pg_recsize), 4);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pg_index_len), 8);
}

TEST(PolygonRecord, MoreThan300PolygonsGetFiveByteIndexRecords) {
    model::Store s;
    const int n = 301;
    model::procredim(s, model::k_polygons, n);
    s.pg_n = n;
    for (int k = 0; k < n; ++k) {
        s.pg_typ[static_cast<size_t>(k)] = "0x0300";
        s.pg_mode[static_cast<size_t>(k)] = 6;
        s.pg_col[static_cast<size_t>(k)] = "\"0 c #302010\"";
    }
    s.curf.assign(91, '\0');
    const int64_t end = typ::save_polygons(s, 91);
    const int64_t index = 91 + 4 * n;
    EXPECT_EQ(end, index + 5 * n);
    EXPECT_EQ(typ::curf_byte(s, typ::hdr::pg_recsize), 5);
    EXPECT_EQ(typ::curf_u24(s, index + 5 * 300 + 2), 1200);
}

TEST(PolygonRecord, NoPolygonsZeroTheHeaderFields) {
    model::Store s;
    s.curf.assign(91, '\x55');
    EXPECT_EQ(typ::save_polygons(s, 91), 91);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pg_data), 0);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pg_index), 0);
    EXPECT_EQ(typ::curf_byte(s, typ::hdr::pg_recsize), 0);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pg_index_len), 0);
}

}  // namespace
