// Polygon and line sections read into rows: normalisations with exact
// before/after columns, and the decoder's own texts read back unchanged.
#include <gtest/gtest.h>

#include "support/harness.h"
#include "text/polygon_line_reader.h"
#include "typ/polygon_record.h"
#include "typ/curf_access.h"
#include "typ/line_record.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

struct Reader {
    model::Store s;
    platform::ScriptedPrompt ui;
    Reader() {
        model::procredim(s, model::k_polygons, 2);
        model::procredim(s, model::k_lines, 2);
    }
    void polygon(const std::string& text) { text::pgonparse_txt(s, ui, text, 0, true); }
    void line(const std::string& text) { text::pollineparse(s, ui, text, 0, true); }
};

std::string uniform_rows(int n, char c) {
    std::string out;
    for (int k = 0; k < n; ++k) out += (k ? "\r\n" : "") + std::string(32, c);
    return out;
}

// A 32x32 polygon picture whose first row is "ab" repeated and the others
// are all "a".
std::string polygon_rows(const std::string& first, char rest) {
    std::string out = "\"" + first + "\"\n";
    for (int k = 1; k < 32; ++k) out += "\"" + std::string(32, rest) + "\"\n";
    return out;
}

}  // namespace

// Line row 0 of read against row k of decoded. A line and a border of width
// 0 decodes as a line of one colour; the text of two solid colours without a
// border holds the day and the night colour, as mkgmap compiles it, so such
// a binary shows the text's night colour as an undrawn border.
void expect_same_line(const model::Store& read, const model::Store& s, size_t k) {
    const bool bare_border = s.ln_mode[k] == 6 && read.ln_mode[0] == 7;
    EXPECT_EQ(read.ln_mode[0], bare_border ? 7 : s.ln_mode[k]);
    EXPECT_EQ(bare_border ? text::reducl(read.ln_col[0], 1) : read.ln_col[0], s.ln_col[k]);
    EXPECT_EQ(read.ln_bmp[0], s.ln_bmp[k]);
    EXPECT_EQ(read.ln_wid[0], s.ln_wid[k]);
    EXPECT_EQ(read.ln_bord[0], s.ln_bord[k]);
}

TEST(PolygonReader, ShortTypesArePaddedAndSubTypeMergesIntoThem) {
    Reader r;
    const char* const cases[][2] = {{"Type=0x1", "0x0100"},     {"type = 0x4b", "0x4B00"},
                                    {"TYPE=0x4B00", "0x4B00"},  {"Type=0x02b", "0x2B00"},
                                    {"Type=0x115", "0x11500"},  {"Type=0x10f03", "0x10F03"},
                                    {"Type=0x115\nSubType=0x02", "0x11502"},
                                    {"Type=0x2b\nSubType=0x3", "0x2B03"}};
    for (const auto& c : cases) {
        r.polygon(crlf(std::string("[_polygon]\n") + c[0] + "\nXpm=\"0 0 1 0\"\n\"a c #102030\"\n[end]"));
        EXPECT_EQ(r.s.pg_typ[0], c[1]) << c[0];
    }
}

TEST(PolygonReader, MkgmapSolidColoursWithTabsAndBlankSymbolAreDayAndNight) {
    Reader r;
    r.polygon(crlf("[_polygon]\nType=0x1\nString=0x4,Test\nXpm=\"0 0 2 0\"\n\"*\tc #990099\"\n"
                   "\"     c   #88aa88\",\n[end]"));
    EXPECT_EQ(r.s.pg_col[0], "\"0 c #990099\"\r\n\"1 c #88AA88\"");
    EXPECT_EQ(r.s.pg_mode[0], 7);
    EXPECT_EQ(r.s.pg_ncol[0], 2);
    EXPECT_EQ(r.s.pg_bmp[0], "");
    EXPECT_EQ(r.s.pg_txt[0], crlf("[_polygon]\nType=0x1\nExtendedLabels=N\nString1=0x04,Test\n"
                                  "Xpm=\"0 0 2 0\"\n\"0 c #990099\"\n\"1 c #88AA88\"\n"));
    EXPECT_EQ(r.s.pg_lab[0], std::string("\1\0#'Test'", 9));

    r.polygon(crlf("[_polygon]\nType=0x2\nXpm=\"0 0 2 0\"\n\"* c #990099\"\n\"     c   None\"\n[end]"));
    EXPECT_EQ(r.s.pg_col[0], "\"0 c #990099\"");
    EXPECT_EQ(r.s.pg_mode[0], 6);
    EXPECT_EQ(r.s.pg_xpm[0], "Xpm=\"0 0 1 0\"");
}

