#include <gtest/gtest.h>

#include <initializer_list>

#include "support/harness.h"
#include "support/record_bytes.h"
#include "text/load_driver.h"
#include "typ/curf_access.h"
#include "typ/header.h"
#include "typ/point_detail.h"
#include "typ/point_pixels.h"
#include "typ/point_record.h"

using namespace korvex;

namespace {

using korvex::testing::bytes;

constexpr int32_t k_code_2f00 = 0x2f * 32;  // index code of type 0x2F00

// The file holds `lead` zero bytes and then the record; row 0 decodes it.
model::Store decode_point(const std::string& record, int lead = 0, int32_t code = k_code_2f00) {
    model::Store s;
    s.curf = std::string(static_cast<size_t>(lead), '\0') + record;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    s.pt_len[0] = static_cast<int32_t>(record.size());
    typ::poi_bmp(s, lead, 0, static_cast<unsigned char>(record[0]), 0, code);
    return s;
}

std::string head_text(const std::string& xpm) { return "[_point]\r\nType=0x2F00\r\nExtendedLabels=N\r\n" + xpm + "\r\n"; }

// A decoded record must encode to the same bytes.
void expect_encodes_back(model::Store& s, const std::string& record) {
    EXPECT_EQ(typ::encode_point_record(s, 0), record);
}

}  // namespace

// ---- bits and sizes ----

struct SizeCase {
    int w, h, n, mode;
    int64_t bytes;
};

class PointPixelBytes : public ::testing::TestWithParam<SizeCase> {};

TEST_P(PointPixelBytes, RowsEndOnWholeBytes) {
    const SizeCase c = GetParam();
    EXPECT_EQ(typ::point_pixel_bytes(c.w, c.h, c.n, c.mode), c.bytes)
        << c.w << "x" << c.h << " n=" << c.n << " mode=" << c.mode;
}

INSTANTIATE_TEST_SUITE_P(
    ColourCountsAndOddWidths, PointPixelBytes,
    ::testing::Values(SizeCase{1, 1, 1, 0, 1}, SizeCase{3, 2, 1, 0, 2}, SizeCase{9, 1, 1, 0, 2},    // 1 bit
                      SizeCase{3, 1, 1, 16, 1}, SizeCase{15, 1, 2, 0, 4}, SizeCase{15, 1, 2, 16, 4},  // 2 bits
                      SizeCase{15, 1, 3, 0, 4}, SizeCase{15, 1, 3, 32, 4},
                      SizeCase{15, 1, 3, 16, 8},    // 3 colours and a transparent one: 4 bits
                      SizeCase{33, 2, 3, 16, 34},   // one padding nibble a row
                      SizeCase{31, 1, 15, 0, 16}, SizeCase{31, 1, 15, 32, 16},
                      SizeCase{31, 1, 15, 16, 31},  // 15 colours and a transparent one: a byte
                      SizeCase{3, 3, 16, 0, 9}, SizeCase{3, 3, 16, 32, 9}, SizeCase{3, 3, 16, 16, 9},
                      SizeCase{5, 2, 200, 32, 10}, SizeCase{16, 16, 256, 0, 256}));

TEST(PointPalette, Mode32EntriesAreTwentyEightBitsWithANibbleOfPaddingForOddCounts) {
    EXPECT_EQ(typ::point_palette_bytes(1, 32), 4);
    EXPECT_EQ(typ::point_palette_bytes(2, 32), 7);
    EXPECT_EQ(typ::point_palette_bytes(3, 32), 11);
    EXPECT_EQ(typ::point_palette_bytes(3, 16), 9);
    // blue 01 green 02 red 03 alpha 0 | 10 20 30 alpha 15 | AA BB CC alpha 5 | pad
    const std::string stream = bytes({0x01, 0x02, 0x03, 0x00, 0x01, 0x02, 0xF3, 0xAA, 0xBB, 0xCC, 0x05});
    EXPECT_EQ(typ::alphacols(stream, 3),
              "\"$ c #030201\" alpha=0\r\n\"% c #302010\" alpha=15\r\n\"& c #CCBBAA\" alpha=5\r\n");
    EXPECT_EQ(typ::alphacol32({typ::fnpoi32("\"$ c #030201\" alpha=0"), typ::fnpoi32("\"% c #302010\" alpha=15"),
                               typ::fnpoi32("\"& c #CCBBAA\" alpha=5")}),
              stream);
    EXPECT_EQ(typ::alph(stream, 52), 15);
}

