#include "text/load_driver.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "../support/harness.h"
#include "typ/curf_access.h"
#include "typ/encoding.h"

namespace korvex::text {
namespace {

using platform::Answer;
using platform::ScriptedPrompt;

bool said(const std::vector<std::string>& said, const std::string& prefix) {
    return std::any_of(said.begin(), said.end(), [&](const std::string& m) { return m.rfind(prefix, 0) == 0; });
}

std::string line_section(const std::string& type, bool active) {
    return "[_line]\nType=" + type + "\n" + (active ? "Activity=Running\n" : "") +
           "LineWidth=2\nXpm=\"0 0 1 0\"\n\"1 c #FF0000\"\n[end]\n\n";
}

TEST(LoadPasses, ActiveLinesGoBehindOrdinaryLinesAndLengthenTheHeader) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    const std::string text = "[_id]\nFID=1\n[end]\n" + line_section("0x01", true) + line_section("0x02", false) +
                             line_section("0x03", true) + line_section("0x04", false);
    ASSERT_TRUE(load_txt(s, ui, "a.txt", text, false, true));
    EXPECT_EQ(s.ln_n, 2);
    EXPECT_EQ(s.ln_nact, 2);
    EXPECT_EQ(s.hdr_len, 174);
    EXPECT_EQ(s.hdr_caption, " AE");
    const char* order[] = {"0x02", "0x04", "0x01", "0x03"};
    for (size_t r = 0; r < 4; ++r) EXPECT_NE(typ::lower(s.ln_txt[r]).find(order[r]), std::string::npos) << r;
}

TEST(LoadPasses, SectionMarkersInAnyCaseAreSplit) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    const std::string poly = "Type=0x01\nXpm=\"0 0 1 0\"\n\"1 c #FF0000\"\n[end]\n";
    ASSERT_TRUE(load_txt(s, ui, "a.txt", "[_id]\n[end]\n[_POLYGON]\n" + poly + "[_Polygon]\n" + poly, false, true));
    EXPECT_EQ(s.pg_n, 2);
    EXPECT_EQ(s.pg_txt[0].rfind("[_polygon]", 0), 0u);

    // The literal spelling beside others in the same file: every section
    // counts, whichever spelling comes first.
    const std::string point = "Type=0x2f\nDayXpm=\"1 1 1 1\"\n\"$ c #FF0000\"\n\"$\"\n[end]\n";
    for (const bool literal_first : {true, false}) {
        Store m;
        model::newproject(m);
        std::string text = "[_id]\n[end]\n";
        const std::string poly_marks[] = {"[_polygon]", "[_POLYGON]", "[_polygon]"};
        const std::string line_marks[] = {"[_line]", "[_Line]", "[_LINE]"};
        const std::string point_marks[] = {"[_point]", "[_POINT]"};
        for (int k = 0; k < 3; ++k) text += poly_marks[literal_first ? k : 2 - k] + "\n" + poly;
        for (int k = 0; k < 3; ++k) text += line_section("0x0" + std::to_string(k + 1), false).replace(0, 7, line_marks[literal_first ? k : 2 - k]);
        for (int k = 0; k < 2; ++k) text += point_marks[literal_first ? k : 1 - k] + "\n" + point;
        ASSERT_TRUE(load_txt(m, ui, "a.txt", text, false, true));
        EXPECT_EQ(m.pg_n, 3) << literal_first;
        EXPECT_EQ(m.ln_n, 3) << literal_first;
        EXPECT_EQ(m.pt_n, 2) << literal_first;
        EXPECT_EQ(m.ln_txt[2].rfind("[_line]", 0), 0u);
        EXPECT_EQ(m.pt_txt[1].rfind("[_point]", 0), 0u);
    }
}

TEST(LoadPasses, IdSectionAndCreatedLineAreRead) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    ASSERT_TRUE(load_txt(s, ui, "a.txt",
                         ";created : 17.5.2024 13:45\r\n[_id]\r\nFID = 0x10\r\nProductCode=3\r\nCodePage=1250\r\n"
                         ";Header=9c\r\n[end]\r\nFID=99\r\n",
                         false, true));
    EXPECT_EQ(s.fid, "16");
    EXPECT_EQ(s.pid, "3");
    EXPECT_EQ(s.codepage, 1250);
    EXPECT_EQ(s.hdr_caption, " 9C");
    EXPECT_EQ(s.created, "17.5.2024 13:45");
}