TEST(PolygonReader, NoneInSecondColourSwapsPairAndPixels) {
    Reader r;
    r.polygon(crlf("[_polygon]\nType=0x3\nXpm=\"32 32 2 1\"\n\"* c #990099\"\n\"! c None\"\n" +
                   polygon_rows(std::string(16, '*') + std::string(16, '!'), '!') + "[end]"));
    EXPECT_EQ(r.s.pg_col[0], "\"0 c none\"\r\n\"1 c #990099\"");
    EXPECT_EQ(r.s.pg_mode[0], 14);
    EXPECT_EQ(r.s.pg_bmp[0].substr(0, 34), std::string(16, '1') + std::string(16, '0') + "\r\n");
    EXPECT_EQ(r.s.pg_bmp[0].substr(34), uniform_rows(31, '0'));
}

TEST(PolygonReader, FourColourModesFollowTheirNoneLines) {
    const char* const tables[][2] = {{"\"a c #111111\"\n\"b c #222222\"\n\"c c #333333\"\n\"d c #444444\"", "9"},
                                     {"\"a c #111111\"\n\"b c none\"\n\"c c #333333\"\n\"d c #444444\"", "11"},
                                     {"\"a c #111111\"\n\"b c #222222\"\n\"c c #333333\"\n\"d c none\"", "13"},
                                     {"\"a c #111111\"\n\"b c none\"\n\"c c #333333\"\n\"d c none\"", "15"}};
    for (const auto& t : tables) {
        Reader r;
        r.polygon(crlf(std::string("[_polygon]\nType=0x3\nXpm=\"32 32 4 1\"\n") + t[0] + "\n" +
                       polygon_rows(std::string(32, 'a'), 'b') + "[end]"));
        EXPECT_EQ(std::to_string(r.s.pg_mode[0]), t[1]) << t[0];
    }
    Reader r;
    r.polygon(crlf("[_polygon]\nType=0x3\nXpm=\"32 32 4 1\"\n\"a c #111111\"\n\"b c none\"\n\"c c #333333\"\n"
                   "\"d c #444444\"\n" + polygon_rows(std::string(32, 'a'), 'b') + "[end]"));
    EXPECT_EQ(r.s.pg_col[0], "\"0 c none\"\r\n\"1 c #111111\"\r\n\"2 c #444444\"\r\n\"3 c #333333\"");
    EXPECT_EQ(r.s.pg_bmp[0].substr(0, 34), std::string(32, '1') + "\r\n");
}

TEST(PolygonReader, NightColoursDroppedByLoadOption) {
    Reader r;
    r.s.ldopts = "111011";
    r.polygon(crlf("[_polygon]\nType=0x3\nXpm=\"32 32 4 1\"\n\"a c #111111\"\n\"b c #222222\"\n"
                   "\"c c #333333\"\n\"d c #444444\"\n" + polygon_rows(std::string(32, 'a'), 'b') + "[end]"));
    EXPECT_EQ(r.s.pg_mode[0], 8);
    EXPECT_EQ(r.s.pg_col[0], "\"0 c #111111\"\r\n\"1 c #222222\"");
    EXPECT_EQ(r.s.pg_xpm[0], "Xpm=\"32 32 2 1\"");
}