TEST(PointPalette, NoneInMode32IsWhiteAndFullyTransparent) {
    EXPECT_EQ(typ::fnpoi32("\"$ c none\""), 0x0FFFFFFFu);
}

// ---- decoding and encoding one record ----

TEST(PointRecord, Mode0OneColourOddWidthHasOneBitPixels) {
    // 3 x 2, colour blue; rows of one byte each.
    const std::string rec = bytes({1, 3, 2, 1, 0, 0xFF, 0x00, 0x00, 0x00, 0x00});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], head_text("DayXpm=\"3 2 1 1\" Colormode=0") + "\"$ c #0000FF\"\r\n");
    EXPECT_EQ(s.pt_bmp[0], "$$$\r\n$$$\r\n");
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"3 2 1 1\" Colormode=0");
    EXPECT_EQ(s.pt_ncol[0], 1);
    EXPECT_EQ(s.pt_typ[0], "02F00");
    EXPECT_EQ(s.pt_mode[0], 0);
    EXPECT_EQ(s.pt_cc[0], "0");
    EXPECT_EQ(s.pt_lab[0], std::string("\0\0", 2) + "3x2 1 1\r\n02F00#");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, Mode0TwoColoursReadTwoBitsLowestFirst) {
    // Rows 0 1 1 and 1 0 0: 0b010100 and 0b000001.
    const std::string rec = bytes({1, 3, 2, 2, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x14, 0x01});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_col[0], "\"$ c #000000\"\r\n\"% c #FFFFFF\"\r\n");
    EXPECT_EQ(s.pt_bmp[0], "$%%\r\n%$$\r\n");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, Mode16AddsTheTransparentColourBehindThePalette) {
    // 2 colours and the transparent value 2, two bits a pixel: 2 0 1 2 in one byte.
    const std::string rec = bytes({1, 4, 1, 2, 16, 0x00, 0x00, 0xFF, 0x00, 0xFF, 0x00, 0x92});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], head_text("DayXpm=\"4 1 3 1\" Colormode=16") +
                               "\"$ c #FF0000\"\r\n\"% c #00FF00\"\r\n\"& c none\"\r\n");
    EXPECT_EQ(s.pt_bmp[0], "&$%&\r\n");
    EXPECT_EQ(s.pt_ncol[0], 3);
    EXPECT_EQ(s.pt_mode[0], 1);
    expect_encodes_back(s, rec);
}

TEST(PointRecord, Mode16ThreeColoursWidth33HasOnePaddingNibbleARow) {
    // Four pixel values need four bits: 17 bytes a row, the last high nibble unused.
    std::string pixels;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 16; ++x) pixels += static_cast<char>(((2 * x + y + 1) % 4) << 4 | ((2 * x + y) % 4));
        pixels += static_cast<char>((32 + y) % 4);
    }
    const std::string rec = bytes({1, 33, 2, 3, 16, 1, 1, 1, 2, 2, 2, 3, 3, 3}) + pixels;
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"33 2 4 1\" Colormode=16");
    EXPECT_EQ(s.pt_bmp[0], "$%&'$%&'$%&'$%&'$%&'$%&'$%&'$%&'$\r\n%&'$%&'$%&'$%&'$%&'$%&'$%&'$%&'$%\r\n");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, Mode0ThreeColoursWidth33PadsTheRowWithZeroBits) {
    // Two bits a pixel: 66 bits, 9 bytes a row.
    std::string rec = bytes({1, 33, 1, 3, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3});
    rec += std::string(8, static_cast<char>(0x24)) + bytes({0x02});  // 0 1 2 0 ..., last pixel 2
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_bmp[0], "$%&$$%&$$%&$$%&$$%&$$%&$$%&$$%&$&\r\n");
    expect_encodes_back(s, rec);
}

