#include "text/text_writer.h"

#include <gtest/gtest.h>

#include "typ/encoding.h"

namespace korvex::text {
namespace {

using model::procredim;

const platform::Stamp k_stamp{2024, 5, 17, 13, 45, 30};
const std::string k_ruler = ";12345678901234567890123456789012\r\n";

std::string rows_of(int n, const std::string& row) {
    std::string out;
    for (int i = 0; i < n; ++i) out += row + "\r\n";
    return out;
}

std::string quoted_rows(int n, const std::string& row) {
    std::string out;
    for (int i = 0; i < n; ++i) out += "\"" + row + "\"\r\n";
    return out;
}

int32_t add_polygon(Store& s, const std::string& txt, const std::string& xpm, const std::string& bmp = "") {
    procredim(s, model::k_polygons, s.pg_n + 1);
    const auto r = static_cast<size_t>(s.pg_n++);
    s.pg_txt[r] = txt;
    s.pg_xpm[r] = xpm;
    s.pg_bmp[r] = bmp;
    return s.pg_n;
}

int32_t add_line(Store& s, const std::string& txt, uint8_t mode, const std::string& bmp) {
    procredim(s, model::k_lines, s.ln_n + 1);
    const auto r = static_cast<size_t>(s.ln_n++);
    s.ln_txt[r] = txt;
    s.ln_mode[r] = mode;
    s.ln_bmp[r] = bmp;
    return s.ln_n;
}

int32_t add_point(Store& s, const std::string& txt, const std::string& typ, int ncol, const std::string& bmp,
                  int nncol = 0, const std::string& nbmp = "") {
    procredim(s, model::k_points, s.pt_n + 1);
    const auto r = static_cast<size_t>(s.pt_n++);
    s.pt_txt[r] = txt;
    s.pt_typ[r] = typ;
    s.pt_ncol[r] = static_cast<int16_t>(ncol);
    s.pt_nncol[r] = static_cast<int16_t>(nncol);
    s.pt_bmp[r] = bmp;
    s.pt_nbmp[r] = nbmp;
    return s.pt_n;
}

std::string save(Store& s, int kind, platform::ScriptedPrompt* ui_out = nullptr) {
    platform::ScriptedPrompt ui;
    platform::FixedClock clock(k_stamp);
    std::string text;
    save_txt(s, ui_out ? *ui_out : ui, clock, kind, [&](std::string_view piece) { text += piece; });
    return text;
}

TEST(DrawOrderText, TokensBecomeTypeLinesAndALevellessTokenKeepsItsDigits) {
    Store s;
    s.drwlist = " 0001,1 4B00,2 10F03,3 004B";
    EXPECT_EQ(drword(s),
              "[_drawOrder]\r\n"
              "Type=0x01,1\r\n"
              "Type=0x4B,2\r\n"
              "Type=0x10F03,3\r\n"
              "004B,2\r\n"
              "[end]\r\n");
}

TEST(PolygonSection, TypeDigitsAreRepaired) {
    Store s;
    const std::string colours = "Xpm=\"0 0 1 0\"\r\n\"0 c #FF0000\"";
    add_polygon(s, "[_polygon]\r\nType=0x10f\r\n" + colours, "Xpm=\"0 0 1 0\"");
    add_polygon(s, "[_polygon]\r\nType=0x4B00\r\n" + colours, "Xpm=\"0 0 1 0\"");
    add_polygon(s, "[_polygon]\r\nType=0x115\r\nSubType=0x02\r\n" + colours, "Xpm=\"0 0 1 0\"");
    add_polygon(s, "[_polygon]\r\nType=0x2b00\r\nSubType=0x5\r\n" + colours, "Xpm=\"0 0 1 0\"");
    EXPECT_EQ(create_textfile(s, 1, 0), "[_polygon]\r\nType=0x10f00\r\nXpm=\"0 0 1 0\"\r\n\"1 c #FF0000\"\r\n[end]\r\n");
    EXPECT_EQ(create_textfile(s, 2, 0), "[_polygon]\r\nType=0x4b\r\nXpm=\"0 0 1 0\"\r\n\"1 c #FF0000\"\r\n[end]\r\n");
    EXPECT_EQ(create_textfile(s, 3, 0), "[_polygon]\r\nType=0x11502\r\nXpm=\"0 0 1 0\"\r\n\"1 c #FF0000\"\r\n[end]\r\n");
    EXPECT_EQ(create_textfile(s, 4, 0), "[_polygon]\r\nType=0x2b05\r\nXpm=\"0 0 1 0\"\r\n\"1 c #FF0000\"\r\n[end]\r\n");
}

TEST(PolygonSection, SolidDayAndNightColoursAreRenumberedAndUpperCased) {
    Store s;
    add_polygon(s, "[_polygon]\r\nType=0x01\r\nXpm=\"0 0 2 0\"\r\n\"0 c #ff0000\"\r\n\"1 c #00ff00\"\r\n[end]\r\n",
                "Xpm=\"0 0 2 0\"");
    EXPECT_EQ(create_textfile(s, 1, 0),
              "[_polygon]\r\nType=0x01\r\nXpm=\"0 0 2 0\"\r\n\"2 c #FF0000\"\r\n\"3 c #00FF00\"\r\n[end]\r\n");
}

TEST(PolygonSection, BitmapRowsAreQuotedAndRuled) {
    Store s;
    add_polygon(s, "[_polygon]\r\nType=0x03\r\n\r\nString1=0x2F,x\r\nXpm=\"32 32 2 1\"\r\n\"0 c #000000\"\r\n\"1 c none\"\r\n",
                "Xpm=\"32 32 2 1\"", rows_of(32, std::string(32, '1')));
    EXPECT_EQ(create_textfile(s, 1, 0), "[_polygon]\r\nType=0x03\r\nString1=0x00,x\r\nXpm=\"32 32 2 1\"\r\n"
                                        "\"0 c #000000\"\r\n\"1 c none\"\r\n" +
                                            quoted_rows(32, std::string(32, '1')) + k_ruler + "[end]\r\n");
}

TEST(PolygonSection, LanguageTwoFIsWrittenAsUnspecifiedOnlyForItsOwnKey) {
    Store s;
    add_polygon(s, "[_polygon]\r\nType=0x01\r\nString12=0x2F,a\r\nString2=0x2F0,b\r\nXpm=\"0 0 1 0\"\r\n\"0 c #000000\"",
                "Xpm=\"0 0 1 0\"");
    const std::string text = create_textfile(s, 1, 0);
    EXPECT_NE(text.find("String12=0x00,a\r\n"), std::string::npos);
    EXPECT_NE(text.find("String2=0x2F0,b\r\n"), std::string::npos);
}

TEST(LineSection, SolidLineHasNoRowsAndSpellsTheWidthForMkgmap) {
    Store s;
    add_line(s, "[_line]\r\nType=0x2b00\r\nlwidth(=3\r\nXpm=\"0 0 2 0\"\r\n\"0 c #FF0000\"\r\n\"1 c #00FF00\"", 7,
             rows_of(3, std::string(32, '0')));
    EXPECT_EQ(create_textfile(s, 1, 1), "[_line]\r\nType=0x2b\r\nLineWidth=3\r\nBorderWidth=0\r\nXpm=\"0 0 2 0\"\r\n"
                                        "\"0 c #FF0000\"\r\n\"1 c #00FF00\"\r\n[end]\r\n");
}

TEST(LineSection, DecodedWidthKeyKeepsRowsOut) {
    Store s;
    add_line(s, "[_line] \r\nType=0x10F\r\nLineWidth=2\r\nBorderWidth=1\r\nXpm=\"0 0 2 0\"\r\n\"0 c #FF0000\"\r\n"
                "\"1 c #000000\"",
             8, rows_of(4, std::string(32, '1')));
    EXPECT_EQ(create_textfile(s, 1, 1), "[_line] \r\nType=0x10f00\r\nLineWidth=2\r\nBorderWidth=1\r\nXpm=\"0 0 2 0\"\r\n"
                                        "\"0 c #FF0000\"\r\n\"1 c #000000\"\r\n[end]\r\n");
}

TEST(LineSection, BitmapLineWritesItsRows) {
    Store s;
    add_line(s, "[_line]\r\nType=0x2c\r\nXpm=\"32 2 2 1\"\r\n\"0 c #FF0000\"\r\n\"1 c none\"", 2 * 8 + 6,
             "01010101010101010101010101010101\r\n10101010101010101010101010101010\r\n");
    EXPECT_EQ(create_textfile(s, 1, 1), "[_line]\r\nType=0x2c\r\nXpm=\"32 2 2 1\"\r\n\"0 c #FF0000\"\r\n\"1 c none\"\r\n"
                                        "\"01010101010101010101010101010101\"\r\n"
                                        "\"10101010101010101010101010101010\"\r\n[end]\r\n");
}

TEST(LineSection, TransparentColourOfSolidLineGoesAndHeaderCountsTheRest) {
    Store s;
    add_line(s, "[_line]\r\nType=0x2b\r\nLineWidth=2\r\nXpm=\"0 0 2 0\"\r\n\"0 c #FF0000\"\r\n\"1 c #none\"", 6, "");
    EXPECT_EQ(create_textfile(s, 1, 1), "[_line]\r\nType=0x2b\r\nLineWidth=2\r\nBorderWidth=0\r\nXpm=\"0 0 1 0\"\r\n"
                                        "\"0 c #FF0000\"\r\n[end]\r\n");
}

TEST(LineSection, ActiveLinesStandBehindOrdinaryOnes) {
    Store s;
    add_line(s, "[_line]\r\nType=0x01\r\nLineWidth=1\r\nBorderWidth=0\r\nXpm=\"0 0 1 0\"\r\n\"0 c #000000\"", 6, "");
    add_line(s, "[_line]\r\nActivity=Hiking\r\nType=0x02\r\nLineWidth=1\r\nBorderWidth=0\r\nXpm=\"0 0 1 0\"\r\n\"0 c #000000\"",
             6, "");
    s.ln_n = 1;
    s.ln_nact = 1;
    EXPECT_NE(create_textfile(s, 1, 3).find("Activity=Hiking\r\nType=0x02\r\n"), std::string::npos);
}

TEST(PointSection, NightPictureFollowsDayRowsAndRuler) {
    Store s;
    add_point(s,
              "[_point]\r\nType=0x2f06\r\nString1=0x04,Shop\r\nDayXpm=\"2 2 1 1\" Colormode=0\r\n\"$ c #FF0000\"\r\n"
              "NightXpm=\"2 2 1 1\" Colormode=0\r\n\"$ c #00FF00\"",
              "02F06", 1, "$$\r\n$$\r\n", 1, "$$\r\n$$\r\n");
    EXPECT_EQ(create_textfile(s, 1, 2), "[_point]\r\nType=0x02f06\r\nString1=0x04,Shop\r\n"
                                        "DayXpm=\"2 2 1 1\" Colormode=0\r\n\"$ c #FF0000\"\r\n\"$$\"\r\n\"$$\"\r\n" +
                                            k_ruler +
                                            "NightXpm=\"2 2 1 1\" Colormode=0\r\n\"$ c #00FF00\"\r\n\"$$\"\r\n\"$$\"\r\n"
                                            "[end]\r\n");
}

TEST(PointSection, ExtraPointUsesIdAndMissingColormodeIsAdded) {
    Store s;
    add_point(s, "[_point]\r\nType=0x2f\r\nDayXpm=\"1 1 2 1\"\r\n\"$ c #FF0000\"\r\n\"% c none\"", "2f00", 2, "$\r\n");
    s.pt_n = 0;
    s.pt_nx = 1;
    EXPECT_EQ(create_textfile(s, 1, 4), "[_point]\r\nID=0x02f00\r\nDayXpm=\"1 1 2 1\" Colormode=16\r\n"
                                        "\"$ c #FF0000\"\r\n\"% c none\"\r\n\"$\"\r\n" +
                                            k_ruler + "[end]\r\n");
}

TEST(PointSection, LabelOnlyPointGetsOneTransparentPixel) {
    Store s;
    add_point(s, "[_point]\r\nType=0x10300\r\nString1=0x04,Lodge\r\nDayXpm=\"0 0 0 1\" Colormode=16", "10300", 0, "");
    EXPECT_EQ(create_textfile(s, 1, 2), "[_point]\r\nType=0x10300\r\nString1=0x04,Lodge\r\n"
                                        "DayXpm=\"1 1 1 1\" Colormode=16\r\n\"$ c none\"\r\n\"$\"\r\n" +
                                            k_ruler + "[end]\r\n");
    // A picture with a size but no colours and no rows draws nothing as well.
    Store t;
    add_point(t, "[_point]\r\nType=0x2f06\r\nDayXpm=\"1 1 0 1\" Colormode=0", "02F06", 0, "");
    EXPECT_EQ(create_textfile(t, 1, 2), "[_point]\r\nType=0x02f06\r\n"
                                        "DayXpm=\"1 1 1 1\" Colormode=16\r\n\"$ c none\"\r\n\"$\"\r\n" +
                                            k_ruler + "[end]\r\n");
}

TEST(PointSection, NightPictureWithoutColoursIsLeftOut) {
    Store s;
    add_point(s,
              "[_point]\r\nType=0x2f06\r\nDayXpm=\"1 1 1 1\" Colormode=0\r\n\"$ c #FF0000\"\r\n"
              "NightXpm=\"1 1 0 1\" Colormode=0",
              "02F06", 1, "$\r\n");
    EXPECT_EQ(create_textfile(s, 1, 2).find("NightXpm"), std::string::npos);
}

TEST(PointSection, SubtypeLineIsMergedFromTheTypeColumn) {
    Store s;
    add_point(s, "[_point]\r\nType=0x2f\r\nSubType=0x06\r\nDayXpm=\"1 1 1 1\" Colormode=0\r\n\"$ c #FF0000\"", "10f03", 1,
              "$\r\n");
    EXPECT_EQ(create_textfile(s, 1, 2).substr(0, 30), "[_point]\r\nType=0x10f03\r\nDayXpm");
}

TEST(SaveTxt, HeadIdentifiersAndSectionsInOrder) {
    Store s;
    s.opt.version = "9.9";
    s.pid = "1";
    s.fid = " 1234 ";
    s.hdr_caption = " 5b";
    s.codepage = 1252;
    s.drwlist = " 0001,1";
    s.dirty = true;
    add_polygon(s, "[_polygon]\r\nType=0x0100\r\nXpm=\"0 0 1 0\"\r\n\"0 c #FF0000\"\r\n[end]\r\n", "Xpm=\"0 0 1 0\"");
    add_line(s, "[_line]\r\nType=0x02\r\nLineWidth=1\r\nBorderWidth=0\r\nXpm=\"0 0 1 0\"\r\n\"0 c #000000\"", 6, "");
    EXPECT_EQ(save(s, 13), ";generated by Korvex 9.9\r\n"
                           ";created : 17/05/2024 13:45:30\r\n"
                           ";------------------------------\r\n"
                           "[_id]\r\nProductCode=1\r\nFID=1234\r\n;Header=5B\r\nCodePage=1252\r\n[end]\r\n\r\n"
                           "[_drawOrder]\r\nType=0x01,1\r\n[end]\r\n\r\n"
                           "[_polygon]\r\nType=0x01\r\nXpm=\"0 0 1 0\"\r\n\"1 c #FF0000\"\r\n[end]\r\n\r\n"
                           "[_line]\r\nType=0x02\r\nLineWidth=1\r\nBorderWidth=0\r\nXpm=\"0 0 1 0\"\r\n"
                           "\"0 c #000000\"\r\n[end]\r\n\r\n");
    // Printing is not saving: only the caller knows when the file is on disk.
    EXPECT_TRUE(s.dirty);
}

TEST(SaveTxt, ZeroIdentifiersRefuseTheSave) {
    Store s;
    s.pid = "0";
    s.fid = "12";
    platform::ScriptedPrompt ui;
    EXPECT_EQ(save(s, 13, &ui), "");
    s.pid = "x1";
    s.fid = "";
    EXPECT_EQ(save(s, 13, &ui), "");
    EXPECT_EQ(ui.messages, (std::vector<std::string>{"Please enter valid PID at the top.",
                                                     "Please enter valid FID at the top."}));
}

TEST(SaveTxt, CodePageZeroIsCommentedOut) {
    Store s;
    s.fid = "7";
    s.codepage = 0;
    EXPECT_NE(save(s, 13).find("\r\n;CodePage=?\r\n"), std::string::npos);
}

TEST(SaveTxt, Utf8KindWritesSignatureAndUtf8Strings) {
    Store s;
    s.fid = "7";
    s.codepage = 1251;
    add_polygon(s, "[_polygon]\r\nType=0x01\r\nString1=0x19,\xCF\xF0\xE8\xE2\xE5\xF2\r\nString2=0x04,\r\n"
                   "Xpm=\"0 0 1 0\"\r\n\"0 c #FF0000\"",
                "Xpm=\"0 0 1 0\"");
    const std::string utf8 = save(s, k_kind_utf8);
    EXPECT_EQ(utf8.substr(0, 3), typ::bom);
    EXPECT_NE(utf8.find("String1=0x19,\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82\r\n"), std::string::npos);
    EXPECT_NE(utf8.find("String2=0x04, \r\n"), std::string::npos);
    const std::string plain = save(s, 13);
    EXPECT_NE(plain.substr(0, 3), typ::bom);
    EXPECT_NE(plain.find("String1=0x19,\xCF\xF0\xE8\xE2\xE5\xF2\r\n"), std::string::npos);
    // A text loaded as UTF-8 is saved as UTF-8 by either save, signed.
    s.utf8txt = true;
    EXPECT_EQ(save(s, 13), utf8);
}

TEST(SaveTxt, Utf8ProjectStringsAreNotRecoded) {
    Store s;
    s.fid = "7";
    s.codepage = 65001;
    add_polygon(s, "[_polygon]\r\nType=0x01\r\nString1=0x04,B\xC3\xA4""ckerei\r\nXpm=\"0 0 1 0\"\r\n\"0 c #FF0000\"",
                "Xpm=\"0 0 1 0\"");
    EXPECT_NE(save(s, k_kind_utf8).find("String1=0x04,B\xC3\xA4""ckerei\r\n"), std::string::npos);
}

TEST(PanelText, ElementTextRowsAndClosingLines) {
    Store s;
    s.opt.version = "9.9";
    add_line(s, "[_line]\r\nType=0x2c\r\nXpm=\"32 1 2 1\"\r\n\"0 c #FF0000\"\r\n\"1 c none\"\r\n", 8 + 6,
             std::string(32, '0') + "\r\n");
    EXPECT_EQ(create_code(s, 1, 1, false), "[_line]\r\nType=0x2c\r\nXpm=\"32 1 2 1\"\r\n\"0 c #FF0000\"\r\n\"1 c none\"\r\n"
                                           "\"" + std::string(32, '0') + "\"\r\n" +
                                               k_ruler + "[end]\r\n;generated by Korvex 9.9\r\n");
    EXPECT_EQ(create_code(s, 1, 1, true).find("[end]"), std::string::npos);
}

// A bitmap line of one row and scheme 0 (mode 8) shows its row; a solid
// line (mode 7) shows none.
TEST(PanelText, OneRowBitmapLineShowsItsRowAndASolidLineNone) {
    Store s;
    const std::string row(32, '0');
    add_line(s, "[_line]\r\nType=0x02\r\nXpm=\"32 1 2 1\"\r\n\"0 c #000000\"\r\n\"1 c #FFFFFF\"", 8, row);
    add_line(s, "[_line]\r\nType=0x03\r\nLineWidth=2\r\nBorderWidth=0\r\nXpm=\"0 0 2 0\"\r\n\"0 c #000000\"\r\n\"1 c #FFFFFF\"", 7,
             row + "\r\n" + row);
    EXPECT_EQ(create_code(s, 1, model::k_lines, true),
              "[_line]\r\nType=0x02\r\nXpm=\"32 1 2 1\"\r\n\"0 c #000000\"\r\n\"1 c #FFFFFF\"\r\n\"" + row + "\"\r\n" + k_ruler);
    EXPECT_EQ(create_code(s, 2, model::k_lines, true).find(row), std::string::npos);
    EXPECT_NE(create_textfile(s, 1, model::k_lines).find("\"" + row + "\"\r\n[end]"), std::string::npos);
}

TEST(PanelText, ConvertShowsStringsAsUtf8) {
    Store s;
    s.codepage = 1251;
    EXPECT_EQ(convert(s, "Type=0x01\r\nString1=0x19,\xCF\xF0\xE8\r\nString2=0x04,\r\n"),
              "Type=0x01\r\nString1=0x19,\xD0\x9F\xD1\x80\xD0\xB8\r\nString2=0x04, \r\n");
    s.codepage = 65001;
    EXPECT_EQ(convert(s, "String1=0x19,\xD0\x9F"), "String1=0x19,\xD0\x9F");
}

}  // namespace
}  // namespace korvex::text