TEST(LoadPasses, ExtendedPointsGoBehindOrdinaryPoints) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    auto point = [](const std::string& key) {
        return "[_point]\n" + key + "\nXpm=\"1 1 1 1\"\n\"a c #FF0000\"\n\"a\"\n[end]\n";
    };
    load_txt(s, ui, "a.txt", "[_id]\n[end]\n" + point("ID=0x11b01") + point("Type=0x2f00") + point("id = 0x10a02") +
                                  point("Type=0x01"),
             false, true);
    EXPECT_EQ(s.pt_n, 2);
    EXPECT_EQ(s.pt_nx, 2);
    const char* order[] = {"02F00", "00100", "11B01", "10A02"};
    for (size_t r = 0; r < 4; ++r) EXPECT_EQ(s.pt_typ[r], order[r]) << r;
}

TEST(LoadPasses, UnidentifiedTextIsRefusedWhenRequired) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    load_txt(s, ui, "a.txt", "[_polygon]\nType=0x01\n[end]\n", false, true);
    EXPECT_TRUE(said(ui.messages, "Can't find TYP information."));
    EXPECT_EQ(s.pg_n, 0);
}

TEST(LoadPasses, LastSectionWithoutEndStopsThePass) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    load_txt(s, ui, "a.txt", "[_id]\n[end]\n[_point]\nType=0x01\nXpm=\"0 0 0 0\"\n", false, true);
    EXPECT_TRUE(said(ui.messages, "Error. Cannot find [end]"));
    EXPECT_EQ(s.pt_n, 0);
}

TEST(LoadPasses, PointWithoutXpmStopsThePointPass) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    load_txt(s, ui, "a.txt", "[_id]\n[end]\n[_point]\nType=0x01\n[end]\n[_point]\nType=0x02\nXpm=\"0 0 0 0\"\n[end]\n",
             false, true);
    EXPECT_TRUE(said(ui.messages, "Warning! No xpm for point 1"));
    EXPECT_EQ(s.pt_n, 0);
    EXPECT_TRUE(chktxt(s, ui, 1, 4, "Xpm=\"0 0 1 0\""));
    EXPECT_TRUE(said(ui.messages, "Warning! No type for line 5"));
    EXPECT_FALSE(chktxt(s, ui, 0, 0, "ID=0x01\nxpm="));
}

TEST(LoadPasses, Utf8QuestionAskedOnceAndStringsRecoded) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    const std::string text = typ::bom + "[_id]\r\nCodePage=1252\r\n[end]\r\n[_point]\r\nType=0x01\r\nString1=0x04,Caf\xC3\xA9\r\n"
                                   "Xpm=\"0 0 0 0\"\r\n[end]\r\n[_point]\r\nType=0x02\r\nXpm=\"0 0 0 0\"\r\n[end]\r\n";
    load_txt(s, ui, "a.txt", text, false, true);
    ASSERT_EQ(ui.questions.size(), 1u);
    EXPECT_EQ(ui.questions[0], "Detected UTF8. Continue loading as UTF8?");
    EXPECT_TRUE(s.utf8txt);
    EXPECT_EQ(fnchkstringtxt(s, "String1=0x4,Caf\xC3\xA9", 1), "String1=0x04,Caf\xE9");

    Store t;
    model::newproject(t);
    ScriptedPrompt no(Answer::no);
    load_txt(t, no, "a.txt", text, false, true);
    EXPECT_EQ(no.questions.size(), 1u);
    EXPECT_FALSE(t.utf8txt);
    EXPECT_EQ(fnchkstringtxt(t, "String1=0x4,Caf\xC3\xA9", 1), "String1=0x04,Caf\xC3\xA9");
    EXPECT_TRUE(t.walk.wrongly_parsed);
}