// A damaged record whose pixels name colours past its table: the text would
// hold symbols no colour line defines, which no compiler takes. They take
// colour 0, said in one report line.
TEST(PointRecord, PixelsPastTheColourTableTakeColourZeroSaidOnce) {
    const std::string said = "Point pixels past their colour table were given its first colour\r\n";
    struct Case {
        std::string record, rows;
    };
    std::string forty = bytes({1, 2, 1, 40, 0});
    for (int k = 0; k < 40; ++k) forty += bytes({k, k, k});
    forty += bytes({39, 250});
    const Case cases[] = {
        // Mode 0, three colours at two bits a pixel: 0 1 2 3, value 3 is past.
        {bytes({1, 4, 1, 3, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 0xE4}), "$%&$\r\n"},
        // Two values past, one line: 3 3 0 1.
        {bytes({1, 4, 1, 3, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 0x4F}), "$$$%\r\n"},
        // Mode 16: two colours and the transparent value 2; 3 is past.
        {bytes({1, 4, 1, 2, 16, 0, 0, 0xFF, 0, 0xFF, 0, 0x1B}), "$&%$\r\n"},
        // Forty colours, two characters a pixel, a byte a pixel: 250 is past.
        {forty, "&+$$\r\n"},
    };
    for (const Case& c : cases) {
        model::Store s = decode_point(c.record);
        EXPECT_EQ(s.pt_bmp[0], c.rows);
        EXPECT_EQ(s.loadrep, said);
    }
    // A record within its table says nothing.
    EXPECT_EQ(decode_point(bytes({1, 4, 1, 3, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 0x24})).loadrep, "");
}

TEST(PointRecord, Mode16FifteenColoursTakeAByteAPixel) {
    std::string rec = bytes({1, 3, 1, 15, 16});
    for (int k = 0; k < 15; ++k) rec += bytes({k, k, k});
    rec += bytes({14, 15, 0});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"3 1 16 1\" Colormode=16");
    EXPECT_EQ(s.pt_bmp[0], "23$\r\n");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, Mode32ThreeColoursKeepTwoBitPixelsAndAlpha) {
    // 3 x 2: two bits a pixel, rows of one byte (the corpus reads this way).
    const std::string rec = bytes({1, 3, 2, 3, 32, 0x01, 0x02, 0x03, 0x00, 0x01, 0x02, 0xF3, 0xAA, 0xBB, 0xCC, 0x05,
                                   0x24, 0x09});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], head_text("DayXpm=\"3 2 3 1\" Colormode=32") +
                               "\"$ c #030201\" alpha=0\r\n\"% c #302010\" alpha=15\r\n\"& c #CCBBAA\" alpha=5\r\n");
    EXPECT_EQ(s.pt_bmp[0], "$%&\r\n%&$\r\n");
    EXPECT_EQ(s.pt_mode[0], 2);
    expect_encodes_back(s, rec);
}

TEST(PointRecord, TwoSymbolCharactersFromThirtyTwoColours) {
    auto record = [](int n, int mode, int pixel) {
        std::string rec = bytes({1, 1, 1, n, mode});
        for (int k = 0; k < n; ++k) rec += bytes({k, 0, 0});
        return rec + bytes({pixel});
    };
    model::Store s31 = decode_point(record(31, 0, 30));
    EXPECT_EQ(s31.pt_xpm[0], "DayXpm=\"1 1 31 1\" Colormode=0");
    EXPECT_EQ(s31.pt_bmp[0], "B\r\n");
    expect_encodes_back(s31, record(31, 0, 30));

    model::Store s32 = decode_point(record(32, 0, 31));
    EXPECT_EQ(s32.pt_xpm[0], "DayXpm=\"1 1 32 2\" Colormode=0");
    EXPECT_EQ(s32.pt_bmp[0], "%3\r\n");
    EXPECT_NE(s32.pt_col[0].find("\"%3 c #00001F\"\r\n"), std::string::npos);
    expect_encodes_back(s32, record(32, 0, 31));

    // 31 colours and the transparent one make 32 lines.
    model::Store t31 = decode_point(record(31, 16, 31));
    EXPECT_EQ(t31.pt_xpm[0], "DayXpm=\"1 1 32 2\" Colormode=16");
    EXPECT_EQ(t31.pt_bmp[0], "%3\r\n");
    EXPECT_NE(t31.pt_col[0].find("\"%3 c none\""), std::string::npos);
    expect_encodes_back(t31, record(31, 16, 31));
}