// A renumbered, new or copied element is read from its text: its label must
// be the one the decoder shows for the same strings, quoted.
TEST(PolygonReader, LabelIsChosenAndQuotedAsForADecodedRecordInBothClasses) {
    struct Case {
        int langid;
        const char* strings;
        const char* label;
    };
    const Case cases[] = {
        {4, "String1=0x04,Wood\nString2=0x02,Wald", "'Wood'"},    // the preferred language, wherever it stands
        {4, "String1=0x02,Wald\nString2=0x04,Wood", "'Wood'"},
        {4, "String1=0x00,Zero\nString2=0x02,Wald", "'Zero'"},    // else language 0
        {4, "String1=0x01,Bois\nString2=0x02,Wald", "'Bois'"},    // else the first
        {16, "String1=0x10,Sixteen\nString2=0x03,Three", "'Sixteen'"},
        {4, "String1=0x02,\xE9t\xE9\nString2=0x03,Sommer", "'Sommer'"},  // the first that starts plain
        {4, "", ""},
    };
    for (const Case& c : cases) {
        Reader r;
        r.s.opt.langid = c.langid;
        r.polygon(crlf(std::string("[_polygon]\nType=0x1\n") + c.strings + "\nXpm=\"0 0 1 0\"\n\"a c #102030\"\n[end]"));
        EXPECT_EQ(r.s.pg_lab[0].substr(3), c.label) << c.strings;
        r.line(crlf(std::string("[_line]\nType=0x1\n") + c.strings + "\nXpm=\"0 0 1 0\"\n\"a c #102030\"\n[end]"));
        EXPECT_EQ(r.s.ln_lab[0], std::string("0x00100#") + c.label) << c.strings;
    }
}

TEST(LineReader, TypeDigitsBecomeTheCodeOfTypeAndSubtype) {
    const std::pair<const char*, int32_t> cases[] = {{"Type=0x2b", 0x2B00},    {"Type=0x1", 0x100},
                                                     {"Type=0x2b00", 0x2B00},  {"Type=0x10f03", 0x10F03},
                                                     {"Type=0x115", 0x11500},  {"Type=0x115\nSubType=0x02", 0x11502}};
    for (const auto& [type, code] : cases) {
        Reader r;
        r.line(crlf(std::string("[_line]\n") + type + "\nLineWidth=2\nXpm=\"0 0 1 0\"\n\"a c #102030\"\n[end]"));
        EXPECT_EQ(r.s.ln_code[0], code) << type;
    }
}

TEST(LineReader, SolidModesAndSynthesisedRows) {
    Reader r;
    // Two colours and a border: line and border colour.
    r.line(crlf("[_line]\nType=0x1\nString=0x4,Test\nLineWidth=2\nBorderWidth=1\nXpm=\"0 0 2 0\"\n"
                "\"a\tc #909090\"\n\"2 c #898989\"\n[end]"));
    EXPECT_EQ(r.s.ln_mode[0], 0);
    EXPECT_EQ(r.s.ln_wid[0], 2);
    EXPECT_EQ(r.s.ln_bord[0], 1);
    EXPECT_EQ(r.s.ln_bmp[0], uniform_rows(1, '1') + "\r\n" + uniform_rows(2, '0') + "\r\n" + uniform_rows(1, '1'));
    EXPECT_EQ(r.s.ln_col[0], "\"0 c #909090\"\r\n\"1 c #898989\"");
    // Without UseOrientation= mkgmap keeps the line upright.
    EXPECT_EQ(r.s.ln_txt[0], crlf("[_line]\nType=0x1\nString1=0x04,Test\nLineWidth=2\nBorderWidth=1\n"
                                  "UseOrientation=N\nXpm=\"0 0 2 0\"\n\"0 c #909090\"\n\"1 c #898989\"\n"));
    EXPECT_EQ(r.s.ln_lab[0], "0x00100#'Test'");

    // Two colours without a border: day and night colour.
    r.line(crlf("[_line]\nType=0x1\nLineWidth=3\nBorderWidth=0\nXpm=\"0 0 2 0\"\n\"a c #909090\"\n"
                "\"b c #898989\"\n[end]"));
    EXPECT_EQ(r.s.ln_mode[0], 7);
    EXPECT_EQ(r.s.ln_bmp[0], uniform_rows(3, '0'));

    r.line(crlf("[_line]\nType=0x1\nlwidth(=4\nXpm=\"0 0 1 0\"\n\"a c #909090\"\n[end]"));
    EXPECT_EQ(r.s.ln_mode[0], 6);
    EXPECT_EQ(r.s.ln_wid[0], 4);
    EXPECT_EQ(r.s.ln_bmp[0], uniform_rows(4, '0'));
}