TEST(StringLine, NormalisedToNumberedKeyAndTwoLanguageDigits) {
    Store s;
    model::newproject(s);
    EXPECT_EQ(fnchkstringtxt(s, "  String=0x4,Some, text ", 3), "String3=0x04,Some, text");
    EXPECT_EQ(fnchkstringtxt(s, "String=Plain", 2), "String2=0x00,Plain");
    EXPECT_EQ(fnchkstringtxt(s, "String1=Bus 0x5, late", 1), "String1=0x00,Bus 0x5, late");
    EXPECT_EQ(fnchkstringtxt(s, "String1=0x13,x", 1), "String1=0x13,x");
    EXPECT_EQ(fnchkstringtxt(s, "String1=0x04,", 1), "String1=0x04,");
    s.codepage = 65001;
    EXPECT_EQ(fnchkstringtxt(s, "String1=0x4,\xC3\xA9", 1), "String1=0x4,\xC3\xA9");
}

TEST(StringLine, Language2FIsStoredAs00) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    std::string text = "[_id]\n[end]\n[_point]\nType=0x01\nString2=0x2F,x\nString12=0x2f,y\nXpm=\"0 0 0 0\"\n[end]\n";
    load_txt(s, ui, "a.txt", text, false, true);
    EXPECT_NE(s.pt_txt[0].find("String2=0x00,x"), std::string::npos) << s.pt_txt[0];
    EXPECT_NE(s.pt_txt[0].find("String12=0x00,y"), std::string::npos) << s.pt_txt[0];
    EXPECT_EQ(s.pt_txt[0].find("0x2F"), std::string::npos);
}

TEST(TextDrawOrder, LevelsWithCommentsAndShortDigits) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    draworder_fromtxt(s, ui,
                      "[_drawOrder]\nType=0x05,5\t;parkering\nType=0x027,1\nType=0x10d00,3\n;Type=0x06,1\nType=0x1\n[End]\n"
                      "Type=0x07,1\n");
    EXPECT_EQ(s.drwlist, " 0027,1 0001,2 10D00,3 0005,5");
}

TEST(TextDrawOrder, PolygonsTakeTheirToken) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    model::procredim(s, model::k_polygons, 3);
    s.pg_n = 3;
    s.pg_typ = {"0x0500", "0x10d00", "0x0600"};
    draworder_fromtxt(s, ui, "[_draworder]\nType=0x05,5\nType=0x10d00,3\n[end]\n");
    EXPECT_EQ(s.pg_drw[0], "Type=0005,5");
    EXPECT_EQ(s.pg_drw[1], "Type=10D00,3");
    EXPECT_EQ(s.pg_drw[2], "");
    draworder_fromtxt(s, ui, "[_draworder]\n[end]\n");
    EXPECT_TRUE(said(ui.messages, "Polygons have no draworder"));
}

TEST(TextDrawOrder, PolygonPassRemovesDuplicatesAndSaysWhich) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    const std::string polygon = "[_polygon]\nType=0x05\nXpm=\"0 0 1 0\"\n\"1 c #102030\"\n[end]\n";
    load_txt(s, ui, "a.txt",
             "[_id]\nFID=1\n[end]\n[_drawOrder]\nType=0x05,2\nType=0x06,1\nType=0x05,1\nType=0x06,3\n[end]\n" + polygon,
             false, true);
    EXPECT_EQ(s.drwlist, " 0005,1 0006,1");
    EXPECT_EQ(s.pg_drw[0], "Type=0005,1");
    EXPECT_EQ(ui.messages, std::vector<std::string>{"Found and removed duplicates :\r\n\r\n0005,2 0006,3"});
}

TEST(SectionSort, TypesSortByValue) {
    const std::string text =
        "[_id]\r\n[end]\r\n[_polygon]\r\nType=0x100\r\n[end]\r\n[_polygon]\r\nType=0x4b\r\n[end]\r\n"
        "[_line]\r\nType=0x2\r\n[end]\r\n[_line]\r\nType=0x1\r\n[end]\r\n";
    EXPECT_EQ(sorttxt(text),
              "[_id]\r\n[end]\r\n[_polygon]\r\nType=0x4b\r\n[end]\r\n[_polygon]\r\nType=0x100\r\n[end]\r\n"
              "[_line]\r\nType=0x1\r\n[end]\r\n[_line]\r\nType=0x2\r\n[end]\r\n");
    // A text that starts with the line part has no polygon part.
    EXPECT_EQ(sorttxt("_line]\r\nType=0x2\r\n[end]\r\n"), "_line]\r\nType=0x2\r\n[end]\r\n");
    EXPECT_EQ(chksemicolon("a;b\r\n;c\nd"), "a\r\n\r\nd");
}