TEST(PointRecord, TwoHundredColoursInMode32) {
    std::vector<uint32_t> entries;
    for (int k = 0; k < 200; ++k) entries.push_back(static_cast<uint32_t>(k) | static_cast<uint32_t>(k % 16) << 24);
    const std::string rec = bytes({1, 3, 1, 200, 32}) + typ::alphacol32(entries) + bytes({0, 199, 100});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_ncol[0], 200);
    EXPECT_EQ(s.pt_bmp[0], "$$0+*(\r\n");
    EXPECT_NE(s.pt_col[0].find("\"0+ c #0000C7\" alpha=7\r\n"), std::string::npos);
    expect_encodes_back(s, rec);
}

TEST(PointRecord, ColourByteZeroIsTwoHundredFiftySixColoursWhenTheSizeSaysSo) {
    std::string rec = bytes({1, 16, 16, 0, 0});
    for (int k = 0; k < 256; ++k) rec += bytes({k, 0, 0});
    for (int k = 0; k < 256; ++k) rec += static_cast<char>(255 - k);
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"16 16 256 2\" Colormode=0");
    EXPECT_EQ(s.pt_bmp[0].substr(0, 6), "333231");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, WidthOneHeightOneWithoutPaletteHasNoPixels) {
    const std::string rec = bytes({1, 1, 1, 0, 0});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], head_text("DayXpm=\"1 1 0 1\" Colormode=0"));
    EXPECT_EQ(s.pt_bmp[0], "");
    EXPECT_EQ(s.pt_col[0], "");
    EXPECT_EQ(s.pt_ncol[0], 0);
    expect_encodes_back(s, rec);
}

TEST(PointRecord, OnlyTransparentPixelsHaveAnEmptyMode16Palette) {
    const std::string rec = bytes({1, 2, 2, 0, 16, 0, 0});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], head_text("DayXpm=\"2 2 1 1\" Colormode=16") + "\"$ c none\"\r\n");
    EXPECT_EQ(s.pt_bmp[0], "$$\r\n$$\r\n");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, TrueColourPictureWithoutPixelDataListsOneColourAPixel) {
    // 2 x 1 with a colour for each pixel and nothing behind.
    const std::string rec = bytes({1, 2, 1, 0, 0, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], head_text("DayXpm=\"2 1 0 1\" Colormode=0") + "\"#FF0000\"\r\n\"#0000FF\"\r\n");
    EXPECT_EQ(s.pt_bmp[0], "");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, UnknownColourModeIsReportedAndReadAsOpaque) {
    const std::string rec = bytes({1, 2, 1, 1, 48, 0x00, 0x00, 0xFF, 0x00});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"2 1 1 1\" Colormode=0");
    EXPECT_EQ(s.pt_mode[0], 0);
    EXPECT_EQ(s.loadrep, "Colour48\r\n");
    EXPECT_EQ(typ::encode_point_record(s, 0), bytes({1, 2, 1, 1, 0, 0x00, 0x00, 0xFF, 0x00}));
}

// ---- night pictures ----

TEST(PointRecord, NightWithoutColoursSharesTheDayPixels) {
    const std::string rec = bytes({3, 2, 1, 1, 0, 0x00, 0x00, 0xFF, 0x00, 0, 0});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], head_text("DayXpm=\"2 1 1 1\" Colormode=0") +
                               "\"$ c #FF0000\"\r\n\r\nNightXpm=\"2 1 0 1\" Colormode=0");
    EXPECT_EQ(s.pt_col[0], "\"$ c #FF0000\"\r\n\r\nNightXpm=\"2 1 0 1\" Colormode=0");
    EXPECT_EQ(s.pt_nbmp[0], "");
    EXPECT_EQ(s.pt_nncol[0], 0);
    EXPECT_EQ(s.pt_lab[0][0], '\1');
    EXPECT_GT(s.pt_nnight, 0);
    expect_encodes_back(s, rec);
}