TEST(LineReader, RulerOfACommentedOutPictureDoesNotEndTheRows) {
    Reader r;
    r.line(crlf("[_line]\nType=0x20\n; Xpm=\"32 1 2 1\"\n; \"! c #CB0000\"\n;1234567890\nXpm=\"32 1 2 1\"\n"
                "\"! c #CB0000\"\n\"  c none\"\n\"" + std::string(16, '!') + std::string(16, ' ') +
                "\"\n;12345678901234567890123456789012\n[end]"));
    EXPECT_EQ(r.s.ln_mode[0], 8 + 6);
    EXPECT_EQ(r.s.ln_bmp[0], std::string(16, '0') + std::string(16, '1'));
}

// A line and a border of width 0: the border is not drawn, and its colour
// written beside the line colour would read back as the night colour.
TEST(LineRecord, LineAndBorderOfWidthZeroDecodeAsOneColourAndReadBackSo) {
    model::Store s;
    s.curf = std::string("\0\0", 2) + "\x10\x20\x30" + "\x40\x50\x60" + "\x03\x03";
    model::procredim(s, model::k_lines, 1);
    s.ln_n = 1;
    s.ln_code[0] = 0x2B00;
    typ::line_no_bmp(s, 0, 0, 0, static_cast<int32_t>(s.curf.size()));
    EXPECT_EQ(s.ln_mode[0], 6);
    EXPECT_EQ(s.ln_col[0], "\"0 c #302010\"");
    Reader r;
    r.line(s.ln_txt[0] + "[end]");
    expect_same_line(r.s, s, 0);
}

TEST(PolygonReader, CustomColorOfAnUnknownValueIsLeftToTheColourKeys) {
    Reader r;
    r.polygon(crlf("[_polygon]\nType=0x1\nDaycustomColor=#110099\nCustomColor=ignored\nXpm=\"0 0 1 0\"\n"
                   "\"a c #990099\"\n[end]"));
    EXPECT_EQ(r.s.pg_txt[0].find("CustomColor=ignored"), std::string::npos);
    EXPECT_NE(r.s.pg_txt[0].find("DaycustomColor=#110099"), std::string::npos);
}

TEST(LineReader, BitmapModesIgnoreWidthsAndPutTransparentSecond) {
    Reader r;
    r.line(crlf("[_line]\nType=0x2\nLineWidth=4\nXpm=\"32 2 2 1\"\n\"a c #112233\"\n\"b c none\"\n\"" +
                std::string(16, 'a') + std::string(16, 'b') + "\"\n\"" + std::string(32, 'b') + "\"\n[end]"));
    EXPECT_EQ(r.s.hdr_len, 91);
    EXPECT_EQ(r.s.ln_mode[0], 2 * 8 + 6);
    EXPECT_EQ(r.s.ln_wid[0], 0);
    EXPECT_EQ(r.s.ln_bmp[0], std::string(16, '0') + std::string(16, '1') + "\r\n" + std::string(32, '1'));
    EXPECT_EQ(r.s.ln_col[0], "\"0 c #112233\"\r\n\"1 c none\"");
    EXPECT_EQ(r.s.ln_xpm[0], "Xpm=\"32 2 2 1\"");
    EXPECT_EQ(r.s.ln_txt[0].find("LineWidth"), std::string::npos);

    // Transparent first, as mkgmap sources write it: pair and pixels swap.
    r.line(crlf("[_line]\nType=0x2\nXpm=\"32 1 2 1\"\n\"a c none\"\n\"b c #112233\"\n\"" +
                std::string(16, 'a') + std::string(16, 'b') + "\"\n[end]"));
    EXPECT_EQ(r.s.ln_col[0], "\"0 c #112233\"\r\n\"1 c none\"");
    EXPECT_EQ(r.s.ln_bmp[0], std::string(16, '1') + std::string(16, '0'));
    EXPECT_EQ(r.s.ln_mode[0], 8 + 6);

    const char* const tables[][2] = {{"\"a c #111111\"\n\"b c #222222\"\n\"c c #333333\"\n\"d c #444444\"", "9"},
                                     {"\"a c #111111\"\n\"b c none\"\n\"c c #333333\"\n\"d c #444444\"", "11"},
                                     {"\"a c #111111\"\n\"b c #222222\"\n\"c c #333333\"\n\"d c none\"", "13"},
                                     {"\"a c #111111\"\n\"b c none\"\n\"c c #333333\"\n\"d c none\"", "15"}};
    for (const auto& t : tables) {
        r.line(crlf(std::string("[_line]\nType=0x2\nXpm=\"32 1 4 1\"\n") + t[0] + "\n\"" + std::string(32, 'a') +
                    "\"\n[end]"));
        EXPECT_EQ(std::to_string(r.s.ln_mode[0]), t[1]) << t[0];
    }
}