TEST(LoadHostile, EmptyAndBinaryTextsLoadWithoutCrash) {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    EXPECT_TRUE(load_txt(s, ui, "a.txt", "", false, false));
    std::string junk;
    uint32_t x = 12345;
    for (int i = 0; i < 20000; ++i) {
        x = x * 1103515245u + 12345u;
        junk += static_cast<char>(x >> 24);
    }
    for (const char* marker : {"[_polygon]", "[_line]", "[_point]", "[_draworder]", "[end]", "\""}) {
        junk.insert(junk.size() / 3, marker);
        junk.insert(junk.size() / 2, marker);
    }
    load_txt(s, ui, "a.txt", "[_id]\n[end]\n" + junk, false, true);
    load_txt(s, ui, "a.txt", junk, false, false);

    // Ten thousand colours, quotes never closed, a megabyte on one line.
    std::string many = "[_point]\nType=0x2f06\nDayXpm=\"4 4 10000 2\"\n";
    for (int i = 0; i < 10000; ++i) many += "\"" + std::to_string(i % 90 + 10) + " c #00" + std::to_string(i % 10) + "000\n";
    many += "\"" + std::string(1 << 20, 'a') + "\n[_polygon]\nType=0x01\nXpm=\"32 32 2 1\n\"[end]\n";
    load_txt(s, ui, "a.txt", many, false, false);
    EXPECT_EQ(s.pt_n, 1);
    EXPECT_EQ(s.pg_n, 1);
}

TEST(LoadCorpus, EveryTextLoads) {
    const std::string dir = testing::corpus_dir();
    if (dir.empty()) GTEST_SKIP() << "no corpus";
    for (const std::string& path : testing::files_with(dir + "/txt", ".txt")) {
        Store s;
        model::newproject(s);
        ScriptedPrompt ui;
        EXPECT_TRUE(load_txt(s, ui, path, testing::read_bytes(path), false, false)) << path;
        EXPECT_FALSE(said(ui.messages, "Error. Cannot find [end]")) << path;
        // One of them holds a draw order and nothing else.
        EXPECT_TRUE(s.pg_n + s.ln_n + s.ln_nact + s.pt_n > 0 || !s.drwlist.empty()) << path;
    }
}

TEST(LoadPasses, CommaEndedRowsReadLikeCleanOnes) {
    const std::string point = "[_point]\nType=0x2f06\nDayXpm=\"2 2 2 1\",\n\"a c #FF0000\",\n\"b c #0000FF\",\n"
                              "\"ab\",\r\n\"ba\",\n[end]\n";
    auto load = [&](const std::string& marker, const std::string& text) {
        Store s;
        model::newproject(s);
        s.opt.comma_rows_marker = marker;
        ScriptedPrompt ui;
        load_txt(s, ui, "a.txt", text, false, false);
        return s;
    };
    std::string clean = point;
    for (size_t p; (p = clean.find("\",")) != std::string::npos;) clean.erase(p + 1, 1);
    const Store want = load("", clean);
    ASSERT_EQ(want.pt_n, 1);
    const Store got = load("maps.example.org", ";made at maps.example.org\n" + point);
    ASSERT_EQ(got.pt_n, 1);
    EXPECT_EQ(got.pt_bmp[0], want.pt_bmp[0]);
    EXPECT_EQ(got.pt_col[0], want.pt_col[0]);
    EXPECT_EQ(got.pt_txt[0], want.pt_txt[0]);
    // The readers take a comma behind a row in any text.
    EXPECT_EQ(load("", point).pt_bmp[0], want.pt_bmp[0]);
}

}  // namespace
}  // namespace korvex::text