TEST(PointRecord, NightPictureHasItsOwnPaletteAndMode) {
    // Day: one colour. Night: two colours in mode 16, pixels 1 and 2 (transparent).
    const std::string rec = bytes({3, 2, 1, 1, 0, 0x00, 0x00, 0xFF, 0x00, 2, 16, 0x10, 0x10, 0x10, 0x20, 0x20, 0x20, 0x09});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_col[0], "\"$ c #FF0000\"\r\n\r\nNightXpm=\"2 1 3 1\" Colormode=16\r\n"
                           "\"$ c #101010\"\r\n\"% c #202020\"\r\n\"& c none\"");
    EXPECT_EQ(s.pt_bmp[0], "$$\r\n");
    EXPECT_EQ(s.pt_nbmp[0], "%&\r\n");
    EXPECT_EQ(s.pt_nncol[0], 3);
    expect_encodes_back(s, rec);
}

// A count of 0 would make the night the day's pixels and leave the written
// pixels for the labels to be read from: a night of transparent pixels only
// keeps pixels of its own behind one unused colour. Odd and even widths.
TEST(PointRecord, NightOfTransparentPixelsOnlyKeepsItsOwnPixels) {
    struct Case {
        int w;
        std::string day;
    };
    for (const Case& c : {Case{1, "DayXpm=\"1 1 1 1\" Colormode=16\r\n\"$ c none\"\r\n\"$\"\r\n"},
                          Case{4, "DayXpm=\"4 1 2 1\" Colormode=16\r\n\"$ c #FF0000\"\r\n\"% c none\"\r\n\"$%$%\"\r\n"}}) {
        SCOPED_TRACE(c.w);
        const std::string w = std::to_string(c.w);
        const std::string text = "[_id]\r\nProductCode=1\r\nFID=100\r\nCodePage=1252\r\n[end]\r\n"
                                 "[_point]\r\nType=0x2f00\r\nString1=0x04,Cafe\r\n" + c.day +
                                 "NightXpm=\"" + w + " 1 1 1\" Colormode=16\r\n\"$ c none\"\r\n\"" +
                                 std::string(static_cast<size_t>(c.w), '$') + "\"\r\n[end]\r\n";
        model::Store s;
        platform::ScriptedPrompt ui;
        ASSERT_TRUE(text::load_txt(s, ui, "", text, false, false));
        ASSERT_EQ(s.pt_n, 1);
        const std::string rec = typ::encode_point_record(s, 0);
        model::Store back = decode_point(rec);
        EXPECT_EQ(back.loadrep, "");
        EXPECT_NE(back.pt_txt[0].find("String1=0x04,Cafe"), std::string::npos) << back.pt_txt[0];
        EXPECT_EQ(back.pt_nncol[0], 2);
        EXPECT_EQ(back.pt_nbmp[0], std::string(static_cast<size_t>(c.w), '%') + "\r\n");
    }
}

TEST(PointRecord, NightIsDroppedWhenLoadOptionSixIsOff) {
    const std::string rec = bytes({3, 2, 1, 1, 0, 0x00, 0x00, 0xFF, 0x00, 2, 16, 0x10, 0x10, 0x10, 0x20, 0x20, 0x20, 0x09});
    model::Store s;
    s.ldopts = "111110";
    s.curf = rec;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    s.pt_len[0] = static_cast<int32_t>(rec.size());
    typ::poi_bmp(s, 0, 0, 3, 0, k_code_2f00);
    EXPECT_EQ(typ::lower(s.pt_txt[0]).find("nightxpm"), std::string::npos);
    EXPECT_EQ(s.pt_nbmp[0], "");
    EXPECT_EQ(s.pt_nncol[0], 0);
    EXPECT_EQ(s.pt_lab[0][0], '\0');
    EXPECT_EQ(s.pt_nnight, 0);
}

// ---- labels, comments, reports ----

TEST(PointRecord, LabelsStandBeforeThePictureAndEncodeBack) {
    // Label block: code 2*4+5, language 4, "Cafe", 0.
    const std::string rec = bytes({5, 1, 1, 1, 0, 0x00, 0x00, 0xFF, 0x00, 13, 4, 'C', 'a', 'f', 'e', 0});
    model::Store s = decode_point(rec);
    EXPECT_EQ(s.pt_txt[0], "[_point]\r\nType=0x2F00\r\nString1=0x04,Cafe\r\nExtendedLabels=N\r\n"
                           "DayXpm=\"1 1 1 1\" Colormode=0\r\n\"$ c #FF0000\"\r\n");
    EXPECT_EQ(s.pt_lab[0], std::string("\0\0", 2) + "1x1 1 1\r\n02F00#'Cafe'");
    expect_encodes_back(s, rec);
}