TEST(LineReader, WidthLimitsAreReportedAndClamped) {
    Reader r;
    r.line(crlf("[_line]\nType=0x2b\nlwidth(=0\nXpm=\"0 0 1 0\"\n\"a c #111111\"\n[end]"));
    EXPECT_EQ(r.s.ln_wid[0], 1);
    EXPECT_NE(r.s.ln_txt[0].find("lwidth(=1\r\n"), std::string::npos);
    r.line(crlf("[_line]\nType=0x2b\nBorderWidth=2\nLineWidth=40\nBorderWidth=33\nXpm=\"0 0 2 0\"\n"
                "\"a c #111111\"\n\"b c #222222\"\n[end]"));
    EXPECT_EQ(r.s.ln_wid[0], 31);
    EXPECT_EQ(r.s.ln_bord[0], 31);
    EXPECT_EQ(r.s.loadrep,
              "0x02b00 lwidth( set to 1\r\n0x02b00 lwidth( (>31) Reset to 31 max\r\n"
              "0x02b00 Borderwidth (>31) Reset to 31 max\r\n");
}

TEST(LineReader, YesNoValuesInCapitalsButLabelsKeepTheirCase) {
    Reader r;
    r.line(crlf("[_line]\nType=0x2b\nString1=0x04,bicycle=no\nUseOrientation=n\nExtendedLabels=y\n"
                "LineWidth=2\nXpm=\"0 0 1 0\"\n\"a c #111111\"\n[end]"));
    EXPECT_EQ(r.s.ln_txt[0], crlf("[_line]\nType=0x2b\nString1=0x04,bicycle=no\nUseOrientation=N\n"
                                  "ExtendedLabels=Y\nLineWidth=2\nXpm=\"0 0 1 0\"\n\"0 c #111111\"\n"));
}

TEST(LineReader, WidthWithoutEqualsEndsTheElement) {
    Reader r;
    r.line(crlf("[_line]\nType=0x2b\nlwidth(4\nXpm=\"0 0 1 0\"\n\"a c #111111\"\n[end]"));
    EXPECT_EQ(r.s.loadrep, "No lwidth(\r\n");
    EXPECT_EQ(r.s.ln_col[0], "");
}

TEST(LineReader, MissingHeaderGivesSyntheticHeaderAndReport) {
    Reader r;
    r.line(crlf("[_line]\nType=0x2b\nXpm=\"32 2\"\n\"a c #111111\"\n\"" + std::string(32, 'a') + "\"\n[end]"));
    EXPECT_EQ(r.s.ln_xpm[0], "Xpm=\"0 0 1 0\"");
    EXPECT_EQ(r.s.ln_bmp[0], "");
    EXPECT_EQ(r.s.loadrep, "0x02b00 Line xpm error. Click on line to fix.\r\n");
}

TEST(LineReader, ActivityAndColourListHelpers) {
    Reader r;
    r.line(crlf("[_line]\nType=0x2b\nActivity=Mountain Biking\nLineWidth=2\nXpm=\"0 0 1 0\"\n\"a c #111111\"\n[end]"));
    EXPECT_EQ(r.s.ln_act[0], "52");
    EXPECT_EQ(r.s.hdr_len, 174);
    EXPECT_EQ(r.s.hdr_caption, " AE");
    EXPECT_EQ(text::activity_code("Walking"), "40");
    EXPECT_EQ(text::activity_code("Mountain Biking"), "52");
    EXPECT_EQ(text::activity_code("tour cycling"), "51");
    EXPECT_EQ(text::activity_code("swimming"), "40");
    EXPECT_EQ(text::reducl("\"0 c #1\"\r\n\"1 c #2\"\r\n\"2 c #3\"", 2), "\"0 c #1\"\r\n\"1 c #2\"");
    EXPECT_EQ(text::reducl("\"0 c #1\"", 3), "\"0 c #1\"");
}