TEST(PointRecord, OffsetCommentsNameRecordBitmapAndSize) {
    const std::string rec = bytes({1, 3, 2, 1, 0, 0xFF, 0x00, 0x00, 0x00, 0x00});
    model::Store s;
    s.opt.show_offsets = true;
    s.curf = std::string(32, '\0') + rec;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    s.pt_len[0] = static_cast<int32_t>(rec.size());
    typ::poi_bmp(s, 32, 0, 1, 0x1A, k_code_2f00);
    EXPECT_EQ(s.pt_txt[0], "[_point]\r\nType=0x2F00\r\n;&20 pointers:&1A\r\n;bmp:&28\r\nExtendedLabels=N\r\n"
                           "DayXpm=\"3 2 1 1\" Colormode=0\r\n\"$ c #0000FF\"\r\n;size:2\r\n");
}

TEST(PointRecord, UnknownSymbolIsReportedAndWrittenAsColourZero) {
    model::Store s;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    s.pt_typ[0] = "02F00";
    s.pt_txt[0] = "[_point]\r\nType=0x2F00\r\n";
    s.pt_xpm[0] = "DayXpm=\"2 1 2 1\" Colormode=0";
    s.pt_col[0] = "\"$ c #000000\"\r\n\"% c #FFFFFF\"\r\n";
    s.pt_bmp[0] = "%Z\r\n";
    EXPECT_EQ(typ::encode_point_record(s, 0), bytes({1, 2, 1, 2, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x01}));
    EXPECT_EQ(s.loadrep, "compressbmp 1 x2 val:54 0x02F00\r\n Unknown colour in Point bmp.\r\n");
}

// ---- encoding from text columns ----

namespace {

void set_point(model::Store& s, int32_t r, const std::string& typ, const std::string& xpm, const std::string& col,
               const std::string& rows) {
    const auto i = static_cast<size_t>(r);
    s.pt_typ[i] = typ;
    s.pt_txt[i] = "[_point]\r\nType=0x" + typ + "\r\n" + xpm + "\r\n" + col;
    s.pt_xpm[i] = xpm;
    s.pt_col[i] = col;
    s.pt_bmp[i] = rows;
}

}  // namespace

TEST(PointEncoding, NoneMayStandAnywhereInTheTable) {
    model::Store s;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    set_point(s, 0, "02F00", "DayXpm=\"2 1 2 1\"", "\"$ c none\"\r\n\"% c #00FF00\"\r\n", "$%\r\n");
    // One colour, transparent value 1: pixels 1 0.
    EXPECT_EQ(typ::encode_point_record(s, 0), bytes({1, 2, 1, 1, 16, 0x00, 0xFF, 0x00, 0x01}));
}

TEST(PointEncoding, AlphaTableOfOpaqueColoursAndOneClearBecomesMode16UnlessTheHeadSays32) {
    model::Store s;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    const std::string col = "\"$ c #FF0000\" alpha=0\r\n\"% c #000000\" alpha=15\r\n";
    set_point(s, 0, "02F00", "DayXpm=\"2 1 2 1\"", col, "$%\r\n");
    EXPECT_EQ(typ::encode_point_record(s, 0), bytes({1, 2, 1, 1, 16, 0x00, 0x00, 0xFF, 0x04}));

    set_point(s, 0, "02F00", "DayXpm=\"2 1 2 1\" Colormode=32", col, "$%\r\n");
    EXPECT_EQ(typ::encode_point_record(s, 0),
              bytes({1, 2, 1, 2, 32, 0x00, 0x00, 0xFF, 0x00, 0x00, 0x00, 0xF0, 0x04}));
}