// The decoder's own texts read back to the columns it produced, and encode to
// the same record bytes.
TEST(PolygonLineReader, DecoderTextsReadBackToTheSameColumns) {
    if (corpus_dir().empty()) GTEST_SKIP() << "no corpus";
    for (const std::string& file : files_with(corpus_dir() + "/typ", ".typ")) {
        model::Store s;
        platform::ScriptedPrompt ui;
        decode_bytes(s, ui, read_bytes(file));
        Reader r;
        r.s.codepage = s.codepage;
        r.s.curf = s.curf;
        for (int32_t n = 0; n < s.pg_n; ++n) {
            const auto k = static_cast<size_t>(n);
            std::string section = s.pg_txt[k];
            if (s.pg_mode[k] >= 8)
                for (const std::string& row : lines_of(s.pg_bmp[k])) section += "\"" + row + "\"\r\n";
            r.polygon(section + "[end]");
            SCOPED_TRACE(file + " polygon " + s.pg_typ[k]);
            EXPECT_EQ(r.s.pg_typ[0], s.pg_typ[k]);
            EXPECT_EQ(r.s.pg_mode[0], s.pg_mode[k]);
            EXPECT_EQ(r.s.pg_col[0], s.pg_col[k]);
            EXPECT_EQ(r.s.pg_bmp[0], s.pg_bmp[k]);
            EXPECT_EQ(typ::encode_polygon_record(r.s, 0), typ::encode_polygon_record(s, n));
        }
        for (int32_t n = 0; n < s.ln_n + s.ln_nact; ++n) {
            const auto k = static_cast<size_t>(n);
            std::string section = s.ln_txt[k];
            if (s.ln_xpm[k].find("\"32 ") != std::string::npos)
                for (const std::string& row : lines_of(s.ln_bmp[k])) section += "\"" + row + "\"\r\n";
            r.line(section + "[end]");
            SCOPED_TRACE(file + " line " + std::to_string(s.ln_code[k]));
            EXPECT_EQ(r.s.ln_code[0], s.ln_code[k]);
            expect_same_line(r.s, s, k);
            EXPECT_EQ(typ::encode_line_record(r.s, 0), typ::encode_line_record(s, n));
        }
    }
}

namespace {

// The sections of a marker in a text, the marker in any case.
std::vector<std::string> sections_of(const std::string& text, const std::string& marker) {
    std::string low = text;
    for (char& c : low) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    std::vector<std::string> out;
    for (size_t at = low.find(marker); at != std::string::npos; at = low.find(marker, at + 1)) {
        const size_t end = low.find("[end]", at);
        out.push_back(text.substr(at, end == std::string::npos ? std::string::npos : end + 5 - at));
    }
    return out;
}

// Each pixel's day colour and, with four colours, its night colour: what a
// picture means whichever colour of a pair stands first.
std::string painted(const std::string& col, const std::string& bmp) {
    const std::vector<std::string> c = lines_of(col);
    auto at = [&](size_t k) { return k < c.size() ? c[k].substr(5) : std::string("?"); };
    std::string out = std::to_string(c.size()) + ":";
    if (bmp.empty()) return out + col;
    for (char px : bmp) {
        if (px != '0' && px != '1') continue;
        const size_t d = static_cast<size_t>(px - '0');
        out += at(d) + (c.size() == 4 ? at(d + 2) : "") + ";";
    }
    return out;
}

}  // namespace

// A text and the TYP compiled from it: every polygon and line of the text
// reads to the columns the decoder gives for the same type.
TEST(PolygonLineReader, CorpusTextsMeanWhatTheirBinariesHold) {
    if (corpus_dir().empty()) GTEST_SKIP() << "no corpus";
    for (const char* name : {"suke-hike", "suke-tmz", "stac47-mapnik", "aio-basemap", "jorisbo-jbm"}) {
        model::Store s;
        platform::ScriptedPrompt ui;
        decode_bytes(s, ui, read_bytes(corpus_dir() + "/typ/" + name + ".typ"));
        const std::string text = read_bytes(corpus_dir() + "/txt/" + name + ".txt");
        Reader r;
        int matched = 0;
        for (const std::string& sec : sections_of(text, "[_polygon]")) {
            r.polygon(sec);
            int32_t n = 0;
            while (n < s.pg_n && s.pg_typ[static_cast<size_t>(n)] != r.s.pg_typ[0]) ++n;
            SCOPED_TRACE(std::string(name) + " polygon " + r.s.pg_typ[0]);
            ASSERT_LT(n, s.pg_n);
            const auto k = static_cast<size_t>(n);
            EXPECT_EQ(r.s.pg_mode[0], s.pg_mode[k]);
            EXPECT_EQ(painted(r.s.pg_col[0], r.s.pg_bmp[0]), painted(s.pg_col[k], s.pg_bmp[k]));
            ++matched;
        }
        for (const std::string& sec : sections_of(text, "[_line]")) {
            r.line(sec);
            int32_t n = 0;
            while (n < s.ln_n && s.ln_code[static_cast<size_t>(n)] != r.s.ln_code[0]) ++n;
            SCOPED_TRACE(std::string(name) + " line " + typ::hex(r.s.ln_code[0]));
            ASSERT_LT(n, s.ln_n);
            const auto k = static_cast<size_t>(n);
            expect_same_line(r.s, s, k);
            ++matched;
        }
        EXPECT_GT(matched, 0) << name;
    }
}

// Every polygon and line section of every corpus text, and broken pieces of
// them, read without a crash and give a known scheme.
TEST(PolygonLineReader, AnySectionReadsToAKnownScheme) {
    if (corpus_dir().empty()) GTEST_SKIP() << "no corpus";
    Reader r;
    for (const std::string& file : files_with(corpus_dir() + "/txt", ".txt")) {
        const std::string text = read_bytes(file);
        for (const std::string& sec : sections_of(text, "[_polygon]")) {
            r.polygon(sec);
            r.polygon(sec.substr(0, sec.size() / 2));
            const int mode = r.s.pg_mode[0];
            EXPECT_TRUE(mode >= 6 && mode <= 15 && mode != 10 && mode != 12) << file << " " << mode;
        }
        for (const std::string& sec : sections_of(text, "[_line]")) {
            r.line(sec);
            EXPECT_EQ(r.s.ln_col[0].empty(), r.s.ln_ncol[0] == 0) << file;
            r.line(sec.substr(0, sec.size() / 2));
            const int scheme = r.s.ln_mode[0] & 7;
            EXPECT_TRUE(scheme != 2 && scheme != 4) << file;
        }
    }
}

TEST(PolygonLineReader, HostileSectionsReadQuickly) {
    std::string colours;
    for (int k = 0; k < 10000; ++k) {
        colours += '"';
        colours += std::to_string(k % 90);
        colours += " c #";
        colours += std::to_string(100000 + k);
        colours += "\"\n";
    }
    std::string many_rows;
    for (int k = 0; k < 5000; ++k) many_rows += "\"" + std::string(32, '0') + "\"\n";
    Reader r;
    r.polygon(crlf("[_polygon]\nType=0x1\nXpm=\"32 32 4 2\"\n" + colours + many_rows + "[end]"));
    EXPECT_EQ(r.s.pg_mode[0], 9);
    EXPECT_EQ(r.s.pg_ncol[0], 4);
    r.line(crlf("[_line]\nType=0x1\nXpm=\"32 5000 2 1\"\n" + colours + many_rows + "[end]"));
    EXPECT_EQ(r.s.ln_mode[0], 31 * 8 + 1);
    r.line(crlf("[_line]\nType=0x1\nXpm=\"32 1 2 1\n\"a c #112233\n\"b c none\"\n\"aaaa\n"));
    EXPECT_NE(r.s.loadrep.find("Lines: missing quotes:"), std::string::npos);
}