TEST(PointEncoding, ColourLinesInAnyFormGiveTheBytesOfTheDecodersForm) {
    model::Store s;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    const std::string xpm = "DayXpm=\"2 1 2 1\" Colormode=32";
    // Blue 00 green 00 red FF alpha 7, then 00 FF 00 alpha 3, 28 bits each;
    // pixels 0 1 at two bits.
    const std::string expected = bytes({1, 2, 1, 2, 32, 0x00, 0x00, 0xFF, 0x07, 0xF0, 0x0F, 0x30, 0x04});
    const char* const tables[] = {
        "\"$ c #FF0000\" alpha=7\r\n\"% c #00FF00\" alpha=3\r\n",       // as the decoder writes it
        "\"$ c #ff0000\" alpha=07\r\n\"% c #00ff00\" alpha=3\n",        // lower case, two digits, LF
        "\"$  c #FF0000\"  alpha=7 \r\n  \"% C #00FF00\" alpha= 3\r\n",  // blanks, upper case
        "\"$ c #FF0000\" alpha=7\r\n\"% c #00FF00\" alpha=3",            // no last line end
    };
    for (const char* col : tables) {
        set_point(s, 0, "02F00", xpm, col, "$%\r\n");
        EXPECT_EQ(typ::encode_point_record(s, 0), expected) << col;
    }
    // An alpha of more than 15 is 15, however many digits it has.
    std::string capped = expected;
    capped[8] = 0x0F;
    for (const char* col : {"\"$ c #FF0000\" alpha=16\r\n\"% c #00FF00\" alpha=3\r\n",
                            "\"$ c #FF0000\" alpha=700\r\n\"% c #00FF00\" alpha=3\r\n"}) {
        set_point(s, 0, "02F00", xpm, col, "$%\r\n");
        EXPECT_EQ(typ::encode_point_record(s, 0), capped) << col;
    }
    EXPECT_EQ(s.loadrep, "");
}

TEST(PointEncoding, ARowEndsAtItsFirstCrOrLf) {
    model::Store s;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    const std::string two = "\"$ c #000000\"\r\n\"% c #FFFFFF\"\r\n";
    // A lone LF ends a row; so does a lone CR, and what follows it is the
    // next row. Two bits a pixel.
    set_point(s, 0, "02F00", "DayXpm=\"2 4 2 1\" Colormode=0", two, "$%\n%$\r\n%\r%%\r\n");
    EXPECT_EQ(typ::encode_point_record(s, 0),
              bytes({1, 2, 4, 2, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x04, 0x01, 0x01, 0x05}));

    // Two characters a pixel: a line end inside the second pair leaves that pixel 0.
    std::string many;
    for (int k = 0; k < 32; ++k) many += "\"" + std::string(1, static_cast<char>('$' + k / 16)) +
                                          static_cast<char>('$' + k % 16) + " c #000000\"\r\n";
    set_point(s, 0, "02F00", "DayXpm=\"2 2 32 2\" Colormode=0", many, "$%$&\r\n$'$\r\n");
    const std::string rec = typ::encode_point_record(s, 0);
    EXPECT_EQ(rec.substr(rec.size() - 4), bytes({1, 2, 3, 0}));
    EXPECT_EQ(s.loadrep, "");
}

TEST(PointSearch, FindsAWordInAnyCaseWhereverItStands) {
    using typ::point_detail::find_word;
    constexpr size_t npos = std::string_view::npos;
    for (size_t at = 0; at < 12; ++at) {
        const std::string text = std::string(at, 'n') + "NightXPM";  // every "n" a false start
        EXPECT_EQ(find_word(text, "nightxpm", 0, 2), at);
        EXPECT_EQ(find_word(text, "nightxpm"), at);
        EXPECT_EQ(find_word(std::string_view(text).substr(0, text.size() - 1), "nightxpm", 0, 2), npos);
    }
    EXPECT_EQ(find_word("gg nightxpm NIGHTXPM", "nightxpm", 4, 2), 12u);
    EXPECT_EQ(find_word("Colormode 32 colormode=16", "colormode=", 0, 9), 13u);
    EXPECT_EQ(find_word("xpm", "nightxpm", 0, 2), npos);
}

TEST(PointEncoding, ShortAndMissingRowsAreFilledWithColourZero) {
    model::Store s;
    s.pt_n = 1;
    model::procredim(s, model::k_points, 1);
    set_point(s, 0, "02F00", "DayXpm=\"3 3 2 1\" Colormode=0", "\"$ c #000000\"\r\n\"% c #FFFFFF\"\r\n", "%%%%\r\n%\r\n");
    EXPECT_EQ(typ::encode_point_record(s, 0), bytes({1, 3, 3, 2, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x15, 0x01, 0x00}));
}

TEST(PointEncoding, SavePoisWritesDataIndexAndHeaderFieldsInTypeOrder) {
    model::Store s;
    s.pt_n = 3;
    model::procredim(s, model::k_points, 3);
    const std::string xpm = "DayXpm=\"1 1 1 1\" Colormode=0", col = "\"$ c #FF0000\"\r\n";
    set_point(s, 0, "02F05", xpm, col, "$\r\n");
    set_point(s, 1, "01100", xpm, col, "$\r\n");
    set_point(s, 2, "02F00", xpm, col, "$\r\n");
    s.curf.assign(100, '\0');
    EXPECT_EQ(typ::save_pois(s, 100), 100 + 27 + 12);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_data), 100);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_data_len), 27);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_index), 127);
    EXPECT_EQ(typ::curf_u16(s, typ::hdr::pt_recsize), 4);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_index_len), 12);
    const std::string record = bytes({1, 1, 1, 1, 0, 0x00, 0x00, 0xFF, 0x00});
    EXPECT_EQ(s.curf.substr(100, 27), record + record + record);
    // 0x11 * 32, 0x2F * 32, 0x2F * 32 + 5 with offsets 0, 9, 18.
    EXPECT_EQ(s.curf.substr(127, 12), bytes({0x20, 0x02, 0, 0, 0xE0, 0x05, 9, 0, 0xE5, 0x05, 18, 0}));
}

TEST(PointEncoding, MoreThanThreeHundredPointsUseFiveByteIndexRecords) {
    model::Store s;
    s.pt_n = 301;
    model::procredim(s, model::k_points, 301);
    for (int32_t r = 0; r < 301; ++r) set_point(s, r, "02F00", "DayXpm=\"1 1 1 1\" Colormode=0", "\"$ c #FF0000\"\r\n", "$\r\n");
    const int64_t end = typ::save_pois(s, 200);
    EXPECT_EQ(typ::curf_u16(s, typ::hdr::pt_recsize), 5);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_index_len), 1505);
    EXPECT_EQ(end, 200 + 301 * 9 + 1505);
    const int64_t last = 200 + 301 * 9 + 300 * 5;
    EXPECT_EQ(typ::curf_u24(s, last + 2), 300 * 9);
}

TEST(PointEncoding, NoPointsLeaveTheHeaderFieldsZero) {
    model::Store s;
    s.curf.assign(100, '\x55');
    EXPECT_EQ(typ::save_pois(s, 100), 100);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_data), 0);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_index), 0);
    EXPECT_EQ(typ::curf_u16(s, typ::hdr::pt_recsize), 0);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_index_len), 0);
}

TEST(PointEncoding, DataBeyondThreeByteOffsetsUsesFourByteIndexOffsets) {
    // 259 icons of 255 x 255 at a byte a pixel: more than 16 MB of point data.
    const int count = 259;
    model::Store s;
    s.pt_n = count;
    model::procredim(s, model::k_points, count);
    std::string col, rows;
    for (int k = 0; k < 16; ++k) col += "\"" + std::string(1, static_cast<char>(36 + k)) + " c #00000" + typ::hex(k) + "\"\r\n";
    for (int y = 0; y < 255; ++y) rows += std::string(255, '3') + "\r\n";
    for (int32_t r = 0; r < count; ++r) set_point(s, r, "02F00", "DayXpm=\"255 255 16 1\" Colormode=0", col, rows);
    const int64_t end = typ::save_pois(s, 0);
    const int64_t record = 5 + 48 + 255 * 255;
    EXPECT_EQ(typ::curf_u16(s, typ::hdr::pt_recsize), 6);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::pt_index_len), count * 6);
    EXPECT_EQ(end, record * count + count * 6);
    EXPECT_EQ(typ::curf_u32(s, record * count + (count - 1) * 6 + 2), record * (count - 1));
}
